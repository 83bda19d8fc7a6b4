#include "Platform/XML/SinkWriter.h"

namespace xml {

void SinkWriter::write(const void* data, std::size_t size) {
  std::string_view rest(static_cast<const char*>(data), size);
  for (std::size_t at = rest.find('\r'); at != std::string_view::npos; at = rest.find('\r')) {
    sink_(rest.substr(0, at));
    sink_("&#13;");
    rest.remove_prefix(at + 1);
  }
  sink_(rest);
}

}  // namespace xml
