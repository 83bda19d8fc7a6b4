#include "KVMSPCommon/MSPExportMapper/MSPEBaseline.h"

#include <fmt/format.h>

#include "KVMSPCommon/MSPCExtensions.h"

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
