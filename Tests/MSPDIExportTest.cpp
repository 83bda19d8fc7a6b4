// The program as a user runs it: its log, its exit status and what it leaves on the disk.

#include <fmt/chrono.h>
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#include <tuple>

#include "Tests/MappingSupport.h"
#include "Tests/Process.h"

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

namespace {

/// A folder with bundles. The tests here do not depend on what is in their plans.
struct Place : Workplace {
  Place() {
    for (const char* name : {"Plan.kvdx", "Plan2.kvdx", "Big.KVDX", "100% großes #1.kvdx"})
      makeBundle(name, scenario(task("t1")));
    makeBundle("Empty.kvdx", "<other/>");
    std::filesystem::create_directory(folder / "folder");
    writeFile(folder / "File.kvdx", "");
  }
};

}  // namespace

TEST(MSPDIExport, EndsTheRunWithTheReason) {
  const Place place;
  writeFile(place.folder / "empty.txt", "");
  writeFile(place.folder / "latin1.txt", "Caf\xE9.kvdx\n");
  writeFile(place.folder / "nul.txt", std::string("folder\0.kvdx\n", 13));
  const std::string list = "### Export files from the list:\n";
  const auto single = [](const std::string& name) { return "### Export single file: \"" + name + "\"\n"; };
  const std::string located = single("Plan.kvdx") + "### Export from URL: 'file://@DIR@/Plan.kvdx/'\n";
  const std::string argument = "Exception: CommandLineArgumentException\n";
  const std::string noBundle = argument + "Input file is not a valid KVDX doc folder: ";
  const std::string noList = "Exception: FileNotFoundException\nInput list ";
  const std::string noInput = "Exception: FileNotFoundException\nInput file ";
  const std::string usage =
      "Usage:\n  MSPDIExport <input_KVDX_bundle_path> [<output_path>]\n  MSPDIExport --input-list <input_list_path>  "
      "[<output_path>]\n<output_path> is either an exported XML file, or a directory to write XML file to.\n";
  // Control characters are escaped, because a terminal would obey them. Line ends, tabs and all else are logged as is.
  const std::string plain = "\xC2\xA0\xC3\x9B\t\r\nx\xC2";
  const std::string controls = "\x1b[2J\x07\x7f\xC2\x80\xC2\x9F" + plain;
  const std::string shown = "\\x1b[2J\\x07\\x7f\\x80\\x9f" + plain;
  for (const auto& [arguments, log] : std::vector<std::pair<std::string, std::string>>{
           {"", argument + "Too few arguments. Need at least input bundle.\n" + usage},
           {"--input-list", list + argument + "No input list found in command line.\n"},
           {"--input-list none", list + noList + "not found or it is a directory: none\n"},
           {"--input-list latin1.txt", list + noList + "file could not be read or empty: latin1.txt\n"},
           {"--input-list nul.txt", list + noList + "file could not be read or empty: nul.txt\n"},
           {"--input-list folder", list + noList + "not found or it is a directory: folder\n"},
           {"--input-list /dev/zero", list + noList + "file could not be read or empty: /dev/zero\n"},
           {"--input-list empty.txt", list},
           {"Plan.xml", single("Plan.xml") + noBundle + "'Plan.xml'\n"},
           {"'" + controls + "'", single(shown) + noBundle + "'" + shown + "'\n"},
           {"'~/No.kvdx'", single("~/No.kvdx") + noInput + "not found: @DIR@/home/No.kvdx\n"},
           {"File.kvdx", single("File.kvdx") + noInput + "is not a bundle (folder): File.kvdx\n"},
           {"Plan.kvdx out.XML", located + argument + "Output file extension is not 'xml': out.XML.\n"},
       }) {
    SCOPED_TRACE(arguments);
    const auto result = place.run(arguments);
    EXPECT_EQ(result.log, "MSPDIExporter Runner\n" + log);
    EXPECT_EQ(result.status, 1);
  }
}

