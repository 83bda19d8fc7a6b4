#pragma once

namespace conform {

class Copy;

/// Each name of a custom field is defined once for tasks and once for resources, as Text1 to Text30 in the order of
/// first use, with the numbers that belong to these; each value points to its field. What is past the thirtieth is left
/// out. A name that an object has twice becomes a second field, "Name (2)" or the next number whose name the object
/// does not have, because a reader keeps one value of a field.
///
/// The exporter numbers the fields anew for each object and appends their definitions in the same order, so the n-th
/// definition of a number belongs to the n-th object that has a value of it, and the only definition to all of them.
/// @throws platform::Exception "ConformException" when definitions and values do not fit in this way.
void correctCustomFields(Copy& copy);

}  // namespace conform
