#include <cstddef>
#include <exception>
#include <new>
#include <vector>

#include "run/EntryPoint.h"
#include "run/ExitStatus.h"
#include "run/OperatorNotes.h"
#include "text/NativeText.h"

namespace {

int run(int argc, char** argv) {
  std::vector<rvf::eString> arguments;
  arguments.reserve(static_cast<std::size_t>(argc));
  for (int i = 0; i < argc; ++i) {
    arguments.push_back(rvf::fromNative(argv[i]));
  }
  return rvf::foldToProcessStatus(rvf::runCompare(arguments));
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::bad_alloc&) {
    rvf::reportFatalError("out of memory");
  } catch (const std::exception& failure) {
    rvf::reportFatalError(failure.what());
  } catch (...) {
    rvf::reportFatalError("unexpected failure");
  }
  return rvf::foldToProcessStatus(rvf::exit_status::kFailed);
}