TEST(MSPDIExport, WritesBesideTheBundleOrWhereItIsTold) {
  struct Row {
    int line;
    std::string extension;  ///< value of the setting IncludeInputExtension; "" leaves it out
    std::string arguments;
    std::string written;
  };
  for (const Row& row : std::initializer_list<Row>{
           {__LINE__, "", "Plan.kvdx/", "Plan.xml"},
           {__LINE__, "", "./sub/..//Plan.kvdx", "Plan.xml"},
           {__LINE__, "", "Big.KVDX", "Big.xml"},
           {__LINE__, "", "Plan.kvdx 'other name.xml'", "other name.xml"},
           {__LINE__, "", "'100% großes #1.kvdx'", "100% großes #1.xml"},
           {__LINE__, "", "Plan.kvdx folder", "folder/Plan.xml"},
           {__LINE__, "true", "Plan.kvdx folder/", "folder/Plan.kvdx.xml"},
           {__LINE__, "1", "Plan.kvdx", "Plan.kvdx.xml"},
           {__LINE__, "0", "Plan.kvdx", "Plan.xml"},
           {__LINE__, "0.5", "Plan.kvdx", "Plan.kvdx.xml"},
           {__LINE__, "0.0", "Plan.kvdx", "Plan.xml"},
           {__LINE__, "' YES '", "Plan.kvdx", "Plan.kvdx.xml"},
           {__LINE__, "'maybe'", "Plan.kvdx", "Plan.xml"},
       }) {
    SCOPED_TRACE(row.line);
    const Place place;
    if (!row.extension.empty()) place.setSettings("IncludeInputExtension = " + row.extension);
    const auto result = place.run(row.arguments);
    EXPECT_EQ(result.status, 0) << result.log;
    EXPECT_TRUE(place.exists(row.written)) << result.log;
  }
}

TEST(MSPDIExport, ReplacesFilesWhenToldTo) {
  struct Row {
    int line;
    const char* before;  ///< script that makes Plan.xml
    const char* after;   ///< script that must succeed
    bool isReplaced;
  };
  for (const Row& row : std::initializer_list<Row>{
           {__LINE__, "echo old > Plan.xml", "grep old Plan.xml", false},
           {__LINE__, "ln -s nowhere Plan.xml", "test -h Plan.xml && test ! -e nowhere", false},
           {__LINE__, "mkdir Plan.xml", "test -d Plan.xml", false},
           {__LINE__, "echo old > Plan.xml", "test ! -e Plan-1.xml", true},
           {__LINE__, "ln -s nowhere Plan.xml", "test ! -h Plan.xml && test ! -e nowhere", true},
           {__LINE__, "echo old > file; ln -s file Plan.xml", "test ! -h Plan.xml && grep old file", true},
           {__LINE__, "ln -s folder Plan.xml", "test ! -h Plan.xml && test -d folder", true},
           {__LINE__, "mkdir Plan.xml", "test -f Plan.xml", true},
           {__LINE__, "mkdir Plan.xml; echo old | tee Plan.xml/file > Plan-1.xml",
            "grep old Plan.xml/file Plan-1.xml && test -f Plan-2.xml", true},
       }) {
    SCOPED_TRACE(row.line);
    const Place place;
    if (row.isReplaced) place.setSettings("OverwriteFilterTarget = true");
    const auto result = place.run("Plan.kvdx", fmt::format("( {} ) && \"$@\" && ( {} ) >&2", row.before, row.after));
    EXPECT_EQ(result.status, 0) << result.log;
    // The log must name the output once, and with the right name.
    const std::size_t told = result.log.find("Output: '@DIR@/");
    EXPECT_EQ(told, result.log.rfind("Output: "));
    const std::string name = result.log.substr(told + 15, result.log.find('\'', told + 15) - told - 15);
    EXPECT_THAT(contentsOf(place.folder / name), HasSubstr("<Project"));
  }
}

TEST(MSPDIExport, DeletesAFileOfTheNameWhenItFails) {
  const Place place;
  place.makeBundle("Bad.kvdx", "<scenario/>");
  for (const char* settings : {"", "OverwriteFilterTarget = true"}) {
    place.setSettings(settings);
    writeFile(place.folder / "Bad.xml", "from an earlier run");
    const auto failed = place.run("Bad.kvdx");
    EXPECT_EQ(failed.status, 1);
    EXPECT_THAT(failed.log, EndsWith("Exception: InternalInconsistencyException\nInvalid format of KVDX top Resource "
                                     "ID (must begin with 'r'): (null)\n\n### Exporter FAILED.\n"));
    EXPECT_FALSE(place.exists("Bad.xml"));
  }
}

