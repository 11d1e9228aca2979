#include "office/SheetFile.h"

#include <gtest/gtest.h>

#include <string>

#include "host/NumberText.h"
#include "host/Workbook.h"
#include "office/Zip.h"

namespace poweranalysis {
namespace {

std::string Shown(const SheetResult& result) {
  if (!result.error.empty()) {
    return "error: " + result.error;
  }
  std::string text;
  for (std::size_t row = 0; row < result.sheet.rows; ++row) {
    text += row > 0 ? " |" : "";
    for (std::size_t column = 0; column < result.sheet.columns; ++column) {
      const double cell = result.sheet.At(row, column);
      text += " " + (IsMissing(cell) ? std::string("_") : FormatShortest(cell));
    }
  }
  return text.substr(1);
}

std::string Xlsx(const std::string& rows, const std::string& target = "worksheets/sheet1.xml") {
  return Shown(ParseSpreadsheet(WriteZip({
      {"xl/workbook.xml",
       R"(<workbook xmlns:r="r"><sheets><sheet name="Means" r:id="rId7"/>)"
       R"(<sheet name="Other" r:id="rId8"/></sheets></workbook>)",
       false},
      {"xl/_rels/workbook.xml.rels",
       R"(<Relationships><Relationship Id="rId8" Target="worksheets/sheet2.xml"/>)"
       R"(<Relationship Id="rId7" Target=")" +
           target + R"("/></Relationships>)",
       false},
      {"xl/worksheets/sheet1.xml", "<worksheet><sheetData>" + rows + "</sheetData></worksheet>",
       false},
      {"xl/worksheets/sheet2.xml", "<worksheet/>", false},
  })));
}

std::string Ods(const std::string& rows, const std::string& more = {}) {
  return Shown(ParseSpreadsheet(WriteZip({
      {"mimetype", "application/vnd.oasis.opendocument.spreadsheet", true},
      {"content.xml",
       R"(<office:document-content xmlns:office="o" xmlns:table="t"><table:table>)" + rows +
           "</table:table>" + more + "</office:document-content>",
       false},
  })));
}

std::string OdsCell(const std::string& value, const std::string& repeats = "1") {
  return R"(<table:table-cell office:value-type="float" office:value=")" + value +
         R"(" table:number-columns-repeated=")" + repeats + R"("/>)";
}

std::string OdsRow(const std::string& cells, const std::string& repeats = "1") {
  return R"(<table:table-row table:number-rows-repeated=")" + repeats + R"(">)" + cells +
         "</table:table-row>";
}

constexpr const char* kTooLarge = "error: it is too large for a sheet of cell means";
constexpr const char* kDamaged = "error: its contents are damaged";

TEST(SheetFile, ReadsTheFirstSheetOfAnXlsxFile) {
  const std::string rows =
      R"(<row r="1"><c r="A1" t="s"><v>0</v></c></row>)"
      R"(<row r="2"><c r="A2"><v>1.5</v></c><c r="B2" t="n"><v>-2E-3</v></c></row>)"
      R"(<row r="4"><c r="B4"><f>A2*2</f><v>3</v></c></row>)";
  EXPECT_EQ("_ _ | 1.5 -0.002 | _ _ | _ 3", Xlsx(rows));
  EXPECT_EQ("_ _ | 1.5 -0.002 | _ _ | _ 3", Xlsx(rows, "/xl/worksheets/sheet1.xml"));
}

TEST(SheetFile, ReadsXlsxCellsWithoutReferences) {
  EXPECT_EQ("1 2 | 3 _",
            Xlsx("<row><c><v>1</v></c><c><v>2</v></c></row><row><c><v>3</v></c></row>"));
}

TEST(SheetFile, MissesXlsxCellsThatAreNotNumbers) {
  EXPECT_EQ("_ _ _ _ 7", Xlsx(R"(<row><c t="inlineStr"><is><t>12</t></is></c><c t="b"><v>1</v></c>)"
                              R"(<c t="e"><v>#N/A</v></c><c><v>nan</v></c><c><v>7</v></c></row>)"));
}

TEST(SheetFile, IgnoresXlsxCellsThatHoldNothing) {
  EXPECT_EQ("1", Xlsx(R"(<row r="1"><c r="A1"><v>1</v></c><c r="Z1" s="3"/></row>)"));
}

