#pragma once

namespace platform {

/// Lets writing to a closed pipe or beyond a file-size limit fail like any
/// other write, instead of ending the process. For programs, not for libraries:
/// called once, from main.
void reportWriteErrors();

}  // namespace platform
