#include "Tests/Process.h"

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <regex>

namespace fs = std::filesystem;

namespace {

/// Makes the kernel answer the calls with their errors, in this process and in those that it starts.
bool installFailures(const std::vector<FailingCall>& calls) {
  std::vector<sock_filter> filter;
  for (const FailingCall& call : calls) {
    const auto argument = static_cast<std::uint32_t>(offsetof(seccomp_data, args) + call.argument * sizeof(__u64));
    const auto error = SECCOMP_RET_ERRNO | static_cast<unsigned>(call.error);
    filter.push_back(BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)));
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(call.number), 0, 3));
    filter.push_back(call.flag != 0 ? sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, argument)
                                    : sock_filter BPF_STMT(BPF_LD | BPF_IMM, 1));
    filter.push_back(BPF_JUMP(BPF_JMP | BPF_JSET | BPF_K, call.flag != 0 ? call.flag : 1, 0, 1));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, error));
  }
  filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog program = {static_cast<unsigned short>(filter.size()), filter.data()};
  return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

[[noreturn]] void becomeProgram(const std::vector<std::string>& command, const ProcessOptions& options, int log) {
  for (const auto& [name, value] : options.environment) setenv(name.c_str(), value.c_str(), 1);
  std::vector<char*> arguments;
  for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
  arguments.push_back(nullptr);
  if (!options.folder.empty() && chdir(options.folder.c_str()) != 0) _exit(126);
  dup2(log, STDERR_FILENO);
  if (!options.failingCalls.empty() && !installFailures(options.failingCalls)) _exit(126);
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

bool RunningProcess::hasNamelessFile() const {
  std::error_code ended;
  for (fs::directory_iterator file(fmt::format("/proc/{}/fd", child_), ended), end; !ended && file != end;
       file.increment(ended)) {
    if (fs::read_symlink(*file, ended).string().ends_with(" (deleted)")) return true;
  }
  return false;
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
