#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace rvf::inspect {

/// The media type of image data that browsers can show (PNG, JPEG, GIF), recognised by its first
/// bytes; empty for anything else.
[[nodiscard]] std::string embeddableType(std::span<const std::byte> data);

[[nodiscard]] std::string base64(std::span<const std::byte> data);

}  // namespace rvf::inspect
