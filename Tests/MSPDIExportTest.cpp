// The program as a user runs it: its log, its exit status and what it leaves on the disk.

#include <fmt/chrono.h>

#include <ctime>
#include <filesystem>
#include <tuple>

#include "Tests/MappingSupport.h"
#include "Tests/Process.h"

using std::string;
using std::tuple;
using std::vector;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

namespace {

const string kArgument = "Exception: CommandLineArgumentException\n";

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
  writeFile(place.folder / "nul.txt", string("folder\0.kvdx\n", 13));
  const string list = "### Export files from the list:\n";
  const auto single = [](const string& name) { return "### Export single file: \"" + name + "\"\n"; };
  const string located = single("Plan.kvdx") + "### Export from URL: 'file://@DIR@/Plan.kvdx/'\n";
  const string noBundle = kArgument + "Input file is not a valid KVDX doc folder: ";
  const string noList = "Exception: FileNotFoundException\nInput list ";
  const string noInput = "Exception: FileNotFoundException\nInput file ";
  const string usage =
      "Usage:\n  MSPDIExport <input_KVDX_bundle_path> [<output_path>]\n  MSPDIExport --input-list <input_list_path>  "
      "[<output_path>]\n<output_path> is either an exported XML file, or a directory to write XML file to.\n";
  // Control characters are escaped, because a terminal would obey them. Line ends, tabs and all else are logged as is.
  const string plain = "\xC2\xA0\xC3\x9B\t\r\nx\xC2";
  const string controls = "\x1b[2J\x07\x7f\xC2\x80\xC2\x9F" + plain;
  const string shown = "\\x1b[2J\\x07\\x7f\\x80\\x9f" + plain;
  for (const auto& [arguments, log] : vector<std::pair<string, string>>{
           {"", kArgument + "Too few arguments. Need at least input bundle.\n" + usage},
           {"--input-list", list + kArgument + "No input list found in command line.\n"},
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
           {"Plan.kvdx out.XML", located + kArgument + "Output file extension is not 'xml': out.XML.\n"},
       }) {
    SCOPED_TRACE(arguments);
    const auto result = place.run(arguments);
    EXPECT_EQ(result.log, "MSPDIExporter Runner\n" + log);
    EXPECT_EQ(result.status, 1);
  }
}

