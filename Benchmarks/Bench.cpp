// Times whole runs of the exporter over generated bundles and prints the tables of docs/performance.md. Usage:
// MSPDIBench EXPORTER FLOOR SEND CONFORM FOLDER [BEFORE BEFORE_SEND]
// Bundles and results are written to the folder. SEND is mspdi-export, CONFORM is mspdi-conform; BEFORE and BEFORE_SEND
// are older versions of MSPDIExport and mspdi-export to compare with.

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "Benchmarks/PlanGenerator.h"

namespace fs = std::filesystem;

namespace {

constexpr int kRuns = 5;
constexpr int kShortRuns = 25;
constexpr std::size_t kManyTasks = 1000;
constexpr std::array<std::size_t, 3> kTasks = {500, 10'000, 100'000};

struct Usage {
  double cpu = 0;     ///< seconds; for the floor, without the start of its process
  double wall = 0;    ///< seconds
  double memory = 0;  ///< peak, bytes
  double start = 0;   ///< CPU seconds that the floor used before main; 0 for others
};

double seconds(const timeval &time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

/// Runs a command until it ends and discards its output. Ends the benchmark when the command fails.
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

/// The floor measures itself, so that loading the finished output is not counted.
Usage measuredFloor(const std::string &program, const std::string &result, const std::string &out,
                    const std::vector<std::string> &inputs) {
  const std::string command = fmt::format("'{}' '{}' '{}' '{}'", program, result, out, fmt::join(inputs, "' '"));
  Usage usage;
  FILE *pipe = popen(command.c_str(), "r");
  if (pipe == nullptr || std::fscanf(pipe, "%lf %lf %lf", &usage.cpu, &usage.wall, &usage.start) != 3) {
    std::exit(1);
  }
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
  return {middle(&Usage::cpu), middle(&Usage::wall), middle(&Usage::memory), middle(&Usage::start)};
}

double sizeOf(const std::vector<std::string> &files) {
  double size = 0;
  for (const std::string &file : files) size += static_cast<double>(fs::file_size(file));
  return size;
}

/// The programs of one version.
struct Version {
  std::string exporter;
  std::string send;  ///< mspdi-export
};

struct Programs {
  std::vector<Version> versions;  ///< the present one, then the older one if there is one
  std::string conform;
  std::string floor;
};

/// The measurements of one version for one plan.
struct Times {
  Usage exporter;
  Usage send;
  double bytesSent = 0;
};

struct Plan {
  std::vector<Times> versions;
  Usage conform;  ///< for the exporter's output
  Usage floor;
  Usage xmllint;
  double bytesIn = 0;
  double bytesOut = 0;
};

/// All runs of one version.
struct Runs {
  std::vector<Usage> exporter;
  std::vector<Usage> send;
};

Plan timePlan(const Programs &programs, const std::string &folder, std::size_t tasks) {
  const std::string bundle = fmt::format("{}/{}.kvdx", folder, tasks);
  const std::string result = fmt::format("{}/{}.xml", folder, tasks);
  const std::string out = folder + "/out.xml";
  const std::vector<std::string> inputs = {bundle + "/__TOC.xml", bundle + "/Current.xml", bundle + "/Approved.xml"};
  const auto anew = [&out](const std::vector<std::string> &command) {
    fs::remove(out);
    return measured(command);
  };
  writeGeneratedBundle(bundle, tasks);
  fs::remove(result);
  measured({programs.versions[0].exporter, bundle, result});

  Plan plan;
  plan.versions.resize(programs.versions.size());
  std::vector<Runs> runs(programs.versions.size());
  std::vector<Usage> conformRuns;
  std::vector<Usage> floorRuns;
  std::vector<Usage> xmllintRuns;
  for (int run = 0; run < (tasks < kManyTasks ? kShortRuns : kRuns); ++run) {
    for (std::size_t i = 0; i < runs.size(); ++i) {
      runs[i].exporter.push_back(anew({programs.versions[i].exporter, bundle, out}));
      runs[i].send.push_back(anew({programs.versions[i].send, "-q", bundle, "-o", out}));
      plan.versions[i].bytesSent = sizeOf({out});
    }
    conformRuns.push_back(anew({programs.conform, result, out}));
    fs::remove(out);
    floorRuns.push_back(measuredFloor(programs.floor, result, out, inputs));
    xmllintRuns.push_back(measured({"xmllint", "--format", result}));
  }
  for (std::size_t i = 0; i < runs.size(); ++i) {
    plan.versions[i].exporter = median(runs[i].exporter);
    plan.versions[i].send = median(runs[i].send);
  }
  plan.conform = median(conformRuns);
  plan.floor = median(floorRuns);
  plan.xmllint = median(xmllintRuns);
  plan.bytesIn = sizeOf(inputs);
  plan.bytesOut = sizeOf({result});
  return plan;
}

/// The wall times for the smallest bundle, in milliseconds.
struct Smallest {
  std::vector<double> exporters;
  double xmllint = 0;
};

Smallest timeSmallest(const Programs &programs, const std::string &folder) {
  const std::string bundle = folder + "/smallest.kvdx";
  const std::string out = folder + "/out.xml";
  writeSmallestBundle(bundle);
  std::vector<std::vector<Usage>> exporterRuns(programs.versions.size());
  std::vector<Usage> xmllintRuns;
  for (int run = 0; run < kShortRuns; ++run) {
    for (std::size_t i = 0; i < exporterRuns.size(); ++i) {
      fs::remove(out);
      exporterRuns[i].push_back(measured({programs.versions[i].exporter, bundle, out}));
    }
    xmllintRuns.push_back(measured({"xmllint", "--noout", bundle + "/Current.xml"}));
  }
  Smallest smallest;
  for (const auto &runs : exporterRuns) smallest.exporters.push_back(median(runs).wall * 1e3);
  smallest.xmllint = median(xmllintRuns).wall * 1e3;
  return smallest;
}

/// A row of the table of goals: its name, its value for a version, and the goal.
struct Row {
  const char *what;
  std::function<double(std::size_t version)> value;
  double limit;
};

void printRows(const std::vector<Row> &rows, bool hasBefore) {
  fmt::print("\n| what | {}measured | at most | holds |\n|---|{}---|---|---|\n", hasBefore ? "before | " : "",
             hasBefore ? "---|" : "");
  for (const Row &row : rows) {
    const double value = row.value(0);
    const std::string before = hasBefore ? fmt::format("{:.2f} | ", row.value(1)) : "";
    fmt::print("| {} | {}{:.2f} | {:.1f} | {} |\n", row.what, before, value, row.limit,
               value <= row.limit ? "yes" : "NO");
  }
}

void printPlans(const std::vector<Plan> &plans) {
  fmt::print(
      "| tasks | CPU s | wall s | peak MB | MB in | MB out | CPU / floor | wall / floor | CPU / xmllint |\n"
      "|---|---|---|---|---|---|---|---|---|\n");
  for (std::size_t i = 0; i < plans.size(); ++i) {
    const Plan &plan = plans[i];
    const Usage &exporter = plan.versions[0].exporter;
    fmt::print("| {} | {:.3f} | {:.3f} | {:.1f} | {:.1f} | {:.1f} | {:.2f} | {:.2f} | {:.2f} |\n", kTasks[i],
               exporter.cpu, exporter.wall, exporter.memory / 1e6, plan.bytesIn / 1e6, plan.bytesOut / 1e6,
               exporter.cpu / plan.floor.cpu, exporter.wall / plan.floor.wall, exporter.cpu / plan.xmllint.cpu);
  }
}

}  // namespace

int main(int argc, char **argv) {
  if (argc != 6 && argc != 8) return 2;
  Programs programs = {{{argv[1], argv[3]}}, argv[4], argv[2]};
  const bool hasBefore = argc == 8;
  if (hasBefore) programs.versions.push_back({argv[6], argv[7]});
  const std::string folder = argv[5];
  fs::create_directories(folder);

  std::vector<Plan> plans;
  for (const std::size_t tasks : kTasks) plans.push_back(timePlan(programs, folder, tasks));
  const Smallest smallest = timeSmallest(programs, folder);
  printPlans(plans);
  fmt::print("\nSmallest bundle: exporter {:.2f} ms, xmllint --noout {:.2f} ms.\n", smallest.exporters[0],
             smallest.xmllint);

  const Plan &small = plans[0];
  const Plan &middle = plans[1];
  const Plan &large = plans[2];
  const auto overFloor = [](const Plan &plan) {
    return [&plan](std::size_t i) { return plan.versions[i].exporter.cpu / plan.floor.cpu; };
  };
  const auto overXmllint = [](const Plan &plan) {
    return [&plan](std::size_t i) { return plan.versions[i].exporter.cpu / plan.xmllint.cpu; };
  };
  const auto sendOverExporter = [](const Plan &plan) {
    return [&plan](std::size_t i) { return plan.versions[i].send.cpu / plan.versions[i].exporter.cpu; };
  };
  const auto conformOverExporter = [](const Plan &plan) {
    return [&plan](std::size_t i) { return plan.conform.cpu / plan.versions[i].exporter.cpu; };
  };
  printRows(
      {
          {"CPU, exporter / floor, 100,000 tasks", overFloor(large), 1.5},
          {"CPU, exporter / floor, 10,000 tasks", overFloor(middle), 1.5},
          {"CPU, exporter / floor, 500 tasks, a process each",
           [&](std::size_t i) { return small.versions[i].exporter.cpu / (small.floor.cpu + small.floor.start); }, 1.6},
          {"growth of CPU, 10,000 to 100,000 tasks",
           [&](std::size_t i) { return large.versions[i].exporter.cpu / middle.versions[i].exporter.cpu; }, 10.2},
          {"growth of memory, 10,000 to 100,000 tasks",
           [&](std::size_t i) { return large.versions[i].exporter.memory / middle.versions[i].exporter.memory; }, 10.5},
          {"peak memory / (bytes in + out), 100,000 tasks",
           [&](std::size_t i) { return large.versions[i].exporter.memory / (large.bytesIn + large.bytesOut); }, 1.3},
          {"CPU, exporter / xmllint --format, 10,000 tasks", overXmllint(middle), 0.5},
          {"CPU, exporter / xmllint --format, 100,000 tasks", overXmllint(large), 0.5},
          {"smallest bundle, wall, exporter / xmllint --noout",
           [&](std::size_t i) { return smallest.exporters[i] / smallest.xmllint; }, 3.0},
          {"CPU, mspdi-export / exporter, 10,000 tasks", sendOverExporter(middle), 2.0},
          {"CPU, mspdi-export / exporter, 100,000 tasks", sendOverExporter(large), 2.0},
          {"growth of CPU of mspdi-export, 10,000 to 100,000 tasks",
           [&](std::size_t i) { return large.versions[i].send.cpu / middle.versions[i].send.cpu; }, 10.5},
          {"peak memory of mspdi-export / (bytes in + sent), 100,000 tasks",
           [&](std::size_t i) { return large.versions[i].send.memory / (large.bytesIn + large.versions[i].bytesSent); },
           4.0},
          {"CPU, mspdi-conform / exporter, 10,000 tasks", conformOverExporter(middle), 1.5},
          {"CPU, mspdi-conform / exporter, 100,000 tasks", conformOverExporter(large), 1.5},
      },
      hasBefore);
  if (!hasBefore) return 0;
  fmt::print("\n| CPU s, exporter | before | now |\n|---|---|---|\n");
  for (std::size_t i = 0; i < plans.size(); ++i) {
    fmt::print("| {} tasks | {:.4f} | {:.4f} |\n", kTasks[i], plans[i].versions[1].exporter.cpu,
               plans[i].versions[0].exporter.cpu);
  }
}
