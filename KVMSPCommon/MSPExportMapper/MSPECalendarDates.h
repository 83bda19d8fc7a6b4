#pragma once

#include "Platform/Time/Instant.h"
#include "Platform/XML/XMLTree.h"

/// The instant that an attribute of a calendar's event or day names, in kvdx form; without a zone, wall-clock time of
/// the system zone.
/// @throws InvariantFailure when the attribute is missing or holds no date: a deviation without its days has no
/// meaning.
platform::Instant calendarDate(xml::Node element, const char* attribute);
