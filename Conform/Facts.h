#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace conform {

// The published facts about the format, as data. Change them here and nowhere else.

/// The namespace of the format's elements.
inline constexpr std::string_view kNamespace = "http://schemas.microsoft.com/project";

/// The largest UID that Microsoft Project accepts.
inline constexpr std::int64_t kMaximumUID = 2'097'151;
/// The `ResourceUID` of an assignment to nobody.
inline constexpr std::string_view kNobody = "-65535";
/// The `CalendarUID` of a task that has no calendar of its own.
inline constexpr std::string_view kNoCalendar = "-1";

/// The children of one element in the published order: their names, separated by blanks.
struct PublishedOrder {
  std::string_view element;
  std::string_view parent;  ///< the parent under which this order holds; empty for all other parents
  std::string_view children;
};
/// Containers are among the elements, with what they contain.
[[nodiscard]] std::span<const PublishedOrder> publishedOrders();

/// The elements that contain a date-time. In a valid file they are never empty.
[[nodiscard]] std::span<const std::string_view> dateTimeElements();

/// The custom fields that hold texts.
inline constexpr std::size_t kTextFields = 30;
/// The `FieldID`s of Text1 to Text30.
using TextFieldNumbers = std::array<std::int64_t, kTextFields>;
[[nodiscard]] const TextFieldNumbers& taskTextFields();
[[nodiscard]] const TextFieldNumbers& resourceTextFields();
/// The numbers of resource fields are all above those of task fields; this is the first.
inline constexpr std::int64_t kFirstResourceField = 205520904;

}  // namespace conform
