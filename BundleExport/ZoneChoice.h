#pragma once

#include <string>

#include "Platform/XML/XMLTree.h"

/// The zone that a bundle's dates are written in.
struct ZoneChoice {
  std::string name;      ///< "Europe/Berlin"
  std::string sentence;  ///< for people; empty when it is this machine's zone and nobody asked for another
  std::string warning;   ///< set when the dates of the plan fit no zone; otherwise empty
};

/// Chooses the zone and makes it the process's zone: the requested one; otherwise this machine's zone if all dates of
/// the plan have its offsets; otherwise the first zone that fits all dates; otherwise this machine's, with a warning.
/// @param scenario the plan. @param requested as in TZ; "machine" for this machine's zone; empty to use the plan's.
/// @throws platform::Exception with a reason for people when the requested zone is unknown.
[[nodiscard]] ZoneChoice chooseZone(xml::Node scenario, const std::string& requested);
