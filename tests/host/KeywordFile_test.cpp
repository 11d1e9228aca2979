#include "host/KeywordFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <clocale>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <locale>
#include <memory>
#include <random>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace poweranalysis {
namespace {

namespace fs = std::filesystem;

using MissingFolder = KeywordWriter::MissingFolder;

std::uint64_t Bits(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

void WriteBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

std::string ReadBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

mode_t ModeOf(const std::string& path) {
  struct stat status = {};
  EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
  return status.st_mode & 07777;
}

KeywordResult SaveOne(const std::string& path,
                      const std::string& section,
                      const std::string& key,
                      const std::string& value,
                      MissingFolder missingFolder = MissingFolder::Refuse) {
  KeywordWriter writer(path, missingFolder);
  writer.Put(section, key, value);
  return writer.Commit();
}

// The text after one Set.
std::string After(const std::string& text,
                  const std::string& section,
                  const std::string& key,
                  const std::string& value) {
  KeywordFile file = KeywordFile::Parse(text);
  EXPECT_TRUE(file.Set(section, key, value));
  return file.Text();
}

// Runs in a process of its own and returns its exit status; -1 when it was killed.
int InChild(const std::function<int()>& body) {
  const pid_t child = fork();
  if (child == 0) {
    _exit(body());
  }
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Permissions bind everyone but root: where the tests run as root, the child becomes nobody.
bool BecomeOrdinaryUser() {
  constexpr uid_t nobody = 65534;
  return geteuid() != 0 || (setgid(nobody) == 0 && setuid(nobody) == 0);
}

class KeywordFileOnDisk : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = testing::TempDir() + "keyword-file-XXXXXX";
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    folder_ = name;
    ASSERT_EQ(chmod(folder_.c_str(), 0777), 0);
    path_ = folder_ + "/POWER.INI";
  }

  void TearDown() override {
    ASSERT_EQ(chmod(folder_.c_str(), 0777), 0);
    fs::remove_all(folder_);
  }

  std::set<std::string> NamesIn(const std::string& folder) const {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
      names.insert(entry.path().filename().string());
    }
    return names;
  }

  std::string folder_;
  std::string path_;
};

// ---------------------------------------------------------------------------------------------
// Numbers

