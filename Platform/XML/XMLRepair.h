#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace xml {

/// A malformed or unusually encoded document made readable: what a recovering parser makes of the bytes, as
/// well-formed UTF-8. None when nothing can be made of them. Fetches nothing and expands no entities.
[[nodiscard]] std::optional<std::string> repaired(std::string_view bytes);

}  // namespace xml
