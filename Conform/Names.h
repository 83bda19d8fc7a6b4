#pragma once

namespace conform {

class Copy;

/// Names that Microsoft Project is reported to refuse. In those of resources ",", "[" and "]" become ";", "(" and ")".
/// Those of calendars are cut at 51 characters, with the UID at the end when another one begins with the same 51; a
/// calendar without a name, or with 51 blanks in front of it, is called by its UID.
void correctNames(Copy& copy);

}  // namespace conform
