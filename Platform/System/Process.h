#pragma once

#include <functional>
#include <string>

namespace platform {

/// Lets writing to a closed pipe or beyond a file-size limit fail like any
/// other write, instead of ending the process. For programs, not for libraries:
/// called once, from main.
void reportWriteErrors();

/// Keeps freed memory in the process for what comes next: each page that goes back to the system and is asked for anew
/// costs as much time as some thousand instructions. For programs that end when their work is done, called once, from
/// main.
void keepFreedMemory();

/// While one lives, SIGHUP, SIGINT and SIGTERM end the child under way, not this process, so that it can clear up after
/// it. The process ends by the signal when this object does. Signals that are ignored stay so. One at a time.
class DeferredEnd {
 public:
  DeferredEnd();
  ~DeferredEnd();
  DeferredEnd(const DeferredEnd&) = delete;
  DeferredEnd& operator=(const DeferredEnd&) = delete;
};

/// What a child process came to.
struct ChildResult {
  int status = 1;    ///< 0 when all went well
  std::string said;  ///< one line for the parent; empty when the process was ended from outside
};

/// Runs the work in a copy of this process, and waits for it. What the work says on the standard streams is seen at
/// once. An exception that it lets out ends the child alone.
[[nodiscard]] ChildResult runInChild(const std::function<ChildResult()>& work);

}  // namespace platform
