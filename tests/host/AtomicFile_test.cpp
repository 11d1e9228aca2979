#include "host/AtomicFile.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace poweranalysis {

namespace {

class AtomicFiles : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = testing::TempDir() + "atomic-XXXXXX";
    ASSERT_NE(nullptr, mkdtemp(name.data()));
    folder_ = name;
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }
  std::ptrdiff_t FilesThere() const {
    return std::distance(std::filesystem::directory_iterator(folder_), {});
  }

 private:
  std::filesystem::path folder_;
};

constexpr std::size_t kLimit = 10;

TEST_F(AtomicFiles, AreReadAsTheyWereSaved) {
  const std::string bytes("a\0\r\n\xFF", 5);
  EXPECT_EQ("", SaveFile(Path("file"), bytes));
  const FileBytes read = ReadFile(Path("file"), kLimit);
  EXPECT_TRUE(read.exists);
  EXPECT_EQ("", read.problem);
  EXPECT_EQ(bytes, read.text);
  EXPECT_EQ(1, FilesThere());
}

// The number of a process that has ended.
std::string EndedProcess() {
  const pid_t child = fork();
  if (child == 0) {
    _exit(0);
  }
  waitpid(child, nullptr, 0);
  return std::to_string(child);
}

TEST_F(AtomicFiles, SweepWhatKilledWritersLeftADayAgo) {
  const std::string ended = EndedProcess();
  const std::string running = std::to_string(getppid());
  const auto put = [this](const std::string& name, bool old) {
    std::ofstream(Path(name)) << "half";
    if (old) {
      std::filesystem::last_write_time(
          Path(name), std::filesystem::file_time_type::clock::now() - std::chrono::hours(25));
    }
  };
  put(".saving-" + ended + "-0.tmp", true);
  put(".saving-" + ended + "-1.tmp", false);
  put(".saving-" + running + "-0.tmp", true);
  put(".saving-notes.tmp", true);
  put("saving-" + ended + "-0.tmp", true);
  EXPECT_EQ("", SaveFile(Path("file"), "new"));
  EXPECT_FALSE(std::filesystem::exists(Path(".saving-" + ended + "-0.tmp")));
  EXPECT_EQ(5, FilesThere()) << "a young one, one of a running program, and what others named stay";
}

TEST_F(AtomicFiles, ThatAreMissingAreNoProblem) {
  const FileBytes read = ReadFile(Path("none"), kLimit);
  EXPECT_FALSE(read.exists);
  EXPECT_EQ("", read.problem);
}

TEST_F(AtomicFiles, AreReadUpToTheLimitAndNotBeyond) {
  EXPECT_EQ("", SaveFile(Path("file"), "0123456789"));
  EXPECT_FALSE(ReadFile(Path("file"), kLimit).tooLarge);
  EXPECT_EQ("", SaveFile(Path("file"), "0123456789a"));
  const FileBytes read = ReadFile(Path("file"), kLimit);
  EXPECT_TRUE(read.tooLarge);
  EXPECT_NE("", read.problem);
}

TEST_F(AtomicFiles, AreSavedThroughALinkThatLeadsNowhereYet) {
  std::filesystem::create_symlink("file", Path("link"));
  EXPECT_EQ("", SaveFile(Path("link"), "new"));
  EXPECT_TRUE(std::filesystem::is_symlink(Path("link")));
  EXPECT_EQ("new", ReadFile(Path("file"), kLimit).text);
}

TEST_F(AtomicFiles, ThatCannotBeReplacedStay) {
  std::filesystem::create_directory(Path("folder"));
  EXPECT_EQ("it is a folder", SaveFile(Path("folder"), "new"));
  EXPECT_EQ("it is a folder", SaveFile(Path("folder/"), "new"));
  EXPECT_EQ("there is no such file or folder", SaveFile(Path("none/file"), "new"));
  EXPECT_EQ("there is no such file or folder", SaveFile("", "new"));
  EXPECT_EQ("the name holds a NUL byte", SaveFile(std::string("a\0b", 3), "new"));
  std::filesystem::create_symlink("circle", Path("circle"));
  EXPECT_EQ("its symbolic links lead in a circle", SaveFile(Path("circle"), "new"));
  EXPECT_EQ(2, FilesThere());
}

// Root may write everywhere, so that a test of permissions goes on as an ordinary user.
class AsOrdinaryUser {
 public:
  explicit AsOrdinaryUser(const std::string& folder) : wasRoot_(geteuid() == 0) {
    constexpr uid_t kNobody = 65534;
    constexpr gid_t kSameGroup = static_cast<gid_t>(-1);
    if (wasRoot_) {
      EXPECT_EQ(0, chown(folder.c_str(), kNobody, kSameGroup));
      EXPECT_EQ(0, seteuid(kNobody));
    }
  }
  AsOrdinaryUser(const AsOrdinaryUser&) = delete;
  AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;
  ~AsOrdinaryUser() {
    if (wasRoot_) {
      EXPECT_EQ(0, seteuid(0));
    }
  }

 private:
  bool wasRoot_;
};

TEST_F(AtomicFiles, ThatTheUserWriteProtectedStay) {
  const AsOrdinaryUser user(Path("."));
  EXPECT_EQ("", SaveFile(Path("file"), "old"));
  ASSERT_EQ(0, chmod(Path("file").c_str(), 0400));
  EXPECT_EQ("permission is denied", SaveFile(Path("file"), "new"));
  EXPECT_EQ("old", ReadFile(Path("file"), kLimit).text);
}

TEST(FileReason, HasWordsForEveryError) {
  EXPECT_EQ("the disk is full", FileReason(ENOSPC));
  EXPECT_NE("", FileReason(EIO));
}

}  // namespace

}  // namespace poweranalysis
