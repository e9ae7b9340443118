#pragma once

#include <pugixml.hpp>
#include <string>

namespace rvf::inspect {

/// Collects what pugixml prints.
struct XmlText final : pugi::xml_writer {
  void write(const void* data, std::size_t size) override {
    text.append(static_cast<const char*>(data), size);
  }
  std::string text;
};

}  // namespace rvf::inspect
