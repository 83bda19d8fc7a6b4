#pragma once

namespace conform {

class Copy;

/// Changes names that Microsoft Project is reported to refuse. In names of resources, ",", "[" and "]" become ";", "("
/// and ")". Names of calendars are cut to 51 characters, ending in the UID when another name begins with the same 51. A
/// calendar without a name, or whose name begins with 51 blanks, is named by its UID.
void correctNames(Copy& copy);

}  // namespace conform
