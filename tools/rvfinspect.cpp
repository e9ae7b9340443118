#include <csignal>
#include <cstdio>
#include <exception>

#include "inspect/CommandLine.h"

int main(int argc, char** argv) {
  // If the reader of a pipe exits early, as head does, the program ends silently, whatever the
  // parent process set.
  std::signal(SIGPIPE, SIG_DFL);
  try {
    return rvf::inspect::runInspect(argc, argv);
  } catch (const std::bad_alloc&) {
    std::fputs("rvfinspect: out of memory\n", stderr);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "rvfinspect: %s\n", failure.what());
  }
  constexpr int kTrouble = 2;
  return kTrouble;
}
