#pragma once

#include <map>

#include "Tests/Support.h"

/// The result of a program that ran as a process.
struct ProcessResult {
  int status = -1;  ///< exit status; 128 + n when signal n ended it
  std::string log;  ///< what it wrote to standard error
};

/// A system call that is made to fail, as on a system that lacks it.
struct FailingCall {
  int number;             ///< SYS_openat and the like
  int error;              ///< errno
  unsigned argument = 0;  ///< index of the argument that is tested for the flag
  unsigned flag = 0;      ///< only calls with this flag fail; with 0, all calls
};

/// How to start a program.
struct ProcessOptions {
  std::string folder;                              ///< its current directory
  std::map<std::string, std::string> environment;  ///< variables that differ from this process's
  std::vector<FailingCall> failingCalls = {};
};

/// A running program. It is killed when this object is destroyed, and by SIGALRM when it takes more than a minute.
class RunningProcess {
 public:
  RunningProcess(const std::vector<std::string>& command, const ProcessOptions& options);
  ~RunningProcess();
  RunningProcess(const RunningProcess&) = delete;
  RunningProcess& operator=(const RunningProcess&) = delete;

  /// Reads the log until it contains the text, or to its end.
  void waitForLog(const std::string& text);
  [[nodiscard]] bool isRunning() const;
  /// Whether the program has an open file that has no name, or has lost it.
  [[nodiscard]] bool hasNamelessFile() const;
  /// Sends the signal, if it is not 0, and waits for the program's end.
  ProcessResult end(int signal = 0);

 private:
  ProcessResult result_;
  int log_ = -1;
  int child_ = -1;
};

/// The log without the prefix of each record, with the folder's path as "@DIR@".
std::string withoutPrefixes(const std::string& log, const std::string& folder);

/// Whether xmllint, which is no part of the exporter, accepts the file.
bool isWellFormed(const std::string& path);

/// The log of an export that ends because this document cannot be read.
std::string unread(const std::string& path, const std::string& reason);

/// A table of contents in which the plan with this file name is edited.
std::string listing(const std::string& fileName);

/// Name of the settings file.
constexpr const char* kSettings = "com.korvella.Korvella2.MSPExportMSPDI.toml";

/// A folder for the exporter to run in, with its settings. The same bundle always gives the same document.
struct Workplace {
  ScratchFolder folder;
  ProcessOptions options = {folder.path(),
                            {{"TZ", "UTC"},
                             {"SOURCE_DATE_EPOCH", "1777888800"},
                             {"XDG_CONFIG_HOME", folder.path()},
                             {"HOME", folder / "home"},
                             {"LC_ALL", "C.UTF-8"}}};

  void makeBundle(const std::string& name, const std::string& plan,
                  const std::string& tableOfContents = listing("Plan.xml")) const;
  void setSettings(const std::string& toml) const { writeFile(folder / kSettings, toml); }
  /// Starts the exporter by a shell script. In the script, "$@" stands for the exporter and its arguments, which are
  /// written as words of the shell.
  [[nodiscard]] RunningProcess start(const std::string& arguments, const std::string& script = "exec \"$@\"") const;
  /// Runs the exporter to its end. The log is withoutPrefixes().
  [[nodiscard]] ProcessResult run(const std::string& arguments, const std::string& script = "exec \"$@\"") const;
  /// The same, but the log has only warnings, errors and exceptions.
  [[nodiscard]] ProcessResult complaints(const std::string& arguments, const std::string& script = "exec \"$@\"") const;
  [[nodiscard]] bool exists(const std::string& name) const;
};
