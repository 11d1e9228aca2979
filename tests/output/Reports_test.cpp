#include "output/Reports.h"

#include <gtest/gtest.h>

#include <map>

#include "support/DataTable.h"
#include "support/TestData.h"
#include "support/TestSettings.h"

namespace poweranalysis {
namespace {

using testing::DataRow;
using testing::ReadTable;
using testing::SettingsTest;

constexpr unsigned kPower = static_cast<unsigned>(ReportKind::Power);
constexpr unsigned kSize = static_cast<unsigned>(ReportKind::Size);

const std::string kTwoTails =
    "\r\nThe test is two-tailed, which means that either a positive or negative deviation from the "
    "hypothesized value could be declared significant.  ";
const std::string kPositive =
    "\r\nThe test is one-tailed, so that only a positive deviation from the hypothesized value "
    "could "
    "be declared significant.  ";
const std::string kNegative =
    "\r\nThe test is one-tailed, so that only a negative deviation from the hypothesized value "
    "could "
    "be declared significant.  ";

class ReportTest : public SettingsTest {
 protected:
  std::vector<std::string> Emit(Family family, ReportKind kind, const Computed& numbers) {
    host.TakeWorkbook();
    EmitReport(family, kind, numbers, block);
    return Paragraphs();
  }
  std::vector<std::string> Paragraphs() const {
    if (host.workbook().items.empty()) {
      return {};
    }
    return std::get<Report>(host.workbook().items.back()).paragraphs;
  }

