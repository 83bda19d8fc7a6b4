#include "Conform/ExceptionDates.h"

#include <algorithm>
#include <vector>

#include "Conform/Copy.h"
#include "Conform/Elements.h"

namespace conform {
namespace {

std::string_view firstDay(pugi::xml_node exception) { return textOf(exception.child("TimePeriod"), "FromDate"); }

bool isEarlier(pugi::xml_node a, pugi::xml_node b) { return firstDay(a) < firstDay(b); }

/// @return whether they were in another order.
bool sortByDate(pugi::xml_node exceptions) {
  std::vector<pugi::xml_node> inOrder;
  for (const pugi::xml_node exception : exceptions.children("Exception")) inOrder.push_back(exception);
  if (std::is_sorted(inOrder.begin(), inOrder.end(), isEarlier)) return false;
  std::stable_sort(inOrder.begin(), inOrder.end(), isEarlier);
  putInOrder(exceptions, inOrder);
  return true;
}

}  // namespace

void correctExceptionDates(Copy& copy) {
  std::size_t sorted = 0;
  for (const CalendarItem& calendar : copy.calendars) {
    for (const pugi::xml_node exceptions : calendar.element.children("Exceptions")) {
      sorted += static_cast<std::size_t>(sortByDate(exceptions));
    }
  }
  copy.report.count("calendars with exceptions in another order", sorted);
}

}  // namespace conform
