#pragma once

#include "mspdi-export/ExportArguments.h"

/// The command mspdi-export: reads the command line, exports, and says on standard error what became of it.
class ExportCommand {
 public:
  ExportCommand(int argc, const char* const* argv) : argc_(argc), argv_(argv) {}

  /// @return the exit status: 0 when the file was written, 1 when it was not, 2 for a wrong use.
  int run();

 private:
  static int exportAndTell(const ExportArguments& arguments);

  int argc_;
  const char* const* argv_;
};
