#pragma once

namespace conform {

class Copy;

/// A project without a `Name` gets one: its title or, without one, the file's. The top task gets the same one when it
/// has none of its own.
void correctProjectName(Copy& copy);

}  // namespace conform
