#pragma once

#include <string>

#include "Platform/XML/XMLTree.h"

/// The zone that a bundle's dates are written in.
struct ZoneChoice {
  std::string name;      ///< "Europe/Berlin"
  std::string sentence;  ///< for people, when it is not this machine's zone by itself; else empty
  std::string warning;   ///< when the dates of the plan fit no zone; else empty
};

/// Chooses the zone and makes it this process's. Unless the user says one, it is this machine's zone if all dates of
/// the plan have the offsets of that, else the first zone that fits them, else this machine's with a warning.
/// @param scenario the plan. @param requested as in TZ; "machine" for this machine's zone; empty to let the plan tell.
/// @throws platform::Exception with a reason for people when the requested zone is unknown.
[[nodiscard]] ZoneChoice chooseZone(xml::Node scenario, const std::string& requested);
