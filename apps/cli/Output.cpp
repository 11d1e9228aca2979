#include "cli/Output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "host/AtomicFile.h"

namespace poweranalysis {

namespace {

std::string Reason() { return std::strerror(errno); }

// Closes on every way out.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { Close(); }

  int number() const { return number_; }
  bool Close() {
    const int number = number_;
    number_ = -1;
    return number < 0 || ::close(number) == 0;
  }

 private:
  int number_;
};

bool WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) {
      continue;
    }
    if (written < 0) {
      return false;
    }
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

std::string WriteInPlace(const std::string& path, std::string_view bytes) {
  Descriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
  return file.number() >= 0 && WriteAll(file.number(), bytes) && file.Close() ? std::string()
                                                                              : Reason();
}

// Where a file that is not there yet will stand: its folder without links, and its name. A link
// that leads nowhere yet is followed as it will be in writing.
std::string NewFile(std::string path) {
  if (FollowLinks(path) != 0) {
    return path;
  }
  std::error_code ignored;
  return std::filesystem::weakly_canonical(std::filesystem::absolute(path, ignored), ignored)
      .string();
}

}  // namespace

std::string WriteFile(const std::string& path, std::string_view bytes) {
  struct stat status {};
  if (::stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) {
    return WriteInPlace(path, bytes);
  }
  const int error = ReplaceFile(path, bytes);
  return error == 0 ? std::string() : std::strerror(error);
}

std::string WriteStandardOutput(std::string_view bytes) {
  if (WriteAll(STDOUT_FILENO, bytes)) {
    return {};
  }
  if (errno == EPIPE) {
    EndByClosedPipe();
  }
  return Reason();
}

void EndByClosedPipe() {
  std::signal(SIGPIPE, SIG_DFL);
  ::raise(SIGPIPE);
  ::_exit(128 + SIGPIPE);  // the signal was blocked: the status that a shell gives it
}

bool LeadsToOneFile(const std::string& a, const std::string& b) {
  struct stat first {};
  struct stat second {};
  const bool firstExists = ::stat(a.c_str(), &first) == 0;
  const bool secondExists = ::stat(b.c_str(), &second) == 0;
  if (firstExists && secondExists) {
    return S_ISREG(first.st_mode) && first.st_dev == second.st_dev && first.st_ino == second.st_ino;
  }
  return firstExists == secondExists && NewFile(a) == NewFile(b);
}

void WriteError(std::string_view bytes) { WriteAll(STDERR_FILENO, bytes); }

void GuardStandardDescriptors() {
  for (int descriptor = 0; descriptor <= STDERR_FILENO; ++descriptor) {
    if (::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF) {
      // The lowest free number is this one. Reading from an output, or writing to the input, fails.
      const int opened = ::open("/dev/null", descriptor == 0 ? O_WRONLY : O_RDONLY);
      static_cast<void>(opened);
    }
  }
}

}  // namespace poweranalysis
