#pragma once

namespace conform {

class Copy;

/// Everything that a link or an assignment names is in the file afterwards. A link to a task that is not there is left
/// out. An assignment to a group, or to a resource that is not there, becomes one to nobody; one of a task that is not
/// there is left out. An identifier is taken for that of the object with exactly the same one; an empty one needs the
/// bundle, or an only object whose identifier is empty.
void correctReferences(Copy& copy);

}  // namespace conform
