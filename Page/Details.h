#pragma once

#include <functional>
#include <string_view>

#include "Conform/PlanFile.h"
#include "Page/Rows.h"

namespace page {

/// The anchors of tasks and resources begin with these, followed by their position in the file.
inline constexpr std::string_view kTaskDetails = "t";
inline constexpr std::string_view kResourceDetails = "r";

/// Whether the task or resource has notes or custom fields.
[[nodiscard]] bool hasDetails(const conform::FileTask& task);
[[nodiscard]] bool hasDetails(const conform::FileResource& resource);

/// The notes and custom fields of tasks, then those of resources, folded, one after the other.
void writeDetails(const conform::PlanFile& plan, const Rows& rows, const std::function<void(std::string_view)>& sink);

}  // namespace page
