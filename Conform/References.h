#pragma once

namespace conform {

class Copy;

/// Makes sure that links and assignments refer only to objects in the file. A link to a missing task is removed. An
/// assignment to a group or a missing resource becomes one to nobody; an assignment of a missing task is removed. An
/// identifier refers to the object with exactly the same one. An empty identifier refers to the only object with an
/// empty one; with the bundle, only if the reference leads to that object there, too.
void correctReferences(Copy& copy);

}  // namespace conform
