#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Builds one JSON object on one line, member by member. Texts are written as ASCII with escapes, so that the line is
/// the same in every locale; bytes that are not UTF-8 become U+FFFD.
class JsonObject {
 public:
  void add(std::string_view name, std::string_view text);
  void add(std::string_view name, std::size_t number);
  void add(std::string_view name, double seconds);
  void add(std::string_view name, const std::vector<std::string>& texts);
  void add(std::string_view name, const JsonObject& object);
  void addNull(std::string_view name);

  [[nodiscard]] std::string text() const { return "{" + members_ + "}"; }

 private:
  void addMember(std::string_view name, const std::string& value);

  std::string members_;
};