TEST(MSPDIExport, NeverWritesAmongSources) {
  const Place place;
  place.setSettings("OverwriteFilterTarget = true");
  place.makeBundle("Plan2.kvdx/In.kvdx", "");
  place.makeBundle("store", scenario(task("t1")));
  for (const auto& [link, to] : {std::pair("link", "Big.KVDX"), std::pair("Linked.kvdx", "store")})
    std::filesystem::create_symlink(to, place.folder / link);
  struct Row {
    int line;
    std::string arguments;
    std::string output;
    std::string folder = "";  ///< the current folder
  };
  for (const Row& row : std::initializer_list<Row>{
           {__LINE__, "Plan.kvdx Plan.kvdx", "Plan.kvdx/Plan.xml"},
           {__LINE__, "Plan.kvdx Plan2.kvdx", "Plan2.kvdx/Plan.xml"},
           {__LINE__, "Plan.kvdx Big.KVDX/Plan.xml", "Big.KVDX/Plan.xml"},
           {__LINE__, "Plan.kvdx Plan2.kvdx/none/new.xml", "Plan2.kvdx/none/new.xml"},
           {__LINE__, "Plan.kvdx link", "link/Plan.xml"},
           {__LINE__, "Plan.kvdx link/none/new.xml", "link/none/new.xml"},
           {__LINE__, "Plan2.kvdx/In.kvdx", "Plan2.kvdx/In.xml"},
           {__LINE__, "In.kvdx", "In.xml", "Plan2.kvdx"},
           {__LINE__, "../Plan.kvdx .", "./Plan.xml", "Plan2.kvdx"},
           {__LINE__, "Plan.kvdx Linked.kvdx", "Linked.kvdx/Plan.xml"},
           {__LINE__, "Linked.kvdx store/Plan.xml", "store/Plan.xml"},
       }) {
    SCOPED_TRACE(row.line);
    const auto result = place.run(row.arguments, "cd \"./" + row.folder + "\"; exec \"$@\"");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.log,
                EndsWith("/'\nException: CommandLineArgumentException\nOutput is inside a document bundle: " +
                         row.output + ".\n"));
  }
  for (const char* bundle : {"Plan.kvdx", "Plan2.kvdx", "Big.KVDX", "store"})
    EXPECT_EQ(contentsOf(place.folder / bundle + "/Plan.xml"), scenario(task("t1")));
}

