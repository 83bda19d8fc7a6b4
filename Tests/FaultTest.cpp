// What is left when the machine fails the exporter, or when it is ended or crowded: every file is whole or absent.

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <set>
#include <thread>

#include "Tests/MappingSupport.h"
#include "Tests/Process.h"

namespace fs = std::filesystem;

namespace {

using Files = std::multiset<std::string>;

/// A folder with a bundle Plan.kvdx, which gives some megabytes.
struct Place : Workplace {
  Place() {
    const std::string use = "<assignment idref='r1' units='2.5'/>" + e("static-cost", "1234.5");
    makeBundle("Plan.kvdx",
               scenario(resource("r1", "Material") + task("t1", use, "1996-05-04T08:00:00Z", "2026-05-04T08:00:00Z")));
  }
  /// What an undisturbed export gives.
  [[nodiscard]] std::string reference() const {
    EXPECT_EQ(complaints("Plan.kvdx reference.xml").log, "");
    EXPECT_TRUE(isWellFormed(folder / "reference.xml"));
    const std::string text = contentsOf(folder / "reference.xml");
    fs::remove(folder / "reference.xml");
    return text;
  }
  /// Names of the files, without the bundle and with what was begun as "temporary".
  [[nodiscard]] Files files() const {
    Files names;
    for (const auto& entry : fs::directory_iterator(folder.path())) {
      const std::string name = entry.path().filename();
      if (!entry.is_directory()) names.insert(name.starts_with(".MSPDIExport-") ? "temporary" : name);
    }
    return names;
  }
  void expect(const ProcessResult& result, int status, const std::string& log) const {
    EXPECT_EQ(result.log, log);
    EXPECT_EQ(result.status, status);
  }
};
std::string unwritten(const std::string& name, const std::string& reason) {
  return "ERROR: File '@DIR@/" + name + ".xml' could not be written: " + reason + ".\n";
}

}  // namespace

TEST(Fault, FullDisk) {
  const Place place;
  writeFile(place.folder / "Plan.xml", "precious");
  const auto limited = place.complaints("Plan.kvdx", "ulimit -f 64; exec \"$@\"");
  place.expect(limited, 0, unwritten("Plan-1", "File too large"));  // the status as ever when a document was made
  EXPECT_EQ(place.files(), Files{"Plan.xml"});
  EXPECT_EQ(contentsOf(place.folder / "Plan.xml"), "precious");
}

TEST(Fault, NoPermission) {
  const std::string other =
      getuid() == 0 ? "exec setpriv --reuid=65534 --regid=65534 --clear-groups \"$@\"" : "exec \"$@\"";
  const Place place;
  if (place.run("", other).status != 1) GTEST_SKIP() << "the program cannot be run as another user than root";
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

TEST(Fault, EndedAmidAWrite) {
  constexpr int kPoints = 25;
  const Place place;
  const std::string reference = place.reference();
  for (const int signal : {SIGTERM, SIGKILL}) {
    int interrupted = 0;
    for (int point = 0; point < kPoints; ++point) {
      const Files before = place.files();
      RunningProcess exporter = place.start("Plan.kvdx");
      exporter.waitForLog("Mapping Task id='t1'");
      while (exporter.isRunning() && place.files() == before) std::this_thread::yield();
      std::this_thread::sleep_for(std::chrono::microseconds(400 * point));
      const int status = exporter.end(signal).status;
      if (place.exists("Plan.xml")) {
        EXPECT_TRUE(contentsOf(place.folder / "Plan.xml") == reference);
        fs::remove(place.folder / "Plan.xml");
      } else {
        ++interrupted;
        EXPECT_EQ(status, 128 + signal);
      }
    }
    EXPECT_GT(interrupted, 0);
  }
  const std::size_t leftovers = place.files().count("temporary");
  EXPECT_GT(leftovers, 0U);
  EXPECT_TRUE(place.reference() == reference);
  EXPECT_EQ(place.files().count("temporary"), leftovers);
}

TEST(Fault, NowhereToLog) {
  const Place place;
  const std::string reference = place.reference();
  // A link to nowhere makes the exporter tell of another name while the file is open.
  for (const char* script : {"exec \"$@\" 2>&-", "exec \"$@\" <&- >&- 2>&-", "exec \"$@\" 2>/dev/full",
                             "{ \"$@\"; echo $? > status; } 2>&1 >&- | true; exit `cat status; rm status`"}) {
    SCOPED_TRACE(script);
    fs::create_symlink("nowhere", place.folder / "Plan.xml");
    EXPECT_EQ(place.run("Plan.kvdx", script).status, 0);
    EXPECT_TRUE(contentsOf(place.folder / "Plan-1.xml") == reference);
    fs::remove(place.folder / "Plan.xml");
    fs::remove(place.folder / "Plan-1.xml");
  }
}

TEST(Fault, LackOfMemory) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer reserves terabytes";
#endif
  const Place place;
  const std::string note(5'000'000, 'a');
  place.makeBundle("Plan.kvdx",
                   scenario(task("t1", "<note><text><p><run><lit>" + note + "</lit></run></p></text></note>")));
  const std::string reference = place.reference();
  int status = -1;
  for (int megabytes = 30; status != 0 && megabytes < 300; ++megabytes) {
    const std::string limits = "ulimit -c 0; ulimit -v " + std::to_string(megabytes * 1000);
    const ProcessResult result = place.run("Plan.kvdx", limits + "; exec \"$@\"");
    status = result.status;
    // 127: it could not even start.
    EXPECT_TRUE(status == 0 || status == 128 + SIGABRT || status == 127) << status << result.log;
    EXPECT_EQ(place.exists("Plan.xml"), status == 0);
  }
  EXPECT_TRUE(contentsOf(place.folder / "Plan.xml") == reference);
}

TEST(Fault, Locale) {
  Place place;
  const std::string reference = place.reference();
  place.options.environment["LC_ALL"] = "de_DE.UTF-8";
  place.options.environment["LOCPATH"] = place.folder.path();
  const auto comma = place.run("", "localedef -i de_DE -f UTF-8 ./de_DE.UTF-8; locale -k decimal_point | grep -q ,");
  if (comma.status != 0) GTEST_SKIP() << "there is no German locale, and none can be made";
  EXPECT_TRUE(place.reference() == reference);
}
