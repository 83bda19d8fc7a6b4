#pragma once

#include <string>
#include <utility>

#include "Platform/System/Exceptions.h"

namespace conform {

/// Ends the work on a file that cannot be corrected.
/// @param reason for people, without the file's name. @throws platform::Exception "ConformException", always.
[[noreturn]] inline void fail(std::string reason) { throw platform::Exception("ConformException", std::move(reason)); }

}  // namespace conform
