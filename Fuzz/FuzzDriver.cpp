#include <cstdint>

#include "Fuzz/DriverTarget.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzzDriver({reinterpret_cast<const char*>(data), size});
  return 0;
}
