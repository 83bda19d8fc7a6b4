#include "Tests/Process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <regex>

namespace {

[[noreturn]] void becomeProgram(const std::vector<std::string>& command, const ProcessOptions& options, int log) {
  for (const auto& [name, value] : options.environment) setenv(name.c_str(), value.c_str(), 1);
  std::vector<char*> arguments;
  for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  if (!options.folder.empty() && chdir(options.folder.c_str()) != 0) _exit(126);
  dup2(log, STDERR_FILENO);
  constexpr unsigned kSecondsAllowed = 60;
  alarm(kSecondsAllowed);
  execv(arguments[0], arguments.data());
  _exit(127);
}

}  // namespace

RunningProcess::RunningProcess(const std::vector<std::string>& command, const ProcessOptions& options) {
  std::array<int, 2> log{};
  if (pipe2(log.data(), O_CLOEXEC) != 0) return;
  log_ = log[0];
  child_ = fork();
  if (child_ == 0) becomeProgram(command, options, log[1]);
  close(log[1]);
}

RunningProcess::~RunningProcess() { end(SIGKILL); }

bool RunningProcess::isRunning() const {
  siginfo_t info{};
  return waitid(P_PID, static_cast<id_t>(child_), &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid == 0;
}

void RunningProcess::waitForLog(const std::string& text) {
  std::array<char, 1 << 16> buffer{};
  ssize_t got = 1;
  while (got > 0 && (text.empty() || result_.log.find(text) == std::string::npos)) {
    got = read(log_, buffer.data(), buffer.size());
    if (got > 0) result_.log.append(buffer.data(), static_cast<std::size_t>(got));
  }
}

ProcessResult RunningProcess::end(int signal) {
  if (child_ <= 0) return result_;
  kill(child_, signal);
  waitForLog("");
  close(log_);
  int status = 0;
  waitpid(child_, &status, 0);
  child_ = -1;
  result_.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return result_;
}

std::string withoutPrefixes(const std::string& log, const std::string& folder) {
  static const std::regex prefix(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} MSPDIExport\[\d+\] )");
  return std::regex_replace(std::regex_replace(log, prefix, ""), std::regex(folder), "@DIR@");
}

bool isWellFormed(const std::string& path) {
  return RunningProcess({"/usr/bin/xmllint", "--noout", "--nonet", "--huge", path}, {}).end().status == 0;
}

std::string unread(const std::string& path, const std::string& reason) {
  return "WARNING: Document '" + path + "' could not be read: " + reason +
         ".\nException: MSPEXMLException\nMSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source "
         "data.\n";
}

std::string listing(const std::string& fileName) {
  return "<toc><project><scenario id='s1' filename='" + fileName +
         "'/></project><window><editing-scenario>s1</editing-scenario></window></toc>";
}

void Workplace::makeBundle(const std::string& name, const std::string& plan, const std::string& tableOfContents) const {
  writeFile(folder / (name + "/__TOC.xml"), tableOfContents);
  writeFile(folder / (name + "/Plan.xml"), plan);
}

RunningProcess Workplace::start(const std::string& arguments, const std::string& script) const {
  return {{"/bin/sh", "-c", "set -- \"$0\" " + arguments + "\n" + script, MSPDI_PROGRAM}, options};
}

ProcessResult Workplace::run(const std::string& arguments, const std::string& script) const {
  ProcessResult result = start(arguments, script).end();
  result.log = withoutPrefixes(result.log, folder.path());
  return result;
}

ProcessResult Workplace::complaints(const std::string& arguments, const std::string& script) const {
  static const std::regex usual(
      "^((### |MSPDIExporter Runner|MSPEXMLExporter: |Input: |Output: |Running in | *Mapping ).*)?\n",
      std::regex::ECMAScript | std::regex::multiline);
  ProcessResult result = run(arguments, script);
  result.log = std::regex_replace(result.log, usual, "");
  return result;
}

bool Workplace::exists(const std::string& name) const { return access((folder / name).c_str(), F_OK) == 0; }
