#include "Platform/System/Process.h"

#include <fcntl.h>
#include <malloc.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <limits>

#include "Platform/System/Descriptor.h"

namespace platform {

void keepFreedMemory() {
  // Take large blocks from the heap as well, and never shrink the heap.
  mallopt(M_MMAP_THRESHOLD, std::numeric_limits<int>::max());
  mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
}

void reportWriteErrors() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

namespace {

/// Signals that end a process and that it can handle first.
constexpr std::array kEndings = {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGALRM, SIGUSR1, SIGUSR2, SIGXCPU};

volatile std::sig_atomic_t caughtSignal = 0;
volatile std::sig_atomic_t childUnderWay = 0;

void passOn(int signal) {
  const int error = errno;
  caughtSignal = signal;
  if (childUnderWay > 0) ::kill(childUnderWay, signal);
  errno = error;
}

/// Restores the default action of the signals, and raises the one that was caught meanwhile.
void catchUp() {
  for (const int signal : kEndings) {
    struct sigaction now {};
    ::sigaction(signal, nullptr, &now);
    if (now.sa_handler == &passOn) std::signal(signal, SIG_DFL);
  }
  if (caughtSignal != 0) std::raise(caughtSignal);
}

std::string readAll(int descriptor) {
  std::string text;
  std::array<char, 4096> block{};
  for (;;) {
    const ssize_t got = ::read(descriptor, block.data(), block.size());
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) return text;
    text.append(block.data(), static_cast<std::size_t>(got));
  }
}

[[noreturn]] void beChild(pid_t parent, int answer, const std::function<ChildResult()>& work) {
  ::prctl(PR_SET_PDEATHSIG, SIGTERM);  // ends the child when the parent dies
  // It has died already. A parent outside of this process's namespace of numbers has number 0.
  if (::getppid() != parent && ::getppid() != 0) ::_exit(SIGTERM);
  catchUp();
  const ChildResult result = work();
  static_cast<void>(writeAll(answer, result.said));  // fails only if the parent is gone, which then needs no answer
  std::fflush(nullptr);
  ::_exit(result.status);
}

}  // namespace

DeferredEnd::DeferredEnd() {
  for (const int signal : kEndings) {
    if (std::signal(signal, &passOn) == SIG_IGN) std::signal(signal, SIG_IGN);
  }
}

DeferredEnd::~DeferredEnd() { catchUp(); }

ChildResult runInChild(const std::function<ChildResult()>& work) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {1, ""};
  // A parent that ignored it passes this on, and then waitpid() cannot tell how a child ended.
  std::signal(SIGCHLD, SIG_DFL);
  const Descriptor reader = Descriptor::besideStandardStreams(ends[0]);
  Descriptor writer = Descriptor::besideStandardStreams(ends[1]);
  const pid_t parent = ::getpid();
  const pid_t child = ::fork();
  if (child == 0) beChild(parent, writer.get(), work);
  writer = Descriptor();
  childUnderWay = child;
  if (child > 0 && caughtSignal != 0) ::kill(child, caughtSignal);  // a signal that arrived before the child existed
  ChildResult result{1, child < 0 ? "" : readAll(reader.get())};
  int status = 0;
  pid_t ended = -1;
  while (child > 0 && (ended = ::waitpid(child, &status, 0)) < 0 && errno == EINTR) {
  }
  childUnderWay = 0;
  if (ended > 0 && WIFEXITED(status)) result.status = WEXITSTATUS(status);
  return result;
}

}  // namespace platform
