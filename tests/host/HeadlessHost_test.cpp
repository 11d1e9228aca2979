#include "host/HeadlessHost.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/TemporaryFolder.h"

namespace poweranalysis {
namespace {

using testing::ReadWhole;
using testing::TemporaryFolder;
using testing::WriteWhole;

// --- Memory.

TEST(HeadlessHost, MemoryIsZeroed) {
  HeadlessHost host;
  HostArray<double> cells(host, 1000);
  ASSERT_TRUE(static_cast<bool>(cells));
  for (std::size_t i = 0; i < cells.size(); ++i) {
    EXPECT_EQ(cells[i], 0);
  }
}

TEST(HeadlessHost, TheNthAllocationFailsOnce) {
  HeadlessHost host;
  host.failAllocation = 2;
  void* block = nullptr;
  EXPECT_EQ(host.AllocMem(&block, 8), 0);
  EXPECT_NE(block, nullptr);
  host.FreeMem(block);
  EXPECT_NE(host.GetMem(&block, 8), 0);
  EXPECT_EQ(block, nullptr);
  EXPECT_EQ(host.AllocMem(&block, 0), 0);
  host.FreeMem(block);
  EXPECT_EQ(host.calls.allocMem, 3);
  EXPECT_EQ(host.calls.freeMem, 2);
}

TEST(HeadlessHost, AnArrayWithoutMemoryIsFalseAndFreesNothing) {
  HeadlessHost host;
  host.failAllocation = 1;
  {
    const HostArray<int> none(host, 4);
    EXPECT_FALSE(static_cast<bool>(none));
  }
  EXPECT_EQ(host.calls.freeMem, 0);
}

// --- Messages.

TEST(HeadlessHost, JoinsConsecutiveRepeatsOfOneMessage) {
  HeadlessHost host;
  int told = 0;
  host.onMessage = [&](const Message&) { ++told; };
  for (int i = 0; i < 3; ++i) {
    host.DspMessageBox(MessagePlain, nullptr, 12873, "a");
  }
  host.DspMessageBox(MessagePlain, nullptr, 12873, "b");
  host.DspMessageBox(MessagePlain, nullptr, 12873, "a");
  ASSERT_EQ(host.messages().size(), 3u);
  EXPECT_EQ(host.messages()[0].count, 3);
  EXPECT_EQ(host.messages()[2].count, 1);
  EXPECT_EQ(host.messageCalls(), 5);
  EXPECT_EQ(told, 3);
  host.ClearMessages();
  EXPECT_TRUE(host.messages().empty());
  EXPECT_EQ(host.messageCalls(), 0);
}

// --- Progress.

TEST(HeadlessHost, TellsEveryChangeOfTheBar) {
  HeadlessHost host;
  std::vector<ProgressState> states;
  host.onProgress = [&](const ProgressState& state) { states.push_back(state); };
  host.d_pbar("title");
  host.dstart(10);
  host.termom(4);
  host.dstop();
  ASSERT_EQ(states.size(), 4u);
  EXPECT_EQ(states[1].title, "title");
  EXPECT_EQ(states[1].count, 10);
  EXPECT_TRUE(states[1].open);
  EXPECT_EQ(states[2].position, 4);
  EXPECT_FALSE(states[3].open);
}

TEST(HeadlessHost, ACancelHoldsForTheRestOfTheCommand) {
  HeadlessHost host;
  EXPECT_FALSE(host.lookbr());
  host.cancelled = [] { return true; };
  EXPECT_TRUE(host.lookbr());
  host.cancelled = nullptr;
  EXPECT_TRUE(host.lookbr());
  EXPECT_TRUE(host.WasCanceled());
  EXPECT_TRUE(host.pcancel());
  EXPECT_TRUE(host.IsExternallyCancelled());
  host.dstart(1);
  EXPECT_TRUE(host.lookbr()) << "another bar of the same command";
}

// --- Output.

TEST(HeadlessHost, KeepsResultsInTheOrderTheyWereSent) {
  HeadlessHost host;
  host.type("one");
  host.type("two");
  SummaryTable table;
  table.code = 17;
  EXPECT_EQ(host.looka4(table), 2);
  host.type("three");
  Chart chart;
  EXPECT_EQ(host.NewGeneralMultipleChart(chart), 1);
  host.type("four");
  const auto& items = host.workbook().items;
  ASSERT_EQ(items.size(), 5u);
  EXPECT_EQ(std::get<Report>(items[0]).paragraphs, (std::vector<std::string>{"one", "two"}));
  EXPECT_EQ(std::get<SummaryTable>(items[1]).code, 17);
  EXPECT_EQ(std::get<Report>(items[2]).paragraphs, std::vector<std::string>{"three"});
  EXPECT_EQ(std::get<Report>(items[4]).paragraphs, std::vector<std::string>{"four"});
}

TEST(HeadlessHost, AFailedChartIsNotKept) {
  HeadlessHost host;
  host.failChart = true;
  EXPECT_EQ(host.NewGeneralMultipleChart({}), 0);
  EXPECT_TRUE(host.workbook().items.empty());
}

TEST(HeadlessHost, ATakenWorkbookStartsANewOne) {
  HeadlessHost host;
  host.type("one");
  EXPECT_EQ(host.TakeWorkbook().items.size(), 1u);
  EXPECT_TRUE(host.workbook().items.empty());
  host.type("two");
  ASSERT_EQ(host.workbook().items.size(), 1u);
  EXPECT_EQ(std::get<Report>(host.workbook().items[0]).paragraphs, std::vector<std::string>{"two"});
}

TEST(HeadlessHost, ShowsReportsInFullByDefault) {
  const HeadlessHost host;
  EXPECT_TRUE(host.IsResultsToReportWindow());
  EXPECT_FALSE(host.IsResultsToWord());
  EXPECT_EQ(host.GetSupplementaryLevel(), 4);
}

// --- File choosers.

TEST(HeadlessHost, AnswersTheChoosersInOrderAndThenCancels) {
  HeadlessHost host;
  host.saveAnswers = {"a.ini", std::nullopt, "b.ini"};
  EXPECT_EQ(host.DoFileSaveAsDlg("t", "n", ".INI"), "a.ini");
  EXPECT_EQ(host.DoFileSaveAsDlg("t", "n", ".INI"), std::nullopt);
  EXPECT_EQ(host.DoFileSaveAsDlg("t", "n", ".INI"), "b.ini");
  EXPECT_EQ(host.DoFileSaveAsDlg("t", "n", ".INI"), std::nullopt);
  EXPECT_EQ(host.DoFileOpenDlg("t", ".INI"), std::nullopt);
  EXPECT_EQ(host.calls.saveDialogs.size(), 4u);
  EXPECT_EQ(host.calls.openDialogs.size(), 1u);
}

// --- Keyword files.

class HeadlessKeywordsTest : public ::testing::Test {
 protected:
  HeadlessKeywordsTest() { host.configFolder = folder.path(); }

