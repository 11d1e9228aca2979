#include "cli/Output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
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

// The file that a path leads to through symbolic links; the path itself when there is none yet.
std::string Resolved(const std::string& path) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(path.c_str(), nullptr),
                                                         &std::free);
  return real == nullptr ? path : std::string(real.get());
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

mode_t NewFileMode() {
  constexpr mode_t kReadWriteForAll = 0666;
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return kReadWriteForAll & ~mask;
}

std::string Replace(const std::string& path, mode_t mode, std::string_view bytes) {
  std::string temporary = path + ".XXXXXX";
  Descriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
  if (file.number() < 0) {
    return Reason();
  }
  const bool good = WriteAll(file.number(), bytes) && ::fchmod(file.number(), mode) == 0 &&
                    ::fsync(file.number()) == 0 && file.Close() &&
                    ::rename(temporary.c_str(), path.c_str()) == 0;
  std::string reason = good ? std::string() : Reason();
  if (!good) {
    ::unlink(temporary.c_str());
  }
  return reason;
}

}  // namespace

std::string WriteFile(const std::string& path, std::string_view bytes) {
  constexpr mode_t kPermissions = 07777;
  struct stat status {};
  const bool exists = ::stat(path.c_str(), &status) == 0;
  if (exists && S_ISDIR(status.st_mode)) {
    errno = EISDIR;
    return Reason();
  }
  if (exists && !S_ISREG(status.st_mode)) {
    return WriteInPlace(path, bytes);
  }
  // Replacing a file only needs the right to write in its folder; a file that is protected stays.
  if (exists && ::access(path.c_str(), W_OK) != 0) {
    return Reason();
  }
  return Replace(Resolved(path), exists ? status.st_mode & kPermissions : NewFileMode(), bytes);
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
