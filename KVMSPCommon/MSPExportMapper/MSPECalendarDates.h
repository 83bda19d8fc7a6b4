#pragma once

#include "Platform/Instant.h"
#include "Platform/XMLTree.h"

/// The instant that an attribute of a calendar's event or day names, in kvdx form; without a zone, wall-clock time of
/// the system zone.
/// @throws InvariantFailure when the attribute is missing or holds no date: a deviation without its days has no
/// meaning.
platform::Instant calendarDate(xml::Node element, const char* attribute);
