// A system that fails on demand, for the unmodified program: a library that is loaded before all
// others (LD_PRELOAD) and makes system calls fail as environment variables say.
//
//   RVF_FAULT_CALL    the calls that fail: read, write, seek, close, open, stat, allocate, or all
//   RVF_FAULT_AT      the number of the first call that fails, from 1; without it, none fails
//   RVF_FAULT_FOR     once, or on: this call, or all calls of the kind from there on
//   RVF_FAULT_ERROR   the value of errno; or -1: the process is killed there, during a write in its
//                     middle
//   RVF_FAULT_PIECE   no read or write moves more bytes than this
//   RVF_FAULT_BREAK   N: every Nth read, write and open is interrupted (EINTR)
//   RVF_FAULT_SHRINK  files that are read end at this offset, whatever length the system reports
//   RVF_FAULT_FILE    with SHRINK: only files whose names end with this
//   RVF_FAULT_MARK    a file that is created when a call fails: it distinguishes an injected run
//                     from one with fewer calls
//
// The program reads and writes through stdio, whose calls of read, write and lseek are bound inside
// the C library, out of reach. So fopen is replaced: it returns a stream of the C library over
// functions of this file (fopencookie). These call the system and fail below stdio, so that stdio's
// own handling of short counts and errors is tested too. Calls are counted from the beginning of
// main. Standard output and standard error never fail here: the shell can do that.

#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio_ext.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

extern "C" {
// The allocator of the C library under its internal names.
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

enum Call { kNone, kRead, kWrite, kSeek, kClose, kOpen, kStat, kAllocate, kAll };
constexpr const char* kCallNames[] = {"",     "read", "write",    "seek", "close",
                                      "open", "stat", "allocate", "all"};
constexpr int kKill = -1;

bool isInMain = false;
int failingCall = kAll;
int failsAt = 0;
bool failsOn = false;
int failure = 0;
std::size_t piece = 0;
int breakEvery = 0;
long shrunkLength = -1;
const char* shrunkName = "";
const char* markPath = nullptr;
int callsSoFar = 0;
int breakableCalls = 0;

const char* textOf(const char* name, const char* otherwise) {
  const char* text = std::getenv(name);
  return text == nullptr ? otherwise : text;
}

int numberOf(const char* name, const char* otherwise) { return std::atoi(textOf(name, otherwise)); }

void readEnvironment() {
  const char* call = textOf("RVF_FAULT_CALL", "");
  while (failingCall > 0 && std::strcmp(call, kCallNames[failingCall]) != 0) failingCall -= 1;
  failsAt = numberOf("RVF_FAULT_AT", "0");
  failsOn = std::strcmp(textOf("RVF_FAULT_FOR", ""), "on") == 0;
  failure = numberOf("RVF_FAULT_ERROR", "5");
  piece = static_cast<std::size_t>(numberOf("RVF_FAULT_PIECE", "0"));
  breakEvery = numberOf("RVF_FAULT_BREAK", "0");
  shrunkLength = numberOf("RVF_FAULT_SHRINK", "-1");
  shrunkName = textOf("RVF_FAULT_FILE", "");
  markPath = std::getenv("RVF_FAULT_MARK");
}

void leaveMark() {
  if (markPath == nullptr) return;
  syscall(SYS_close, syscall(SYS_openat, AT_FDCWD, markPath, O_WRONLY | O_CREAT, 0600));
  markPath = nullptr;
}

/// Counts the call and returns whether it should fail; errno is then set.
bool fails(Call call) {
  if (!isInMain || failsAt == 0 || (call != failingCall && failingCall != kAll)) return false;
  callsSoFar += 1;
  if (callsSoFar < failsAt || (callsSoFar > failsAt && !failsOn)) return false;
  leaveMark();
  if (failure == kKill && call != kWrite) kill(getpid(), SIGKILL);
  errno = failure;
  return true;
}

bool isInterrupted() {
  if (!isInMain || breakEvery == 0 || ++breakableCalls % breakEvery != 0) return false;
  errno = EINTR;
  return true;
}

std::size_t pieceOf(std::size_t size) { return piece > 0 && size > piece ? piece : size; }

/// The file under a stream.
struct File {
  int descriptor;
  bool isShrunk;
};

/// A read beyond the end of a shrunk file is cut there.
std::size_t lengthUpToEnd(const File& file, std::size_t size) {
  const long position = lseek(file.descriptor, 0, SEEK_CUR);
  if (!file.isShrunk || position < 0) return size;
  const auto left = static_cast<std::size_t>(position < shrunkLength ? shrunkLength - position : 0);
  return left < size ? left : size;
}

ssize_t readFile(void* cookie, char* target, std::size_t size) {
  const File& file = *static_cast<File*>(cookie);
  if (fails(kRead) || isInterrupted()) return -1;
  return syscall(SYS_read, file.descriptor, target, lengthUpToEnd(file, pieceOf(size)));
}

/// Writes everything in as many calls as necessary, up to the first one that fails, as the C
/// library does for its own streams.
ssize_t writeFile(void* cookie, const char* source, std::size_t size) {
  const int descriptor = static_cast<File*>(cookie)->descriptor;
  std::size_t written = 0;
  while (written < size) {
    const std::size_t next = pieceOf(size - written);
    const bool isFailing = fails(kWrite);
    if (isFailing && failure == kKill) {
      syscall(SYS_write, descriptor, source + written, next / 2);
      kill(getpid(), SIGKILL);
    }
    if (isFailing || isInterrupted()) break;
    const long moved = syscall(SYS_write, descriptor, source + written, next);
    if (moved < 0) break;
    written += static_cast<std::size_t>(moved);
  }
  return static_cast<ssize_t>(written);
}

int seekFile(void* cookie, off64_t* position, int whence) {
  if (fails(kSeek)) return -1;
  *position = lseek(static_cast<File*>(cookie)->descriptor, *position, whence);
  return *position < 0 ? -1 : 0;
}

int closeFile(void* cookie) {
  File* file = static_cast<File*>(cookie);
  const bool failed = fails(kClose);
  const int reason = errno;
  syscall(SYS_close, file->descriptor);
  std::free(file);
  errno = reason;
  return failed ? -1 : 0;
}

bool endsWith(const char* text, const char* end) {
  const std::size_t length = std::strlen(text);
  const std::size_t endLength = std::strlen(end);
  return length >= endLength && std::strcmp(text + length - endLength, end) == 0;
}

int statusOf(int folder, const char* path, struct stat* status, int flags) {
  if (fails(kStat)) return -1;
  return static_cast<int>(syscall(SYS_newfstatat, folder, path, status, flags));
}

using Main = int (*)(int, char**, char**);
Main programMain = nullptr;

int countedMain(int argc, char** argv, char** environment) {
  isInMain = true;
  const int status = programMain(argc, argv, environment);
  isInMain = false;
  return status;
}

}  // namespace

