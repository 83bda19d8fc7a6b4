#pragma once

#include <string>

#include "Conform/Copy.h"

namespace conform {

// The names of elements in warnings: the source id when there is a bundle, otherwise the UID. Long names and
// identifiers are shortened.

/// "task t12 'Motor driver board'", "resource r3 'Ann'"; without a bundle "task 12 'Motor driver board'". When the
/// object has no name: "task t12".
[[nodiscard]] std::string labelOf(const Item& item);
/// The same without the name, for warnings that already contain it.
[[nodiscard]] std::string shortLabelOf(const Item& item);
/// "calendar of r3"; without a bundle "calendar 3".
[[nodiscard]] std::string shortLabelOf(const CalendarItem& calendar);

/// "r3 'Ann'"; the id alone when the object has no name.
[[nodiscard]] std::string sourceLabelOf(xml::Node object, const char* nameElement);

}  // namespace conform
