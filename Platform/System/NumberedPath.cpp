#include "Platform/System/NumberedPath.h"

#include <fmt/format.h>

#include <utility>

#include "Platform/System/FileSystem.h"

namespace platform {

NumberedPath::NumberedPath(std::string path)
    : path_(std::move(path)), stem_(deletePathExtension(path_)), extension_(pathExtension(path_)) {}

void NumberedPath::goOn() { path_ = fmt::format("{}-{}.{}", stem_, ++number_, extension_); }

}  // namespace platform