extern "C" {

int __libc_start_main(Main main, int argc, char** argv, void (*init)(), void (*fini)(),
                      void (*loaderFini)(), void* stackEnd) {
  const auto start =
      reinterpret_cast<decltype(&__libc_start_main)>(dlsym(RTLD_NEXT, "__libc_start_main"));
  programMain = main;
  readEnvironment();
  return start(countedMain, argc, argv, init, fini, loaderFini, stackEnd);
}

/// Supports only the two ways in which the program opens files: for reading, or for writing anew.
std::FILE* fopen(const char* path, const char* mode) {
  if (fails(kOpen) || isInterrupted()) return nullptr;
  const bool isRead = mode[0] == 'r';
  const int flags = isRead ? O_RDONLY : O_WRONLY | O_CREAT | O_TRUNC;
  const long descriptor = syscall(SYS_openat, AT_FDCWD, path, flags, 0666);
  if (descriptor < 0) return nullptr;
  auto* file = static_cast<File*>(__libc_malloc(sizeof(File)));
  const bool isShrunk = shrunkLength >= 0 && isRead && endsWith(path, shrunkName);
  *file = {static_cast<int>(descriptor), isShrunk};
  std::FILE* stream = fopencookie(file, mode, {readFile, writeFile, seekFile, closeFile});
  if (stream == nullptr) {
    syscall(SYS_close, descriptor);
    std::free(file);
  }
  return stream;
}

/// Unbuffered cookie streams read single bytes, so streams for reading get a buffer, which is never
/// freed.
int setvbuf(std::FILE* stream, char* buffer, int mode, std::size_t size) {
  static const auto setBuffer = reinterpret_cast<decltype(&setvbuf)>(dlsym(RTLD_NEXT, "setvbuf"));
  constexpr std::size_t kReadSize = 65536;
  if (mode != _IONBF || __fwritable(stream) != 0) return setBuffer(stream, buffer, mode, size);
  return setBuffer(stream, static_cast<char*>(__libc_malloc(kReadSize)), _IOFBF, kReadSize);
}

int stat(const char* path, struct stat* status) { return statusOf(AT_FDCWD, path, status, 0); }
int lstat(const char* path, struct stat* status) {
  return statusOf(AT_FDCWD, path, status, AT_SYMLINK_NOFOLLOW);
}
int fstat(int descriptor, struct stat* status) {
  return statusOf(descriptor, "", status, AT_EMPTY_PATH);
}

void* malloc(std::size_t size) { return fails(kAllocate) ? nullptr : __libc_malloc(size); }
void* calloc(std::size_t count, std::size_t size) {
  return fails(kAllocate) ? nullptr : __libc_calloc(count, size);
}
void* realloc(void* block, std::size_t size) {
  return fails(kAllocate) ? nullptr : __libc_realloc(block, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
  return fails(kAllocate) ? nullptr : __libc_memalign(alignment, size);
}

}  // extern "C"
