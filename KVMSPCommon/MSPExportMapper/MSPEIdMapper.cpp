#include "KVMSPCommon/MSPExportMapper/MSPEIdMapper.h"

#include "Platform/System/Exceptions.h"
#include "Platform/Text/Texts.h"

using platform::orNull;
using platform::require;

namespace {

/// The UID of an object.
/// @param id begins with the right character.
std::string uidFromKvdxId(const std::string& id, const std::string& topId) {
  if (id == topId) return "0";
  std::string rest = id.substr(1);
  return platform::integerValue(rest) < 1 ? "" : rest;
}

}  // namespace

MSPEIdMapper::MSPEIdMapper(const std::optional<std::string>& topResourceId,
                           const std::optional<std::string>& topTaskId) {
  require(topResourceId && topResourceId->starts_with('r'),
          "Invalid format of KVDX top Resource ID (must begin with 'r'): {}", orNull(topResourceId));
  require(topTaskId && topTaskId->starts_with('t'), "Invalid format of KVDX top Task ID (must begin with 't'): {}",
          orNull(topTaskId));
  topResourceId_ = *topResourceId;
  topTaskId_ = *topTaskId;
}

std::string MSPEIdMapper::resourceUIDFromKvdxResourceId(const std::string& kvdxResourceId) const {
  if (kvdxResourceId.empty()) return "";
  require(kvdxResourceId.starts_with('r'), "Invalid format of KVDX Resource ID (must begin with 'r'): {}",
          kvdxResourceId);
  return uidFromKvdxId(kvdxResourceId, topResourceId_);
}

std::string MSPEIdMapper::taskUIDFromKvdxId(const std::string& kvdxId) const {
  if (kvdxId.empty()) return "";
  require(kvdxId.starts_with('t'), "Invalid format of KVDX Task ID (must begin with 't'): {}", kvdxId);
  return uidFromKvdxId(kvdxId, topTaskId_);
}
