#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

// Types of resources as the source names and MSPDI numbers them.

inline constexpr std::string_view kMaterialResource = "Material";
inline constexpr std::string_view kGroupResource = "Group";

/// The texts that the source's `type` may be.
inline constexpr std::array<std::string_view, 4> kResourceTypes = {"Staff", "Equipment", kMaterialResource,
                                                                   kGroupResource};
/// MSPDI's `Type` for the first of them. Groups are not written.
inline constexpr std::array<std::string_view, 3> kMspdiResourceTypes = {"1", "1", "0"};

/// The place of the text in kResourceTypes; none for anything else.
[[nodiscard]] constexpr std::optional<std::size_t> placeOfResourceType(std::string_view kvdxType) {
  const auto* found = std::find(kResourceTypes.begin(), kResourceTypes.end(), kvdxType);
  if (found == kResourceTypes.end()) return std::nullopt;
  return static_cast<std::size_t>(found - kResourceTypes.begin());
}

/// MSPDI's `Type`; none for a resource that is not written.
[[nodiscard]] constexpr std::optional<std::string_view> mspdiResourceType(std::string_view kvdxType) {
  const auto place = placeOfResourceType(kvdxType);
  if (!place || *place >= kMspdiResourceTypes.size()) return std::nullopt;
  return kMspdiResourceTypes[*place];
}
