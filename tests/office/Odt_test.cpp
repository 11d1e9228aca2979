#include "office/Odt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/SvgPainter.h"
#include "office/Documents.h"

namespace poweranalysis {

namespace {

using testing::HasSubstr;
using testing::Not;

std::string ContentOf(const std::vector<WorkbookStudy>& studies) {
  return PartOf(ExportOdt(studies), "content.xml");
}

TEST(ExportOdt, BeginsWithItsTypeAsItIs) {
  const std::string document = ExportOdt(SampleStudies());
  EXPECT_EQ("mimetypeapplication/vnd.oasis.opendocument.text", document.substr(30, 47));
  const std::vector<ZipEntry> entries = Opened(document);
  ASSERT_EQ(6U, entries.size());
  EXPECT_TRUE(entries[0].stored);
}

TEST(ExportOdt, NamesEveryPartInItsManifest) {
  const std::string document = ExportOdt(SampleStudies());
  const std::string manifest = PartOf(document, "META-INF/manifest.xml");
  EXPECT_THAT(manifest, HasSubstr("manifest:full-path=\"/\" manifest:media-type=\"application/"
                                  "vnd.oasis.opendocument.text\""));
  for (const ZipEntry& entry : Opened(document)) {
    if (entry.name != "mimetype" && entry.name != "META-INF/manifest.xml") {
      EXPECT_THAT(manifest, HasSubstr("\"" + entry.name + "\""));
    }
  }
}

TEST(ExportOdt, ShowsSixDigitsAndCarriesAll) {
  EXPECT_THAT(ContentOf(SampleStudies()), HasSubstr("office:value=\"0.16050415233243398\"><text:p "
                                                    "text:style-name=\"Value\">0.160504</text:p>"));
}

TEST(ExportOdt, LeavesAMissingValueEmpty) {
  EXPECT_THAT(ContentOf(SampleStudies()),
              HasSubstr("<text:p text:style-name=\"Indent2\">P\u00B2:</text:p>\n"
                        "</table:table-cell><table:table-cell/></table:table-row>"));
}

TEST(ExportOdt, EscapesTextsAndKeepsTheirBlanks) {
  const std::string content = ContentOf(SampleStudies());
  EXPECT_THAT(content, HasSubstr("Power &lt;of&gt; a test</text:h>"));
  EXPECT_THAT(content, HasSubstr("H0: <text:s/>&quot;x&quot; = y"));
  EXPECT_THAT(content, HasSubstr("goes on <text:s/>at length."));
  EXPECT_THAT(content, HasSubstr("First.<text:line-break/>Second &lt;b&gt;. (2 times)"));
  EXPECT_THAT(content, HasSubstr("Power at N + 1: 0.9"));
  EXPECT_THAT(content, Not(HasSubstr("\x01")));
}

TEST(ExportOdt, ShowsEachChartAsThePictureOfTheOneLayout) {
  const std::string document = ExportOdt(SampleStudies());
  EXPECT_EQ(PaintSvg(LayOutChart(SampleChart())), PartOf(document, "Pictures/chart1.svg"));
  const std::string content = PartOf(document, "content.xml");
  EXPECT_THAT(content, HasSubstr("xlink:href=\"Pictures/chart1.svg\""));
  EXPECT_THAT(content, HasSubstr("svg:width=\"16cm\" svg:height=\"11.2cm\""));
  EXPECT_THAT(content, HasSubstr("<svg:title>"));
}

TEST(ExportOdt, DefinesEveryStyleThatItUses) {
  const std::string document = ExportOdt(SampleStudies());
  const std::string content = PartOf(document, "content.xml");
  const std::string styles = PartOf(document, "styles.xml");
  const std::string use = "style-name=\"";
  int uses = 0;
  for (std::size_t at = content.find(use); at != std::string::npos;
       at = content.find(use, at + 1), ++uses) {
    const std::size_t begin = at + use.size();
    const std::string name = content.substr(begin, content.find('"', begin) - begin);
    EXPECT_THAT(styles, HasSubstr("style:name=\"" + name + "\""));
  }
  EXPECT_GT(uses, 50);
}

// The style of the paragraph or heading that holds a text.
std::string StyleOf(const std::string& content, const std::string& text) {
  const std::string use = "text:style-name=\"";
  const std::size_t begin = content.rfind(use, content.find(text)) + use.size();
  return content.substr(begin, content.find('"', begin) - begin);
}

TEST(ExportOdt, KeepsWhatHeadsSomethingOnItsPage) {
  const std::string document = ExportOdt(SampleStudies());
  const std::string content = PartOf(document, "content.xml");
  const std::string styles = PartOf(document, "styles.xml");
  // The study's name, its date, the name and the headings of a table, the title of a report.
  for (const char* text : {"Power &lt;of&gt; a test", "2024-05-17T09:30:00", "The table",
                           "A &lt;Test&gt;", "Title -- here"}) {
    const std::size_t style = styles.find("style:name=\"" + StyleOf(content, text) + "\"");
    const std::string definition =
        styles.substr(style, styles.find("</style:style>", style) - style);
    EXPECT_THAT(definition, HasSubstr("fo:keep-with-next=\"always\"")) << text;
  }
  EXPECT_EQ("Standard", StyleOf(content, "One goal of"));
}

TEST(ExportOdt, GivesTheSameStudiesTheSameBytes) {
  EXPECT_EQ(ExportOdt(SampleStudies()), ExportOdt(SampleStudies()));
  EXPECT_FALSE(Opened(ExportOdt({})).empty());
}

TEST(ExportOdt, FillsUpRowsOfUnequalLength) {
  std::vector<WorkbookStudy> studies = SampleStudies();
  auto& table = std::get<SummaryTable>(studies[0].study.workbook.items.front());
  table.columns = {"A", "B"};
  table.rows = {{"Row", 300, {1}}, {"Long", -1, {1, 2, 3}}};
  const std::string content = ContentOf(studies);
  EXPECT_THAT(content, HasSubstr("table:number-columns-repeated=\"3\""));
  EXPECT_THAT(
      content,
      HasSubstr("</table:table-cell><table:table-cell/><table:table-cell/></table:table-row>"));
  EXPECT_THAT(content, HasSubstr("\"Indent20\""));
}

}  // namespace

}  // namespace poweranalysis
