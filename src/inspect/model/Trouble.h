#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace rvf::inspect {

/// What ends the program with status 2: a subject, such as a path, which may hold anything, and
/// what is wrong with it, in one line. Thrown anywhere below a command, shown by runInspect.
struct Trouble : std::runtime_error {
  Trouble(std::string what, const std::string& reason)
      : std::runtime_error(reason), subject(std::move(what)) {}

  std::string subject;  // in bytes of the system; empty if there is none
};

}  // namespace rvf::inspect
