#pragma once

#include <fmt/format.h>

#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// The one exception type that the exporter and the driver catch: a name for the kind of failure, and a reason for the
/// user. Everything else (out of memory, a library's own exceptions) is not caught.
class Exception : public std::exception {
 public:
  Exception(std::string name, std::string reason) : name_(std::move(name)), reason_(std::move(reason)) {}

  [[nodiscard]] const std::string& name() const noexcept { return name_; }
  [[nodiscard]] const std::string& reason() const noexcept { return reason_; }
  [[nodiscard]] const char* what() const noexcept override { return reason_.c_str(); }

 private:
  std::string name_;
  std::string reason_;
};

/// An internal inconsistency: a check with a fixed message failed. Ends the export.
class InvariantFailure : public Exception {
 public:
  explicit InvariantFailure(std::string reason) : Exception("InternalInconsistencyException", std::move(reason)) {}
};

/// Raises InvariantFailure with the formatted message unless the condition holds.
template <typename... Args>
void require(bool holds, fmt::format_string<Args...> message, Args&&... args) {
  if (!holds) [[unlikely]] {
    throw InvariantFailure(fmt::format(message, std::forward<Args>(args)...));
  }
}

/// Ends the process with the message unless the condition holds. For states from which no caller can continue.
void requireOrEndProcess(bool holds, std::string_view message);

/// The text as it stands in a message; an absent one reads "(null)".
[[nodiscard]] inline std::string_view orNull(const std::optional<std::string>& text) {
  return text ? std::string_view(*text) : std::string_view("(null)");
}

/// The text, or an empty one when it is absent.
[[nodiscard]] inline std::string_view orEmpty(const std::optional<std::string>& text) {
  return text ? std::string_view(*text) : std::string_view();
}

}  // namespace platform
