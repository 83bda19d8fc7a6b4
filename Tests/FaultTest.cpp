// The machine fails, the exporter is killed, or several run at once: every file must then be complete or absent.

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <set>
#include <thread>

#include "Platform/System/Descriptor.h"
#include "Tests/MappingSupport.h"
#include "Tests/Process.h"

namespace fs = std::filesystem;

namespace {

using Files = std::multiset<std::string>;
#ifdef SYS_rename
constexpr int kRename = SYS_rename;
#else
constexpr int kRename = SYS_renameat;
#endif

/// A folder with a bundle Plan.kvdx, whose document has some megabytes of tasks and some of assignments.
struct Place : Workplace {
  Place() {
    const std::string note =
        "<note><text><p><run><lit>" + std::string(1'100'000, 'a') + "</lit></run></p></text></note>";
    const std::string use = "<assignment idref='r1' units='2.5'/>" + tag("static-cost", "1234.5") + note;
    makeBundle("Plan.kvdx",
               scenario(resource("r1", "Material") + task("t1", use, "1996-05-04T08:00:00Z", "2026-05-04T08:00:00Z")));
  }
  /// The document that an undisturbed export writes.
  [[nodiscard]] std::string reference() const {
    EXPECT_EQ(complaints("Plan.kvdx reference.xml").log, "");
    EXPECT_TRUE(isWellFormed(folder / "reference.xml"));
    const std::string text = contentsOf(folder / "reference.xml");
    fs::remove(folder / "reference.xml");
    return text;
  }
  /// The names of the files, without the bundle and the settings. A file that is not finished counts as "temporary".
  [[nodiscard]] Files files() const {
    Files names;
    for (const auto& entry : fs::directory_iterator(folder.path())) {
      const std::string name = entry.path().filename();
      if (!entry.is_directory() && name != kSettings)
        names.insert(name.starts_with(".MSPDIExport-") ? "temporary" : name);
    }
    return names;
  }
  void replaceFiles() const { setSettings("OverwriteFilterTarget = true"); }
  void expect(const ProcessResult& result, int status, const std::string& log) const {
    EXPECT_EQ(result.log, log);
    EXPECT_EQ(result.status, status);
  }
};
std::string unwritten(const std::string& name, const std::string& reason) {
  return "ERROR: File '@DIR@/" + name + ".xml' could not be written: " + reason + ".\n";
}

}  // namespace

TEST(Fault, FileSizeLimit) {
  for (const char* name : {"Plan-1", "Plan"}) {
    const Place place;
    writeFile(place.folder / "Plan.xml", "precious");
    if (name == std::string("Plan")) place.replaceFiles();
    const auto limited = place.complaints("Plan.kvdx", "ulimit -f 64; exec \"$@\"");
    // The status is 0 although writing failed, as whenever the plan itself could be mapped.
    place.expect(limited, 0, unwritten(name, "File too large"));
    EXPECT_EQ(place.files(), Files{"Plan.xml"});
    EXPECT_EQ(contentsOf(place.folder / "Plan.xml"), "precious");
  }
}

TEST(Fault, FoldersThatAreMissing) {
  const Place place;
  writeFile(place.folder / "file", "");
  fs::create_symlink("nowhere", place.folder / "link");
  for (const auto& [folder, reason] : std::vector<std::pair<std::string, std::string>>{
           {"none/at all", "The folder '@DIR@/none/at all' does not exist"},
           {"link", "The folder '@DIR@/link' does not exist"},
           {"file", "Not a directory"},
       }) {
    const std::string target = folder + "/Plan";
    place.expect(place.complaints("Plan.kvdx '" + target + ".xml'"), 0, unwritten(target, reason));
  }
}

