#pragma once

#include <string_view>

/// What the user can do about the reason of a failure, as one sentence.
[[nodiscard]] std::string_view remedyFor(std::string_view reason);
