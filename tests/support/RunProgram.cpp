#include "RunProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <stdexcept>

namespace rvf::test {
namespace {

struct Pipe {
  std::array<int, 2> ends{};
  Pipe() {
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("pipe2");
  }
};

// Between fork and exec: only calls that are safe there.
[[noreturn]] void becomeProgram(char* const* argv, const char* folder, int out, int err) {
  const int in = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  if (::dup2(in, 0) == 0 && ::dup2(out, 1) == 1 && ::dup2(err, 2) == 2 && ::chdir(folder) == 0) {
    ::execv(argv[0], argv);
  }
  ::_exit(127);
}

// Takes what a readable pipe holds; at its end the pipe is closed and no longer polled.
void drain(pollfd& source, std::string& target) {
  if (source.fd < 0 || source.revents == 0) return;
  std::array<char, 65536> block;
  const ssize_t got = ::read(source.fd, block.data(), block.size());
  if (got > 0) {
    target.append(block.data(), static_cast<std::size_t>(got));
    return;
  }
  ::close(source.fd);
  source.fd = -1;
}

}  // namespace

ProgramResult runProgram(std::vector<std::string> arguments,
                         const std::filesystem::path& workingFolder, int timeoutSeconds) {
  std::vector<char*> argv;
  for (std::string& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);

  const Pipe out, err;
  const pid_t child = ::fork();
  if (child < 0) throw std::runtime_error("fork");
  if (child == 0) becomeProgram(argv.data(), workingFolder.c_str(), out.ends[1], err.ends[1]);
  ::close(out.ends[1]);
  ::close(err.ends[1]);

  ProgramResult result;
  std::array<pollfd, 2> sources = {{{out.ends[0], POLLIN, 0}, {err.ends[0], POLLIN, 0}}};
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + std::chrono::seconds(timeoutSeconds);
  while (sources[0].fd >= 0 || sources[1].fd >= 0) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) ::kill(child, SIGKILL);
    ::poll(sources.data(), sources.size(), static_cast<int>(std::max<long>(left, 100)));
    drain(sources[0], result.out);
    drain(sources[1], result.err);
  }
  int status = 0;
  if (::waitpid(child, &status, 0) != child) throw std::runtime_error("waitpid");
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  return result;
}

}  // namespace rvf::test