TEST(SheetFile, ReadsTheFirstTableOfAnOdsFile) {
  const std::string heading =
      R"(<table:table-cell office:value-type="string"><text:p xmlns:text="x">5</text:p></table:table-cell>)";
  EXPECT_EQ("_ _ | 1.5 2", Ods(OdsRow(heading) + OdsRow(OdsCell("1.5") + OdsCell("2")),
                               "<table:table>" + OdsRow(OdsCell("9")) + "</table:table>"));
}

TEST(SheetFile, RepeatsOdsRowsAndCells) {
  EXPECT_EQ("4 4 5 | 4 4 5 | 6 _ _",
            Ods(OdsRow(OdsCell("4", "2") + OdsCell("5"), "2") + OdsRow(OdsCell("6"))));
}

TEST(SheetFile, KeepsTheEmptyRowsAndCellsBetween) {
  const std::string empty = R"(<table:table-cell table:number-columns-repeated="2"/>)";
  EXPECT_EQ("1 _ _ 2 | _ _ _ _ | 3 _ _ _", Ods(OdsRow(OdsCell("1") + empty + OdsCell("2")) +
                                               OdsRow(empty) + OdsRow(OdsCell("3"))));
}

TEST(SheetFile, IgnoresTheEmptyRestOfAnOdsSheet) {
  const std::string rest = R"(<table:table-cell table:number-columns-repeated="16384"/>)";
  EXPECT_EQ("1", Ods(OdsRow(OdsCell("1") + rest) + OdsRow(rest, "1048575")));
}

TEST(SheetFile, HoldsTheLimitsOfSheets) {
  EXPECT_EQ(kTooLarge, Ods(OdsRow(OdsCell("1"), "1001")));
  EXPECT_EQ(kTooLarge, Ods(OdsRow(OdsCell("1"), "2147483647")));
  EXPECT_EQ(kTooLarge, Ods(OdsRow(OdsCell("1", "257"))));
  EXPECT_EQ(kTooLarge, Ods(OdsRow(OdsCell("1", "2147483647"), "2147483647")));
  EXPECT_EQ(kTooLarge, Xlsx(R"(<row><c r="A1001"><v>1</v></c></row>)"));
  EXPECT_EQ(kTooLarge, Xlsx(R"(<row><c r="IW1"><v>1</v></c></row>)"));
  EXPECT_EQ(kTooLarge, Xlsx(R"(<row><c r="ZZZZZZZZZZZZZZZZZZZZZZZ1"><v>1</v></c></row>)"));
  EXPECT_EQ(kTooLarge, Xlsx(R"(<row r="2147483647"><c><v>1</v></c></row>)"));
}

TEST(SheetFile, RefusesDamagedContents) {
  EXPECT_EQ(kDamaged, Xlsx("<row><c>"));
  EXPECT_EQ(kDamaged, Ods("<table:table-row>"));
  EXPECT_EQ("error: its first sheet is empty", Xlsx(""));
  EXPECT_EQ("error: its first sheet is empty", Ods(""));
}

TEST(SheetFile, RefusesDocumentTypes) {
  const std::string content =
      R"(<!DOCTYPE x [<!ENTITY a "aaaaaaaa">]><x><table><table-row/></table></x>)";
  EXPECT_EQ(kDamaged, Shown(ParseSpreadsheet(WriteZip(
                          {{"mimetype", "application/vnd.oasis.opendocument.spreadsheet", true},
                           {"content.xml", content, false}}))));
}

TEST(SheetFile, RefusesOtherArchives) {
  const std::string damaged =
      "error: it is a damaged archive, or unpacks to more than a sheet of cell means";
  EXPECT_EQ(damaged, Shown(ParseSpreadsheet("PK\x03\x04")));
  EXPECT_EQ(damaged, Shown(ParseSpreadsheet(WriteZip(
                         {{"content.xml", std::string(UnpackedSheetLimit + 1, ' '), false}}))));
  EXPECT_EQ("error: it is an archive, and no XLSX or ODS file",
            Shown(ParseSpreadsheet(WriteZip({{"readme", "text", false}}))));
  EXPECT_EQ("error: it is an archive, and no XLSX or ODS file", Xlsx("", "worksheets/missing.xml"));
}

}  // namespace
}  // namespace poweranalysis
