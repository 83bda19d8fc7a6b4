#pragma once

#include "Platform/Time/Instant.h"
#include "Platform/XML/XMLTree.h"

/// The instant that an attribute of a calendar's event or day names, in kvdx form; without a zone, wall-clock time of
/// the system zone. What is missing in it is as in the year 1 on its first day at midnight, as in every other date.
/// @throws InvariantFailure when the attribute is missing or empty: a deviation without its days has no meaning.
platform::Instant calendarDate(xml::Node element, const char* attribute);

/// Called before days are counted one by one from the date or up to it.
/// @throws InvariantFailure when it is so far away that an instant does not tell one second from the next: the count
/// would not get on.
void requireCountableDays(platform::Instant date);
