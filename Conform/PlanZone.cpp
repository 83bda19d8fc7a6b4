#include "Conform/PlanZone.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "KVMSPCommon/MSPCExtensions.h"
#include "KVMSPCommon/MSPImportMapper/MSPIUsualDateTime.h"
#include "Platform/System/Exceptions.h"
#include "Platform/Time/GregorianCalendar.h"

namespace conform {
namespace {

/// The zones to try first: UTC, for plans whose dates all end in "Z", then the zones in which most people live, one for
/// each rule in use. The system's other zones are tried after these.
constexpr std::array<std::string_view, 46> kFirstZones = {
    "UTC",
    "Asia/Kolkata",
    "Asia/Shanghai",
    "Europe/Berlin",
    "America/New_York",
    "America/Chicago",
    "Asia/Jakarta",
    "Africa/Lagos",
    "America/Sao_Paulo",
    "Asia/Karachi",
    "Asia/Dhaka",
    "Europe/Moscow",
    "Asia/Tokyo",
    "America/Mexico_City",
    "Europe/London",
    "America/Los_Angeles",
    "Africa/Nairobi",
    "Africa/Johannesburg",
    "Africa/Cairo",
    "Asia/Tehran",
    "Europe/Istanbul",
    "America/Bogota",
    "Asia/Yangon",
    "Africa/Casablanca",
    "Europe/Kyiv",
    "America/Argentina/Buenos_Aires",
    "Asia/Kabul",
    "Asia/Tashkent",
    "Asia/Kathmandu",
    "America/Denver",
    "America/Caracas",
    "Asia/Dubai",
    "Australia/Sydney",
    "Asia/Jerusalem",
    "Asia/Beirut",
    "America/Santiago",
    "America/Phoenix",
    "America/Havana",
    "America/Halifax",
    "Australia/Brisbane",
    "Pacific/Auckland",
    "Australia/Adelaide",
    "America/Asuncion",
    "Europe/Chisinau",
    "America/St_Johns",
    "Pacific/Honolulu",
};

constexpr std::array<xml::Query, 11> kTaskDates = {
    "start-date",          "end-date",
    "leveled-start",       "locked-start-date",
    "locked-end-date",     "start-constraint-date",
    "end-constraint-date", "start-no-earlier-than",
    "start-no-later-than", "end-no-earlier-than",
    "end-no-later-than",
};

}  // namespace

PlanZone::PlanZone(xml::Node scenario) {
  const auto gatherElement = [&](xml::Node object, const xml::Query& query) {
    if (const xml::Node date = singleObjectForXQuery(object, query)) gather(date.stringView());
  };
  gatherElement(scenario, "start-date");
  gatherElement(scenario, "end-date");
  for (const xml::Node task : objectsForXQuery(scenario, "task")) {
    for (const xml::Query& date : kTaskDates) gatherElement(task, date);
  }
  for (const xml::Node resource : objectsForXQuery(scenario, "resource")) {
    for (const xml::Node event : objectsForXQuery(resource, "schedule/calendar/event")) {
      gather(event.attribute("start").value());
      gather(event.attribute("end").value());
    }
  }
  sortDates();
}

void PlanZone::gather(std::string_view text) {
  MSPCDateComponents record;
  const auto flags = scanUsualDateTime(record, text);
  if (!flags || (*flags & kMSPCTimeZoneUnits) == 0) return;
  constexpr std::size_t kSignAt = 19;
  const std::int64_t seconds = platform::GregorianCalendar::secondsFromCivil(record.civil());
  if (!platform::GregorianCalendar::has(record.civil())) return;
  std::int64_t offset = 0;
  const bool isUTC = (*flags & kMSPCTimeZoneUTC) != 0;
  if (!isUTC) {
    const std::int64_t sign = text[kSignAt] == '-' ? -1 : 1;
    offset = sign * (std::abs(record.timeZoneHour()) * platform::kSecondsPerHour +
                     std::abs(record.timeZoneMinute()) * platform::kSecondsPerMinute);
  }
  dates_.push_back({seconds - offset, offset, isUTC, 1});
  ++count_;
}

/// Sorts the dates, so that equal ones are together.
void PlanZone::sortDates() {
  std::sort(dates_.begin(), dates_.end(), [](const Date& a, const Date& b) {
    return a.utcSeconds != b.utcSeconds ? a.utcSeconds < b.utcSeconds : a.offset < b.offset;
  });
  std::vector<Date> distinct;
  for (const Date& date : dates_) {
    if (!distinct.empty() && distinct.back().utcSeconds == date.utcSeconds && distinct.back().offset == date.offset &&
        distinct.back().isUTC == date.isUTC) {
      ++distinct.back().count;
    } else {
      distinct.push_back(date);
    }
  }
  dates_ = std::move(distinct);
}

bool PlanZone::leaveOutUTC() {
  const auto isUTC = [](const Date& date) { return date.isUTC; };
  if (std::none_of(dates_.begin(), dates_.end(), isUTC) || std::all_of(dates_.begin(), dates_.end(), isUTC)) {
    return false;
  }
  for (const Date& date : dates_) count_ -= date.isUTC ? date.count : 0;
  std::erase_if(dates_, isUTC);
  return true;
}

std::size_t PlanZone::countOfOthers(const platform::TimeZone& zone) const {
  std::size_t others = 0;
  for (const Date& date : dates_) {
    if (zone.secondsFromGMT({static_cast<double>(date.utcSeconds)}) != date.offset) others += date.count;
  }
  return others;
}

bool PlanZone::fits(const platform::TimeZone& zone) const {
  // A cheap test first, which nearly all zones fail.
  for (const Date& date : {dates_.front(), dates_.back()}) {
    if (zone.secondsFromGMTOnce({static_cast<double>(date.utcSeconds)}) != date.offset) return false;
  }
  return std::all_of(dates_.begin(), dates_.end(), [&zone](const Date& date) {
    return zone.secondsFromGMT({static_cast<double>(date.utcSeconds)}) == date.offset;
  });
}

std::string PlanZone::firstFitting() {
  if (dates_.empty()) return "";
  const auto isFitting = [this](std::string_view name) {
    const platform::TimeZone zone{std::string(name)};
    try {
      return zone.isKnown() && fits(zone);
    } catch (const platform::Exception&) {
      unreadable_ = name;
      return false;
    }
  };
  const auto* first = std::find_if(kFirstZones.begin(), kFirstZones.end(), isFitting);
  if (first != kFirstZones.end()) return std::string(*first);
  const auto names = platform::TimeZone::names();
  const auto name = std::find_if(names.begin(), names.end(), isFitting);
  return name == names.end() ? "" : *name;
}

}  // namespace conform
