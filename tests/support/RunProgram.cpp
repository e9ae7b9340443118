#include "RunProgram.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <future>
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

std::string readToEnd(const Pipe& pipe) {
  ::close(pipe.ends[1]);
  std::string bytes;
  std::array<char, 65536> block;
  for (ssize_t got = 0; (got = ::read(pipe.ends[0], block.data(), block.size())) > 0;) {
    bytes.append(block.data(), static_cast<std::size_t>(got));
  }
  ::close(pipe.ends[0]);
  return bytes;
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

  ProgramResult result;
  auto printed = std::async(std::launch::async, readToEnd, std::cref(out));
  auto errors = std::async(std::launch::async, readToEnd, std::cref(err));
  if (errors.wait_for(std::chrono::seconds(timeoutSeconds)) != std::future_status::ready) {
    ::kill(child, SIGKILL);
  }
  result.err = errors.get();
  result.out = printed.get();
  int status = 0;
  if (::waitpid(child, &status, 0) != child) throw std::runtime_error("waitpid");
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
  return result;
}

}  // namespace rvf::test
