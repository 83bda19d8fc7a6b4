#include <cstdlib>

#include "Benchmarks/PlanGenerator.h"

/// Writes a bundle with this number of tasks: GeneratePlan BUNDLE TASKS
int main(int argumentCount, char **arguments) {
  if (argumentCount != 3) return EXIT_FAILURE;
  writeGeneratedBundle(arguments[1], std::strtoul(arguments[2], nullptr, 10));
  return EXIT_SUCCESS;
}
