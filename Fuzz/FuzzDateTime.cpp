#include <cstdint>

#include "Fuzz/DateTimeTarget.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzDateTime({reinterpret_cast<const char*>(data), size});
  return 0;
}
