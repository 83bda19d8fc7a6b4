#pragma once

#include <map>
#include <string>
#include <vector>

#include "Tests/Support.h"

/// What a program that ran as a process of its own left behind.
struct ProcessResult {
  int status = -1;  ///< exit status; 128 + n when signal n ended it
  std::string log;  ///< what it wrote to standard error
};

/// A system call that fails, as where the system does not have it.
struct FailingCall {
  int number;             ///< SYS_openat and the like
  int error;              ///< errno
  unsigned argument = 0;  ///< index of the argument that the flag is looked for in
  unsigned flag = 0;      ///< only calls with it fail; 0: all
};

/// How to start a program.
struct ProcessOptions {
  std::string folder;                              ///< its current directory
  std::map<std::string, std::string> environment;  ///< changes to this process's
  std::vector<FailingCall> failingCalls = {};
};

/// A program under way, which ends with this object. One that hangs ends itself with SIGALRM after a minute.
class RunningProcess {
 public:
  RunningProcess(const std::vector<std::string>& command, const ProcessOptions& options);
  ~RunningProcess();
  RunningProcess(const RunningProcess&) = delete;
  RunningProcess& operator=(const RunningProcess&) = delete;

  /// Reads the log until the text is in it; to its end when it never is.
  void waitForLog(const std::string& text);
  [[nodiscard]] bool isRunning() const;
  /// Whether it has a file open that has no name, or no longer one.
  [[nodiscard]] bool hasNamelessFile() const;
  /// Waits for its end, after sending it the signal.
  ProcessResult end(int signal = 0);

 private:
  ProcessResult result_;
  int log_ = -1;
  int child_ = -1;
};

/// The log without the prefix of each record, with the folder's path as "@DIR@".
std::string withoutPrefixes(const std::string& log, const std::string& folder);

/// Whether a strict parser of its own accepts the file.
bool isWellFormed(const std::string& path);

/// What is said of a document that cannot be read.
std::string unread(const std::string& path, const std::string& reason);

/// A table of contents that shows the plan of that file name.
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
  /// Starts the exporter by a shell script, in which "$@" stands for it and its arguments, which are words of the
  /// shell.
  [[nodiscard]] RunningProcess start(const std::string& arguments, const std::string& script = "exec \"$@\"") const;
  /// Runs it to its end, with a log withoutPrefixes().
  [[nodiscard]] ProcessResult run(const std::string& arguments, const std::string& script = "exec \"$@\"") const;
  /// The same, with a log of warnings, errors and exceptions alone.
  [[nodiscard]] ProcessResult complaints(const std::string& arguments, const std::string& script = "exec \"$@\"") const;
  [[nodiscard]] bool exists(const std::string& name) const;
};
