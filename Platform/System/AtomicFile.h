#pragma once

#include <string>
#include <string_view>

#include "Platform/System/Descriptor.h"

namespace platform {

/// A new file that nobody sees before it is whole. Until then it has no name, so that a process that is killed leaves
/// nothing behind. Where the system has no files without a name, it is a temporary file beside the target. It has the
/// rights of any new file.
class AtomicFile {
 public:
  enum class Outcome { kWritten, kTargetExists, kFailed };

  /// @param target path of the file to be; the new file is made in its folder.
  explicit AtomicFile(std::string_view target);
  /// Drops what was not committed.
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  void append(std::string_view bytes);
  /// Flushes the bytes to the disk and gives the file its name. Whatever has that name already is left alone
  /// (kTargetExists): the caller may try another name in the same folder.
  [[nodiscard]] Outcome commit(const std::string& target);
  /// The same, replacing a file, a link or an empty folder of that name. One that the system protects, and a folder
  /// with something in it, is left alone (kTargetExists).
  [[nodiscard]] Outcome commitReplacing(const std::string& target);
  /// Why the first thing failed: the system's reason, or the folder that does not exist.
  [[nodiscard]] const std::string& failureReason() const { return failure_; }

 private:
  bool openNamed();
  void write(std::string_view bytes);
  void flush();
  bool sync();
  [[nodiscard]] bool isNameless() const { return temporary_.empty(); }
  [[nodiscard]] bool linkAs(const std::string& name) const;
  bool giveTemporaryName();
  bool moveToNamedFile();
  Outcome rename(const std::string& target);
  Outcome renameOverPlaceholder(const std::string& target);
  bool replace(const std::string& target);
  Outcome fail();

  std::string folder_;
  Descriptor file_;
  std::string temporary_;  ///< its name; empty while it has none
  std::string failure_;    ///< empty while nothing has failed
  std::string buffer_;
  bool synced_ = false;
};

}  // namespace platform
