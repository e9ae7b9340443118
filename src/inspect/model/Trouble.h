#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace rvf::inspect {

/// A failure that ends the program with status 2: a subject, such as a path, which may contain
/// anything, and what is wrong with it, in one line. Thrown anywhere below a command and shown by
/// runInspect.
struct Trouble : std::runtime_error {
  Trouble(std::string what, const std::string& reason)
      : std::runtime_error(reason), subject(std::move(what)) {}

  std::string subject;  // in the system's bytes; empty if there is none
};

}  // namespace rvf::inspect
