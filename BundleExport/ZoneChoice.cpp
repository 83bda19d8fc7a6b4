#include "BundleExport/ZoneChoice.h"

#include <fmt/format.h>

#include "Conform/Failure.h"
#include "Conform/PlanZone.h"
#include "Platform/Time/TimeZone.h"

using platform::TimeZone;

namespace {

constexpr const char* kMachine = "machine";
constexpr const char* kNoZoneData = "this machine has no time zone data (the package tzdata)";

/// The zone of this machine, which was asked for. Where it is not found, the C library uses UTC.
ZoneChoice machineZone() {
  if (TimeZone::system().isFound()) return {TimeZone::system().name(), "", ""};
  const char* reason = TimeZone::names().empty() ? kNoZoneData : "this machine's time zone is not known";
  const std::string utc = TimeZone::utc().name();
  return {utc, "", fmt::format("{}, so dates are those of {}", reason, utc)};
}

ZoneChoice requestedZone(const std::string& name) {
  if (!TimeZone(name).isKnown()) {
    if (TimeZone::names().empty()) conform::fail(kNoZoneData);
    conform::fail(fmt::format("there is no time zone '{}'; names are like Europe/Berlin", name));
  }
  TimeZone::setSystem(name);
  return {TimeZone::system().name(), "", ""};
}

/// The first zone that fits the plan, trying this machine's zone before all others; empty when none fits.
std::string fittingZone(conform::PlanZone& plan) {
  const TimeZone& machine = TimeZone::system();
  return plan.countOfOthers(machine) == 0 ? machine.name() : plan.firstFitting();
}

}  // namespace

ZoneChoice chooseZone(xml::Node scenario, const std::string& requested) {
  if (!requested.empty() && requested != kMachine) return requestedZone(requested);
  if (requested == kMachine) return machineZone();

  const std::string machine = TimeZone::system().name();
  conform::PlanZone plan(scenario);
  std::string fitting = fittingZone(plan);
  if (fitting.empty() && plan.leaveOutUTC()) fitting = fittingZone(plan);
  if (fitting == machine) return {machine, "", ""};
  if (fitting.empty() && TimeZone::names().empty()) {
    return {machine, "", fmt::format("{}, so dates are those of {}", kNoZoneData, machine)};
  }
  if (fitting.empty()) {
    std::string cause = "several people may have worked on the plan";
    if (!plan.unreadableZone().empty())
      cause += fmt::format(", or its zone is {}, whose data could not be read", plan.unreadableZone());
    return {machine, "",
            fmt::format("{} of {} dates have other offsets than {}, this machine's zone, and no zone has all of them: "
                        "{}. --zone NAME chooses another zone",
                        plan.countOfOthers(TimeZone::system()), plan.count(), machine, cause)};
  }
  TimeZone::setSystem(fitting);
  return {fitting, fmt::format("Dates are those of {}, where the plan was made (this machine: {}).", fitting, machine),
          ""};
}
