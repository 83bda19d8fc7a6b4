#pragma once

#include <string_view>

/// One sentence about what the user can do about the reason of a failure; general advice when there is no specific one.
[[nodiscard]] std::string_view remedyFor(std::string_view reason);
