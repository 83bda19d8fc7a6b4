#pragma once

#include <string>
#include <vector>

/// The command mspdi-conform: corrects an exported file without its bundle, and writes the result to another file.
class ConformCommand {
 public:
  /// @param arguments the input and the output, or "--help".
  explicit ConformCommand(std::vector<std::string> arguments) : arguments_(std::move(arguments)) {}

  /// Prints warnings of the corrections, and the reason of a failure, to standard error.
  /// @return the exit status: 0 when the file was written, otherwise 1.
  int run();

 private:
  /// @throws platform::Exception with a reason for people.
  static void copyFile(const std::string& input, const std::string& output);

  std::vector<std::string> arguments_;
};
