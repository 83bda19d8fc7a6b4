#include "Tests/MappingSupport.h"

#include <regex>
#include <sstream>

#include "KVMSPCommon/MSPExportMapper/MSPEMapper.h"
#include "Platform/XML/XMLQuery.h"

static std::string childNames(const std::string& markup) {
  std::string names;
  int depth = 0;
  for (std::size_t at = markup.find('<'); at != std::string::npos; at = markup.find('<', at + 1)) {
    if (markup[at + 1] == '!') continue;
    const bool ends = markup[at + 1] == '/';
    if (depth == 1 && !ends) names += " " + markup.substr(at + 1, markup.find_first_of("/>", at) - at - 1);
    if (markup[markup.find('>', at) - 1] != '/') depth += ends ? -1 : 1;
  }
  return names.empty() ? names : names.substr(1);
}

static std::vector<xml::Node> nodesAt(xml::Node from, const std::string& path) {
  static const std::regex listed("^(Task|Resource|Assignment|Calendar|ExtendedAttribute)(?=/|$)");
  const bool isRoot = from.name() == "Project";
  return path == "." ? std::vector{from}
                     : xml::Query(isRoot ? std::regex_replace(path, listed, "$1s/$1") : path).all(from);
}

/// The texts of all elements that a field of a record selects: "A/B", or "A/B?yes:no" for flags.
static std::string textOf(xml::Node record, const std::string& field) {
  const std::size_t mark = field.find('?'), colon = field.find(':');
  std::string text;
  for (const xml::Node node : nodesAt(record, field.substr(0, mark))) {
    const std::string value = node.stringValue();
    if (mark == std::string::npos) {
      text += (text.empty() ? "" : ", ") + (value.empty() ? "''" : value);
    } else {
      text += value == "1" ? field.substr(mark + 1, colon - mark - 1) : field.substr(colon + 1);
    }
  }
  return text.empty() ? "none" : text;
}

std::string Mapped::value(const std::string& path) const {
  if (!failure.empty()) return failure;
  const std::size_t colon = path.find(": ");
  if (colon == std::string::npos) {
    if (!path.ends_with("/.") && !path.ends_with("/*")) return textOf(output->root(), path);
    const auto nodes = nodesAt(output->root(), path.substr(0, path.size() - 2));
    const std::string markup = nodes.empty() ? "none" : nodes.back().markup();
    return path.ends_with('*') ? childNames(markup) : markup;
  }
  std::string found;
  for (const xml::Node record : nodesAt(output->root(), path.substr(0, colon))) {
    std::istringstream fields(path.substr(colon + 2));
    std::string texts;
    for (std::string field; fields >> field;) texts += (texts.empty() ? "" : " ") + textOf(record, field);
    found += (found.empty() ? "" : ", ") + texts;
  }
  return found.empty() ? "none" : found;
}

Mapped mapped(const std::string& scenarioXml, const std::vector<std::string>& others) {
  MSPEMapper::resetCountersForTesting();
  std::vector<std::shared_ptr<xml::Document>> baselines;
  for (std::size_t i = 1; i < others.size(); ++i) baselines.push_back(parsed(others[i]));
  const MSPEInfo info;
  Mapped result;
  testing::internal::CaptureStderr();
  MSPEMapper mapper(parsed(scenarioXml), parsed(others[0]), baselines, nullptr, info);
  result.failure = failureOf([&mapper] { mapper.map(); });
  testing::internal::GetCapturedStderr();
  if (!result.failure.empty()) return result;
  result.output = parsed(written(*mapper.mspdiXmlDoc()));
  return result;
}

std::string mappedValue(const ValueRow& row) { return mapped(row.scenario, row.others).value(row.path); }

void expectValues(const std::vector<ValueRow>& rows, const std::function<std::string(const ValueRow&)>& get) {
  for (const ValueRow& row : rows) {
    SCOPED_TRACE(fmt::format("{}: {}", row.line, row.about));
    const PinnedZone zone(row.zone);
    EXPECT_EQ(get(row), row.expected);
  }
}

std::string tag(const std::string& name, const std::string& inside) {
  return inside.empty() ? "<" + name + "/>" : "<" + name + ">" + inside + "</" + name + ">";
}

std::string scenario(const std::string& objects, const std::string& attributes, const std::string& inTop) {
  return "<scenario " + attributes + "><top-resource idref='r-1'/><top-task idref='t-1'/>" + objects +
         group("r-1", inTop, {"r1", "r2", "r3"}) +
         task("t-1", "<type>group</type>" + children("task", {"t1", "t2", "t3"})) + "</scenario>";
}

std::string task(const std::string& id, const std::string& inside, const char* start, const char* end) {
  return "<task id='" + id + "'>" + tag("start-date", start) + tag("end-date", end) + tag("duration", "86400") +
         inside + "</task>";
}

std::string resource(const std::string& id, const std::string& type, const std::string& inside) {
  return "<resource id='" + id + "'>" + tag("type", type) + inside + "</resource>";
}

std::string group(const std::string& id, const std::string& inside, const std::vector<std::string>& members) {
  return resource(id, "Group", inside + children("resource", members));
}

std::string children(const std::string& kind, const std::vector<std::string>& ids) {
  std::string references;
  for (const std::string& id : ids) references += "<child-" + kind + " idref='" + id + "'/>";
  return references;
}
