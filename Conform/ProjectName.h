#pragma once

namespace conform {

class Copy;

/// Gives a project without a `Name` its title as name or, without a title, the file's name. A top task without a name
/// gets the same one.
void correctProjectName(Copy& copy);

}  // namespace conform
