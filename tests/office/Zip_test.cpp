#include "office/Zip.h"

#include <gtest/gtest.h>

#include <random>

namespace poweranalysis {

namespace {

constexpr std::size_t kLimit = 1'000'000;

std::vector<ZipEntry> SampleEntries() {
  return {{"first", "abc", true}, {"folder/second.xml", std::string(5000, 'x')}, {"third", ""}};
}

TEST(WriteZip, IsReadBack) {
  const std::vector<ZipEntry> before = SampleEntries();
  const std::vector<ZipEntry> after = ReadZip(WriteZip(before), kLimit);
  ASSERT_EQ(before.size(), after.size());
  for (std::size_t i = 0; i < before.size(); ++i) {
    EXPECT_EQ(before[i].name, after[i].name);
    EXPECT_EQ(before[i].bytes, after[i].bytes);
    EXPECT_EQ(before[i].stored, after[i].stored);
  }
  EXPECT_LT(WriteZip(before).size(), 1000U);
}

TEST(WriteZip, PutsAStoredFirstEntryWhereItsBytesCanBeSeen) {
  const std::string file = WriteZip({{"mimetype", "a/b", true}});
  EXPECT_EQ("PK\x03\x04", file.substr(0, 4));
  EXPECT_EQ("mimetypea/b", file.substr(30, 11));
}

TEST(ReadZip, GivesNothingForWhatBreaksOffOrExceedsTheLimit) {
  const std::string file = WriteZip(SampleEntries());
  for (std::size_t length = 0; length < file.size(); ++length) {
    EXPECT_TRUE(ReadZip(file.substr(0, length), kLimit).empty()) << length;
  }
  EXPECT_TRUE(ReadZip(file, 5002).empty());
  EXPECT_FALSE(ReadZip(file, 5003).empty());
}

TEST(ReadZip, SurvivesAnyByteThatIsReplaced) {
  std::mt19937 random(3);
  const std::string file = WriteZip(SampleEntries());
  for (int i = 0; i < 20000; ++i) {
    std::string damaged = file;
    damaged[random() % file.size()] = static_cast<char>(random());
    for (const ZipEntry& entry : ReadZip(damaged, kLimit)) {
      EXPECT_LE(entry.bytes.size(), 5000U);
    }
  }
}

}  // namespace

}  // namespace poweranalysis
