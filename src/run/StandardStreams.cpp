#include "run/StandardStreams.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace rvf {

void prepareStandardStreams() {
  for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; ++descriptor) {
    if (fcntl(descriptor, F_GETFD) < 0) {
      // The system assigns the lowest free number, which is this one.
      [[maybe_unused]] const int opened = open("/dev/null", O_RDWR);
    }
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace rvf