  int Put(const std::string& file, const std::string& key, const KeywordValue& value) {
    return host.PutInitKeywordPrivate(file, "Section", key, {}, value);
  }
  static KeywordValue Whole(std::int32_t value) { return {KeywordKind::Long, value, 0}; }
  static KeywordValue Real(double value) { return {KeywordKind::Double, 0, value}; }

  TemporaryFolder folder;
  HeadlessHost host;
};

TEST_F(HeadlessKeywordsTest, WritesAndReadsBothKinds) {
  EXPECT_EQ(host.BeginInitKeywords("a.ini"), 0);
  EXPECT_EQ(Put("a.ini", "N", Whole(-7)), 0);
  EXPECT_EQ(Put("a.ini", "X", Real(0.1)), 0);
  EXPECT_EQ(host.EndInitKeywords("a.ini"), 0);
  EXPECT_EQ(ReadWhole(folder.File("a.ini")), "[Section]\nN=-7\nX=0.1\n");
  EXPECT_EQ(host.GetInitKeywordPrivate(KeywordKind::Long, "a.ini", "Section", "N")->whole, -7);
  EXPECT_EQ(host.GetInitKeywordPrivate(KeywordKind::Double, "a.ini", "Section", "X")->real, 0.1);
  EXPECT_EQ(host.GetInitKeywordPrivate(KeywordKind::Double, "a.ini", "Section", "N")->real, -7);
  EXPECT_FALSE(host.GetInitKeywordPrivate(KeywordKind::Long, "a.ini", "Section", "X").has_value());
  EXPECT_EQ(host.keywordError(), "");
}

TEST_F(HeadlessKeywordsTest, MissingThingsGiveNothing) {
  WriteWhole(folder.File("a.ini"), "[Section]\nN=1\n");
  EXPECT_FALSE(host.GetInitKeywordPrivate(KeywordKind::Long, "b.ini", "Section", "N").has_value());
  EXPECT_FALSE(host.GetInitKeywordPrivate(KeywordKind::Long, "a.ini", "Other", "N").has_value());
  EXPECT_FALSE(host.GetInitKeywordPrivate(KeywordKind::Long, "a.ini", "Section", "M").has_value());
  EXPECT_FALSE(host.GetInitKeywordPrivate(KeywordKind::Long, "a.ini", "Section", "").has_value());
  EXPECT_FALSE(host.GetInitKeywordPrivate(KeywordKind::Long, "", "Section", "N").has_value());
  EXPECT_EQ(host.keywordReadError(), "");
}

TEST_F(HeadlessKeywordsTest, AnEmptyKeyIsTakenAndNotWritten) {
  host.BeginInitKeywords("a.ini");
  EXPECT_EQ(Put("a.ini", "N", Whole(1)), 0);
  EXPECT_EQ(Put("a.ini", "", Real(0.2)), 0);
  EXPECT_EQ(Put("a.ini", "M", Whole(2)), 0);
  EXPECT_EQ(host.EndInitKeywords("a.ini"), 0);
  EXPECT_EQ(ReadWhole(folder.File("a.ini")), "[Section]\nN=1\nM=2\n");
}

TEST_F(HeadlessKeywordsTest, NothingReachesTheFileBeforeTheEnd) {
  host.BeginInitKeywords("a.ini");
  Put("a.ini", "N", Whole(1));
  EXPECT_FALSE(std::filesystem::exists(folder.File("a.ini")));
  host.EndInitKeywords("a.ini");
  EXPECT_TRUE(std::filesystem::exists(folder.File("a.ini")));
}

TEST_F(HeadlessKeywordsTest, APutOutsideBeginAndEndFails) {
  EXPECT_NE(Put("a.ini", "N", Whole(1)), 0);
  EXPECT_NE(host.EndInitKeywords("a.ini"), 0);
}

TEST_F(HeadlessKeywordsTest, BareNamesResolveInTheFolderAndPathsAsTheyStand) {
  EXPECT_EQ(host.BeginInitKeywords(folder.File("sub.ini")), 0);
  Put("", "N", Whole(1));
  EXPECT_EQ(host.EndInitKeywords(folder.File("sub.ini")), 0);
  EXPECT_EQ(host.GetInitKeywordPrivate(KeywordKind::Long, "sub.ini", "Section", "N")->whole, 1);
}

TEST_F(HeadlessKeywordsTest, MakesTheConfigurationFolderAndNoOther) {
  host.configFolder = folder.File("deep/config");
  EXPECT_EQ(host.BeginInitKeywords("a.ini"), 0);
  Put("a.ini", "N", Whole(1));
  EXPECT_EQ(host.EndInitKeywords("a.ini"), 0);
  EXPECT_TRUE(std::filesystem::exists(folder.File("deep/config/a.ini")));

  EXPECT_NE(host.BeginInitKeywords(folder.File("other/a.ini")), 0);
  EXPECT_NE(host.keywordError(), "");
  EXPECT_FALSE(std::filesystem::exists(folder.File("other")));
}

TEST_F(HeadlessKeywordsTest, WithoutAFolderBareNamesHoldNothing) {
  host.configFolder.clear();
  EXPECT_NE(host.BeginInitKeywords("a.ini"), 0);
  EXPECT_NE(host.keywordError(), "");
  EXPECT_FALSE(host.GetInitKeywordPrivate(KeywordKind::Long, "a.ini", "Section", "N").has_value());
}

TEST_F(HeadlessKeywordsTest, TheNthKeywordFails) {
  host.failKeyword = 2;
  host.BeginInitKeywords("a.ini");
  EXPECT_EQ(Put("a.ini", "N", Whole(1)), 0);
  EXPECT_NE(Put("a.ini", "M", Whole(2)), 0);
  EXPECT_EQ(host.EndInitKeywords("a.ini"), 0);
  EXPECT_EQ(ReadWhole(folder.File("a.ini")), "[Section]\nN=1\n");
  EXPECT_NE(host.keywordError(), "");
}

TEST_F(HeadlessKeywordsTest, AnUnreadableFileIsToldApartFromAMissingOne) {
  WriteWhole(folder.File("binary.ini"), std::string("[Section]\nN=1\n\0\0", 16));
  EXPECT_FALSE(
      host.GetInitKeywordPrivate(KeywordKind::Long, "binary.ini", "Section", "N").has_value());
  EXPECT_NE(host.keywordReadError(), "");
}

TEST_F(HeadlessKeywordsTest, SeesWhatAnotherProgramWrote) {
  WriteWhole(folder.File("a.ini"), "[Section]\nN=1\n");
  EXPECT_EQ(host.GetInitKeywordPrivate(KeywordKind::Long, "a.ini", "Section", "N")->whole, 1);
  WriteWhole(folder.File("a.ini"), "[Section]\nN=22\n");
  EXPECT_EQ(host.GetInitKeywordPrivate(KeywordKind::Long, "a.ini", "Section", "N")->whole, 22);
  std::filesystem::remove(folder.File("a.ini"));
  EXPECT_FALSE(host.GetInitKeywordPrivate(KeywordKind::Long, "a.ini", "Section", "N").has_value());
}

// --- Dialogs.

TEST(HeadlessHost, WithoutADialogEventsGoNowhere) {
  HeadlessHost host;
  EXPECT_EQ(host.Press(1), 0);
  EXPECT_EQ(host.Type(1, "x"), 0);
  EXPECT_EQ(host.Select(1, 0), 0);
  EXPECT_EQ(host.dialog(), nullptr);
  EXPECT_EQ(host.form(), nullptr);
  EXPECT_FALSE(host.CreateAnalysisDialog(nullptr));
}

}  // namespace
}  // namespace poweranalysis