TEST(KeywordNumbers, RealsAreWrittenInTheShortestFormThatReadsBack) {
  EXPECT_EQ(FormatReal(0.1), "0.1");
  EXPECT_EQ(FormatReal(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(FormatReal(25.0), "25");
  EXPECT_EQ(FormatReal(1e22), "1e+22");
  EXPECT_EQ(FormatReal(-0.0), "-0");
}

TEST(KeywordNumbers, RealsReadBackBitForBit) {
  std::mt19937_64 random(20240229);
  int finite = 0;
  while (finite < 100000) {
    const std::uint64_t bits = random();
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    if (!std::isfinite(value)) {
      continue;
    }
    ++finite;
    const auto back = ParseReal(FormatReal(value));
    ASSERT_TRUE(back.has_value()) << FormatReal(value);
    ASSERT_EQ(Bits(*back), bits) << FormatReal(value);
  }
}

TEST(KeywordNumbers, RealsAtTheEdgesOfTheRangeReadBackBitForBit) {
  using Limits = std::numeric_limits<double>;
  for (const double value :
       {0.0, -0.0, Limits::min(), Limits::denorm_min(), -Limits::denorm_min(), Limits::max(),
        Limits::lowest(), Limits::epsilon(), std::nextafter(Limits::min(), 0.0)}) {
    const auto back = ParseReal(FormatReal(value));
    ASSERT_TRUE(back.has_value()) << FormatReal(value);
    EXPECT_EQ(Bits(*back), Bits(value)) << FormatReal(value);
  }
}

TEST(KeywordNumbers, NonFiniteRealsAreWrittenButNeverRead) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(FormatReal(infinity), "inf");
  EXPECT_EQ(FormatReal(-infinity), "-inf");
  EXPECT_EQ(FormatReal(std::numeric_limits<double>::quiet_NaN()), "nan");
  for (const char* text : {"inf", "-inf", "INF", "infinity", "nan", "-nan", "NaN", "nan(1)"}) {
    EXPECT_FALSE(ParseReal(text).has_value()) << text;
  }
}

TEST(KeywordNumbers, OnlyAWholeRealIsRead) {
  EXPECT_EQ(ParseReal("0.05"), 0.05);
  EXPECT_EQ(ParseReal(" \t0.05 \t"), 0.05);
  EXPECT_EQ(ParseReal(".5"), 0.5);
  EXPECT_EQ(ParseReal("5."), 5.0);
  EXPECT_EQ(ParseReal("1e3"), 1000.0);
  EXPECT_EQ(ParseReal("+3"), 3.0);
  EXPECT_EQ(ParseReal(" +1.5e-1 "), 0.15);
  for (const char* text : {"", "  ", "12x", "x12", "1 2", "0,05", "1e", "--1", "+-1", "++1", "+",
                           "+inf", "+ 1", "0x10", "1e400", "1e-400", "."}) {
    EXPECT_FALSE(ParseReal(text).has_value()) << text;
  }
  EXPECT_FALSE(ParseReal(std::string_view("1\0", 2)).has_value());
}

TEST(KeywordNumbers, LongsAreWholeInAnySpellingAndKeepTo32Bits) {
  EXPECT_EQ(FormatLong(-2147483647 - 1), "-2147483648");
  EXPECT_EQ(ParseLong("-2147483648"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(ParseLong("2147483647"), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(ParseLong(" 25\t"), 25);
  EXPECT_EQ(ParseLong("007"), 7);
  EXPECT_EQ(ParseLong("+3"), 3);
  EXPECT_EQ(ParseLong("1e2"), 100);
  EXPECT_EQ(ParseLong("25.0"), 25);
  EXPECT_EQ(ParseLong("-2.147483648e9"), std::numeric_limits<std::int32_t>::min());
  for (const char* text : {"2147483648", "-2147483649", "99999999999999999999", "", " ", "12x",
                           "12.5", "1e-1", "1e10", "2147483648.0", "+-3", "inf", "nan", "0x10"}) {
    EXPECT_FALSE(ParseLong(text).has_value()) << text;
  }
}

TEST(KeywordFiles, KeysOfASectionComeWithTheirTextsAndLines) {
  const KeywordFile file = KeywordFile::Parse(
      "\xEF\xBB\xBF; mine\n[A]\nN=1\nX = 9,5 ; remark\n\n[B]\nN=7\n[A]\nN=2\nno key\n");
  const std::vector<KeywordLine> keys = file.Keys("A");
  ASSERT_EQ(keys.size(), 2u);
  EXPECT_EQ(keys[0].key, "X");
  EXPECT_EQ(keys[0].text, "9,5");
  EXPECT_EQ(keys[0].line, 4u);
  EXPECT_EQ(keys[1].key, "N");
  EXPECT_EQ(keys[1].text, "2");
  EXPECT_EQ(keys[1].line, 9u);
  EXPECT_TRUE(file.Keys("C").empty());
}

TEST(KeywordNumbers, TheLocaleIsNeverAsked) {
  // Where German is not installed both calls fail, and the C locale is checked again.
  std::setlocale(LC_ALL, "de_DE.UTF-8");
  const std::locale before;
  try {
    std::locale::global(std::locale("de_DE.UTF-8"));
  } catch (const std::runtime_error&) {
  }
  EXPECT_EQ(FormatReal(1234567.5), "1234567.5");
  EXPECT_EQ(FormatLong(1234567), "1234567");
  EXPECT_EQ(ParseReal("1.5"), 1.5);
  EXPECT_FALSE(ParseReal("1,5").has_value());
  EXPECT_FALSE(ParseLong("1.234").has_value());
  std::locale::global(before);
  std::setlocale(LC_ALL, "C");
}

// ---------------------------------------------------------------------------------------------
// Names of files

TEST(ResolveFileName, PutsBareNamesIntoTheFolderAndLeavesPaths) {
  EXPECT_EQ(ResolveFileName("POWER.INI", "/home/ada/.config/app"),
            "/home/ada/.config/app/POWER.INI");
  EXPECT_EQ(ResolveFileName("./POWER.INI", "/folder"), "./POWER.INI");
  EXPECT_EQ(ResolveFileName("/etc/POWER.INI", "/folder"), "/etc/POWER.INI");
}

TEST(ResolveFileName, IsEmptyWithoutANameOrAFolder) {
  EXPECT_EQ(ResolveFileName("", "/folder"), "");
  EXPECT_EQ(ResolveFileName("POWER.INI", ""), "");
  EXPECT_EQ(ResolveFileName("./POWER.INI", ""), "./POWER.INI");
}

// ---------------------------------------------------------------------------------------------
// The text

TEST(KeywordText, FindsValuesBySectionAndKey) {
  const auto file = KeywordFile::Parse("[A]\nx=1\ny=two words\n[B]\nx=3\nempty=\n");
  EXPECT_EQ(file.Find("A", "x"), "1");
  EXPECT_EQ(file.Find("A", "y"), "two words");
  EXPECT_EQ(file.Find("B", "x"), "3");
  EXPECT_EQ(file.Find("B", "empty"), "");
  EXPECT_EQ(file.Find("B", "y"), std::nullopt);
  EXPECT_EQ(file.Find("C", "x"), std::nullopt);
}

TEST(KeywordText, NamesAreCaseSensitive) {
  const auto file = KeywordFile::Parse("[A]\nAlpha=1\n");
  EXPECT_EQ(file.Find("A", "alpha"), std::nullopt);
  EXPECT_EQ(file.Find("a", "Alpha"), std::nullopt);
  EXPECT_EQ(After("[A]\nAlpha=1\n", "A", "alpha", "2"), "[A]\nAlpha=1\nalpha=2\n");
}

TEST(KeywordText, BlanksAroundNamesAndValuesAreToleratedAndKept) {
  const std::string text = "  [ A ]  \n\tAlpha \t=  0.05 \t\nBeta=1\n";
  const auto file = KeywordFile::Parse(text);
  EXPECT_EQ(file.Find("A", "Alpha"), "0.05");
  EXPECT_EQ(After(text, "A", "Alpha", "0.1"), "  [ A ]  \n\tAlpha \t=  0.1 \t\nBeta=1\n");
}

TEST(KeywordText, EverythingElseSurvivesASet) {
  const std::string before =
      "; head\n\nstray=1\n# more\n[Other]\nb=2\na=1\nunknown line\n\n\n"
      "[A]\n; about Alpha\nAlpha=0.05\nOurs=1\n\n; about C\n[C]\nz=1";
  std::string expected = before;
  expected.replace(expected.find("0.05"), 4, "0.1");
  EXPECT_EQ(After(before, "A", "Alpha", "0.1"), expected);
}

TEST(KeywordText, ACommentBehindAValueIsNoPartOfItAndSurvives) {
  const std::string text = "[A]\nAlpha=0.05 ; mine\nBeta= # none yet\nGamma=a;b#c\n";
  const auto file = KeywordFile::Parse(text);
  EXPECT_EQ(file.Find("A", "Alpha"), "0.05");
  EXPECT_EQ(file.Find("A", "Beta"), "");
  EXPECT_EQ(file.Find("A", "Gamma"), "a;b#c");
  EXPECT_EQ(After(text, "A", "Alpha", "0.1"),
            "[A]\nAlpha=0.1 ; mine\nBeta= # none yet\nGamma=a;b#c\n");
  EXPECT_EQ(After(text, "A", "Beta", "2"),
            "[A]\nAlpha=0.05 ; mine\nBeta=2 # none yet\nGamma=a;b#c\n");
}

TEST(KeywordText, NewKeysFollowTheLastKeyOfTheirSection) {
  EXPECT_EQ(After("[A]\nx=1\n; end of A\n\n; about B\n[B]\ny=2\n", "A", "z", "3"),
            "[A]\nx=1\nz=3\n; end of A\n\n; about B\n[B]\ny=2\n");
  EXPECT_EQ(After("[A]\n; about A\n\n; about B\n[B]\n", "A", "z", "3"),
            "[A]\n; about A\nz=3\n\n; about B\n[B]\n");
  EXPECT_EQ(After("[A]\n", "A", "z", "3"), "[A]\nz=3\n");
}

TEST(KeywordText, NewKeysKeepTheirOrder) {
  KeywordFile file = KeywordFile::Parse("[A]\nx=1\n[B]\n");
  for (const char* key : {"c", "a", "b"}) {
    ASSERT_TRUE(file.Set("A", key, "0"));
  }
  EXPECT_EQ(file.Text(), "[A]\nx=1\nc=0\na=0\nb=0\n[B]\n");
}

TEST(KeywordText, NewSectionsGoToTheEndAfterABlankLine) {
  EXPECT_EQ(After("", "A", "x", "1"), "[A]\nx=1\n");
  EXPECT_EQ(After("[B]\ny=1\n", "A", "x", "1"), "[B]\ny=1\n\n[A]\nx=1\n");
  EXPECT_EQ(After("[B]\ny=1\n\n", "A", "x", "1"), "[B]\ny=1\n\n[A]\nx=1\n");
}

TEST(KeywordText, AMissingLastLineEndIsAddedOnlyWhereALineFollows) {
  EXPECT_EQ(After("[A]\nx=1", "A", "x", "2"), "[A]\nx=2");
  EXPECT_EQ(After("[A]\nx=1", "A", "y", "2"), "[A]\nx=1\ny=2\n");
  EXPECT_EQ(After("[A]\nx=1", "B", "y", "2"), "[A]\nx=1\n\n[B]\ny=2\n");
  EXPECT_EQ(After("[A]\r\nx=1", "A", "y", "2"), "[A]\r\nx=1\r\ny=2\r\n");
}

TEST(KeywordText, WindowsLineEndsSurviveAndNewLinesFollowThem) {
  const std::string text = "[A]\r\nx=1\r\n";
  EXPECT_EQ(KeywordFile::Parse(text).Find("A", "x"), "1");
  EXPECT_EQ(After(text, "A", "x", "2"), "[A]\r\nx=2\r\n");
  EXPECT_EQ(After(text, "A", "y", "2"), "[A]\r\nx=1\r\ny=2\r\n");
  EXPECT_EQ(After(text, "B", "y", "2"), "[A]\r\nx=1\r\n\r\n[B]\r\ny=2\r\n");
}

TEST(KeywordText, MixedLineEndsSurvive) {
  EXPECT_EQ(After("[A]\nx=1\r\ny=1\n", "A", "x", "2"), "[A]\nx=2\r\ny=1\n");
}

TEST(KeywordText, AByteOrderMarkSurvivesAndDoesNotHideTheFirstHeader) {
  const std::string text = "\xEF\xBB\xBF[A]\nx=1\n";
  EXPECT_EQ(KeywordFile::Parse(text).Find("A", "x"), "1");
  EXPECT_EQ(After(text, "A", "x", "2"), "\xEF\xBB\xBF[A]\nx=2\n");
  EXPECT_EQ(After("\xEF\xBB\xBF", "A", "x", "2"), "\xEF\xBB\xBF[A]\nx=2\n");
}

TEST(KeywordText, BytesThatAreNotUtf8Survive) {
  const std::string text = "; gr\xFC\xDF\n[\xFF]\nna\xEFve=\xE9t\xE9\n[A]\nx=1\n";
  EXPECT_EQ(After(text, "A", "x", "2"), "; gr\xFC\xDF\n[\xFF]\nna\xEFve=\xE9t\xE9\n[A]\nx=2\n");
}

TEST(KeywordText, OfADuplicateKeyTheLastOneIsReadAndReplaced) {
  const std::string text = "[A]\nx=1\nx=2\n[B]\nx=9\n[A]\nx=3\n";
  EXPECT_EQ(KeywordFile::Parse(text).Find("A", "x"), "3");
  EXPECT_EQ(After(text, "A", "x", "4"), "[A]\nx=1\nx=2\n[B]\nx=9\n[A]\nx=4\n");
}

TEST(KeywordText, AnEmptyKeyIsNeverFoundOrWritten) {
  const std::string text = "[A]\n=0.2\n = 3\nx=1\n";
  KeywordFile file = KeywordFile::Parse(text);
  EXPECT_EQ(file.Find("A", ""), std::nullopt);
  EXPECT_FALSE(file.Set("A", "", "0.4"));
  EXPECT_EQ(file.Text(), text);
}

TEST(KeywordText, LinesOutsideAWellFormedSectionBelongToNone) {
  const auto file = KeywordFile::Parse("x=1\n[A]\ny=2\n[broken\nz=3\n[A] tail\nu=4\n[]\nv=5\n");
  for (const char* section : {"", "A", "broken", "A] tail"}) {
    for (const char* key : {"x", "z", "u", "v"}) {
      EXPECT_EQ(file.Find(section, key), std::nullopt) << section << "/" << key;
    }
  }
  EXPECT_EQ(file.Find("A", "y"), "2");
  EXPECT_FALSE(KeywordFile(file).Set("", "x", "1"));
}

TEST(KeywordText, RefusesWhatWouldNotReadBack) {
  const std::string text = "[A]\nx=1\n";
  KeywordFile file = KeywordFile::Parse(text);
  using namespace std::string_view_literals;
  const std::vector<std::array<std::string_view, 3>> rows = {
      {"A", "x", "1\n[B]"}, {"A", "x", " 1"},       {"A", "x", "1 "},    {"A", "x", "1 ;c"},
      {"A", "x", ";c"},     {"A", "x", "a\0b"sv},   {"A", "x\n", "1"},   {"A", "x=y", "1"},
      {"A", " x", "1"},     {"A", ";x", "1"},       {"A", "#x", "1"},    {"A", "[x", "1"},
      {"A", "x\0"sv, "1"},  {"A]", "x", "1"},       {"A\n[B", "x", "1"}, {" A", "x", "1"},
      {"A\0"sv, "x", "1"},  {"A", "x\ny=1\nz", "1"}};
  for (const auto& [section, key, value] : rows) {
    EXPECT_FALSE(file.Set(section, key, value)) << section << "|" << key << "|" << value;
  }
  EXPECT_EQ(file.Text(), text);
  EXPECT_TRUE(file.Set("A", "x", "a=b [c]"));
  EXPECT_EQ(file.Find("A", "x"), "a=b [c]");
  EXPECT_TRUE(file.Set("A", "x", ""));
  EXPECT_EQ(file.Text(), "[A]\nx=\n");
}

TEST(KeywordText, AnyBytesComeBackAsTheyWere) {
  // Short texts of the bytes that mean something, where every special case lies.
  const std::string alphabet("[]=;# \t\r\n\0ax\xEF\xBB\xBF\xFF", 16);
  std::mt19937 random(7);
  for (int i = 0; i < 20000; ++i) {
    std::string text(random() % 24, ' ');
    for (char& c : text) {
      c = alphabet[random() % alphabet.size()];
    }
    KeywordFile file = KeywordFile::Parse(text);
    ASSERT_EQ(file.Text(), text);
    ASSERT_TRUE(file.Set("a", "x", "0.5"));
    ASSERT_EQ(file.Find("a", "x"), "0.5");
    const KeywordFile again = KeywordFile::Parse(file.Text());
    ASSERT_EQ(again.Find("a", "x"), "0.5") << testing::PrintToString(text);
  }
}

TEST(KeywordText, SettingKeysTakesTimeInProportion) {
  const auto seconds = [](int keys) {
    const auto start = std::chrono::steady_clock::now();
    KeywordFile file = KeywordFile::Parse("[A]\n[B]\n" + std::string(100000, '\n'));
    for (int i = 0; i < keys; ++i) {
      EXPECT_TRUE(file.Set("A", "key" + std::to_string(i), "1"));
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  };
  // A quadratic way needs minutes; a linear one, a fraction of a second even under sanitizers.
  EXPECT_LT(seconds(20000), 20.0);
}

// ---------------------------------------------------------------------------------------------
// Reading files

TEST_F(KeywordFileOnDisk, AMissingFileHoldsNothingAndIsNoError) {
  const auto loaded = LoadKeywordFile(path_);
  EXPECT_FALSE(loaded.exists);
  EXPECT_EQ(loaded.error, "");
  EXPECT_EQ(loaded.file.Text(), "");
}

TEST_F(KeywordFileOnDisk, AnEmptyPathAndANulInAPathAreErrors) {
  EXPECT_NE(LoadKeywordFile("").error.find("no folder is known"), std::string::npos);
  EXPECT_FALSE(SaveOne("", "A", "x", "1").ok);
  WriteBytes(path_, "[A]\nx=1\n");
  const std::string path = path_ + '\0' + ".bak";
  EXPECT_NE(LoadKeywordFile(path).error.find("NUL"), std::string::npos);
  EXPECT_FALSE(SaveOne(path, "A", "x", "2").ok);
  EXPECT_EQ(ReadBytes(path_), "[A]\nx=1\n");
}

struct RefusedFile {
  const char* name;
  std::function<void(const std::string&)> make;
  const char* reason;
};

TEST_F(KeywordFileOnDisk, WhatIsNoSettingsFileReadsAsNothingAndIsNeverReplaced) {
  const std::vector<RefusedFile> rows = {
      {"nul", [](const auto& path) { WriteBytes(path, std::string("[A]\nx=1\n\0", 9)); }, "NUL"},
      {"huge",
       [](const auto& path) { WriteBytes(path, "[A]\nx=1\n" + std::string(5 << 20, '\n')); },
       "4 MiB"},
      {"folder", [](const auto& path) { ASSERT_EQ(mkdir(path.c_str(), 0755), 0); },
       "it is a folder"},
      {"fifo", [](const auto& path) { ASSERT_EQ(mkfifo(path.c_str(), 0644), 0); },
       "not a regular file"},
      {"socket", [](const auto& path) { ASSERT_EQ(mknod(path.c_str(), S_IFSOCK | 0644, 0), 0); },
       "not a regular file"},
      {"linked", [](const auto& path) { ASSERT_EQ(symlink("fifo", path.c_str()), 0); },
       "not a regular file"},
      {"circle", [](const auto& path) { ASSERT_EQ(symlink("circle", path.c_str()), 0); },
       "lead in a circle"},
  };
  for (const RefusedFile& row : rows) {
    const std::string path = folder_ + "/" + row.name;
    row.make(path);
    const fs::file_status before = fs::symlink_status(path);
    const bool regular = fs::is_regular_file(before);
    const std::string bytes = regular ? ReadBytes(path) : "";

    const auto loaded = LoadKeywordFile(path);
    EXPECT_EQ(loaded.file.Text(), "") << row.name;
    EXPECT_NE(loaded.error.find(row.reason), std::string::npos) << loaded.error;
    EXPECT_NE(loaded.error.find(path), std::string::npos) << loaded.error;

    KeywordWriter writer(path);
    EXPECT_FALSE(writer.status().ok) << row.name;
    writer.Put("A", "x", "2");
    const KeywordResult result = writer.Commit();
    EXPECT_FALSE(result.ok) << row.name;
    EXPECT_NE(result.error.find(row.reason), std::string::npos) << result.error;
    EXPECT_EQ(fs::symlink_status(path).type(), before.type()) << row.name;
    EXPECT_EQ(regular ? ReadBytes(path) : "", bytes) << row.name;
  }
  EXPECT_EQ(NamesIn(folder_).size(), rows.size());
}

TEST_F(KeywordFileOnDisk, AFileOfTheGreatestSizeIsReadAndOneByteMoreIsNot) {
  WriteBytes(path_, "[A]\nx=1\n" + std::string(KeywordFileLimit - 8, '\n'));
  EXPECT_EQ(LoadKeywordFile(path_).file.Find("A", "x"), "1");
  WriteBytes(path_, "[A]\nx=1\n" + std::string(KeywordFileLimit - 7, '\n'));
  EXPECT_FALSE(LoadKeywordFile(path_).error.empty());
}

TEST_F(KeywordFileOnDisk, AFileIsNotMadeTooLargeToBeReadAgain) {
  const std::string bytes = "[A]\nx=1\n" + std::string(KeywordFileLimit - 8, '\n');
  WriteBytes(path_, bytes);
  const KeywordResult result = SaveOne(path_, "A", "y", "2");
  EXPECT_FALSE(result.ok);
  EXPECT_NE(result.error.find("4 MiB"), std::string::npos) << result.error;
  EXPECT_EQ(ReadBytes(path_), bytes);
}

TEST_F(KeywordFileOnDisk, AnUnreadableFileIsAnErrorAndIsNotReplaced) {
  WriteBytes(path_, "[A]\nx=1\n");
  ASSERT_EQ(chmod(path_.c_str(), 0000), 0);
  EXPECT_EQ(InChild([&] {
              const bool ordinary = BecomeOrdinaryUser();
              const auto loaded = LoadKeywordFile(path_);
              const bool told = loaded.exists && loaded.file.Text().empty() &&
                                loaded.error.find("permission is denied") != std::string::npos;
              return ordinary && told && !SaveOne(path_, "A", "x", "2").ok ? 0 : 1;
            }),
            0);
  ASSERT_EQ(chmod(path_.c_str(), 0644), 0);
  EXPECT_EQ(ReadBytes(path_), "[A]\nx=1\n");
}

// ---------------------------------------------------------------------------------------------
// Writing files

TEST_F(KeywordFileOnDisk, ACommitMakesTheFileAndLeavesNothingElse) {
  KeywordWriter writer(path_);
  EXPECT_TRUE(writer.status().ok);
  writer.Put("A", "x", FormatReal(0.1));
  writer.Put("A", "n", FormatLong(25));
  const KeywordResult result = writer.Commit();
  EXPECT_TRUE(result.ok) << result.error;
  EXPECT_EQ(result.error, "");
  EXPECT_EQ(ReadBytes(path_), "[A]\nx=0.1\nn=25\n");
  EXPECT_EQ(NamesIn(folder_), std::set<std::string>{"POWER.INI"});
  const auto loaded = LoadKeywordFile(path_);
  EXPECT_TRUE(loaded.exists);
  EXPECT_EQ(loaded.file.Find("A", "n"), "25");
}

TEST_F(KeywordFileOnDisk, WithoutACommitNothingChangesAndTheLockIsReleased) {
  WriteBytes(path_, "[A]\nx=1\n");
  {
    KeywordWriter writer(path_);
    writer.Put("A", "x", "2");
  }
  EXPECT_EQ(ReadBytes(path_), "[A]\nx=1\n");
  EXPECT_TRUE(SaveOne(path_, "A", "x", "3").ok);
}

TEST_F(KeywordFileOnDisk, ACommitReleasesTheLockAndIsTheOnlyOne) {
  KeywordWriter writer(path_);
  writer.Put("A", "x", "1");
  ASSERT_TRUE(writer.Commit().ok);
  EXPECT_TRUE(SaveOne(path_, "A", "x", "2").ok);
  EXPECT_FALSE(writer.Commit().ok);
  EXPECT_EQ(ReadBytes(path_), "[A]\nx=2\n");
}

TEST_F(KeywordFileOnDisk, AChangeThatCannotBeStoredKeepsBackAllOthers) {
  WriteBytes(path_, "[A]\nx=1\n");
  KeywordWriter writer(path_);
  writer.Put("A", "x", "2");
  writer.Put("A", "", "3");
  const KeywordResult result = writer.Commit();
  EXPECT_FALSE(result.ok);
  EXPECT_NE(result.error.find("cannot be stored"), std::string::npos) << result.error;
  EXPECT_EQ(ReadBytes(path_), "[A]\nx=1\n");
}

TEST_F(KeywordFileOnDisk, AFileThatAlreadySaysSoIsNotTouched) {
  WriteBytes(path_, "[A]\nx=1\n");
  struct stat before = {};
  struct stat after = {};
  ASSERT_EQ(stat(path_.c_str(), &before), 0);
  EXPECT_TRUE(SaveOne(path_, "A", "x", "1").ok);
  ASSERT_EQ(stat(path_.c_str(), &after), 0);
  EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST_F(KeywordFileOnDisk, PermissionsAreKept) {
  for (const mode_t mode : {0600U, 0640U, 0664U, 0777U}) {
    WriteBytes(path_, "[A]\nx=1\n");
    ASSERT_EQ(chmod(path_.c_str(), mode), 0);
    ASSERT_TRUE(SaveOne(path_, "A", "x", "2").ok);
    EXPECT_EQ(ReadBytes(path_), "[A]\nx=2\n");
    EXPECT_EQ(ModeOf(path_), mode);
    fs::remove(path_);
  }
}

TEST_F(KeywordFileOnDisk, ANewFileGetsThePermissionsTheUmaskLeaves) {
  const mode_t before = umask(027);
  ASSERT_TRUE(SaveOne(path_, "A", "x", "1").ok);
  umask(before);
  EXPECT_EQ(ModeOf(path_), 0640U);
}

TEST_F(KeywordFileOnDisk, TheOwnerIsKeptWherePossible) {
  WriteBytes(path_, "[A]\nx=1\n");
  // Root can keep another's ownership; anyone can keep his own.
  const uid_t owner = geteuid() == 0 ? 65534 : geteuid();
  ASSERT_EQ(chown(path_.c_str(), owner, static_cast<gid_t>(-1)), 0);
  ASSERT_TRUE(SaveOne(path_, "A", "x", "2").ok);
  struct stat status = {};
  ASSERT_EQ(stat(path_.c_str(), &status), 0);
  EXPECT_EQ(status.st_uid, owner);
  EXPECT_EQ(ReadBytes(path_), "[A]\nx=2\n");
}

TEST_F(KeywordFileOnDisk, ASymbolicLinkIsFollowedAndStays) {
  ASSERT_EQ(mkdir((folder_ + "/kept").c_str(), 0755), 0);
  const std::string target = folder_ + "/kept/real.ini";
  WriteBytes(target, "[A]\nx=1\n");
  ASSERT_EQ(symlink("kept/real.ini", (folder_ + "/second").c_str()), 0);
  ASSERT_EQ(symlink((folder_ + "/second").c_str(), path_.c_str()), 0);
  ASSERT_TRUE(SaveOne(path_, "A", "x", "2").ok);
  EXPECT_TRUE(fs::is_symlink(path_));
  EXPECT_TRUE(fs::is_symlink(folder_ + "/second"));
  EXPECT_EQ(ReadBytes(target), "[A]\nx=2\n");
  EXPECT_EQ(NamesIn(folder_ + "/kept"), std::set<std::string>{"real.ini"});
}

TEST_F(KeywordFileOnDisk, ALinkThatLeadsNowhereYetGetsItsTarget) {
  ASSERT_EQ(symlink("real.ini", path_.c_str()), 0);
  ASSERT_TRUE(SaveOne(path_, "A", "x", "1").ok);
  EXPECT_TRUE(fs::is_symlink(path_));
  EXPECT_EQ(ReadBytes(folder_ + "/real.ini"), "[A]\nx=1\n");
}

TEST_F(KeywordFileOnDisk, ANameWithoutAFolderIsInTheWorkingFolder) {
  ASSERT_EQ(symlink("real.ini", path_.c_str()), 0);
  const fs::path before = fs::current_path();
  fs::current_path(folder_);
  EXPECT_TRUE(SaveOne("POWER.INI", "A", "x", "1").ok);
  EXPECT_EQ(LoadKeywordFile("POWER.INI").file.Find("A", "x"), "1");
  fs::current_path(before);
  EXPECT_EQ(ReadBytes(folder_ + "/real.ini"), "[A]\nx=1\n");
}

TEST_F(KeywordFileOnDisk, ANameAsLongAsNamesCanBeIsWritten) {
  const std::string path = folder_ + "/" + std::string(255, 'n');
  EXPECT_TRUE(SaveOne(path, "A", "x", "1").ok);
  EXPECT_EQ(ReadBytes(path), "[A]\nx=1\n");
  const KeywordResult result = SaveOne(path + "n", "A", "x", "1");
  EXPECT_NE(result.error.find("the name is too long"), std::string::npos) << result.error;
}

TEST_F(KeywordFileOnDisk, AMissingConfigurationFolderIsMadeOnCommitForTheUserAlone) {
  const std::string config = folder_ + "/.config";
  const std::string path = config + "/app/POWER.INI";
  {
    KeywordWriter writer(path, MissingFolder::Create);
    EXPECT_TRUE(writer.status().ok);
    writer.Put("A", "x", "1");
  }
  EXPECT_FALSE(fs::exists(config));
  const KeywordResult result = SaveOne(path, "A", "x", "1", MissingFolder::Create);
  EXPECT_TRUE(result.ok) << result.error;
  EXPECT_EQ(ModeOf(config), 0700U);
  EXPECT_EQ(ModeOf(config + "/app"), 0700U);
  EXPECT_EQ(ReadBytes(path), "[A]\nx=1\n");
}

TEST_F(KeywordFileOnDisk, AMissingFolderInAGivenPathIsAnErrorAndIsNotMade) {
  const KeywordResult result = SaveOne(folder_ + "/slip/POWER.INI", "A", "x", "1");
  EXPECT_FALSE(result.ok);
  EXPECT_NE(result.error.find("no such file or folder"), std::string::npos) << result.error;
  EXPECT_FALSE(fs::exists(folder_ + "/slip"));
}

TEST_F(KeywordFileOnDisk, AConfigurationFolderThatCannotBeMadeIsAnError) {
  WriteBytes(folder_ + "/file", "");
  const KeywordResult result =
      SaveOne(folder_ + "/file/app/POWER.INI", "A", "x", "1", MissingFolder::Create);
  EXPECT_FALSE(result.ok);
  EXPECT_NE(result.error.find("not a folder"), std::string::npos) << result.error;
  EXPECT_EQ(InChild([&] {
              const bool ordinary = BecomeOrdinaryUser();
              const KeywordResult denied =
                  SaveOne("/proc/no/app/POWER.INI", "A", "x", "1", MissingFolder::Create);
              return ordinary && !denied.ok ? 0 : 1;
            }),
            0);
}

TEST_F(KeywordFileOnDisk, AReadOnlyFolderLeavesTheOldFileWhole) {
  WriteBytes(path_, "[A]\nx=1\n");
  ASSERT_EQ(chmod(path_.c_str(), 0666), 0);
  const auto save = [&](const char* value) {
    return InChild([&] {
      if (!BecomeOrdinaryUser()) {
        return 2;
      }
      const KeywordResult result = SaveOne(path_, "A", "x", value);
      return result.ok ? 0 : result.error.find("permission is denied") != std::string::npos ? 1 : 3;
    });
  };
  EXPECT_EQ(save("2"), 0);  // the same user and file, while the folder can be written
  ASSERT_EQ(chmod(folder_.c_str(), 0555), 0);
  EXPECT_EQ(save("3"), 1);
  EXPECT_EQ(ReadBytes(path_), "[A]\nx=2\n");
  EXPECT_EQ(NamesIn(folder_), std::set<std::string>{"POWER.INI"});
}

TEST_F(KeywordFileOnDisk, AWriteProtectedFileIsNotReplaced) {
  WriteBytes(path_, "[A]\nx=1\n");
  ASSERT_EQ(chmod(path_.c_str(), 0444), 0);
  EXPECT_EQ(
      InChild([&] { return BecomeOrdinaryUser() && !SaveOne(path_, "A", "x", "2").ok ? 0 : 1; }),
      0);
  EXPECT_EQ(ReadBytes(path_), "[A]\nx=1\n");
}

TEST_F(KeywordFileOnDisk, AWriteThatFailsMidwayLeavesTheOldFileWhole) {
  const std::string bytes = "[A]\nx=1\n;" + std::string(100000, 'c') + "\n";
  WriteBytes(path_, bytes);
  EXPECT_EQ(InChild([&] {
              // Half of the file can be written, as when the disk fills up.
              std::signal(SIGXFSZ, SIG_IGN);
              const rlimit limit{50000, 50000};
              if (setrlimit(RLIMIT_FSIZE, &limit) != 0) {
                return 2;
              }
              const KeywordResult result = SaveOne(path_, "A", "x", "2");
              const bool told = result.error.find("larger than is allowed") != std::string::npos;
              return !result.ok && told ? 0 : 1;
            }),
            0);
  EXPECT_EQ(ReadBytes(path_), bytes);
  EXPECT_EQ(NamesIn(folder_), std::set<std::string>{"POWER.INI"});
}

// A real full disk, where the tests may mount one; the test before this holds the same promise
// everywhere.
TEST_F(KeywordFileOnDisk, AFullDiskLeavesTheOldFileWhole) {
  if (mount("none", folder_.c_str(), "tmpfs", 0, "size=64k,mode=0777") != 0) {
    GTEST_SKIP() << "needs the right to mount";
  }
  const std::string bytes = "[A]\nx=1\n;" + std::string(30000, 'c') + "\n";
  WriteBytes(path_, bytes);
  WriteBytes(folder_ + "/filler", std::string(20000, 'f'));
  const KeywordResult result = SaveOne(path_, "A", "x", "2");
  const std::string after = ReadBytes(path_);
  const std::set<std::string> names = NamesIn(folder_);
  ASSERT_EQ(umount(folder_.c_str()), 0);
  EXPECT_FALSE(result.ok);
  EXPECT_NE(result.error.find("the disk is full"), std::string::npos) << result.error;
  EXPECT_EQ(after, bytes);
  EXPECT_EQ(names, (std::set<std::string>{"POWER.INI", "filler"}));
}

TEST_F(KeywordFileOnDisk, TwoProcessesThatSaveDifferentSectionsLoseNothing) {
  const std::string path = folder_ + "/app/POWER.INI";  // that the folder is missing is part of it
  constexpr int saves = 50;
  const auto saveAll = [&](const char* section) {
    for (int i = 0; i < saves; ++i) {
      const std::string text = std::to_string(i);
      if (!SaveOne(path, section, "key" + text, text, MissingFolder::Create).ok) {
        return 1;
      }
    }
    return 0;
  };
  const pid_t other = fork();
  if (other == 0) {
    _exit(saveAll("B"));
  }
  const int mine = saveAll("A");
  int status = 0;
  ASSERT_EQ(waitpid(other, &status, 0), other);
  EXPECT_EQ(mine, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  const auto loaded = LoadKeywordFile(path);
  for (const char* section : {"A", "B"}) {
    for (int i = 0; i < saves; ++i) {
      const std::string text = std::to_string(i);
      EXPECT_EQ(loaded.file.Find(section, "key" + text), text) << section;
    }
  }
  EXPECT_EQ(NamesIn(folder_ + "/app"), std::set<std::string>{"POWER.INI"});
}

TEST_F(KeywordFileOnDisk, AReaderSeesTheOldFileOrTheNewNeverAPart) {
  constexpr int keys = 2000;
  const auto save = [&](const std::string& value) {
    KeywordWriter writer(path_);
    for (int i = 0; i < keys; ++i) {
      writer.Put("A", "key" + std::to_string(i), value);
    }
    return writer.Commit().ok;
  };
  ASSERT_TRUE(save("0"));
  const pid_t other = fork();
  if (other == 0) {
    bool good = true;
    for (int i = 1; i <= 30; ++i) {
      good = save(std::to_string(i)) && good;
    }
    _exit(good ? 0 : 1);
  }
  int status = 0;
  int mixtures = 0;
  while (waitpid(other, &status, WNOHANG) == 0) {
    const auto loaded = LoadKeywordFile(path_);
    const auto first = loaded.file.Find("A", "key0");
    const auto last = loaded.file.Find("A", "key" + std::to_string(keys - 1));
    mixtures += !first.has_value() || first != last ? 1 : 0;
  }
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  EXPECT_EQ(mixtures, 0);
}

TEST_F(KeywordFileOnDisk, AWriterWaitsForAnotherAndReadsWhatItLeft) {
  WriteBytes(path_, "[A]\nx=1\n");
  auto first = std::make_unique<KeywordWriter>(path_);
  first->Put("A", "y", "2");
  std::thread other([&] { EXPECT_TRUE(SaveOne(path_, "A", "z", "3").ok); });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_EQ(ReadBytes(path_), "[A]\nx=1\n");
  EXPECT_TRUE(first->Commit().ok);
  other.join();
  EXPECT_EQ(ReadBytes(path_), "[A]\nx=1\ny=2\nz=3\n");
}

TEST_F(KeywordFileOnDisk, AWriterGivesUpWhenAnotherNeverFinishes) {
  WriteBytes(path_, "[A]\nx=1\n");
  const KeywordWriter holder(path_);
  KeywordWriter writer(path_, MissingFolder::Refuse, std::chrono::milliseconds(30));
  writer.Put("A", "x", "2");
  const KeywordResult result = writer.Commit();
  EXPECT_FALSE(result.ok);
  EXPECT_NE(result.error.find("another program is saving"), std::string::npos) << result.error;
  EXPECT_EQ(ReadBytes(path_), "[A]\nx=1\n");
}

TEST_F(KeywordFileOnDisk, AKilledWriterLeavesTheFileWholeAndNoLock) {
  WriteBytes(path_, "[A]\nx=1\n");
  EXPECT_EQ(InChild([&] {
              KeywordWriter writer(path_);
              writer.Put("A", "x", "2");
              return raise(SIGKILL);
            }),
            -1);
  EXPECT_EQ(ReadBytes(path_), "[A]\nx=1\n");
  EXPECT_TRUE(SaveOne(path_, "A", "x", "3").ok);
}

TEST_F(KeywordFileOnDisk, MarksLineEndsAndForeignBytesSurviveACommit) {
  WriteBytes(path_,
             "\xEF\xBB\xBF; gr\xFC\xDF\r\n[Theirs]\r\nb = \xFF\r\n\r\n[A]\r\nx = 1 ; mine\r\n");
  KeywordWriter writer(path_);
  writer.Put("A", "x", "2");
  writer.Put("A", "y", "3");
  ASSERT_TRUE(writer.Commit().ok);
  EXPECT_EQ(
      ReadBytes(path_),
      "\xEF\xBB\xBF; gr\xFC\xDF\r\n[Theirs]\r\nb = \xFF\r\n\r\n[A]\r\nx = 2 ; mine\r\ny=3\r\n");
}

}  // namespace
}  // namespace poweranalysis
