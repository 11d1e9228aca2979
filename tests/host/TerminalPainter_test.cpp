#include "host/TerminalPainter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "host/ChartLayout.h"
#include "support/SampleChart.h"

namespace poweranalysis {
namespace {

using testing::SampleChart;

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

std::size_t ColumnsOf(const std::string& line) {
  return static_cast<std::size_t>(std::count_if(line.begin(), line.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
  }));
}

// The whole picture, looked at and found right: points at 20, 40, 60, 80 and 100.
TEST(PaintTerminal, DrawsInPlainAscii) {
  const std::string drawn = PaintTerminal(SampleChart(), {50, 18}, TerminalStyle::Ascii);
  EXPECT_EQ(drawn, R"(        1 Sample t-Test: Power Calculation
         One Mean, t-Test (H0:  Mu = Mu0)
       Power vs. N (Es = 0.5, Alpha = 0.05)
Power
1.0 +
    |                                     ...*
0.8 +                             ...*....
    |                       .*....
0.6 +                   ....
    |               .*..
0.4 +            ...
    |         ...
0.2 +        *
    |
0.0 +
    ++-------+-------+-------+-------+-------+----
     0      20      40      60      80      100
                    Sample Size (N)
)") << drawn;
}

TEST(PaintTerminal, DrawsTheCurveInBrailleDots) {
  const std::string drawn = PaintTerminal(SampleChart(), {50, 18});
  EXPECT_EQ(drawn, R"(        1 Sample t-Test: Power Calculation
         One Mean, t-Test (H0:  Mu = Mu0)
       Power vs. N (Es = 0.5, Alpha = 0.05)
Power
1.0 ┤
    │                                   ⣀⡠⠤⠔⠒⠊
0.8 ┤                           ⢀⣀⠤⠤⠒⠒⠉⠉
    │                      ⣀⠤⠒⠊⠉⠁
0.6 ┤                  ⣀⠤⠒⠉
    │               ⡠⠔⠉
0.4 ┤            ⡠⠔⠉
    │         ⡠⠔⠉
0.2 ┤        ⠉
    │
0.0 ┤
    └┬───────┬───────┬───────┬───────┬───────┬────
     0      20      40      60      80      100
                    Sample Size (N)
)") << drawn;
}

TEST(PaintTerminal, FillsTheTerminalAndNoMore) {
  for (const TerminalSize size : {TerminalSize{80, 24}, {200, 60}, {37, 13}}) {
    for (const TerminalStyle style : {TerminalStyle::Unicode, TerminalStyle::Ascii}) {
      const auto lines = LinesOf(PaintTerminal(SampleChart(), size, style));
      EXPECT_EQ(lines.size(), static_cast<std::size_t>(size.rows));
      for (const std::string& line : lines) {
        EXPECT_LE(ColumnsOf(line), static_cast<std::size_t>(size.columns)) << line;
      }
    }
  }
}

TEST(PaintTerminal, TakesSmallSizesAsTheLeast) {
  const std::string least = PaintTerminal(SampleChart(), {30, 12});
  EXPECT_EQ(PaintTerminal(SampleChart(), {0, -5}), least);
}

TEST(PaintTerminal, WrapsATitleThatDoesNotFit) {
  Chart chart = SampleChart();
  chart.titles[2] = "Interaction Effect Power vs. Interaction Effect RMSSE (N = 10, Alpha = 0.05)";
  const std::string drawn = PaintTerminal(chart, {40, 24});
  EXPECT_NE(drawn.find("Interaction Effect Power vs. Interaction\n"), std::string::npos) << drawn;
  EXPECT_NE(drawn.find("  Effect RMSSE (N = 10, Alpha = 0.05)\n"), std::string::npos) << drawn;
}

TEST(PaintTerminal, SpellsSignsInPlainAscii) {
  Chart chart = SampleChart();
  chart.xLabel = "P\u00B2 \u2264 \u03BB";
  const std::string drawn = PaintTerminal(chart, {60, 20}, TerminalStyle::Ascii);
  EXPECT_NE(drawn.find("P^2 <= ?"), std::string::npos) << drawn;
  EXPECT_TRUE(std::all_of(drawn.begin(), drawn.end(),
                          [](char c) { return static_cast<unsigned char>(c) < 0x7FU; }));
}

TEST(PaintTerminal, HoldsNoControlSequences) {
  Chart chart = SampleChart();
  chart.titles[0] = "bell \a, red \x1B[31m, new\nline, next\u0085line";
  for (const TerminalStyle style : {TerminalStyle::Unicode, TerminalStyle::Ascii}) {
    const std::string drawn = PaintTerminal(chart, {80, 24}, style);
    EXPECT_EQ(drawn.find('\x1B'), std::string::npos);
    EXPECT_EQ(drawn.find('\a'), std::string::npos);
    EXPECT_EQ(drawn.find("\u0085"), std::string::npos);
    EXPECT_EQ(LinesOf(drawn).size(), 24U);
  }
}

TEST(PaintTerminal, NeverDrawsAFailedPoint) {
  Chart chart = SampleChart();
  std::fill(chart.y.begin(), chart.y.end(), FailedPoint);
  const std::string drawn = PaintTerminal(chart, {60, 20}, TerminalStyle::Ascii);
  EXPECT_EQ(drawn.find('*'), std::string::npos) << drawn;
}

TEST(PaintTerminal, DrawsAnEmptyChart) {
  EXPECT_EQ(LinesOf(PaintTerminal(Chart{}, {60, 20})).size(), 20U);
}

}  // namespace
}  // namespace poweranalysis
