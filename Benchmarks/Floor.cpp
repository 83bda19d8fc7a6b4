// Does the least that any exporter must do with the same XML library: reads the bundle's documents and writes the
// finished output. The output is loaded beforehand from the exporter's result, which is not counted. Usage: MSPDIFloor
// RESULT.xml OUT.xml INPUT.xml...   Prints "cpu wall start" in seconds; start is the CPU time before main.

#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <pugixml.hpp>

namespace {

double cpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval &time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

}  // namespace

int main(int argc, char **argv) {
  if (argc < 4) return 2;
  const double start = cpuSeconds();
  pugi::xml_document result;
  if (!result.load_file(argv[1])) return 1;
  const double cpuBefore = cpuSeconds();
  const auto wallBefore = std::chrono::steady_clock::now();
  for (int i = 3; i < argc; ++i) {
    pugi::xml_document input;
    if (!input.load_file(argv[i])) return 1;
  }
  if (!result.save_file(argv[2], "  ")) return 1;
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - wallBefore;
  std::printf("%f %f %f\n", cpuSeconds() - cpuBefore, wall.count(), start);
}
