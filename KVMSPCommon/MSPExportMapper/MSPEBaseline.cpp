#include "KVMSPCommon/MSPExportMapper/MSPEBaseline.h"

#include <fmt/format.h>

#include "KVMSPCommon/MSPCExtensions.h"

std::shared_ptr<xml::Document> MSPEBaseline::excerpt(std::shared_ptr<xml::Document> scenario) {
  std::shared_ptr<xml::Document> excerpt = scenario->excerpt(
      {{"task", "id", {"start-date", "end-date", "duration", "effort", "static-cost"}}, {"resource", "id", {}}});
  return excerpt ? excerpt : scenario;
}

xml::Node MSPEBaseline::getTaskById(const std::string& id) const {
  return singleObjectForXQuery(xmlDoc_->root(), xml::Query::child("task", "id", id));
}

xml::Node MSPEBaseline::getResourceById(const std::string& id) const {
  return singleObjectForXQuery(xmlDoc_->root(), xml::Query::child("resource", "id", id));
}

xml::Node MSPEBaseline::getAssignmentByTaskId(const std::string& taskId, const std::string& resourceId) const {
  return singleObjectForXQuery(xmlDoc_->root(),
                               fmt::format("//assignment[@idref='{}' and ../@id='{}']", resourceId, taskId));
}
