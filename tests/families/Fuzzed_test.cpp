// The questions that the fuzzer has found worth keeping, asked again.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "../../fuzz/FamilyCalls.h"
#include "support/TemporaryFolder.h"
#include "support/TestData.h"

namespace poweranalysis {
namespace {

namespace fs = std::filesystem;

TEST(FuzzedFamilies, KeepTheirPromisesForTheWholeCorpus) {
  const fs::path corpus =
      (fs::path(TestDataDir()) / "../../../fuzz/corpus/families").lexically_normal();
  std::set<int> families;
  for (const fs::directory_entry& file : fs::directory_iterator(corpus)) {
    const std::string text = testing::ReadWhole(file.path());
    ASSERT_FALSE(text.empty()) << file.path();
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(text.data());
    EXPECT_EQ(fuzzing::Broken(bytes, text.size()), "") << file.path().filename();
    families.insert(bytes[0] % static_cast<int>(FamilyRows().size()));
  }
  EXPECT_EQ(families.size(), FamilyRows().size()) << "a family is not asked at all";
}

}  // namespace
}  // namespace poweranalysis
