#pragma once

// Only for files that print nodes of the XML library.

#include <cstddef>
#include <functional>
#include <pugixml.hpp>
#include <string_view>

namespace xml {

/// Passes printed pieces to the sink, with carriage returns as references: a reader would turn bare ones into line
/// feeds.
class SinkWriter final : public pugi::xml_writer {
 public:
  /// @param sink must outlive the writer.
  explicit SinkWriter(const std::function<void(std::string_view)>& sink) : sink_(sink) {}

  void write(const void* data, std::size_t size) override;

 private:
  const std::function<void(std::string_view)>& sink_;
};

}  // namespace xml
