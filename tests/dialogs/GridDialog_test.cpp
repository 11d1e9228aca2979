#include "dialogs/GridDialog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>

#include "dialogs/DialogRun.h"
#include "exporters/Exporters.h"

namespace poweranalysis {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class GridDialogTest : public DialogRun {
 protected:
  // Opens the grid of a family over its parameter page.
  void Open(const char* family, std::vector<std::pair<ControlName, std::string>> typed = {}) {
    Parameters({ModePower, family, std::move(typed)});
    Press(ControlGrid);
    grid_ = FindGrid(family_);
  }
  int CellControl(int row, int column = 0) const { return grid_->ControlOfCell(row, column); }
  void TypeCell(int row, int column, const std::string& text) {
    Type(CellControl(row, column), text);
  }
  bool GridIsOpen() { return grid_ != nullptr && OpenResource() == grid_->resource; }
  // The cells that are shown, a row a text.
  std::vector<std::string> Cells() {
    std::vector<std::string> rows;
    for (int row = 0; row < grid_->capacity.rows; ++row) {
      std::string line;
      for (int column = 0; column < grid_->capacity.columns; ++column) {
        const int control = CellControl(row, column);
        if (form().Find(control)->visible) {
          line += (line.empty() ? "" : " ") + form().GetDlgItemText(control);
        }
      }
      if (!line.empty()) {
        rows.push_back(line);
      }
    }
    return rows;
  }
  std::string Measure(int index) { return form().GetDlgItemText(ControlGridMeasures + index); }
  long Paste(const std::string& text) {
    host_.clipboard = text;
    return Press(ControlGridPaste);
  }
  long OpenText(const std::string& text, const std::string& extension = ".tsv") {
    const std::string path = testing::TempDir() + "cell-means" + extension;
    std::FILE* file = std::fopen(path.c_str(), "w");
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
    host_.openAnswers = {path};
    const long result = Press(ControlGridOpen);
    std::remove(path.c_str());
    return result;
  }

