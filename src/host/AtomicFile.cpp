#include "host/AtomicFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <ctime>
#include <memory>
#include <system_error>
#include <utility>

namespace poweranalysis {

namespace {

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int number() const { return number_; }
  int Close() {
    const int number = std::exchange(number_, -1);
    return number < 0 || close(number) == 0 ? 0 : errno;
  }

 private:
  int number_;
};

// Reads to the end, or to one byte more than is allowed.
int ReadAll(int file, std::size_t limit, std::string& text) {
  std::array<char, 1 << 16> buffer;
  while (text.size() <= limit) {
    const ssize_t count = read(file, buffer.data(), buffer.size());
    if (count == 0) {
      return 0;
    }
    if (count > 0) {
      text.append(buffer.data(), static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

std::string KindProblem(const struct stat& status) {
  if (S_ISREG(status.st_mode)) {
    return {};
  }
  return FileReason(S_ISDIR(status.st_mode) ? EISDIR : NotRegular);
}

}  // namespace

std::string FileReason(int error) {
  switch (error) {
    case ENOENT:
      return "there is no such file or folder";
    case ENOTDIR:
      return "a part of its path is not a folder";
    case EACCES:
    case EPERM:
      return "permission is denied";
    case EROFS:
      return "the disk is read-only";
    case ENOSPC:
      return "the disk is full";
    case EDQUOT:
      return "the disk quota is used up";
    case EFBIG:
      return "the file would be larger than is allowed";
    case EISDIR:
      return "it is a folder";
    case NotRegular:
      return "it is not a regular file";
    case ELOOP:
      return "its symbolic links lead in a circle";
    case ENAMETOOLONG:
      return "the name is too long";
    case EWOULDBLOCK:
      return "another program is saving a file in the same folder";
    default:
      return std::generic_category().message(error);
  }
}

// Looks before opening, since to open a FIFO or a device is to act on it; and again after, with a
// non-blocking open between, in case the file was exchanged meanwhile.
FileBytes ReadFile(int folder, const std::string& name, std::size_t limit) {
  FileBytes bytes;
  struct stat status = {};
  if (fstatat(folder, name.c_str(), &status, 0) != 0) {
    bytes.problem = errno == ENOENT ? "" : FileReason(errno);
    return bytes;
  }
  bytes.exists = true;
  bytes.problem = KindProblem(status);
  if (!bytes.problem.empty()) {
    return bytes;
  }
  const Descriptor file(openat(folder, name.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (file.number() < 0 || fstat(file.number(), &status) != 0) {
    bytes.problem = FileReason(errno);
    return bytes;
  }
  bytes.problem = KindProblem(status);
  if (!bytes.problem.empty()) {
    return bytes;
  }
  if (const int error = ReadAll(file.number(), limit, bytes.text); error != 0) {
    bytes.problem = FileReason(error);
  } else if (bytes.text.size() > limit) {
    bytes.tooLarge = true;
    bytes.problem = "it is too large";
  }
  return bytes;
}

FileBytes ReadFile(const std::string& path, std::size_t limit) {
  return ReadFile(AT_FDCWD, path, limit);
}

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "./" : path.substr(0, slash + 1);
}

std::string NameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

int FollowLinks(std::string& path) {
  constexpr int mostLinks = 40;  // as the kernel has it
  for (int count = 0; count < mostLinks; ++count) {
    std::array<char, 4096> target{};
    const ssize_t length = readlink(path.c_str(), target.data(), target.size());
    if (length < 0) {
      return errno == EINVAL || errno == ENOENT ? 0 : errno;
    }
    const std::string to(target.data(), static_cast<std::size_t>(length));
    const bool absolute = !to.empty() && to.front() == '/';
    path = absolute ? to : FolderOf(path).append(to);
  }
  return ELOOP;
}

namespace {

// The process that a temporary file's name contains; 0 for any other name.
pid_t WriterOf(std::string_view name) {
  constexpr std::string_view kStart = ".saving-";
  constexpr std::string_view kEnd = ".tmp";
  if (name.size() <= kStart.size() + kEnd.size() || name.substr(0, kStart.size()) != kStart ||
      name.substr(name.size() - kEnd.size()) != kEnd) {
    return 0;
  }
  pid_t writer = 0;
  const auto [end, error] =
      std::from_chars(name.data() + kStart.size(), name.data() + name.size(), writer);
  return error == std::errc{} && *end == '-' && writer > 0 ? writer : 0;
}

// A day without a change, by a process that is gone. Of a folder that machines share, the process
// may run on another machine: none takes a day to write a file.
bool IsOrphan(int folder, const char* name) {
  constexpr std::time_t kDay = std::time_t{24} * 60 * 60;
  const pid_t writer = WriterOf(name);
  struct stat status = {};
  return writer != 0 && fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
         S_ISREG(status.st_mode) && std::time(nullptr) - status.st_mtime > kDay &&
         kill(writer, 0) != 0 && errno == ESRCH;
}

// Removes what writers that were killed left behind. Whatever goes wrong, the files stay.
void SweepOrphans(int folder) {
  const int again = openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const std::unique_ptr<DIR, int (*)(DIR*)> entries(again < 0 ? nullptr : fdopendir(again),
                                                    closedir);
  while (entries != nullptr) {
    const dirent* entry = readdir(entries.get());
    if (entry == nullptr) {
      return;
    }
    if (IsOrphan(folder, entry->d_name)) {
      unlinkat(folder, entry->d_name, 0);
    }
  }
}

// Opens a new file under a name that no other writer has, and says which; -1 and errno on failure.
// The name is short, for the file's own may already be as long as names can be.
int CreateTemporary(int folder, mode_t mode, std::string& name) {
  static std::atomic<unsigned> counter{0};
  constexpr int attempts = 100;
  for (int i = 0; i < attempts; ++i) {
    name = ".saving-" + std::to_string(getpid()) + "-" + std::to_string(counter++) + ".tmp";
    const int file =
        openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode);
    if (file >= 0 || errno != EEXIST) {
      return file;
    }
  }
  return -1;
}

int WriteAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = write(file, text.data(), text.size());
    if (count >= 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

// Only root can give a file away, and only members can give it to a group: the owner is kept where
// possible, the permissions always.
int KeepOwnerAndMode(int file, const struct stat& old) {
  constexpr mode_t permissions = 07777;
  struct stat now = {};
  if (fstat(file, &now) != 0) {
    return errno;
  }
  if ((now.st_uid != old.st_uid || now.st_gid != old.st_gid) &&
      fchown(file, old.st_uid, old.st_gid) != 0) {
    static_cast<void>(fchown(file, static_cast<uid_t>(-1), old.st_gid) == 0);
  }
  if (fstat(file, &now) != 0) {
    return errno;
  }
  const bool same = (now.st_mode & permissions) == (old.st_mode & permissions);
  return same || fchmod(file, old.st_mode & permissions) == 0 ? 0 : errno;
}

// Brings a temporary file to its full and final state, on the disk.
int FillTemporary(Descriptor& file, std::string_view text, const struct stat* old) {
  if (const int error = WriteAll(file.number(), text); error != 0) {
    return error;
  }
  if (old != nullptr) {
    if (const int error = KeepOwnerAndMode(file.number(), *old); error != 0) {
      return error;
    }
  }
  if (fsync(file.number()) != 0) {
    return errno;
  }
  return file.Close();
}

}  // namespace

int ReplaceFile(int folder, const std::string& name, std::string_view text) {
  struct stat old = {};
  const bool existed = fstatat(folder, name.c_str(), &old, 0) == 0;
  // A rename asks for no leave of the file's own; a user who took his own right to write meant it.
  if (existed && faccessat(folder, name.c_str(), W_OK, AT_EACCESS) != 0) {
    return errno;
  }
  SweepOrphans(folder);
  std::string temporary;
  // A new file gets the permissions that the user's umask leaves; another stays private until it
  // has those of the old one.
  Descriptor file(CreateTemporary(folder, existed ? 0600 : 0666, temporary));
  if (file.number() < 0) {
    return errno;
  }
  int error = FillTemporary(file, text, existed ? &old : nullptr);
  if (error == 0 && renameat(folder, temporary.c_str(), folder, name.c_str()) != 0) {
    error = errno;
  }
  if (error != 0) {
    unlinkat(folder, temporary.c_str(), 0);
    return error;
  }
  // The new file is in place and whole whether or not the folder's entry has reached the disk, so a
  // failure here need not be reported.
  static_cast<void>(fsync(folder));
  return 0;
}

int ReplaceFile(const std::string& path, std::string_view text) {
  std::string target = path;
  if (const int error = FollowLinks(target); error != 0) {
    return error;
  }
  const std::string name = NameOf(target);
  if (name.empty()) {
    return path.empty() ? ENOENT : EISDIR;
  }
  const Descriptor folder(open(FolderOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.number() < 0) {
    return errno;
  }
  struct stat old = {};
  if (fstatat(folder.number(), name.c_str(), &old, 0) == 0 && !S_ISREG(old.st_mode)) {
    return S_ISDIR(old.st_mode) ? EISDIR : NotRegular;
  }
  return ReplaceFile(folder.number(), name, text);
}

std::string SaveFile(const std::string& path, std::string_view text) {
  if (path.find('\0') != std::string::npos) {
    return "the name holds a NUL byte";
  }
  const int error = ReplaceFile(path, text);
  return error == 0 ? std::string() : FileReason(error);
}

}  // namespace poweranalysis
