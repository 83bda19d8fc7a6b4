// Times whole runs of the exporter over generated bundles and prints the tables of docs/performance.md. Usage:
// MSPDIBench EXPORTER FLOOR SEND CONFORM FOLDER   (the folder receives bundles and results; SEND and CONFORM are
// mspdi-export and mspdi-conform)

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "Benchmarks/PlanGenerator.h"

namespace fs = std::filesystem;

namespace {

constexpr int kRuns = 5;
constexpr int kShortRuns = 25;

struct Usage {
  double cpu = 0;     ///< seconds
  double wall = 0;    ///< seconds
  double memory = 0;  ///< peak, bytes
};

double seconds(const timeval &time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

/// Runs a command to its end, its output thrown away. Ends the benchmark when it fails.
Usage measured(const std::vector<std::string> &command) {
  const auto before = std::chrono::steady_clock::now();
  const pid_t child = fork();
  if (child == 0) {
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    std::vector<char *> arguments;
    for (const std::string &argument : command) arguments.push_back(const_cast<char *>(argument.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
  }
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  const std::chrono::duration<double> wall = std::chrono::steady_clock::now() - before;
  if (status != 0) {
    fmt::print(stderr, "failed: {}\n", fmt::join(command, " "));
    std::exit(1);
  }
  return {seconds(usage.ru_utime) + seconds(usage.ru_stime), wall.count(), static_cast<double>(usage.ru_maxrss) * 1024};
}

/// The floor measures itself, so that loading the result is not counted.
Usage measuredFloor(const std::string &program, const std::string &result, const std::string &out,
                    const std::vector<std::string> &inputs) {
  const std::string command = fmt::format("'{}' '{}' '{}' '{}'", program, result, out, fmt::join(inputs, "' '"));
  Usage usage;
  FILE *pipe = popen(command.c_str(), "r");
  if (pipe == nullptr || std::fscanf(pipe, "%lf %lf", &usage.cpu, &usage.wall) != 2) std::exit(1);
  pclose(pipe);
  return usage;
}

Usage median(std::vector<Usage> runs) {
  const auto middle = [&runs](double Usage::*field) {
    std::vector<double> values;
    for (const Usage &run : runs) values.push_back(run.*field);
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
  };
  return {middle(&Usage::cpu), middle(&Usage::wall), middle(&Usage::memory)};
}

double sizeOf(const std::vector<std::string> &files) {
  double size = 0;
  for (const std::string &file : files) size += static_cast<double>(fs::file_size(file));
  return size;
}

struct Programs {
  std::string exporter;
  std::string floor;
  std::string send;
  std::string conform;
};

struct Plan {
  Usage exporter;
  Usage send;     ///< mspdi-export
  Usage conform;  ///< mspdi-conform, of what the exporter wrote
  Usage floor;
  Usage xmllint;
  double bytesIn = 0;
  double bytesOut = 0;
  double bytesSent = 0;
};

Plan timePlan(const Programs &programs, const std::string &folder, std::size_t tasks) {
  const std::string bundle = fmt::format("{}/{}.kvdx", folder, tasks);
  const std::string result = fmt::format("{}/{}.xml", folder, tasks);
  const std::string out = folder + "/out.xml";
  const std::vector<std::string> inputs = {bundle + "/__TOC.xml", bundle + "/Current.xml", bundle + "/Approved.xml"};
  writeGeneratedBundle(bundle, tasks);
  fs::remove(result);
  measured({programs.exporter, bundle, result});

  std::vector<Usage> exporterRuns;
  std::vector<Usage> sendRuns;
  std::vector<Usage> conformRuns;
  std::vector<Usage> floorRuns;
  std::vector<Usage> xmllintRuns;
  double bytesSent = 0;
  for (int run = 0; run < kRuns; ++run) {
    fs::remove(out);
    exporterRuns.push_back(measured({programs.exporter, bundle, out}));
    fs::remove(out);
    sendRuns.push_back(measured({programs.send, bundle, "-o", out}));
    bytesSent = sizeOf({out});
    fs::remove(out);
    conformRuns.push_back(measured({programs.conform, result, out}));
    fs::remove(out);
    floorRuns.push_back(measuredFloor(programs.floor, result, out, inputs));
    xmllintRuns.push_back(measured({"xmllint", "--format", result}));
  }
  return {median(exporterRuns), median(sendRuns), median(conformRuns), median(floorRuns),
          median(xmllintRuns),  sizeOf(inputs),   sizeOf({result}),    bytesSent};
}

void printRow(const char *what, double value, double limit) {
  fmt::print("| {} | {:.2f} | {:.1f} | {} |\n", what, value, limit, value <= limit ? "yes" : "NO");
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 6) return 2;
  const Programs programs = {argv[1], argv[2], argv[3], argv[4]};
  const std::string folder = argv[5];
  fs::create_directories(folder);

  fmt::print(
      "| tasks | CPU s | wall s | peak MB | MB in | MB out | CPU / "
      "floor | wall / floor | CPU / xmllint |\n"
      "|---|---|---|---|---|---|---|---|---|\n");
  std::vector<Plan> plans;
  for (const std::size_t tasks : {500U, 10'000U, 100'000U}) {
    const Plan &plan = plans.emplace_back(timePlan(programs, folder, tasks));
    fmt::print(
        "| {} | {:.3f} | {:.3f} | {:.1f} | {:.1f} | {:.1f} | {:.2f} | "
        "{:.2f} | {:.2f} |\n",
        tasks, plan.exporter.cpu, plan.exporter.wall, plan.exporter.memory / 1e6, plan.bytesIn / 1e6,
        plan.bytesOut / 1e6, plan.exporter.cpu / plan.floor.cpu, plan.exporter.wall / plan.floor.wall,
        plan.exporter.cpu / plan.xmllint.cpu);
    std::fflush(stdout);
  }

  const std::string smallest = folder + "/smallest.kvdx";
  const std::string out = folder + "/out.xml";
  writeSmallestBundle(smallest);
  std::vector<Usage> exporterRuns;
  std::vector<Usage> xmllintRuns;
  for (int run = 0; run < kShortRuns; ++run) {
    fs::remove(out);
    exporterRuns.push_back(measured({programs.exporter, smallest, out}));
    xmllintRuns.push_back(measured({"xmllint", "--noout", smallest + "/Current.xml"}));
  }
  const Usage smallestExport = median(exporterRuns);
  const Usage smallestXmllint = median(xmllintRuns);
  fmt::print("\nSmallest bundle: exporter {:.2f} ms, xmllint --noout {:.2f} ms.\n", smallestExport.wall * 1e3,
             smallestXmllint.wall * 1e3);

  const Plan &small = plans[0];
  const Plan &middle = plans[1];
  const Plan &large = plans[2];
  fmt::print("\n| what | measured | at most | holds |\n|---|---|---|---|\n");
  printRow("CPU, exporter / floor, 100,000 tasks", large.exporter.cpu / large.floor.cpu, 2.0);
  printRow("CPU, exporter / xmllint --format, 10,000 tasks", middle.exporter.cpu / middle.xmllint.cpu, 0.8);
  printRow("CPU, exporter / xmllint --format, 100,000 tasks", large.exporter.cpu / large.xmllint.cpu, 0.8);
  printRow("growth of CPU, 10,000 to 100,000 tasks", large.exporter.cpu / middle.exporter.cpu, 10.5);
  printRow("growth of memory, 10,000 to 100,000 tasks", large.exporter.memory / middle.exporter.memory, 10.5);
  printRow("peak memory / (bytes in + out), 100,000 tasks", large.exporter.memory / (large.bytesIn + large.bytesOut),
           4.0);
  printRow("smallest bundle, wall, exporter / xmllint --noout", smallestExport.wall / smallestXmllint.wall, 3.0);
  printRow("500 tasks, wall, exporter / floor", small.exporter.wall / small.floor.wall, 2.0);
  printRow("CPU, mspdi-export / exporter, 10,000 tasks", middle.send.cpu / middle.exporter.cpu, 2.5);
  printRow("CPU, mspdi-export / exporter, 100,000 tasks", large.send.cpu / large.exporter.cpu, 2.5);
  printRow("growth of CPU of mspdi-export, 10,000 to 100,000 tasks", large.send.cpu / middle.send.cpu, 10.5);
  printRow("peak memory of mspdi-export / (bytes in + sent), 100,000 tasks",
           large.send.memory / (large.bytesIn + large.bytesSent), 4.0);
  printRow("CPU, mspdi-conform / exporter, 10,000 tasks", middle.conform.cpu / middle.exporter.cpu, 1.5);
  printRow("CPU, mspdi-conform / exporter, 100,000 tasks", large.conform.cpu / large.exporter.cpu, 1.5);
}
