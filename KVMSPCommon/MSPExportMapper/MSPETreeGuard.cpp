#include "KVMSPCommon/MSPExportMapper/MSPETreeGuard.h"

#include "Platform/System/Exceptions.h"

using platform::require;

namespace {

/// Deeper than any outline that people use.
constexpr std::size_t kMaximumDepth = 1000;
/// Nodes reached again may add up to this many times the scenario's size, or to some KB in small plans.
constexpr std::size_t kTimesAgain = 4;
constexpr std::size_t kBytesAgain = 100'000;

}  // namespace

void MSPETreeGuard::reach(xml::Node node) {
  const bool isNew = reached_.insert(node.identity()).second;
  if (isNew && path_.size() < kMaximumDepth) return;
  const auto id = node.attributeText("id");
  require(!path_.contains(node.identity()), "{} id='{}' contains itself, directly or through others.", kind_,
          platform::orNull(id));
  require(path_.size() < kMaximumDepth, "{} id='{}' is nested too deep. At most {} levels can be exported.", kind_,
          platform::orNull(id), kMaximumDepth);
  if (isNew) return;
  if (mostAgain_ == 0) mostAgain_ = kBytesAgain + kTimesAgain * scenario_.size();
  again_ += node.size();
  require(again_ <= mostAgain_, "{} id='{}' is reached in too many ways. At most {} KB can be read again.", kind_,
          platform::orNull(id), mostAgain_ / 1000);
}
