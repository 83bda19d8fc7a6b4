#pragma once

#include "Platform/Time/Instant.h"
#include "Platform/XML/XMLTree.h"

/// The date in an attribute of a calendar's event or day.
/// @param attribute its name; the value is in kvdx form, wall-clock time of the system zone when it has no zone.
/// Missing components count as year 1, January, day 1, midnight, as in every other date.
/// @throws InvariantFailure when the attribute is missing or empty: an exception without its days has no meaning.
platform::Instant calendarDate(xml::Node element, const char* attribute);

/// Must be called before days are counted one by one from the date or up to it.
/// @throws InvariantFailure when it is so far away that adding a second does not change the instant: counting would
/// never end.
void requireCountableDays(platform::Instant date);