TEST(Fault, SystemsThatLackSomething) {
  const FailingCall nameless = {SYS_openat, EOPNOTSUPP, 2, O_TMPFILE & ~O_DIRECTORY};
  const FailingCall noReplace = {SYS_renameat2, EINVAL, 4, RENAME_NOREPLACE};
  const FailingCall forbidden = {SYS_renameat2, EPERM, 4, RENAME_NOREPLACE};
  const FailingCall link = {SYS_linkat, ENOENT};
  const FailingCall beneath = {SYS_openat2, ENOSYS};
  for (const std::vector<FailingCall>& missing : std::vector<std::vector<FailingCall>>{
           {}, {nameless}, {nameless, noReplace}, {nameless, forbidden, link}, {link}, {beneath}}) {
    Place place;
    place.makeBundle("Plan.kvdx", scenario(task("t1")));
    const std::string reference = place.reference();
    place.options.failingCalls = missing;
    for (const char* name : {"Plan.xml", "Plan-1.xml", "Plan.xml"}) {
      SCOPED_TRACE(fmt::format("{} {} of {}", name, missing.empty() ? 0 : missing[0].number, missing.size()));
      place.expect(place.complaints("Plan.kvdx", "umask 027; exec \"$@\""), 0, "");
      EXPECT_TRUE(contentsOf(place.folder / name) == reference);
      EXPECT_EQ(fs::status(place.folder / name).permissions(), fs::perms(0640));
      if (name != std::string("Plan-1.xml")) continue;
      place.replaceFiles();
      writeFile(place.folder / "Plan.xml", "replaced");
    }
    EXPECT_EQ(place.files(), (Files{"Plan.xml", "Plan-1.xml"}));
  }
  Place place;
  place.options.failingCalls = {nameless, noReplace, link, {kRename, EIO}};
  place.expect(place.complaints("Plan.kvdx"), 0, unwritten("Plan", "Input/output error"));
  EXPECT_EQ(place.files(), Files{});
}

TEST(Fault, NoPermission) {
  const std::string other =
      getuid() == 0 ? "exec setpriv --reuid=65534 --regid=65534 --clear-groups \"$@\"" : "exec \"$@\"";
  const Place place;
  if (place.run("", other).status != 1) GTEST_SKIP() << "root cannot run the program as another user here";
  const std::string denied = "Permission denied";
  const auto rights = [&place](const char* name, mode_t mode) {
    ASSERT_EQ(chmod((place.folder / name).c_str(), mode), 0);
  };
  rights("", 0555);
  place.expect(place.complaints("Plan.kvdx", other), 0, unwritten("Plan", denied));
  rights("Plan.kvdx/Plan.xml", 0);
  place.expect(place.complaints("Plan.kvdx", other), 1, unread("@DIR@/Plan.kvdx/Plan.xml", denied));
  rights("Plan.kvdx", 0);
  place.expect(place.complaints("Plan.kvdx", other), 1, unread("@DIR@/Plan.kvdx/__TOC.xml", denied));
  rights("", 0755);
  rights("Plan.kvdx", 0755);
  EXPECT_EQ(place.files(), Files{});
}

TEST(Fault, TwentyExportersAtOnce) {
  const Place place;
  const std::string reference = place.reference();
  const std::string all = "for i in `seq 20`; do { \"$@\" 2>/dev/null || echo failed >&2; } & done; wait";
  place.expect(place.run("Plan.kvdx", all), 0, "");
  Files expected = {"Plan.xml"};
  for (int i = 1; i < 20; ++i) expected.insert("Plan-" + std::to_string(i) + ".xml");
  EXPECT_EQ(place.files(), expected);
  for (const std::string& name : place.files()) EXPECT_TRUE(contentsOf(place.folder / name) == reference) << name;
}

TEST(Fault, KilledAmidAWrite) {
  constexpr int kPoints = 25;
  const Place place;
  if (!platform::Descriptor(open(place.folder.path().c_str(), O_TMPFILE | O_WRONLY)).isOpen())
    GTEST_SKIP() << "the file system does not support files without a name";
  const std::string reference = place.reference();
  for (const bool replaces : {false, true}) {
    if (replaces) place.replaceFiles();
    int interrupted = 0;
    for (int point = 0; point < kPoints; ++point) {
      if (replaces) writeFile(place.folder / "Plan.xml", "precious");
      RunningProcess exporter = place.start("Plan.kvdx");
      exporter.waitForLog("Mapping Task id='t1'");
      while (exporter.isRunning() && !exporter.hasNamelessFile()) std::this_thread::yield();
      std::this_thread::sleep_for(std::chrono::microseconds(400 * point));
      const int status = exporter.end(SIGKILL).status;
      const std::string left = place.exists("Plan.xml") ? contentsOf(place.folder / "Plan.xml") : "";
      if (left == (replaces ? "precious" : "")) {
        ++interrupted;
        EXPECT_EQ(status, 128 + SIGKILL);
        // A file that replaces another one has a temporary name for a moment; it is complete by then.
        EXPECT_TRUE(replaces || place.files().count("temporary") == 0);
      } else {
        EXPECT_TRUE(left == reference);
      }
      fs::remove(place.folder / "Plan.xml");
    }
    EXPECT_GT(interrupted, 0);
  }
}