TEST(MSPDIExport, DoesWithoutSettingsThatCannotBeRead) {
  const auto dotted = [](int parts) {
    std::string key = "a";
    for (int i = 1; i < parts; ++i) key += ".a";
    return key;
  };
  struct Row {
    int line;
    std::string settings;
    std::string said;  ///< the warning; with "", there must be none and the settings apply
  };
  const std::string malformed = "is malformed at line 2, column ";
  const std::string nested = "could not be read: More than 200 dots and opening brackets.";
  const std::string on = "IncludeInputExtension = true\n";
  for (const Row& row : std::initializer_list<Row>{
           {__LINE__, on + "OverwriteFilterTarget = = 1\n", malformed},
           {__LINE__, on + dotted(201) + " = 1", ""},
           {__LINE__, on + dotted(200'000) + " = 1", nested},
           {__LINE__, on + "[" + dotted(200'000) + "]", nested},
           {__LINE__, on + "a = " + std::string(200'000, '['), nested},
           {__LINE__, on + "a = " + std::string(190, '['), malformed},
           {__LINE__, on + "#" + std::string(1 << 20, '#'), "could not be read: Larger than 1 MiB."},
       }) {
    SCOPED_TRACE(row.line);
    const Place place;
    place.setSettings(row.settings);
    const auto result = place.run("Plan.kvdx", "ulimit -s 256; exec \"$@\"");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(place.exists("Plan.kvdx.xml"), row.said.empty());
    const std::string warning = fmt::format("Runner\nWARNING: Settings file '@DIR@/{}' {}", kSettings, row.said);
    EXPECT_THAT(result.log, HasSubstr(row.said.empty() ? "Runner\n### Export" : warning));
  }
}

TEST(MSPDIExport, ExportsAListInOrder) {
  struct Row {
    std::string list;
    int status;
    std::vector<std::string> said;
    std::vector<std::string> unsaid;
  };
  const std::string failed = "### Exporter FAILED.";
  const std::string good = "### Exporter SUCCEEDED.";
  const std::string none = "Input file not found: None.kvdx";
  for (const Row& row : std::initializer_list<Row>{
           {"\xEF\xBB\xBF::Plan.kvdx\r\nPlan.kvdx\r\n\r\n", 0, {"    \"Plan.kvdx\"\n", good}, {"::", "\"\"", failed}},
           {"Plan.kvdx\nNone.kvdx\nPlan2.kvdx\n", 0, {good, none}, {"Plan2.xml", failed}},
           {"None.kvdx\nPlan.kvdx\n", 1, {none}, {good}},
           {"Empty.kvdx\nPlan.kvdx\xE2\x80\xA8", 0, {failed, good}, {}},
           {":: nothing\n\n", 1, {}, {failed, good}},
           // The second bundle fails: identifiers go on from bundle to bundle, but the project's calendar must be 1.
           {"Plan.kvdx\nPlan2.kvdx\n", 1, {good, "Top resource calendar UID mast be equal to 1.", failed}, {}},
       }) {
    SCOPED_TRACE(row.list);
    const Place place;
    writeFile(place.folder / "list.txt", row.list);
    const auto result = place.run("--input-list list.txt");
    EXPECT_EQ(result.status, row.status) << result.log;
    for (const std::string& text : row.said) EXPECT_THAT(result.log, HasSubstr(text));
    for (const std::string& text : row.unsaid) EXPECT_THAT(result.log, Not(HasSubstr(text)));
    EXPECT_FALSE(place.exists("Plan2.xml"));
  }
}

TEST(MSPDIExport, ReadsAListFromAPipe) {
  const Place place;
  const std::string list = "{ seq --format='::%.0f of many' 20000; echo Plan.kvdx; }";
  EXPECT_EQ(place.run("--input-list /dev/stdin", list + " | \"$@\"").status, 0);
  EXPECT_EQ(place.run("--input-list fifo folder", "mkfifo fifo; " + list + " > fifo & exec \"$@\"").status, 0);
  EXPECT_TRUE(place.exists("Plan.xml") && place.exists("folder/Plan.xml"));
}

TEST(MSPDIExport, LogsInLocalTime) {
  Place place;
  place.options.environment["TZ"] = "XYZ-5:45";
  const auto local = [] {
    return fmt::format("{:%Y-%m-%d %H:%M:%S}", fmt::gmtime(std::time(nullptr) + (5 * 60 + 45) * 60));
  };
  const std::string before = local();
  const std::string log = place.start("--input-list /dev/stdin", "{ sleep 1; echo a; } | \"$@\"").end().log;
  const auto loggedAt = [&](std::size_t record) { return log.substr(record, before.size()); };
  EXPECT_LE(before, loggedAt(0));
  EXPECT_LT(loggedAt(0), loggedAt(log.rfind('\n', log.find("\"a\"")) + 1));
  EXPECT_LE(loggedAt(0), local());
}

TEST(MSPDIExport, ReadsTheBundleThatTheFrontWindowShows) {
  const std::string plan = "<scenario filename='Plan.xml' id=";
  const std::string project = tag("project", plan + "'a' name='A'/>" + plan + "'b' name='B &amp; \"C\"'/>");
  const auto window = [](const std::string& edited, const std::string& compared) {
    return tag("window", tag("editing-scenario", edited) + tag("comparison-scenario", compared));
  };
  const std::string notVisible =
      "Baseline \"name=\"B &amp; &quot;C&quot;\"\" will not be exported because it is not the baseline visible in the "
      "front Korvella document window.";
  for (const auto& [contents, status, log] : std::vector<std::tuple<std::string, int, std::string>>{
           {project + window("a", "b"), 0, "  Mapping 1 baselines for Task ..."},
           {project + window("a", "a"), 0, notVisible},
           {"<project/>" + window("x", ""), 1, "Running in UTC\n### Exporter FAILED."},
       }) {
    SCOPED_TRACE(contents);
    const Place place;
    place.makeBundle("P.kvdx", scenario(task("t1")), tag("toc", contents));
    const auto result = place.run("P.kvdx");
    EXPECT_EQ(result.status, status);
    EXPECT_THAT(result.log, HasSubstr(log));
    EXPECT_EQ(place.exists("P.xml"), status == 0);
  }
}
