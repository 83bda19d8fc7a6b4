#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// A private folder below the machine's folder for temporary files, removed with everything in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(TemporaryFolder&& other) noexcept;
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// Empty when the folder could not be made.
  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_;
};

/// Whether the file begins like a zip archive.
/// @param problem set to the reason when the file cannot be read; the result is then false.
[[nodiscard]] bool isZipArchive(const std::string& path, std::string& problem);

/// Unpacks a zip archive into a new folder, which only this user can read, inside an existing one that nobody else can
/// write to. Only files and folders are unpacked, and nothing outside the folder.
/// @param guessesNames set to true when a member's name is not in UTF-8, and its encoding was guessed.
/// @return none when all went well; otherwise the reason in plain words, and part of the archive may be in the folder.
/// Refused are: members that lead out of the folder or are more than 20 folders deep; links, special files and members
/// with passwords; archives whose members share bytes; archives that unpack to more than 64 MB plus 200 times their
/// size (plans shrink to between a tenth and a thirtieth), to more than 10,000 members or to more than 1000 folders,
/// counting those that only occur in a file's name.
[[nodiscard]] std::optional<std::string> unpackZipArchive(const std::string& path, const std::string& folder,
                                                          bool& guessesNames);

}  // namespace platform
