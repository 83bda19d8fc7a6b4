// Bundles that are damaged, made by other programs, or made to do harm. Checks the messages and the status, and that
// only well-formed documents are written.

#include <sys/stat.h>
#include <sys/syscall.h>

#include <cerrno>
#include <filesystem>
#include <regex>

#include "Tests/MappingSupport.h"
#include "Tests/Process.h"

namespace fs = std::filesystem;

namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr const char* kLimited = "exec \"$@\"";  // no limits: the sanitizer reserves terabytes
#else
constexpr const char* kLimited = "ulimit -v 1000000; ulimit -s 256; exec \"$@\"";
#endif

std::string failed(const std::string& reason) { return "Exception: InternalInconsistencyException\n" + reason + "\n"; }
const std::string kNoDocument =
    "Exception: MSPEXMLException\nMSPEXMLExporter.newXmlDocFromUrl: Failed to build XML DOM from source data.\n";
std::string noXML(const std::string& reason) {
  return "WARNING: Document '@DIR@/B.kvdx/Plan.xml' cannot be read as XML: " + reason + ".\n" + kNoDocument;
}
const std::string kRepaired =
    "WARNING: Document '@DIR@/B.kvdx/Plan.xml' is malformed or in an unusual encoding. What could be read of it is "
    "used.\n";

std::string plan(const std::string& title) { return scenario(task("t1", "<title>" + title + "</title>")); }
/// The ASCII text as UTF-16: a mark, then each byte followed by a zero byte.
std::string utf16(const std::string& text) {
  std::string result = "\xFF\xFE";
  for (const char c : text) result.append({c, '\0'});
  return result;
}
/// A document type with thirteen entities; each but the first contains the one before ten times.
std::string bomb(const std::string& mark) {
  std::string declarations = mark + " a 'aaaaaaaaaa'>";
  for (char c = 'b'; c <= 'm'; ++c)
    declarations += fmt::format("{} {} '{}'>", mark, c, repeated(std::string{'&', static_cast<char>(c - 1), ';'}, 10));
  return "<!DOCTYPE scenario [" + declarations + "]>";
}
/// A table of contents of these scenarios. The plan with the id s1 is edited, and compared with s2.
std::string comparing(const std::string& scenarios) {
  return tag("toc", tag("project", scenarios) +
                        tag("window", tag("editing-scenario", "s1") + tag("comparison-scenario", "s2")));
}
std::string declared(const std::string& encoding) { return "<?xml version='1.0' encoding='" + encoding + "'?>"; }

/// A folder with a bundle B.kvdx of the two documents. The bundle also has links, special files and a huge file, which
/// must not be read. Nor must the file B.kvdx.xml beside it, although its path begins like the bundle's.
struct Place : Workplace {
  Place(const std::string& plan, const std::string& tableOfContents) {
    makeBundle("B.kvdx", plan, tableOfContents);
    writeFile(folder / "B.kvdx.xml", ::plan("TELLTALE"));
    fs::create_symlink("../B.kvdx.xml", folder / "B.kvdx/link.xml");
    fs::create_symlink("/dev/zero", folder / "B.kvdx/device.xml");
    fs::create_symlink("loop.xml", folder / "B.kvdx/loop.xml");
    fs::create_directory(folder / "B.kvdx/folder");
    writeFile(folder / "B.kvdx/huge.xml", "");
    fs::resize_file(folder / "B.kvdx/huge.xml", std::uintmax_t{1} << 40);
    mkfifo((folder / "B.kvdx/fifo").c_str(), 0600);
  }
  void expect(int status, const std::string& said, const std::string& written = "") const {
    const ProcessResult result = complaints("B.kvdx", kLimited);
    EXPECT_EQ(result.log, said);
    EXPECT_EQ(result.status, status);
    EXPECT_EQ(exists("B.xml"), status == 0);
    for (const auto& entry : fs::directory_iterator(folder.path()))
      EXPECT_FALSE(entry.path().filename().string().starts_with(".MSPDIExport-"));
    if (!exists("B.xml")) return;
    EXPECT_TRUE(isWellFormed(folder / "B.xml"));
    const std::string text = contentsOf(folder / "B.xml");
    EXPECT_NE(text.find(written), std::string::npos) << written << text.substr(0, 5000);
    EXPECT_EQ(text.find("TELLTALE"), std::string::npos);
  }
};

