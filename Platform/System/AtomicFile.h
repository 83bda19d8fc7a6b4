#pragma once

#include <string>
#include <string_view>

#include "Platform/System/Descriptor.h"

namespace platform {

/// A new file that nobody sees before it is complete. Until then it has no name, so a process that is killed leaves
/// nothing behind. Where the file system does not support nameless files, it is a temporary file beside the target
/// (".MSPDIExport-..."). It gets the permissions of any new file.
///
///   AtomicFile file("plans/Plan.xml");
///   file.append(text);                   // an old plans/Plan.xml is still as it was
///   file.commit("plans/Plan.xml");       // kTargetExists: nothing is replaced
///   file.commit("plans/Plan-1.xml");     // kWritten: the whole file appears at once
class AtomicFile {
 public:
  enum class Outcome { kWritten, kTargetExists, kFailed };

  /// @param target path of the file to be; the new file is made in its folder.
  explicit AtomicFile(std::string_view target);
  /// Deletes the file unless it was committed.
  ~AtomicFile();
  AtomicFile(const AtomicFile&) = delete;
  AtomicFile& operator=(const AtomicFile&) = delete;

  void append(std::string_view bytes);
  /// Flushes the bytes to the disk and gives the file its name. When something already has that name, leaves it alone
  /// and returns kTargetExists: the caller may try another name in the same folder.
  [[nodiscard]] Outcome commit(const std::string& target);
  /// The same, but replaces a file, a link or an empty folder of that name. What the system protects, and a folder that
  /// is not empty, is left alone (kTargetExists).
  [[nodiscard]] Outcome commitReplacing(const std::string& target);
  /// The first error: the system's message, or that the folder does not exist.
  [[nodiscard]] const std::string& failureReason() const { return failure_; }

 private:
  [[nodiscard]] std::string temporaryName() const;
  bool openNamed();
  void write(std::string_view bytes);
  void flush();
  bool sync();
  [[nodiscard]] bool isNameless() const { return temporary_.empty(); }
  [[nodiscard]] bool linkAs(const std::string& name) const;
  bool giveTemporaryName();
  bool moveToNamedFile();
  Outcome rename(const std::string& target);
  Outcome linkInsteadOfRenaming(const std::string& target);
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