TEST(Fault, NowhereToLog) {
  Place place;
  const std::string reference = place.reference();
  // A file that cannot be replaced makes the exporter log another name while the new file is open.
  place.replaceFiles();
  place.options.failingCalls = {{kRename, EPERM}};
  for (const char* script : {"exec \"$@\" 2>&-", "exec \"$@\" <&- >&- 2>&-", "exec \"$@\" 2>/dev/full",
                             "{ \"$@\"; echo $? > status; } 2>&1 >&- | true; exit `cat status; rm status`"}) {
    SCOPED_TRACE(script);
    writeFile(place.folder / "Plan.xml", "protected");
    EXPECT_EQ(place.run("Plan.kvdx", script).status, 0);
    EXPECT_EQ(contentsOf(place.folder / "Plan.xml"), "protected");
    EXPECT_TRUE(contentsOf(place.folder / "Plan-1.xml") == reference);
    fs::remove(place.folder / "Plan-1.xml");
  }
}

TEST(Fault, FoldersWithRightsOfTheirOwn) {
  const Place place;
  // The default access control list u::rw, g::rw, o::- instead of the umask.
  constexpr std::array<std::uint16_t, 14> kList = {2, 0,      1,      6,  0xFFFF, 0xFFFF, 4,
                                                   6, 0xFFFF, 0xFFFF, 32, 0,      0xFFFF, 0xFFFF};
  if (setxattr(place.folder.path().c_str(), "system.posix_acl_default", kList.data(), sizeof kList, 0) != 0) {
    GTEST_SKIP() << "no access control lists on this file system";
  }
  place.expect(place.complaints("Plan.kvdx"), 0, "");
  EXPECT_EQ(fs::status(place.folder / "Plan.xml").permissions(), fs::perms(0660));
}

TEST(Fault, LackOfMemory) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the address sanitizer reserves terabytes of addresses";
#endif
  // The parser that repairs a malformed document ends early without a word when it lacks memory.
  const std::string malformed = "<unquoted a=b></unquoted>";
  for (const std::string& markup : {std::string(), malformed}) {
    const Place place;
    const std::string note(2'000'000, 'a');
    place.makeBundle("Plan.kvdx", scenario(markup + task("t1", "<note><text><p><run><lit><![CDATA[" + note +
                                                                   "]]></lit></run></p></text></note>")));
    int status = -1;
    for (int megabytes = 30; status != 0 && megabytes < 300; ++megabytes) {
      const std::string limits = "ulimit -c 0; ulimit -v " + std::to_string(megabytes * 1000);
      const ProcessResult result = place.run("Plan.kvdx", limits + "; exec \"$@\"");
      status = result.status;
      // 127: the memory was not even enough to start the program.
      EXPECT_TRUE(status == 0 || status == 128 + SIGABRT || status == 127) << status << result.log;
      EXPECT_EQ(place.exists("Plan.xml"), status == 0);
    }
    EXPECT_NE(contentsOf(place.folder / "Plan.xml").find(note), std::string::npos);
  }
}

TEST(Fault, Locale) {
  Place place;
  const std::string reference = place.reference();
  place.options.environment["LC_ALL"] = "de_DE.UTF-8";
  place.options.environment["LOCPATH"] = place.folder.path();
  const auto comma = place.run("", "localedef -i de_DE -f UTF-8 ./de_DE.UTF-8; locale -k decimal_point | grep -q ,");
  if (comma.status != 0) GTEST_SKIP() << "there is no German locale, and it cannot be made";
  EXPECT_TRUE(place.reference() == reference);
}
