#include "host/ChartLayout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "support/SampleChart.h"

namespace poweranalysis {
namespace {

using testing::SampleChart;

template <class Item>
std::vector<Item> ItemsOf(const DisplayList& list, Role role) {
  std::vector<Item> items;
  for (const DisplayItem& any : list.items) {
    if (const auto* item = std::get_if<Item>(&any); item != nullptr && item->role == role) {
      items.push_back(*item);
    }
  }
  return items;
}

std::vector<std::string> TextsOf(const DisplayList& list, Role role) {
  std::vector<std::string> texts;
  for (const TextItem& item : ItemsOf<TextItem>(list, role)) {
    texts.push_back(item.text);
  }
  return texts;
}

std::vector<std::string> Labels(const std::vector<Tick>& ticks) {
  std::vector<std::string> labels;
  labels.reserve(ticks.size());
  for (const Tick& tick : ticks) {
    labels.push_back(tick.label);
  }
  return labels;
}

using Texts = std::vector<std::string>;

// --- Ticks

TEST(AxisTicks, AreMultiplesOfTheStepWithoutTrailingNoise) {
  EXPECT_EQ(Labels(AxisTicks({0, 0.3F, 0.05F}, 12)),
            (Texts{"0", "0.05", "0.10", "0.15", "0.20", "0.25", "0.30"}));
  EXPECT_EQ(Labels(AxisTicks({-0.3F, 0.3F, 0.1F}, 12)),
            (Texts{"-0.3", "-0.2", "-0.1", "0", "0.1", "0.2", "0.3"}));
  EXPECT_EQ(Labels(AxisTicks({0, 110, 10}, 12)).back(), "110");
}

TEST(AxisTicks, StayRoundOnAnAxisThatStartsHalfAStepBeyondItsBound) {
  EXPECT_EQ(Labels(AxisTicks({-0.025F, 0.2F, 0.05F}, 12)),
            (Texts{"0", "0.05", "0.10", "0.15", "0.20"}));
}

TEST(AxisTicks, AreThinnedToTheRounderOnes) {
  EXPECT_EQ(Labels(AxisTicks({0.1F, 1.3F, 0.1F}, 12)),
            (Texts{"0.2", "0.4", "0.6", "0.8", "1.0", "1.2"}));
  EXPECT_EQ(Labels(AxisTicks({0, 110, 10}, 4)), (Texts{"0", "50", "100"}));
  EXPECT_EQ(Labels(AxisTicks({0, 110, 10}, 1)), (Texts{"0"}));
}

TEST(AxisTicks, TakeARoundStepBelowOneOfManyDigits) {
  EXPECT_EQ(Labels(AxisTicks({999989.9F, 1000010.6F, 10.000006F}, 12)),
            (Texts{"999990", "1000000", "1000010"}));
}

TEST(AxisTicks, AreNoneOnAnAxisThatCannotBeCounted) {
  EXPECT_TRUE(AxisTicks({1, 1, 0.02F}, 12).empty());
  EXPECT_TRUE(AxisTicks({2, 1, 0.1F}, 12).empty());
  EXPECT_TRUE(AxisTicks({0, 1, 0}, 12).empty());
  EXPECT_TRUE(AxisTicks({0, std::numeric_limits<float>::infinity(), 1}, 12).empty());
  EXPECT_TRUE(AxisTicks({0, 1e30F, 1e-10F}, 12).empty());
}

TEST(YAxisTicks, ComeFromTheTableWithoutItsBlanksAndWithoutThoseBeyondTheAxis) {
  Chart chart = SampleChart();
  chart.tickLabels.push_back("  1.1");
  chart.tickPositions.push_back(1.1F);
  const std::vector<Tick> ticks = YAxisTicks(chart, 12);
  ASSERT_EQ(ticks.size(), 11U);
  EXPECT_EQ(ticks.front().label, "0.0");  // as the table writes it
  EXPECT_EQ(ticks.back().label, "1.0");
}

TEST(YAxisTicks, AreThinnedToTheRounderOnes) {
  EXPECT_EQ(Labels(YAxisTicks(SampleChart(), 6)),
            (Texts{"0.0", "0.2", "0.4", "0.6", "0.8", "1.0"}));
}

TEST(YAxisTicks, DoNotTakeATableThatMisleads) {
  // Half a step below zero: 0.05 is labelled 0.1, and so is 0.15.
  Chart chart = SampleChart();
  chart.yAxis = {-0.05F, 0.35F, 0.1F};
  chart.tickPositions = {-0.05F, 0.05F, 0.15F, 0.25F, 0.35F};
  chart.tickLabels = {" -0.1", "  0.1", "  0.2", "  0.3", "  0.4"};
  EXPECT_EQ(Labels(YAxisTicks(chart, 12)), (Texts{"0", "0.1", "0.2", "0.3"}));
}

TEST(YAxisTicks, DoNotTakeATableOfTrueButUnevenPositions) {
  Chart chart = SampleChart();
  chart.yAxis = {-50, 350, 100};
  chart.tickPositions = {-50, 50, 150, 250, 350};
  chart.tickLabels = {"  -50", "   50", "  150", "  250", "  350"};
  EXPECT_EQ(Labels(YAxisTicks(chart, 12)), (Texts{"0", "100", "200", "300"}));
}

// --- The curve

TEST(VisibleCurve, IsOnePieceThroughAllPoints) {
  const ChartCurve curve = VisibleCurve(SampleChart());
  EXPECT_EQ(curve.points.size(), SampleChart().x.size());
  ASSERT_EQ(curve.pieces.size(), 1U);
  EXPECT_EQ(curve.pieces[0].size(), curve.points.size());
}

TEST(VisibleCurve, BreaksAtAFailedPointAndLeavesItOut) {
  Chart chart = SampleChart();
  chart.y[2] = FailedPoint;
  const ChartCurve curve = VisibleCurve(chart);
  EXPECT_EQ(curve.points.size(), chart.x.size() - 1);
  ASSERT_EQ(curve.pieces.size(), 2U);
  EXPECT_EQ(curve.pieces[0].size(), 2U);
  chart.y[2] = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(VisibleCurve(chart).pieces.size(), 2U);
}

TEST(VisibleCurve, IsCutOffAtTheAxes) {
  Chart chart;
  chart.xAxis = {0, 4, 1};
  chart.yAxis = {0, 1, 0.5F};
  chart.x = {0, 2, 4};
  chart.y = {0, 2, 0};  // leaves at (1, 1), comes back at (3, 1)
  const ChartCurve curve = VisibleCurve(chart);
  EXPECT_EQ(curve.points.size(), 2U);
  ASSERT_EQ(curve.pieces.size(), 2U);
  EXPECT_DOUBLE_EQ(curve.pieces[0].back().x, 0.25);
  EXPECT_DOUBLE_EQ(curve.pieces[0].back().y, 1);
  EXPECT_DOUBLE_EQ(curve.pieces[1].front().x, 0.75);
  chart.y = {2, 2, 2};
  EXPECT_TRUE(VisibleCurve(chart).pieces.empty());
}

TEST(VisibleCurve, StandsInTheMiddleOfAnAxisWithoutLength) {
  Chart chart = SampleChart();
  chart.xAxis = {64, 64, 0.02F};
  EXPECT_EQ(VisibleCurve(chart).points[0].x, 0.5);
}

// --- Text

TEST(TextWidth, AddsTheAdvanceWidthsOfTheCharacters) {
  EXPECT_DOUBLE_EQ(TextWidth("N", 10, false), 7.48);
  EXPECT_DOUBLE_EQ(TextWidth("N1", 10, false), 7.48 + 6.36);
  EXPECT_GT(TextWidth("Power", 10, true), TextWidth("Power", 10, false));
  // A sign of several bytes is one character.
  EXPECT_DOUBLE_EQ(TextWidth("\u00B2", 10, false), TextWidth("\u03BC", 10, false));
}

TEST(WrapText, BreaksAtBlanksOnly) {
  const auto fits = [](const std::string& text) { return text.size() <= 7; };
  EXPECT_EQ(WrapText("one two three", fits), (Texts{"one two", "three"}));
  EXPECT_EQ(WrapText("incomprehensible a b", fits), (Texts{"incomprehensible", "a b"}));
  EXPECT_EQ(WrapText("one  two", fits), (Texts{"one", "two"}));
  EXPECT_EQ(WrapText("H0:  M", fits), (Texts{"H0:  M"}));
  EXPECT_TRUE(WrapText("", fits).empty());
}

// --- The picture

double LeftOf(const TextItem& item) {
  const double width = TextWidth(item.text, item.size, item.bold);
  return item.anchor == Anchor::Start ? item.at.x
         : item.anchor == Anchor::End ? item.at.x - width
                                      : item.at.x - width / 2;
}

void ExpectInsidePicture(const DisplayList& list) {
  for (const DisplayItem& any : list.items) {
    const auto* item = std::get_if<TextItem>(&any);
    if (item == nullptr) {
      continue;
    }
    const double width = TextWidth(item->text, item->size, item->bold);
    if (item->rotation == 0) {
      EXPECT_GE(LeftOf(*item), 0) << item->text;
      EXPECT_LE(LeftOf(*item) + width, list.width) << item->text;
      EXPECT_GE(item->at.y - item->size, 0) << item->text;
      EXPECT_LE(item->at.y, list.height) << item->text;
    } else {
      EXPECT_GE(item->at.y - width / 2, 0) << item->text;
      EXPECT_LE(item->at.y + width / 2, list.height) << item->text;
    }
  }
}

TEST(LayOutChart, ShowsTitlesLabelsAndTicks) {
  const DisplayList list = LayOutChart(SampleChart());
  EXPECT_EQ(TextsOf(list, Role::Title),
            (Texts{"1 Sample t-Test: Power Calculation", "Power vs. N (Es = 0.5, Alpha = 0.05)"}));
  EXPECT_EQ(TextsOf(list, Role::Subtitle), (Texts{"One Mean, t-Test (H0:  Mu = Mu0)"}));
  EXPECT_EQ(TextsOf(list, Role::Label), (Texts{"Sample Size (N)", "Power"}));
  const Texts ticks = TextsOf(list, Role::TickText);
  EXPECT_NE(std::find(ticks.begin(), ticks.end(), "0.9"), ticks.end());
  EXPECT_NE(std::find(ticks.begin(), ticks.end(), "60"), ticks.end());
  ExpectInsidePicture(list);
}

TEST(LayOutChart, DrawsEachPointWithinThePlot) {
  const Chart chart = SampleChart();
  const DisplayList list = LayOutChart(chart);
  const auto frame = ItemsOf<PolylineItem>(list, Role::Axis).at(0).points;
  const auto dots = ItemsOf<DotItem>(list, Role::Data);
  ASSERT_EQ(dots.size(), chart.x.size());
  for (std::size_t i = 0; i < dots.size(); ++i) {
    const double across = (dots[i].centre.x - frame[1].x) / (frame[2].x - frame[1].x);
    const double up = (frame[1].y - dots[i].centre.y) / (frame[1].y - frame[0].y);
    EXPECT_NEAR(across, static_cast<double>(chart.x[i]) / 110, 1e-6);
    EXPECT_NEAR(up, static_cast<double>(chart.y[i]), 1e-6);
  }
  EXPECT_EQ(ItemsOf<PolylineItem>(list, Role::Data).size(), 1U);
}

TEST(LayOutChart, NeverDrawsAFailedPoint) {
  Chart chart = SampleChart();
  chart.y[0] = FailedPoint;
  const DisplayList list = LayOutChart(chart);
  for (const PolylineItem& line : ItemsOf<PolylineItem>(list, Role::Data)) {
    for (const Point& point : line.points) {
      EXPECT_GE(point.y, 0);
      EXPECT_LE(point.y, list.height);
    }
  }
  EXPECT_EQ(ItemsOf<DotItem>(list, Role::Data).size(), chart.x.size() - 1);
  EXPECT_EQ(chart.y[0], FailedPoint);  // the data keep it
}

TEST(LayOutChart, ShrinksALongTitleAndThenWrapsIt) {
  Chart chart = SampleChart();
  const double size = ItemsOf<TextItem>(LayOutChart(chart), Role::Title).at(1).size;
  chart.titles[2] = std::string(90, 'n');
  const DisplayList shrunk = LayOutChart(chart);
  EXPECT_EQ(TextsOf(shrunk, Role::Title).size(), 2U);
  EXPECT_LT(ItemsOf<TextItem>(shrunk, Role::Title).at(1).size, size);
  ExpectInsidePicture(shrunk);
  chart.titles[2] = std::string(60, 'w') + " " + std::string(60, 'w');
  const DisplayList wrapped = LayOutChart(chart);
  EXPECT_EQ(TextsOf(wrapped, Role::Title).size(), 3U);
  ExpectInsidePicture(wrapped);
}

// The corners of the plot: the upper left, the lower left and the lower right one.
std::vector<Point> FrameOf(const Chart& chart) {
  return ItemsOf<PolylineItem>(LayOutChart(chart, {800, 560}), Role::Axis).at(0).points;
}

TEST(LayOutChart, LeavesAMarginRoundThePlotForWhatIsThere) {
  Chart chart;
  const std::vector<Point> bare = FrameOf(chart);
  EXPECT_DOUBLE_EQ(bare[0].x, 27);
  EXPECT_DOUBLE_EQ(bare[0].y, 30);
  EXPECT_DOUBLE_EQ(bare[1].y, 560 - 38);
  EXPECT_DOUBLE_EQ(bare[2].x, 800 - 28);
  // A label takes its height and a gap from its own side alone.
  chart.xLabel = "N";
  EXPECT_DOUBLE_EQ(FrameOf(chart)[1].y, bare[1].y - 23.5);
  EXPECT_DOUBLE_EQ(FrameOf(chart)[0].x, bare[0].x);
  chart.xLabel = "";
  chart.yLabel = "Power";
  EXPECT_DOUBLE_EQ(FrameOf(chart)[0].x, bare[0].x + 23.5);
  EXPECT_DOUBLE_EQ(FrameOf(chart)[1].y, bare[1].y);
  // Tick texts take the width of the widest, and titles a line each.
  chart.yLabel = "";
  chart.yAxis = {0, 100, 50};
  EXPECT_DOUBLE_EQ(FrameOf(chart)[0].x, bare[0].x + TextWidth("100", 12, false));
  chart.titles = {"T", "", ""};
  EXPECT_DOUBLE_EQ(FrameOf(chart)[0].y, bare[0].y + 17 * 1.38);
  chart.titles = {"T", "T", "T"};
  EXPECT_DOUBLE_EQ(FrameOf(chart)[0].y, bare[0].y + (17 + 2 * 13.5) * 1.38);
}

TEST(LayOutChart, KeepsTextsAwayFromTheEdgesOfThePicture) {
  Chart chart = SampleChart();
  // Shrunk as far as it goes, the first two words would fit but for the second margin.
  chart.titles[1] = std::string(44, 'w') + " " + std::string(45, 'w') + " and more of it";
  chart.xLabel = chart.yLabel = std::string(200, 'n');
  const DisplayList list = LayOutChart(chart, {800, 560});
  for (const TextItem& item : ItemsOf<TextItem>(list, Role::Subtitle)) {
    EXPECT_GE(LeftOf(item), 18) << item.text;
  }
  for (const TextItem& item : ItemsOf<TextItem>(list, Role::Label)) {
    const double half = TextWidth(item.text, item.size, item.bold) / 2;
    const double middle = item.rotation == 0 ? item.at.x : item.at.y;
    const double length = item.rotation == 0 ? list.width : list.height;
    const double blank = std::min(middle, length - middle) - half;
    EXPECT_GE(blank, 9) << "a label keeps half of the margin";
    EXPECT_LT(blank, 9 + 20) << "and takes what else there is";
  }
}

TEST(LayOutChart, KeepsLongLabelsOnOneLineInsideThePicture) {
  Chart chart = SampleChart();
  chart.yLabel = "Required Sample Size (N) (Fisher z Transform, Refined) and so";
  chart.xLabel = chart.yLabel;
  for (const ChartSize size : {ChartSize{800, 560}, ChartSize{420, 320}}) {
    const DisplayList list = LayOutChart(chart, size);
    EXPECT_EQ(TextsOf(list, Role::Label).size(), 2U);
    ExpectInsidePicture(list);
  }
}

TEST(LayOutChart, KeepsTickTextsApart) {
  Chart chart = SampleChart();
  chart.xAxis = {0, 110000, 10000};
  for (const double width : {240.0, 320.0, 480.0, 800.0}) {
    const DisplayList list = LayOutChart(chart, {width, 300});
    std::vector<TextItem> ticks;
    for (const TextItem& item : ItemsOf<TextItem>(list, Role::TickText)) {
      if (item.anchor == Anchor::Middle) {
        ticks.push_back(item);
      }
    }
    ASSERT_GE(ticks.size(), 2U) << width;
    for (std::size_t i = 1; i < ticks.size(); ++i) {
      const double end =
          LeftOf(ticks[i - 1]) + TextWidth(ticks[i - 1].text, ticks[i - 1].size, false);
      EXPECT_GT(LeftOf(ticks[i]), end) << width;
    }
  }
}

TEST(LayOutChart, TakesSmallSizesAsTheLeast) {
  const DisplayList list = LayOutChart(SampleChart(), {1, 1});
  EXPECT_EQ(list.width, 240);
  EXPECT_EQ(list.height, 180);
}

TEST(LayOutChart, DescribesThePictureInWords) {
  const DisplayList list = LayOutChart(SampleChart());
  EXPECT_EQ(list.title,
            "1 Sample t-Test: Power Calculation; One Mean, t-Test (H0:  Mu = Mu0); "
            "Power vs. N (Es = 0.5, Alpha = 0.05)");
  EXPECT_EQ(list.description, "5 points. Sample Size (N) from 20 to 100; Power from 0.25 to 0.9.");
}

TEST(LayOutChart, DrawsAnEmptyChartAsItsAxes) {
  const DisplayList list = LayOutChart(Chart{});
  EXPECT_TRUE(ItemsOf<DotItem>(list, Role::Data).empty());
  EXPECT_EQ(ItemsOf<PolylineItem>(list, Role::Axis).size(), 1U);
  EXPECT_EQ(list.description, "0 points. X: none; Y: none.");
}

double Luminance(const Rgb& colour) {
  // Relative luminance of sRGB.
  const auto part = [](std::uint8_t value) {
    const double share = value / 255.0;
    return share <= 0.03928 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * part(colour.red) + 0.7152 * part(colour.green) + 0.0722 * part(colour.blue);
}

TEST(ChartThemes, GiveTextsAndDataEnoughContrast) {
  for (const ChartTheme* theme : {&LightTheme(), &DarkTheme()}) {
    const double ground = Luminance((*theme)[Role::Background]);
    for (const Role role :
         {Role::Axis, Role::TickText, Role::Label, Role::Title, Role::Subtitle, Role::Data}) {
      const double ink = Luminance((*theme)[role]);
      // What the web's accessibility guidelines ask of text.
      EXPECT_GE((std::max(ground, ink) + 0.05) / (std::min(ground, ink) + 0.05), 4.5)
          << static_cast<int>(role);
    }
  }
}

}  // namespace
}  // namespace poweranalysis
