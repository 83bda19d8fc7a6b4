#include "Platform/System/Process.h"

#include <csignal>

namespace platform {

void reportWriteErrors() {
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace platform