struct Bad {
  int line;
  std::string plan;
  std::string said;          ///< the expected complaints; with an exception among them, the status must be 1
  std::string written = {};  ///< a text that the document must contain
};
void expectAll(std::initializer_list<Bad> rows) {
  for (const Bad& row : rows) {
    SCOPED_TRACE(row.line);
    const int status = row.said.find("Exception: ") == std::string::npos ? 0 : 1;
    Place(row.plan, listing("Plan.xml")).expect(status, row.said, row.written);
  }
}

}  // namespace

TEST(BadInput, DocumentsThatAreNoXML) {
  const std::string attributes = numbered(" a{}=''", 100'000);
  const std::string controls = "a&#1;&#x1F;\x01&#xD800;&#xDFFF;&#xFFFE;&#x110000;b";
  expectAll({
      {__LINE__, "", noXML("it is empty")},
      {__LINE__, std::string(5000, '\0'), noXML("No document element found")},
      {__LINE__, plan("R&D Caf\xE9"), kRepaired, "<Name>R&amp;D Caf\xC3\xA9</Name>"},
      {__LINE__, plan(repeated("<x>", 200000) + "a" + repeated("</x>", 200000)), "", "<Name>a</Name>"},
      // NOLINTNEXTLINE(bugprone-string-constructor): the length is intended
      {__LINE__, plan("a</title><title x='" + std::string(50'000'000, 'b') + "'>"), "", "<Name />"},
      {__LINE__, plan("a</title><title" + attributes + ">b"), "", "<Name>b</Name>"},
      {__LINE__, plan("\na</title><title" + attributes + "><b>"), noXML("line 2: Start-end tags mismatch")},
      {__LINE__, plan(controls), "", "<Name>ab</Name>"},
  });
}

TEST(BadInput, DeclarationsAreNotTakenIn) {
  const std::string outside =
      "<!DOCTYPE scenario SYSTEM 'B.kvdx.xml' [<!ENTITY x SYSTEM '../B.kvdx.xml'><!ENTITY y SYSTEM 'B.kvdx.xml'>]>" +
      plan("&x;&y;");
  const std::string attribute = scenario("<task id='t1' x='&m;'>" + task("", "<title>&m;</title>").substr(12));
  const std::string entities = bomb("<!ENTITY") + attribute;
  const std::string tooMany = noXML("its entities expand to more than ten times its size");
  const std::string big(100000, 'a');
  const std::string defaults = "<!DOCTYPE scenario [<!ATTLIST x xmlns:p CDATA '" + big + "' b CDATA '" + big + "'>]>" +
                               plan(repeated("<x/>", 20000));
  const std::string twice = "<!DOCTYPE scenario [<!ENTITY a 'aaaaaaaaa'>]>";
  const std::string plain = declared("UTF-7") + bomb("+ADw-!ENTITY") + attribute;
  const std::string hidden = std::regex_replace(plain, std::regex("&"), "+ACY-");
  expectAll({
      {__LINE__, outside, "", "<Name />"},
      {__LINE__, entities, tooMany},
      {__LINE__, entities + "<", tooMany},
      {__LINE__, utf16(entities + "<"), tooMany},
      {__LINE__, hidden, tooMany},
      {__LINE__, twice + plan("&a;a"), "", "<Name>aaaaaaaaaa</Name>"},
      {__LINE__, twice + plan("&a;<x y=z/>"), kRepaired, "<Name>aaaaaaaaa</Name>"},
      {__LINE__, twice + plan(repeated("&a;", 1000) + "<x y=z/>"), noXML("line 1: Error parsing element attribute")},
      {__LINE__, defaults, "", "<Name />"},
      {__LINE__, defaults + "<", kRepaired, "<Name />"},
  });
}

// Each of these makes the library that repairs documents take minutes or crash, unless the exporter simplifies it
// first.
TEST(BadInput, RepairsInTime) {
  const std::string types = "<!DOCTYPE a [<!ATTLIST a b (" + numbered("t{}|", 400'000) + "t)>]>" + plan("b") + "</x>";
  const std::string attributes = numbered(" a{} = \n''", 150'000);
  const std::string spaces = numbered("<n{0}:a xmlns:n{0}='u'>", 250'000) + "b" + repeated("</q>", 250'000);
  expectAll({
      {__LINE__, types, kRepaired, "<Name>b</Name>"},
      {__LINE__, utf16(types), kRepaired, "<Name>b</Name>"},
      {__LINE__, plan("</title><title" + attributes + "><b>"), noXML("line 150001: Start-end tags mismatch")},
      {__LINE__, plan(spaces), kRepaired, "<Name>b</Name>"},
  });
}

TEST(BadInput, OneDocumentNamedAgainAndAgain) {
  const std::string plan = scenario(task("t1") + "<!--" + std::string(2'000'000, 'a') + "-->");
  const std::string names =
      "<scenario id='s1' filename='Plan.xml'/><scenario id='s2' filename='./Plan.xml'/>"
      "<scenario id='s1' filename='./Plan.xml'/><scenario id='s2' filename='Plan.xml'/>";
  Place(plan, comparing(repeated(names, 45))).expect(0, "", "<Number>89</Number>");
}

/// Only the last of several edited scenarios is exported; together, the trees of all would take over 1 GB.
TEST(BadInput, ManyEditedScenarios) {
  const Place place(
      scenario(task("t1", "<title>last</title>")),
      comparing(numbered("<scenario id='s1' filename='{}.xml'/>", 70) + "<scenario id='s1' filename='Plan.xml'/>"));
  const std::string large = scenario(task("t1") + repeated("<q/>", 250'000));
  for (int i = 0; i < 70; ++i) writeFile(place.folder / fmt::format("B.kvdx/{}.xml", i), large);
  place.expect(0, "", "<Name>last</Name>");
}

TEST(BadInput, ManyNames) {
  const auto place = [](int count) {
    std::string names;
    for (int i = 0; i < count; ++i) names += "<scenario id='s1' filename='" + repeated("./", i) + "Plan.xml'/>";
    return Place(plan("last"), comparing(names));
  };
  place(200).expect(0, "", "<Name>last</Name>");
  place(201).expect(1, failed("The table of contents has too many files of the edited scenario and of compared ones. "
                              "At most 200 can be read."));
}

TEST(BadInput, DocumentsAreToldInTheOrderOfTheirList) {
  const auto read = [](const std::string& first, const std::string& second, const std::string& bytes) {
    return Place(bytes, comparing(first + second)).complaints("B.kvdx").log;
  };
  const std::string edited = "<scenario id='s1' filename='Plan.xml'/>";
  const std::string compared = "<scenario id='s2' filename='Old.xml'/>";
  const std::string old = unread("@DIR@/B.kvdx/Old.xml", "No such file or directory");
  EXPECT_EQ(read(edited, compared, plan("Caf\xE9")), kRepaired + old);
  EXPECT_EQ(read(compared, edited, plan("Caf\xE9")), old);
  EXPECT_EQ(read(edited, compared, ""), noXML("it is empty"));
}

TEST(BadInput, NamesInEitherSpellingOfUnicode) {
  const std::string composed = "Pl\xC3\xA4n.xml";
  const std::string decomposed = "Pla\xCC\x88n.xml";
  for (const auto& [name, file] : {std::pair(composed, decomposed), std::pair(decomposed, composed)}) {
    const Place place("", listing(name));
    writeFile(place.folder / ("B.kvdx/" + file), plan("a"));
    place.expect(0, "", "<Name>a</Name>");
  }
}

TEST(BadInput, DocumentsThatCannotBeRead) {
  const std::string outside = "Not inside the bundle";
  for (const auto& [name, reason] : std::vector<std::pair<std::string, std::string>>{
           {"none.xml", "No such file or directory"},
           {"", outside},
           {".", outside},
           {"..", outside},
           {"/dev/zero", outside},
           {"../B.kvdx.xml", outside},
           {"folder/../../B.kvdx.xml", outside},
           {"link.xml", outside},
           {"device.xml", outside},
           {"loop.xml", "Too many levels of symbolic links"},
           {"folder", "Not a regular file"},
           {"fifo", "Not a regular file"},
           {"huge.xml", "Larger than 4 GiB"},
           {std::string(5000, 'a'), "File name too long"},
       }) {
    SCOPED_TRACE(name);
    for (const std::vector<FailingCall>& missing : std::vector<std::vector<FailingCall>>{{}, {{SYS_openat2, ENOSYS}}}) {
      Place place(plan(""), listing(name));
      place.options.failingCalls = missing;
      place.expect(1, unread("@DIR@/B.kvdx/" + name, reason));
    }
  }
}

TEST(BadInput, PlansWithoutBounds) {
  const auto linked = [](const char* id, const char* to) {
    return task(id, fmt::format("<prerequisite-task idref='{}'/>", to));
  };
  std::string nested;
  for (int i = 0; i < 10000; ++i)
    nested += fmt::format("<event start='{}-01-01T09:00:00' end='{}-01-01T10:00:00'/>", 12000 - i, 12000 + i);
  const std::string nest = tag("schedule", "<calendar name='O' overtime='true'>" + nested + "</calendar>");
  const std::string overlap = "Calendar events overlap too much: more than 1000000 working times in exceptions of ";
  expectAll({
      {__LINE__, scenario(linked("t1", "t2") + linked("t2", "t1")), ""},
      {__LINE__, scenario(resource("r1", "Staff", tag("name", "R") + nest)), failed(overlap + "calendar 'O'.")},
  });
}

/// Plans that once took minutes, never ended, or overflowed the stack.
TEST(BadInput, PlansThatAskForMuchWork) {
  std::string deep;
  for (int number = 1; number < 9890; number += 10) {
    const std::string id = std::to_string(number), next = std::to_string(number + 10);
    deep += task("t" + id, tag("type", "group") + children("task", {"t" + next})) + group("r" + id, "", {"r" + next});
  }
  const std::string attributes = numbered(" a{}=''", 100'000);
  const std::string members = numbered(resource("r1{:05}", "Staff"), 15000);
  const std::string references = numbered("<child-resource idref='r1{:05}'/>", 15000);
  expectAll({
      {__LINE__, scenario(deep), "", "<OutlineLevel>989</OutlineLevel>"},
      {__LINE__, scenario("<resource" + attributes + group("r1", references, {}).substr(9) + members), "", ">114999</"},
  });
  // Overtime on a day in 1753 and on one in 2026 becomes one exception, and each of its days is written.
  const std::string hours = "-01-01'><time-span start-time='1' end-time='2'/></flattened-schedule-day>";
  const std::string date = "<flattened-schedule-day date='", centuries = date + "1753" + hours + date + "2026" + hours;
  expectAll(
      {{__LINE__,
        scenario(group("r1", tag("schedule", centuries), {}) + group("r2", "", std::vector<std::string>(100, "r1"))),
        failed("The export grew too large: 4 KB of documents allow for 259 MB. Look in the plan for what is far "
               "too long or repeated far too often: names, schedules, spans of time.")}});
  const std::string blanks(500'000, ' ');
  const std::string currency = tag("currency-format", "$" + blanks + "x5.00");
  Place(plan(""), std::regex_replace(listing("Plan.xml"), std::regex("<project>"), "<project>" + currency))
      .expect(0, "", "<CurrencyDigits>2<");
}

TEST(BadInput, NumbersAndDatesWithoutBounds) {
  const std::string nines(20, '9');
  const auto timed = [](const std::string& duration, const std::string& rest = "") {
    return scenario("<task id='t1'>" + tag("start-date", "2026-05-04") + tag("end-date", "2026-05-05") +
                    tag("duration", duration) + rest + "</task>" + resource("r1", "Staff"));
  };
  const auto lag = [&timed](const std::string& text) {
    return timed("1", "<prerequisite-task idref='t1'>" + tag("lead-time", text) + "</prerequisite-task>");
  };
  const auto dated = [](const std::string& start, const char* end) { return task("t1", "", start.c_str(), end); };
  const std::string start = "\n      <Start>2026-05-04T00:00:00</Start>";
  const std::string use = tag("effort", nines) + "<assignment idref='r1' units='" + nines + "'/>";
  const std::string longDate = fmt::format("{0}-{0}-{0}T{0}:{0}:{0}+{0}", nines);
  expectAll({
      {__LINE__, timed("1e400"), "", "<Duration>PT596523H14M7S</Duration>"},
      {__LINE__, timed("-" + nines), "", "<Duration>PT-596523H-14M-8S</Duration>"},
      {__LINE__, timed("1", use), "", "<Work>PT596523H14M7S</Work>"},
      {__LINE__, timed("1", tag("priority", nines)), "", "<Priority>1000</Priority>" + start},
      {__LINE__, lag(nines), "", "<LinkLag>9223372036854775807</LinkLag>"},
      {__LINE__, scenario(dated("999999999-01-01T00:00:00Z", "0000-00-00")), "", "<Start>999999999-01-01T00:00:00"},
      {__LINE__, scenario(dated(longDate, "soon")), "", "<Start>1-01-01T00:00:00</Start>"},
  });
}