  static Computed Numbers(double power, std::int64_t size = 0) {
    Computed numbers;
    numbers.power[0] = power;
    numbers.size[0] = size;
    return numbers;
  }
};

// --- Routing.

TEST_F(ReportTest, AParagraphIsSentAtTheHighestDetailAlone) {
  for (const int level : {0, 1, 3}) {
    host.supplementaryLevel = level;
    EXPECT_EQ(EmitReportParagraph("text"), 1) << level;
  }
  EXPECT_TRUE(host.workbook().items.empty());
  for (const int level : {4, 5}) {
    host.supplementaryLevel = level;
    EXPECT_EQ(EmitReportParagraph("text"), 0) << level;
  }
  EXPECT_EQ(Paragraphs().size(), 2u);
  EXPECT_TRUE(host.messages().empty());
}

TEST_F(ReportTest, EitherTargetTakesAParagraph) {
  host.resultsToReportWindow = false;
  host.resultsToWord = false;
  EXPECT_EQ(EmitReportParagraph("text"), 1);
  host.resultsToWord = true;
  EXPECT_EQ(EmitReportParagraph("text"), 0);
  host.resultsToReportWindow = true;
  host.resultsToWord = false;
  EXPECT_EQ(EmitReportParagraph("text"), 0);
  EXPECT_EQ(Paragraphs().size(), 2u);
}

TEST_F(ReportTest, WithoutATargetThereIsNoParagraphAtAnyLevel) {
  host.resultsToReportWindow = false;
  for (int level = 0; level < 8; ++level) {
    host.supplementaryLevel = level;
    EXPECT_EQ(EmitReportParagraph("text"), 1) << level;
  }
  EXPECT_TRUE(host.workbook().items.empty());
}

TEST_F(ReportTest, TheRoutingIsAskedForEveryParagraph) {
  EXPECT_EQ(EmitReportParagraph("first"), 0);
  host.supplementaryLevel = 3;
  EXPECT_EQ(EmitReportParagraph("second"), 1);
  host.supplementaryLevel = 4;
  EXPECT_EQ(EmitReportParagraph("third"), 0);
  EXPECT_EQ(Paragraphs(), (std::vector<std::string>{"first", "third"}));
}

TEST_F(ReportTest, ARefusedReportIsDroppedInSilence) {
  host.supplementaryLevel = 3;
  EXPECT_TRUE(Emit(Family::T1, ReportKind::Power, Numbers(0.5)).empty());
  EXPECT_TRUE(host.messages().empty());
}

TEST_F(ReportTest, ALongParagraphArrivesWholeAndUnwrapped) {
  const std::string text(5000, 'x');
  EXPECT_EQ(EmitReportParagraph(text), 0);
  EXPECT_EQ(EmitReportParagraph("short"), 0);
  EXPECT_EQ(Paragraphs(), (std::vector<std::string>{text, "short"}));
}

TEST_F(ReportTest, APercentSignInAParagraphStands) {
  EXPECT_EQ(EmitReportParagraph("80.00% %s %d"), 0);
  EXPECT_EQ(Paragraphs(), std::vector<std::string>{"80.00% %s %d"});
}

TEST_F(ReportTest, WithoutAHostAParagraphIsRefused) {
  Module().analysis = nullptr;
  EXPECT_EQ(EmitReportParagraph("text"), 1);
}

// --- Numbers as texts.

TEST(FormatPowerText, IsAPercentageOfTwoDecimals) {
  EXPECT_EQ(FormatPowerText(0.8), "80.00%");
  EXPECT_EQ(FormatPowerText(1), "100.00%");
  EXPECT_EQ(FormatPowerText(0.05), "5.00 %");  // left-justified in five, then the sign
  EXPECT_EQ(FormatPowerText(0), "0.00 %");
  EXPECT_EQ(FormatPowerText(0.999999), "100.00%");
  EXPECT_EQ(FormatPowerText(0.90012), "90.01%");
}

TEST(FormatPowerText, AFailedPowerIsFiveDashes) {
  EXPECT_EQ(FormatPowerText(-9999.0), "-----");
  EXPECT_EQ(FormatPowerText(-9998.0), "-999800.00%");
}

TEST(FormatSizeText, IsTheSizeOrFiveDashes) {
  EXPECT_EQ(FormatSizeText(64), "64");
  EXPECT_EQ(FormatSizeText(4900000000), "4900000000");
  EXPECT_EQ(FormatSizeText(-9999), "-----");
  EXPECT_EQ(FormatSizeText(0), "0");
}

// --- Tails.

// A null with "<=" is rejected by a positive deviation.
TEST(TailSentence, TheFirstOneTailedFormSaysPositive) {
  EXPECT_EQ(TailSentence.At(0), 12599);
  EXPECT_EQ(TailSentence.At(1), 12601);
  EXPECT_EQ(TailSentence.At(2), 12600);
  EXPECT_NE(LoadText(TailSentence.At(1)).find("positive"), std::string::npos);
  EXPECT_NE(LoadText(TailSentence.At(2)).find("negative"), std::string::npos);
}

TEST(TailSentence, OtherFormsHaveNone) {
  for (const int form : {3, 4, -1, 99}) {
    EXPECT_EQ(TailSentence.At(form), text::None) << form;
  }
}

TEST_F(ReportTest, AFormWithoutATailSentenceEmitsNoEmptyParagraph) {
  SetCommitted(Family::T1, "H0Type", 3);
  const auto paragraphs = Emit(Family::T1, ReportKind::Power, Numbers(0.5));
  EXPECT_EQ(paragraphs.size(), 6u);
  for (const std::string& paragraph : paragraphs) {
    EXPECT_NE(paragraph, "");
  }
}

// --- Rows against texts.

// Expected paragraphs of a family in the order of emission.
std::map<std::string, std::vector<DataRow>> ExpectedParagraphs() {
  std::map<std::string, std::vector<DataRow>> families;
  for (const auto& row : ReadTable(TestDataDir() + "/paragraphs.tsv")) {
    families[row[0]].push_back(row);
  }
  return families;
}

// The sentence on the tails is the one that a setting chooses.
bool IsTails(const ReportRow& row) { return row.text.field != nullptr; }

unsigned ReportsOf(const std::string& place) {
  if (place.find("power report") != std::string::npos || place.substr(0, 15) == "Power statement") {
    return kPower;
  }
  if (place.find("size report") != std::string::npos || place.substr(0, 14) == "Size statement") {
    return kSize;
  }
  return kPower | kSize;
}

TEST(ReportRows, StandInTheOrderOfEmission) {
  int withRows = 0;
  for (const auto& [code, expected] : ExpectedParagraphs()) {
    const auto rows = ReportRows(FindFamily(code)->family);
    if (rows.empty()) {
      continue;  // a family without results dialogs yet
    }
    ++withRows;
    ASSERT_EQ(rows.size(), expected.size()) << code;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const std::string id = IsTails(rows[i]) ? "table" : std::to_string(rows[i].text.texts[0]);
      EXPECT_EQ(id, expected[i][2]) << code << " " << i;
      EXPECT_EQ(rows[i].reports, ReportsOf(expected[i][1])) << code << " " << expected[i][1];
      if (!IsTails(rows[i])) {
        EXPECT_EQ(LoadText(rows[i].text.texts[0]), expected[i][3]) << code << " " << i;
      }
    }
  }
  EXPECT_GE(withRows, 3);
}

TEST(ReportRows, TheTestsOnMeansHaveReports) {
  for (const Family family : {Family::T1, Family::T2, Family::T3}) {
    EXPECT_FALSE(ReportRows(family).empty());
  }
  EXPECT_TRUE(ReportRows(Family::FCalc).empty());
}

TEST(ReportRows, AnalysesOfVarianceAndContrastsHaveNoTails) {
  for (const Family family : {Family::AV1, Family::AV2, Family::PC}) {
    for (const ReportRow& row : ReportRows(family)) {
      EXPECT_FALSE(IsTails(row)) << TableOf(family).code;
    }
  }
}

TEST(ReportRows, TheLinesOfAParagraphAreLoadedByNone) {
  for (const FamilyTable& family : FamilyTables()) {
    for (const ReportRow& row : ReportRows(family.family)) {
      for (const TextId id : row.text.texts) {
        EXPECT_TRUE(id < 12592 || id > 12594);
      }
    }
  }
}

// --- Whole reports.

TEST_F(ReportTest, OneMeanPower) {
  EXPECT_EQ(
      Emit(Family::T1, ReportKind::Power, Numbers(0.163)),
      (std::vector<std::string>{
          "\r\nPower Analysis -- The 1 Sample t-Test  ",
          "\r\nOne goal of the proposed study is to compare the population mean to a hypothesized "
          "value of 0.  ",
          "\r\nA 1 Sample t-Test will be performed, with the Type I Error rate (alpha) set at "
          "0.05. ",
          kTwoTails,
          "\r\nAssume that, in the sampled population, the actual population mean is 2, ",
          "and that the population standard deviation (Sigma) is 10. ",
          "\r\nWith the proposed sample size of N = 25 observations, the study will have a power "
          "of "
          "16.30%."}));
}

TEST_F(ReportTest, OneMeanSize) {
  SetCommitted(Family::T1, "H0Type", 1);
  SetCommitted(Family::T1, "Mu0", -0.5);
  SetCommitted(Family::T1, "PowerGoal", 0.8);
  EXPECT_EQ(
      Emit(Family::T1, ReportKind::Size, Numbers(0.80123, 101)),
      (std::vector<std::string>{
          "\r\nSample Size Analysis -- The 1 Sample t-Test  ",
          "\r\nOne goal of the proposed study is to compare the population mean to a hypothesized "
          "value of -0.5.  ",
          "\r\nA 1 Sample t-Test will be performed, with the Type I Error rate (alpha) set at "
          "0.05. ",
          kPositive,
          "\r\nAssume that, in the sampled population, the actual population mean is 2, ",
          "and that the population standard deviation (Sigma) is 10. ",
          "\r\nTo achieve the requested power of 80.00%, a sample size of at least N = 101 "
          "observations is required. With N = 101, the actual power is 80.12%."}));
}

TEST_F(ReportTest, AFailedPowerAndAFailedSizeAreDashesEachByItself) {
  EXPECT_EQ(
      Emit(Family::T1, ReportKind::Power, Numbers(-9999.0)).back(),
      "\r\nWith the proposed sample size of N = 25 observations, the study will have a power of "
      "-----.");
  EXPECT_EQ(Emit(Family::T1, ReportKind::Size, Numbers(0.95, -9999)).back(),
            "\r\nTo achieve the requested power of 90.00%, a sample size of at least N = ----- "
            "observations is required. With N = -----, the actual power is 95.00%.");
  EXPECT_EQ(Emit(Family::T1, ReportKind::Size, Numbers(-9999.0, 12)).back(),
            "\r\nTo achieve the requested power of 90.00%, a sample size of at least N = 12 "
            "observations is required. With N = 12, the actual power is -----.");
}

TEST_F(ReportTest, TwoMeansPower) {
  SetCommitted(Family::T2, "H0Type", 2);
  SetCommitted(Family::T2, "SampleSizeN2", 30);
  SetCommitted(Family::T2, "Mu2", 5.25);
  EXPECT_EQ(
      Emit(Family::T2, ReportKind::Power, Numbers(1)),
      (std::vector<std::string>{
          "\r\nPower Analysis -- The 2 Sample Independent Sample t-Test",
          "\r\nOne goal of the proposed study is to compare the means from two populations, to "
          "test "
          "whether they are equal. ",
          "\r\nA 2 Sample t-Test will be performed on two independent samples, with the Type I "
          "Error "
          "rate (alpha) set at 0.05.  ",
          kNegative,
          "\r\nAssume that, in the sampled population, the actual difference between the two "
          "population means is -3.25, and that the ",
          "common standard deviation (Sigma) is 10 in both populations.",
          "\r\nWith the proposed sample sizes of N1 = 25 observations in Group 1, and N2 = 30 "
          "observations in Group 2, the study will have a power of 100.00%."}));
}

TEST_F(ReportTest, TwoMeansSizeOfEqualGroups) {
  SetCommitted(Family::T2, "PowerGoal", 0.8);
  const auto paragraphs = Emit(Family::T2, ReportKind::Size, Numbers(0.8015, 64));
  ASSERT_EQ(paragraphs.size(), 8u);
  EXPECT_EQ(paragraphs[0], "\r\nSample Size Analysis -- The 2 Sample Independent Sample t-Test  ");
  EXPECT_EQ(
      paragraphs[6],
      "\r\nTo achieve the requested power of 80.00%, with the restriction that sample sizes for "
      "the "
      "two groups are equal, sample sizes of at least N = 64 observations are required in both "
      "groups. ");
  EXPECT_EQ(paragraphs[7], "With N = 64 in each group, the actual power is 80.15%.");
}

TEST_F(ReportTest, TwoMeansSizeWithTheSecondGroupFixed) {
  SetCommitted(Family::T2, "NToVary", 1);
  SetCommitted(Family::T2, "SampleSizeN1", 11);
  SetCommitted(Family::T2, "SampleSizeN2", 896);
  const auto paragraphs = Emit(Family::T2, ReportKind::Size, Numbers(0.90001, 1505));
  ASSERT_EQ(paragraphs.size(), 7u);
  EXPECT_EQ(paragraphs.back(),
            "\r\nTo achieve the requested power of 90.00%, with N2 fixed at 896, a sample size of "
            "at least "
            "N1 = 1505 observations is required in group 1.  With N1 = 1505 and N2 = 896, the "
            "actual power "
            "is 90.00%.");
}

TEST_F(ReportTest, TwoMeansSizeWithTheFirstGroupFixed) {
  SetCommitted(Family::T2, "NToVary", 2);
  SetCommitted(Family::T2, "SampleSizeN1", 896);
  SetCommitted(Family::T2, "SampleSizeN2", 11);
  const auto paragraphs = Emit(Family::T2, ReportKind::Size, Numbers(0.90001, 1505));
  ASSERT_EQ(paragraphs.size(), 7u);
  EXPECT_EQ(paragraphs.back(),
            "\r\nTo achieve the requested power of 90.00%, with N1 fixed at 896, a sample size of "
            "at least "
            "N2 = 1505 observations is required in group 2.  With N1 = 896 and N2 = 1505, the "
            "actual power "
            "is 90.00%.");
}

TEST_F(ReportTest, PairedMeansPower) {
  EXPECT_EQ(
      Emit(Family::T3, ReportKind::Power, Numbers(0.75)),
      (std::vector<std::string>{
          "\r\nPower Analysis -- The 2 Sample Dependent Sample t-Test",
          "\r\nOne goal of the proposed study is to compare the means from two matched samples, to "
          "test whether they are equal.",
          "\r\nA 2 Sample Dependent Sample t-Test will be performed, with the Type I Error rate "
          "(alpha) set at 0.05. ",
          kTwoTails,
          "\r\nAssume that, in the sampled population, the actual difference between the two "
          "population means is 8.  ",
          "\r\nAssume the standard deviation (Sigma1) is 10 in the population represented by "
          "sample "
          "1, the corresponding value (Sigma2) ",
          "is 10 in sample 2, and that the correlation between the two sets of observations is "
          "0.1.",
          "\r\nWith the proposed sample size of N = 25 paired observations, the study will have a "
          "power of 75.00%."}));
}

TEST_F(ReportTest, PairedMeansSize) {
  const auto paragraphs = Emit(Family::T3, ReportKind::Size, Numbers(0.9023, 32));
  ASSERT_EQ(paragraphs.size(), 9u);
  EXPECT_EQ(paragraphs[0], "\r\nSample Size Analysis -- The 2 Sample Dependent Sample t-Test");
  EXPECT_EQ(paragraphs[7],
            "\r\nTo achieve the requested power of 90.00%, a sample size of at least N = 32 paired "
            "observations is required. ");
  EXPECT_EQ(paragraphs[8], "With N = 32 paired observations, the actual power is 90.23%.");
}

TEST_F(ReportTest, SpeaksOfTheCommittedRecordAlone) {
  SetWorking(Family::T1, "Mu", 99);
  for (const std::string& paragraph : Emit(Family::T1, ReportKind::Power, Numbers(0.5))) {
    EXPECT_EQ(paragraph.find("99"), std::string::npos);
  }
}

TEST_F(ReportTest, PrintsParametersInSixDigits) {
  SetCommitted(Family::T1, "Mu0", 1234567.0);
  SetCommitted(Family::T1, "Sigma", 1.0 / 3);
  const auto paragraphs = Emit(Family::T1, ReportKind::Power, Numbers(0.5));
  EXPECT_NE(paragraphs[1].find("1.23457e+06"), std::string::npos);
  EXPECT_NE(paragraphs[5].find("0.333333"), std::string::npos);
}

}  // namespace
}  // namespace poweranalysis
