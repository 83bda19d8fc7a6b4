#include "Tests/MappingSupport.h"

#include <gtest/gtest.h>

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

std::string Mapped::value(const std::string& path) const {
  if (!failure.empty()) return failure;
  const xml::Node project = output->root();
  if (path == "*") return childNames(project.markup());
  const std::string parent = path.substr(0, path.rfind('/') + 1);
  const std::string step = path.substr(parent.size());
  std::string found;
  if (step == "." || step == "*") {
    for (const xml::Node node : xml::Query(parent.substr(0, parent.size() - 1)).all(project)) found = node.markup();
    return step == "*" ? childNames(found) : found;
  }
  const std::size_t blank = path.find(' ');
  for (const xml::Node node : xml::Query(path.substr(0, blank)).all(project)) found += "," + node.stringValue();
  found = found.empty() ? "-" : found.substr(1);
  return blank == std::string::npos ? found : found + " " + value(parent + path.substr(blank + 1));
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

void expectValues(const std::vector<ValueRow>& rows) {
  for (const ValueRow& row : rows) {
    SCOPED_TRACE(row.line);
    const PinnedZone zone(row.zone);
    EXPECT_EQ(mapped(row.scenario, row.others).value(row.path), row.expected);
  }
}

std::string e(const std::string& name, const std::string& inside) {
  return inside.empty() ? "<" + name + "/>" : "<" + name + ">" + inside + "</" + name + ">";
}

std::string scenario(const std::string& objects, const std::string& attributes, const std::string& inTop) {
  return "<scenario " + attributes + "><top-resource idref='r-1'/><top-task idref='t-1'/>" + objects +
         group("r-1", inTop, {"r1", "r2", "r3"}) +
         task("t-1", "<type>group</type>" + children("task", {"t1", "t2", "t3"})) + "</scenario>";
}

std::string task(const std::string& id, const std::string& inside, const char* start, const char* end) {
  return "<task id='" + id + "'>" + e("start-date", start) + e("end-date", end) + e("duration", "86400") + inside +
         "</task>";
}

std::string resource(const std::string& id, const std::string& type, const std::string& inside) {
  return "<resource id='" + id + "'>" + e("type", type) + inside + "</resource>";
}

std::string group(const std::string& id, const std::string& inside, const std::vector<std::string>& members) {
  return resource(id, "Group", inside + children("resource", members));
}

std::string children(const std::string& kind, const std::vector<std::string>& ids) {
  std::string references;
  for (const std::string& id : ids) references += "<child-" + kind + " idref='" + id + "'/>";
  return references;
}
