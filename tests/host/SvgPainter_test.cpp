#include "host/SvgPainter.h"

#include <gtest/gtest.h>

#include <clocale>

#include "support/SampleChart.h"

namespace poweranalysis {
namespace {

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::string PaintOne(DisplayItem item) {
  DisplayList list;
  list.items.push_back(std::move(item));
  return PaintSvg(list);
}

std::string PaintText(const std::string& text) {
  return PaintOne(TextItem{Role::Title, {1, 2}, Anchor::Start, 12, false, 0, text});
}

TEST(PaintSvg, WritesEachItemAsAnElement) {
  EXPECT_TRUE(Has(PaintOne(LineItem{Role::Grid, {1, 2}, {3.5, 4.126}, 1}),
                  "<line x1=\"1\" y1=\"2\" x2=\"3.5\" y2=\"4.13\" stroke=\"#e2e5e9\" "
                  "stroke-width=\"1\"/>"));
  EXPECT_TRUE(Has(PaintOne(RectItem{Role::Background, {0, 0}, 8, 6}),
                  "<rect x=\"0\" y=\"0\" width=\"8\" height=\"6\" fill=\"#ffffff\"/>"));
  EXPECT_TRUE(Has(PaintOne(PolylineItem{Role::Data, {{0, 1}, {2, 3}}, 2}),
                  " stroke=\"#1f5fa8\" stroke-width=\"2\" points=\"0,1 2,3\"/>"));
  EXPECT_TRUE(Has(PaintOne(DotItem{Role::Data, {5, 6}, 3}),
                  "<circle cx=\"5\" cy=\"6\" r=\"3\" fill=\"#1f5fa8\"/>"));
  EXPECT_TRUE(Has(PaintOne(TextItem{Role::Label, {7, 8}, Anchor::Middle, 13.5, true, 90, "Power"}),
                  "<text xml:space=\"preserve\" x=\"7\" y=\"8\" text-anchor=\"middle\" "
                  "font-size=\"13.5\" font-weight=\"bold\" fill=\"#222831\" "
                  "transform=\"rotate(-90 7 8)\">Power</text>"));
}

TEST(PaintSvg, NamesAndDescribesThePicture) {
  const std::string svg = PaintSvg(LayOutChart(testing::SampleChart()));
  EXPECT_EQ(svg.find("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg "), 0U);
  EXPECT_TRUE(Has(svg, "role=\"img\" width=\"800\" height=\"560\" viewBox=\"0 0 800 560\""));
  EXPECT_TRUE(Has(svg, "<title>1 Sample t-Test: Power Calculation; "));
  EXPECT_TRUE(Has(svg, "<desc>5 points. "));
  EXPECT_TRUE(Has(svg, "(H0:  Mu = Mu0)</text>"));  // both blanks
  EXPECT_EQ(svg.substr(svg.size() - 7), "</svg>\n");
}

TEST(PaintSvg, EscapesWhatXmlReserves) {
  EXPECT_TRUE(Has(PaintText("a < b & c > \"d\""), ">a &lt; b &amp; c &gt; &quot;d&quot;</text>"));
}

TEST(PaintSvg, KeepsUtf8AndReplacesWhatXmlCannotHold) {
  EXPECT_TRUE(Has(PaintText("P\u00B2 \u2264 \U0001D6FC"), ">P\u00B2 \u2264 \U0001D6FC</text>"));
  for (const char* broken : {"\x01", "\x1b", "\xC3", "\xFF", "\xC0\x80", "\xED\xA0\x80"}) {
    EXPECT_TRUE(Has(PaintText(std::string("a") + broken), ">a\uFFFD")) << broken;
  }
}

TEST(PaintSvg, GivesTheSameBytesTwice) {
  EXPECT_EQ(PaintSvg(LayOutChart(testing::SampleChart())),
            PaintSvg(LayOutChart(testing::SampleChart())));
}

TEST(PaintSvg, DoesNotDependOnTheLocale) {
  const std::string svg = PaintSvg(LayOutChart(testing::SampleChart()));
  if (std::setlocale(LC_ALL, "de_DE.UTF-8") == nullptr) {
    GTEST_SKIP() << "no German locale here";
  }
  const std::string german = PaintSvg(LayOutChart(testing::SampleChart()));
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(svg, german);
}

TEST(PaintSvg, TakesItsColoursFromTheTheme) {
  const std::string dark = PaintSvg(LayOutChart(testing::SampleChart()), DarkTheme());
  EXPECT_TRUE(Has(dark, "fill=\"#1b1e23\""));
  EXPECT_FALSE(Has(dark, "#ffffff"));
}

}  // namespace
}  // namespace poweranalysis
