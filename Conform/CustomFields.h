#pragma once

namespace conform {

class Copy;

/// Each name of a custom field is defined once for tasks and once for resources, as Text1 to Text30 in the order of
/// first use, with the numbers that belong to these; each value points to its field. Fields after the thirtieth are
/// left out. When an object has two values of one name, the second gets a field of its own, "Name (2)" or the next
/// number that is free in the object, because a reader keeps only one value of a field.
///
/// The exporter numbers the fields separately for each object and appends the definitions in the same order. So the
/// n-th definition of a number belongs to the n-th object with a value of it; a single definition belongs to all of
/// them.
/// @throws platform::Exception "ConformException" when definitions and values do not correspond in this way.
void correctCustomFields(Copy& copy);

}  // namespace conform
