#pragma once

#include <functional>
#include <string>

namespace platform {

/// Makes writing to a closed pipe or beyond a file-size limit fail like any other write, instead of ending the process.
/// For programs, not for libraries: called once, from main.
void reportWriteErrors();

/// Keeps freed memory in the process for reuse: returning a page to the system and getting it again costs as much time
/// as some thousand instructions. For programs that end when their work is done; called once, from main.
void keepFreedMemory();

/// While this object lives, SIGHUP, SIGINT and SIGTERM end the running child and not this process, so that this process
/// can clean up. When the object is destroyed, a signal that came meanwhile ends the process. Signals that were ignored
/// stay ignored. Only one object at a time.
class DeferredEnd {
 public:
  DeferredEnd();
  ~DeferredEnd();
  DeferredEnd(const DeferredEnd&) = delete;
  DeferredEnd& operator=(const DeferredEnd&) = delete;
};

/// The result of a child process.
struct ChildResult {
  int status = 1;    ///< 0 when all went well
  std::string said;  ///< one line for the parent; empty when the child was killed or could not be started
};

/// Runs the work in a fork of this process and waits for it. The child writes to the same standard streams. An
/// exception that leaves the work ends only the child.
[[nodiscard]] ChildResult runInChild(const std::function<ChildResult()>& work);

}  // namespace platform