TEST(MSPDIExport, WritesBesideTheBundleOrWhereItIsTold) {
  const string extension = "IncludeInputExtension = ", replacing = "OverwriteFilterTarget = true";
  for (const auto& [line, settings, before, arguments, after] : vector<tuple<int, string, string, string, string>>{
           {__LINE__, "", "", "Plan.kvdx/", "test -f Plan.xml"},
           {__LINE__, "", "", "./sub/..//Plan.kvdx", "test -f Plan.xml"},
           {__LINE__, "", "", "Big.KVDX", "test -f Big.xml"},
           {__LINE__, "", "", "Plan.kvdx 'other name.xml'", "test -f 'other name.xml'"},
           {__LINE__, "", "", "'100% großes #1.kvdx'", "test -f '100% großes #1.xml'"},
           {__LINE__, "", "", "Plan.kvdx folder", "test -f folder/Plan.xml"},
           {__LINE__, extension + "true", "", "Plan.kvdx folder/", "test -f folder/Plan.kvdx.xml"},
           {__LINE__, extension + "1", "", "Plan.kvdx", "test -f Plan.kvdx.xml"},
           {__LINE__, extension + "0", "", "Plan.kvdx", "test -f Plan.xml"},
           {__LINE__, extension + "0.5", "", "Plan.kvdx", "test -f Plan.kvdx.xml"},
           {__LINE__, extension + "0.0", "", "Plan.kvdx", "test -f Plan.xml"},
           {__LINE__, extension + "' YES '", "", "Plan.kvdx", "test -f Plan.kvdx.xml"},
           {__LINE__, extension + "'maybe'", "", "Plan.kvdx", "test -f Plan.xml"},
           {__LINE__, "", "echo old > Plan.xml", "Plan.kvdx", "grep old Plan.xml"},
           {__LINE__, "", "ln -s nowhere Plan.xml", "Plan.kvdx", "test -h Plan.xml && test ! -e nowhere"},
           {__LINE__, "", "mkdir Plan.xml", "Plan.kvdx", "test -d Plan.xml"},
           {__LINE__, replacing, "echo old > Plan.xml", "Plan.kvdx", "test ! -e Plan-1.xml"},
           {__LINE__, replacing, "ln -s nowhere Plan.xml", "Plan.kvdx", "test ! -h Plan.xml && test ! -e nowhere"},
           {__LINE__, replacing, "echo old > a; ln -s a Plan.xml", "Plan.kvdx", "test ! -h Plan.xml && grep old a"},
           {__LINE__, replacing, "ln -s folder Plan.xml", "Plan.kvdx", "test ! -h Plan.xml && test -d folder"},
           {__LINE__, replacing, "mkdir Plan.xml", "Plan.kvdx", "test -f Plan.xml"},
           {__LINE__, replacing, "mkdir Plan.xml; echo old | tee Plan.xml/file > Plan-1.xml", "Plan.kvdx",
            "grep old Plan.xml/file Plan-1.xml && test -f Plan-2.xml"},
       }) {
    SCOPED_TRACE(line);
    const Place place;
    if (!settings.empty()) place.setSettings(settings);
    const auto result = place.run(arguments, fmt::format("set -e\n{}\n\"$@\"\n( {} ) >&2", before, after));
    EXPECT_EQ(result.status, 0) << result.log;
    // The log must name the output once, and with the right name.
    const std::size_t told = result.log.find("Output: '@DIR@/");
    EXPECT_EQ(told, result.log.rfind("Output: "));
    const string name = result.log.substr(told + 15, result.log.find('\'', told + 15) - told - 15);
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
  // The folder is the one that the exporter runs in.
  for (const auto& [line, folder, arguments, output] : vector<tuple<int, string, string, string>>{
           {__LINE__, ".", "Plan.kvdx Plan.kvdx", "Plan.kvdx/Plan.xml"},
           {__LINE__, ".", "Plan.kvdx Plan2.kvdx", "Plan2.kvdx/Plan.xml"},
           {__LINE__, ".", "Plan.kvdx Big.KVDX/Plan.xml", "Big.KVDX/Plan.xml"},
           {__LINE__, ".", "Plan.kvdx Plan2.kvdx/none/new.xml", "Plan2.kvdx/none/new.xml"},
           {__LINE__, ".", "Plan.kvdx link", "link/Plan.xml"},
           {__LINE__, ".", "Plan.kvdx link/none/new.xml", "link/none/new.xml"},
           {__LINE__, ".", "Plan2.kvdx/In.kvdx", "Plan2.kvdx/In.xml"},
           {__LINE__, "Plan2.kvdx", "In.kvdx", "In.xml"},
           {__LINE__, "Plan2.kvdx", "../Plan.kvdx .", "./Plan.xml"},
           {__LINE__, ".", "Plan.kvdx Linked.kvdx", "Linked.kvdx/Plan.xml"},
           {__LINE__, ".", "Linked.kvdx store/Plan.xml", "store/Plan.xml"},
       }) {
    SCOPED_TRACE(line);
    const auto result = place.run(arguments, "cd " + folder + "; exec \"$@\"");
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.log, EndsWith("/'\n" + kArgument + "Output is inside a document bundle: " + output + ".\n"));
  }
  for (const char* bundle : {"Plan.kvdx", "Plan2.kvdx", "Big.KVDX", "store"})
    EXPECT_EQ(contentsOf(place.folder / bundle + "/Plan.xml"), scenario(task("t1")));
}

