#include "Platform/System/Descriptor.h"

#include <unistd.h>

namespace platform {

Descriptor::~Descriptor() {
  if (isOpen()) ::close(number_);
}

std::string Descriptor::link() const { return "/proc/self/fd/" + std::to_string(number_); }

}  // namespace platform