  const GridRow* grid_ = nullptr;
};

// --- Opening.

TEST_F(GridDialogTest, OpensOverThePageWithTheCellsThatBelongToItsMeasures) {
  Open("AV1");
  ASSERT_TRUE(GridIsOpen());
  EXPECT_THAT(Cells(), ElementsAre("-0.25", "0", "0.25"));
  EXPECT_EQ(TextOf("Sigma"), "1");
  EXPECT_EQ(Measure(0), "0.25");
  EXPECT_EQ(Measure(1), "0.20412");
}

TEST_F(GridDialogTest, TwoWayShowsThreeEffects) {
  Open("AV2");
  EXPECT_THAT(Cells(), ElementsAre("-0.25 -0.5 0", "-0.5 0.25 0.25", "0 0.25 0.5"));
  EXPECT_EQ(Measure(0), "0.25");
  EXPECT_EQ(Measure(2), "0.25");
  EXPECT_EQ(Measure(4), "0.25");
}

TEST_F(GridDialogTest, AContrastShowsPsiEsAndItsWeights) {
  Open("PC");
  EXPECT_THAT(Cells(), ElementsAre("0.25 1", "0 1", "0 -2"));
  EXPECT_EQ(Measure(0), "0.25");
  EXPECT_EQ(Measure(1), "0.25");
  EXPECT_EQ(Measure(2), "6");
}

TEST_F(GridDialogTest, IsOnTheIntervalPageOfTheContrastAlone) {
  for (const auto& [family, has] :
       {std::pair{"PC", true}, std::pair{"AV1", false}, std::pair{"AV2", false}}) {
    Parameters({ModeInterval, family});
    EXPECT_EQ(form().Find(ControlGrid) != nullptr, has) << family;
  }
}

TEST_F(GridDialogTest, DoesNotOpenForMoreGroupsThanItHolds) {
  Open("AV1", {{"NumberOfGroups", "12"}});
  EXPECT_TRUE(GridIsOpen());
  Open("AV1", {{"NumberOfGroups", "13"}});
  EXPECT_FALSE(GridIsOpen());
  EXPECT_THAT(MessageIds(), ElementsAre(text::GridTooLargeOneWay));
  Open("PC", {{"NumberOfGroups", "9"}});
  EXPECT_THAT(MessageIds(), ElementsAre(text::GridTooLargeContrast));
  Open("AV2", {{"Columns", "9"}});
  EXPECT_THAT(MessageIds(), ElementsAre(text::GridTooLargeTwoWay));
}

TEST_F(GridDialogTest, DoesNotOpenOverCountsOutOfRange) {
  Open("AV2", {{"Rows", "1"}});
  EXPECT_FALSE(GridIsOpen());
  EXPECT_THAT(MessageIds(), ElementsAre(text::RangeInt32));
}

// --- Edits.

TEST_F(GridDialogTest, EachEditIsMeasured) {
  Open("AV1");
  TypeCell(0, 0, "10");
  TypeCell(1, 0, "12");
  TypeCell(2, 0, "15");
  Type("Sigma", "4");
  EXPECT_EQ(block().AV1.GridScratch.GridMeans[2], 15);
  // Deviations -7/3, -1/3, 8/3: sqrt(38 / 3 / 16 / 2).
  EXPECT_NEAR(block().AV1.GridScratch.RMSSE, 0.62915, 1e-5);
  EXPECT_EQ(Measure(0), "0.62915");
  EXPECT_EQ(block().AV1.Working.RMSSE, .25) << "the page waits for OK";
}

TEST_F(GridDialogTest, ASigmaThatIsNotAboveZeroBecomesATenth) {
  for (const char* text : {"0", "-1", "x", ""}) {
    Open("AV1");
    Type("Sigma", text);
    EXPECT_EQ(TextOf("Sigma"), "0.1") << text;
    EXPECT_EQ(block().AV1.GridScratch.Sigma, .1) << text;
  }
}

TEST_F(GridDialogTest, TheSigmaBoxWaitsUntilItIsLeft) {
  Open("AV1");
  EXPECT_TRUE(Find("Sigma")->spec.whenDone);
  EXPECT_FALSE(form().Find(CellControl(0))->spec.whenDone);
}

TEST_F(GridDialogTest, WeightsNeedNotSumToZero) {
  Open("PC");
  TypeCell(0, 1, "5");
  EXPECT_EQ(Measure(2), "30");
}

// --- OK and Back.

TEST_F(GridDialogTest, OkTakesWhatIsShownToThePage) {
  Open("AV1");
  TypeCell(2, 0, "1");
  Type("Sigma", "2");
  Press(ControlAccept);
  EXPECT_FALSE(GridIsOpen());
  EXPECT_EQ(OpenResource(), parameters_);
  EXPECT_EQ(block().AV1.Working.Sigma, 2);
  EXPECT_EQ(TextOf("RMSSE"), form().GetDlgItemText(ControlOfField("RMSSE")));
  EXPECT_NEAR(block().AV1.Working.RMSSE, 0.330719, 1e-6);
  EXPECT_EQ(TextOf("RMSSE"), "0.33072");
  EXPECT_EQ(TextOf("Sigma"), "2");
}

TEST_F(GridDialogTest, OkUntouchedWritesTheMeasuresOfTheCellsShown) {
  Open("AV1", {{"RMSSE", "0.9"}});
  Press(ControlAccept);
  EXPECT_EQ(block().AV1.Working.RMSSE, .25);
}

TEST_F(GridDialogTest, BackLeavesThePageAsItWas) {
  Open("AV1", {{"RMSSE", "0.9"}});
  TypeCell(0, 0, "77");
  Press(ControlBack);
  EXPECT_EQ(OpenResource(), parameters_);
  EXPECT_EQ(block().AV1.Working.RMSSE, .9);
  EXPECT_EQ(TextOf("RMSSE"), "0.9");
  Press(ControlGrid);
  EXPECT_THAT(Cells(), ElementsAre("-0.25", "0", "0.25")) << "edits are forgotten";
}

TEST_F(GridDialogTest, ThePageBelowGoesOnToItsResults) {
  Open("AV1");
  Press(ControlAccept);
  Press(ControlAccept);
  EXPECT_EQ(1, Press(ControlAccept));
  EXPECT_THAT(Items<SummaryTable>(), SizeIs(1));
}

// --- Paste.

TEST_F(GridDialogTest, PastesAnotherSize) {
  Open("AV2");
  EXPECT_EQ(1, Paste("1\t2\r\n3\t4\r\n"));
  EXPECT_THAT(Cells(), ElementsAre("1 2", "3 4"));
  EXPECT_EQ(block().AV2.GridScratch.Rows, 2);
  EXPECT_EQ(block().AV2.Working.Rows, 3);
  Press(ControlAccept);
  EXPECT_EQ(block().AV2.Working.Rows, 2);
  EXPECT_EQ(block().AV2.Working.Columns, 2);
}

TEST_F(GridDialogTest, PastesGroupsOfEachGrid) {
  Open("AV1");
  EXPECT_EQ(1, Paste("-1.5\n+2.\n"));
  EXPECT_THAT(Cells(), ElementsAre("-1.5", "2"));
  EXPECT_EQ(1, Paste("1\n2\n3\n4\n5\n6\n7\n8\n9\n"));
  EXPECT_THAT(Cells(), SizeIs(9));
  Open("PC");
  EXPECT_EQ(1, Paste("10\t1\n12\t-1\n"));
  EXPECT_THAT(Cells(), ElementsAre("10 1", "12 -1"));
}

TEST_F(GridDialogTest, RefusesTextsOfAnotherShape) {
  const std::string sevenBySeven =
      "1 2 3 4 5 6 7\n1 2 3 4 5 6 7\n1 2 3 4 5 6 7\n1 2 3 4 5 6 7\n1 2 3 4 5 6 7\n1 2 3 4 5 6 7\n"
      "1 2 3 4 5 6 7\n";
  for (const auto& [family, text] : std::vector<std::pair<const char*, std::string>>{
           {"AV1", ""},
           {"AV1", "5\n"},
           {"AV1", "1 2\n3 4\n"},
           {"AV1", "1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n13\n"},
           {"AV1", "1e5\n2\n"},
           {"AV2", sevenBySeven},
           {"AV2", "1 2\n"},
           {"AV2", "1\n2\n"},
           {"PC", "1\n2\n"},
           {"PC", "1 2\n1 2\n1 2\n1 2\n1 2\n1 2\n1 2\n1 2\n1 2\n"},
       }) {
    Open(family);
    const std::vector<std::string> before = Cells();
    EXPECT_EQ(0, Paste(text)) << family << ": " << text;
    EXPECT_THAT(MessageIds(), ElementsAre(text::ClipboardDimensions)) << family << ": " << text;
    EXPECT_EQ(Cells(), before);
  }
}

TEST_F(GridDialogTest, RefusesWhereThereIsNoClipboardOrNoMemory) {
  Open("AV1");
  host_.clipboard.reset();
  EXPECT_EQ(0, Press(ControlGridPaste));
  host_.clipboard = "1\n2\n";
  host_.failAllocation = 1;
  EXPECT_EQ(0, Press(ControlGridPaste));
  EXPECT_THAT(host_.messages(), SizeIs(1));
  EXPECT_EQ(host_.messages().front().count, 2);
  EXPECT_EQ(1, Press(ControlGridPaste));
}

TEST_F(GridDialogTest, AOneGroupContrastIsTakenAndRefusedByThePage) {
  Open("PC");
  EXPECT_EQ(1, Paste("10\t1\n"));
  Press(ControlAccept);
  EXPECT_EQ(0, Press(ControlAccept));
  EXPECT_THAT(MessageIds(), ElementsAre(text::RangeInt32));
}

TEST_F(GridDialogTest, WhatWasPastedIsShownOnceMoreAfterBack) {
  Open("AV1");
  Paste("1\n2\n3\n");
  Press(ControlBack);
  Type("Alpha", "0.01");
  Press(ControlGrid);
  EXPECT_THAT(Cells(), ElementsAre("1", "2", "3"));
  Press(ControlAccept);
  EXPECT_EQ(block().AV1.Working.Alpha, .01) << "the page's edits stay";
  EXPECT_EQ(block().AV1.Working.RMSSE, 1);
}

TEST_F(GridDialogTest, WhatWasPastedIsForgottenAtTheSecondOpening) {
  Open("AV1");
  Paste("1\n2\n");
  Press(ControlBack);
  Press(ControlGrid);
  EXPECT_THAT(Cells(), ElementsAre("1", "2"));
  Press(ControlBack);
  Press(ControlGrid);
  EXPECT_THAT(Cells(), ElementsAre("-0.25", "0", "0.25"));
}

// --- Copy.

TEST_F(GridDialogTest, CopiesWhatPasteReads) {
  Open("AV2");
  EXPECT_EQ(1, Press(ControlGridCopy));
  EXPECT_EQ(host_.clipboard, "-0.25\t-0.5\t0\r\n-0.5\t0.25\t0.25\r\n0\t0.25\t0.5\r\n");
  EXPECT_EQ(1, Press(ControlGridPaste));
  Open("AV1");
  Press(ControlGridCopy);
  EXPECT_EQ(host_.clipboard, "-0.25\r\n0\r\n0.25\r\n");
}

TEST_F(GridDialogTest, CopyOfAContrastChangesNothing) {
  Open("PC");
  host_.clipboard = "as it was";
  Press(ControlGridCopy);
  EXPECT_EQ(host_.clipboard, "as it was");
}

TEST_F(GridDialogTest, CopyWithoutMemoryChangesNothingAndSaysNothing) {
  Open("AV1");
  host_.clipboard = "as it was";
  host_.failAllocation = 1;
  Press(ControlGridCopy);
  EXPECT_EQ(host_.clipboard, "as it was");
  EXPECT_THAT(host_.messages(), IsEmpty());
}

// --- Open.

TEST_F(GridDialogTest, OpensSheetsOfEachShape) {
  Open("AV1");
  EXPECT_EQ(1, OpenText("Mean\n10\n12\n15\n4\n"));
  EXPECT_THAT(Cells(), ElementsAre("10", "12", "15"));
  EXPECT_EQ(TextOf("Sigma"), "4");
  Open("AV2");
  EXPECT_EQ(1, OpenText("1,2\n3,4\n0.5,\n", ".csv"));
  EXPECT_THAT(Cells(), ElementsAre("1 2", "3 4"));
  EXPECT_EQ(TextOf("Sigma"), "0.5");
  Open("PC");
  EXPECT_EQ(1, OpenText("ZLV 1 4 2\n10\t1\n12\t-1\n\t\n3\t\n", ".ZLV"));
  EXPECT_THAT(Cells(), ElementsAre("10 1", "12 -1"));
  EXPECT_EQ(TextOf("Sigma"), "3");
}

TEST_F(GridDialogTest, AsksForASheetInTheSystemsWords) {
  Open("AV1");
  host_.openAnswers = {std::nullopt};
  EXPECT_EQ(0, Press(ControlGridOpen));
  EXPECT_EQ(host_.calls.openDialogs.back()[0], "Open Cell Means Spreadsheet");
  EXPECT_EQ(host_.calls.openDialogs.back()[1], ".ZLV");
}

TEST_F(GridDialogTest, ASheetOfAnotherShapeIsSilentAndChangesNothing) {
  const std::string nineGroups = "Mean\n1\n2\n3\n4\n5\n6\n7\n8\n9\n1\n";
  for (const auto& [family, text] : std::vector<std::pair<const char*, std::string>>{
           {"AV1", "1\n"},
           {"AV1", nineGroups},
           {"AV1", "Mean\n1\n\n3\n1\n"},
           {"AV2", "1\n2\n1\n"},
           {"AV2", "1\t2\n0.5\t\n"},
           {"AV2", "1\t2\n3\tx\n0.5\t\n"},
           {"PC", "1\n2\n\n1\n"},
           {"PC", "\t\n1\t\n"},
       }) {
    Open(family);
    const std::vector<std::string> before = Cells();
    EXPECT_EQ(0, OpenText(text)) << family << ": " << text;
    EXPECT_EQ(Cells(), before);
    EXPECT_THAT(host_.messages(), IsEmpty());
    Press(ControlGridCreate);
    EXPECT_THAT(LastTable().rows, SizeIs(before.size() + (family == std::string("AV1") ? 3 : 2)));
  }
}

TEST_F(GridDialogTest, MeansAreStoredEvenWhenTheSheetsSigmaIsNotAboveZero) {
  for (const char* sigma : {"0", "-1", ""}) {
    Open("AV1");
    EXPECT_EQ(0, OpenText("Mean\n10\n12\n15\n" + std::string(sigma) + "\n"));
    EXPECT_THAT(Cells(), ElementsAre("-0.25", "0", "0.25")) << "not shown";
    EXPECT_EQ(block().AV1.GridScratch.GridMeans[2], 15);
    EXPECT_EQ(block().AV1.GridScratch.Sigma, 1);
  }
}

TEST_F(GridDialogTest, AFileThatIsNoSheetIsToldByTheHost) {
  Open("AV1");
  EXPECT_EQ(0, OpenText(std::string("\0\1\2", 3)));
  EXPECT_EQ(host_.sheetError(), "it is not a text");
  EXPECT_THAT(Cells(), ElementsAre("-0.25", "0", "0.25"));
}

// --- Create.

TEST_F(GridDialogTest, CreateSendsTheTableThatOpensAsItself) {
  for (const char* family : {"AV1", "AV2", "PC"}) {
    Open(family);
    TypeCell(0, 0, "10.5");
    Type("Sigma", "3");
    EXPECT_EQ(1, Press(ControlGridCreate));
    EXPECT_TRUE(GridIsOpen());
    const std::vector<std::string> cells = Cells();
    const std::string sheet = ZlvOf(LastTable());
    Open(family);
    EXPECT_EQ(1, OpenText(sheet, ".ZLV")) << sheet;
    EXPECT_EQ(Cells(), cells);
    EXPECT_EQ(TextOf("Sigma"), "3");
  }
}

TEST_F(GridDialogTest, CreateWithoutMemorySendsNothing) {
  Open("AV1");
  host_.failAllocation = 1;
  EXPECT_EQ(0, Press(ControlGridCreate));
  EXPECT_THAT(host_.workbook().items, IsEmpty());
}

// --- Names.

TEST_F(GridDialogTest, CellsHaveNamesAndTitlesForScriptsAndWindows) {
  Open("AV2");
  EXPECT_EQ(form().Find(CellControl(1, 2))->spec.name, "A2B3");
  EXPECT_EQ(form().spec().pages.front().rowTitles.front(), "A1");
  EXPECT_EQ(form().spec().pages.front().columnTitles.back(), "B8");
  Open("PC");
  EXPECT_EQ(form().Find(CellControl(0, 0))->spec.name, "Mean1");
  EXPECT_EQ(form().Find(CellControl(2, 1))->spec.name, "Weight3");
  EXPECT_EQ(form().spec().pages.front().rowTitles.front(), "Group 1");
  EXPECT_THAT(form().spec().pages.front().columnTitles, ElementsAre("Mean", "Weight"));
}

TEST_F(GridDialogTest, CaptionsStandWithoutTheMarksOfButtons) {
  Open("AV1");
  std::vector<std::string> captions;
  for (const ControlSpec& button : form().spec().frame) {
    captions.push_back(button.caption);
  }
  EXPECT_THAT(captions, ElementsAre("&OK", "&Back", "Create", "&Open", "&Copy", "&Paste"));
}

}  // namespace
}  // namespace poweranalysis