TEST(MSPDIExport, DoesWithoutSettingsThatCannotBeRead) {
  const auto dotted = [](int parts) { return "a" + repeated(".a", parts - 1); };
  const string malformed = "is malformed at line 2, column ";
  const string nested = "could not be read: More than 200 dots and opening brackets.";
  const string on = "IncludeInputExtension = true\n";
  // With nothing said, the settings apply.
  for (const auto& [line, settings, said] : vector<tuple<int, string, string>>{
           {__LINE__, on + "OverwriteFilterTarget = = 1\n", malformed},
           {__LINE__, on + dotted(201) + " = 1", ""},
           {__LINE__, on + dotted(200'000) + " = 1", nested},
           {__LINE__, on + "[" + dotted(200'000) + "]", nested},
           {__LINE__, on + "a = " + string(200'000, '['), nested},
           {__LINE__, on + "a = " + string(190, '['), malformed},
           {__LINE__, on + "#" + string(1 << 20, '#'), "could not be read: Larger than 1 MiB."},
       }) {
    SCOPED_TRACE(line);
    const Place place;
    place.setSettings(settings);
    const auto result = place.run("Plan.kvdx", "ulimit -s 256; exec \"$@\"");
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(place.exists("Plan.kvdx.xml"), said.empty());
    const string warning = fmt::format("Runner\nWARNING: Settings file '@DIR@/{}' {}", kSettings, said);
    EXPECT_THAT(result.log, HasSubstr(said.empty() ? "Runner\n### Export" : warning));
  }
}

TEST(MSPDIExport, ExportsAListInOrder) {
  const string failed = "### Exporter FAILED.";
  const string good = "### Exporter SUCCEEDED.";
  const string none = "Input file not found: None.kvdx";
  for (const auto& [list, status, said, unsaid] : vector<tuple<string, int, vector<string>, vector<string>>>{
           {"\xEF\xBB\xBF::Plan.kvdx\r\nPlan.kvdx\r\n\r\n", 0, {"    \"Plan.kvdx\"\n", good}, {"::", "\"\"", failed}},
           {"Plan.kvdx\nNone.kvdx\nPlan2.kvdx\n", 0, {good, none}, {"Plan2.xml", failed}},
           {"None.kvdx\nPlan.kvdx\n", 1, {none}, {good}},
           {"Empty.kvdx\nPlan.kvdx\xE2\x80\xA8", 0, {failed, good}, {}},
           {":: nothing\n\n", 1, {}, {failed, good}},
           // The second bundle fails: identifiers go on from bundle to bundle, but the project's calendar must be 1.
           {"Plan.kvdx\nPlan2.kvdx\n", 1, {good, "Top resource calendar UID mast be equal to 1.", failed}, {}},
       }) {
    SCOPED_TRACE(list);
    const Place place;
    writeFile(place.folder / "list.txt", list);
    const auto result = place.run("--input-list list.txt");
    EXPECT_EQ(result.status, status) << result.log;
    for (const string& text : said) EXPECT_THAT(result.log, HasSubstr(text));
    for (const string& text : unsaid) EXPECT_THAT(result.log, Not(HasSubstr(text)));
    EXPECT_FALSE(place.exists("Plan2.xml"));
  }
}

TEST(MSPDIExport, ReadsAListFromAPipe) {
  const Place place;
  const string list = "{ seq --format='::%.0f of many' 20000; echo Plan.kvdx; }";
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
  const string before = local();
  // The list comes a second after the first record, however long the program takes to start.
  const string late = "{ until [ -s log ]; do sleep 0.1; done; sleep 1; echo a; } | \"$@\" 2>log; cat log >&2";
  const string log = place.start("--input-list /dev/stdin", late).end().log;
  const auto loggedAt = [&](std::size_t record) { return log.substr(record, before.size()); };
  EXPECT_LE(before, loggedAt(0));
  EXPECT_LT(loggedAt(0), loggedAt(log.rfind('\n', log.find("\"a\"")) + 1));
  EXPECT_LE(loggedAt(0), local());
}

TEST(MSPDIExport, ReadsTheBundleThatTheFrontWindowShows) {
  const string plan = "<scenario filename='Plan.xml' id=";
  const string project = tag("project", plan + "'a' name='A'/>" + plan + "'b' name='B &amp; \"C\"'/>");
  const auto window = [](const string& edited, const string& compared) {
    return tag("window", tag("editing-scenario", edited) + tag("comparison-scenario", compared));
  };
  const string notVisible =
      "Baseline \"name=\"B &amp; &quot;C&quot;\"\" will not be exported because it is not the baseline visible in the "
      "front Korvella document window.";
  for (const auto& [contents, status, log] : vector<tuple<string, int, string>>{
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
