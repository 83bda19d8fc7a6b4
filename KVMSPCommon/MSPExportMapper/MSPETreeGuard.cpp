#include "KVMSPCommon/MSPExportMapper/MSPETreeGuard.h"

#include "Platform/System/Exceptions.h"

using platform::require;

namespace {

/// Deeper than any outline that people work with, and safe for the stack.
constexpr std::size_t kMaximumDepth = 1000;
/// How often an object may be visited on average; a tree visits each once.
constexpr std::size_t kVisitsPerObject = 10;
constexpr std::size_t kVisitsAllowed = 1000;

}  // namespace

MSPETreeGuard::MSPETreeGuard(std::string_view kind, std::size_t objects)
    : kind_(kind), maximumVisits_(kVisitsAllowed + kVisitsPerObject * objects) {}

MSPETreeGuard::Step::Step(MSPETreeGuard& guard, xml::Node node) : guard_(guard), identity_(node.identity()) {
  const auto id = node.attributeText("id");
  require(!guard_.path_.contains(identity_), "{} id='{}' contains itself, directly or through others.", guard_.kind_,
          platform::orNull(id));
  require(guard_.path_.size() < kMaximumDepth, "{} id='{}' is nested too deep. At most {} levels can be exported.",
          guard_.kind_, platform::orNull(id), kMaximumDepth);
  require(++guard_.visits_ <= guard_.maximumVisits_,
          "{} id='{}' is reached in too many ways. At most {} visits can be exported.", guard_.kind_,
          platform::orNull(id), guard_.maximumVisits_);
  guard_.path_.insert(identity_);
}

MSPETreeGuard::Step::~Step() { guard_.path_.erase(identity_); }
