#include "frame/Texts.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "frame/FormatText.h"
#include "support/DataTable.h"
#include "support/TemporaryFolder.h"
#include "support/TestData.h"

namespace poweranalysis {
namespace {

using testing::ReadTable;

const std::string kDataFile = TestDataDir() + "/texts.tsv";

bool IsUtf8(std::string_view text) {
  int following = 0;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (following > 0) {
      if ((byte & 0xC0) != 0x80) {
        return false;
      }
      --following;
    } else if (byte >= 0x80) {
      following = (byte & 0xE0) == 0xC0   ? 1
                  : (byte & 0xF0) == 0xE0 ? 2
                  : (byte & 0xF8) == 0xF0 ? 3
                                          : -1;
      if (following < 0) {
        return false;
      }
    }
  }
  return following == 0;
}

TEST(Texts, HoldsEveryNumberedTextByteForByte) {
  const auto rows = ReadTable(kDataFile);
  EXPECT_EQ(rows.size(), 310u);
  for (const auto& row : rows) {
    ASSERT_EQ(row.size(), 2u);
    EXPECT_EQ(RawText(std::stoi(row[0])), row[1]) << "text " << row[0];
  }
}

TEST(Texts, HasNoNumberBelowTheOwnBlocksThatTheListLacks) {
  std::set<int> known;
  for (const auto& row : ReadTable(kDataFile)) {
    known.insert(std::stoi(row[0]));
  }
  const TextTable table = AllTexts();
  for (int i = 0; i < table.count; ++i) {
    if (table.entries[i].id < 30000) {
      EXPECT_TRUE(known.count(table.entries[i].id) == 1) << table.entries[i].id;
    }
  }
}

TEST(Texts, LoadTextRemovesTheTranslatorsMark) {
  EXPECT_EQ(RawText(13905), "DontTranslate!!POWER_ANALYSIS_ONE_SAMPLE_TTEST");
  EXPECT_EQ(LoadText(13905), "POWER_ANALYSIS_ONE_SAMPLE_TTEST");
  EXPECT_EQ(LoadText(12880), "\x01");
  EXPECT_EQ(LoadText(13919), "PopulationSigma");
}

TEST(Texts, NothingShownBearsTheMark) {
  const TextTable table = AllTexts();
  for (int i = 0; i < table.count; ++i) {
    EXPECT_EQ(LoadText(table.entries[i].id).find("DontTranslate"), std::string::npos)
        << table.entries[i].id;
  }
}

TEST(Texts, AMissingNumberIsAnEmptyText) {
  for (const int id : {0, 1, -1, 12339, 29999, 65535, 99999}) {
    EXPECT_EQ(LoadText(id), "") << id;
    EXPECT_EQ(RawText(id), "") << id;
  }
}

// Numbers that are spoken of but whose texts nothing shows.
TEST(Texts, NumbersWithoutAnyUseStayEmpty) {
  for (const int id : {12294, 12857, 12864, 12871, 12872, 12919, 12930, 12936, 12944, 12948, 13203,
                       13289, 13966}) {
    EXPECT_EQ(LoadText(id), "") << id;
  }
}

TEST(Texts, NumbersAndNamesAreUnique) {
  const TextTable table = AllTexts();
  std::set<int> ids;
  std::set<std::string> names;
  for (int i = 0; i < table.count; ++i) {
    EXPECT_TRUE(ids.insert(table.entries[i].id).second) << table.entries[i].id;
    EXPECT_TRUE(names.insert(table.entries[i].name).second) << table.entries[i].name;
  }
}

TEST(Texts, OnlyKeyAndLabelOfOneFieldAreEmpty) {
  const TextTable table = AllTexts();
  std::set<std::string> empty;
  for (int i = 0; i < table.count; ++i) {
    if (*table.entries[i].value == '\0') {
      empty.insert(table.entries[i].name);
    }
  }
  EXPECT_EQ(empty, (std::set<std::string>{"KeyPopulationR2", "LabelPopulationR2"}));
}

TEST(Texts, AreUtf8AndTheirSlotsCanBeRead) {
  const TextTable table = AllTexts();
  for (int i = 0; i < table.count; ++i) {
    EXPECT_TRUE(IsUtf8(table.entries[i].value)) << table.entries[i].id;
    EXPECT_NO_THROW(FormatSlots(table.entries[i].value)) << table.entries[i].id;
  }
}

// These read like slips and stay.
TEST(Texts, OddWordingsStayVerbatim) {
  EXPECT_EQ(LoadText(13202), "An invalid value entered. it will set to previous value.");
  EXPECT_EQ(LoadText(12838),
            "             (b) N = %s for the interaction effect (Actual power is %s with that N.)");
  EXPECT_NE(LoadText(12722).find("a sample sizes of at least N1 = %s"), std::string::npos);
  EXPECT_EQ(LoadText(12452), "H0: Var =  Var0");
  EXPECT_EQ(LoadText(12473), "H0: Var1 =  Var2");
  EXPECT_EQ(LoadText(12453), "H0: Var <= Var0");
  EXPECT_EQ(LoadText(12496), "H0:  Rho =  0");
  EXPECT_EQ(LoadText(13191), " Mean   ");
  EXPECT_EQ(LoadText(13189), "  Group %d");
  EXPECT_EQ(LoadText(13182), "Followup T must be greater than or equal to accrual period T0");
  EXPECT_EQ(LoadText(12669).substr(2, 3), "One");
  EXPECT_EQ(LoadText(12730), "With a total sample size of %s, actual power is %s.");
}

// A bracket that is not closed, two blanks, and a blank too few.
TEST(Texts, OddChartTitlesStayVerbatim) {
  EXPECT_EQ(LoadText(text::PlotNVsAlphaLambda1Lambda2T0T),
            "N vs. Alpha (Lambda1 = %g, Lambda2 = %g, T0 = %ld, T = %ld");
  EXPECT_EQ(LoadText(text::PlotRhoAlpha), "%s (Rho = %g,  Alpha = %g)");
  EXPECT_EQ(LoadText(text::PlotNVsPowerLambda1Lambda2T0TAlpha),
            "N vs. Power (Lambda1 = %g, Lambda2= %g, T0 = %ld, T = %ld, Alpha = %g)");
}

// The name offered for a new file is a text of its own: its two halves are there and nothing loads
// them.
TEST(Texts, TheHalvesOfANewFilesNameAreUsedNowhere) {
  EXPECT_EQ(LoadText(13828) + "." + LoadText(13829), "NEW.INI");
  const std::filesystem::path root = std::filesystem::path(TestDataDir()) / "../../..";
  int sources = 0;
  for (const char* folder : {"src", "apps"}) {
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root / folder)) {
      const std::string extension = entry.path().extension();
      if (extension != ".cpp" && extension != ".h") {
        continue;
      }
      ++sources;
      const std::string content = testing::ReadWhole(entry.path());
      for (const char* use : {"text::NewName", "text::IniName", "13828", "13829"}) {
        EXPECT_EQ(content.find(use), std::string::npos) << entry.path() << " uses " << use;
      }
    }
  }
  EXPECT_GT(sources, 50);
}

TEST(Texts, ATrueNullOfTheModelFitStandsOutOfOrder) {
  EXPECT_EQ(LoadText(12772), "H0:  R = 0");
  EXPECT_EQ(LoadText(12770), "H0:  R <= R0");
  EXPECT_EQ(LoadText(12771), "H0:  R >= R0");
}

TEST(Texts, MessagesOfWholeNumbersAreTheSameForBothWidths) {
  EXPECT_EQ(RawText(12851), RawText(12852));
  EXPECT_EQ(FormatSlots(RawText(12851)), "sdsssdd");
  EXPECT_EQ(FormatSlots(RawText(12853)), "sgsssgg");
}

}  // namespace
}  // namespace poweranalysis
