#include "host/NumberText.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "host/Workbook.h"

namespace poweranalysis {
namespace {

constexpr double kReals[] = {0,    1,     -1,      0.05,       1.0 / 3,  2.0 / 3, 0.0001, 0.00001,
                             1e30, -1e30, 99999.5, 999999.5,   150000,   1e5,     1e-300, 12.5,
                             2.5,  0.125, 1e15,    1234567.89, 0.999995, 5e-324,  1e308};

std::string Printf(const char* format, int precision, double value) {
  std::array<char, 512> buffer{};
  std::snprintf(buffer.data(), buffer.size(), format, precision, value);  // NOLINT: the reference
  return buffer.data();
}

TEST(FormatGeneral, IsPrintfsG) {
  for (const double value : kReals) {
    for (const int precision : {1, 6, 12, 17}) {
      EXPECT_EQ(FormatGeneral(value, precision), Printf("%.*g", precision, value)) << value;
    }
  }
}

TEST(FormatFixed, IsPrintfsF) {
  for (const double value : kReals) {
    for (const int decimals : {0, 1, 6}) {
      EXPECT_EQ(FormatFixed(value, decimals), Printf("%.*f", decimals, value)) << value;
    }
  }
}

TEST(FormatDecimals, CutsTrailingZerosAndKeepsTheInteger) {
  EXPECT_EQ(FormatDecimals(1.5, 8), "1.5");
  EXPECT_EQ(FormatDecimals(100, 8), "100");
  EXPECT_EQ(FormatDecimals(0.1, 3), "0.1");
  EXPECT_EQ(FormatDecimals(1.0 / 3, 5), "0.33333");
  EXPECT_EQ(FormatDecimals(0, 5), "0");
  EXPECT_EQ(FormatDecimals(-0.0, 5), "0");
  EXPECT_EQ(FormatDecimals(-0.000001, 3), "0");
  EXPECT_EQ(FormatDecimals(10, 0), "10");
  EXPECT_EQ(FormatDecimals(-9999, 5), "-9999");
}

TEST(FormatDecimals, WideNumbersTurnToTwelveDigits) {
  EXPECT_EQ(FormatDecimals(1e30, 5), "1e+30");
  EXPECT_EQ(FormatDecimals(123456789012345678901234.0, 5), "123456789012345685803008");  // 24 fit
  EXPECT_EQ(FormatDecimals(-123456789012345678901234.0, 5), "-1.23456789012e+23");
  EXPECT_EQ(FormatDecimals(std::numeric_limits<double>::max(), 5), "1.79769313486e+308");
}

TEST(FormatDecimals, NumbersThatAreNoneAreNamed) {
  EXPECT_EQ(FormatDecimals(std::numeric_limits<double>::infinity(), 5), "inf");
  EXPECT_EQ(FormatDecimals(-std::numeric_limits<double>::infinity(), 5), "-inf");
  EXPECT_NE(FormatDecimals(std::numeric_limits<double>::quiet_NaN(), 5).find("nan"),
            std::string::npos);
}

TEST(FormatShortest, ReadsBackExactly) {
  for (const double value : kReals) {
    EXPECT_EQ(std::strtod(FormatShortest(value).c_str(), nullptr), value) << value;
  }
  EXPECT_EQ(FormatShortest(0.1), "0.1");
  EXPECT_EQ(FormatShortest(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(FormatShortest(150000), "150000");
}

TEST(FormatCell, ShowsSixDigitsAndWholeNumbersInFull) {
  EXPECT_EQ(FormatCell(0.05), "0.05");
  EXPECT_EQ(FormatCell(0.826695772), "0.826696");
  EXPECT_EQ(FormatCell(1e-10), "1e-10");
  EXPECT_EQ(FormatCell(64), "64");
  EXPECT_EQ(FormatCell(0), "0");
  EXPECT_EQ(FormatCell(-3), "-3");
  EXPECT_EQ(FormatCell(1234567), "1234567");
  EXPECT_EQ(FormatCell(1e15), "1000000000000000");
  EXPECT_EQ(FormatCell(1e16), "1e+16");
  EXPECT_EQ(FormatCell(1234567.5), "1.23457e+06");
  EXPECT_EQ(FormatCell(0.5, 3), "0.5");
  EXPECT_EQ(FormatCell(2.0 / 3, 3), "0.667");
}

TEST(FormatCell, AnInputReadsBackAsItWasTyped) {
  EXPECT_EQ(FormatCell(CellKind::Input, 1234567.891), "1234567.891");
  EXPECT_EQ(FormatCell(CellKind::Input, 0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(FormatCell(CellKind::Input, 0.12345678, 3), "0.12345678");
  EXPECT_EQ(FormatCell(CellKind::Input, 150000), "150000");
  EXPECT_EQ(FormatCell(CellKind::Input, 0.0001), "0.0001") << "as people write an alpha";
  EXPECT_EQ(FormatCell(CellKind::Input, 1e-5), "1e-05");
  EXPECT_EQ(FormatCell(CellKind::Input, 1e30), "1e+30");
  EXPECT_EQ(FormatCell(CellKind::Input, -0.0), "0");
  EXPECT_EQ(FormatCell(CellKind::Input, MissingValue()), "");
  EXPECT_EQ(FormatCell(CellKind::Computed, 1234567.891), "1.23457e+06");
}

TEST(FormatCell, NoProbabilityBelowOneShowsAsOne) {
  EXPECT_EQ(FormatCell(CellKind::Probability, 0.9999996), ">0.999999");
  EXPECT_EQ(FormatCell(CellKind::Probability, 0.9996, 3), ">0.999");
  EXPECT_EQ(FormatCell(CellKind::Probability, 0.999999), "0.999999");
  EXPECT_EQ(FormatCell(CellKind::Probability, 1), "1");
  EXPECT_EQ(FormatCell(CellKind::Computed, 0.9999996), "1");
}

TEST(FormatCell, ANegativeZeroIsZero) { EXPECT_EQ(FormatCell(-0.0), "0"); }

TEST(FormatCell, OnlyTheMissingValueIsEmpty) {
  EXPECT_EQ(FormatCell(MissingValue()), "");
  EXPECT_EQ(FormatCell(-9999), "-9999");
  EXPECT_NE(FormatCell(std::numeric_limits<double>::quiet_NaN()), "");
  EXPECT_EQ(FormatCell(std::numeric_limits<double>::infinity()), "inf");
}

TEST(RealToText, FormatsPlainAndForTicks) {
  EXPECT_EQ(RealToText(0.5, RealPlain, 9, 8), "0.5");
  EXPECT_EQ(RealToText(1.0 / 3, RealPlain, 9, 8), "0.33333333");
  EXPECT_EQ(RealToText(25, RealPlain, 9, 8), "25");
  EXPECT_EQ(RealToText(0.5, RealTickLabel, 7, 3), "  0.500");
  EXPECT_EQ(RealToText(1234.5, RealTickLabel, 3, 1), "1234.5");
  EXPECT_EQ(RealPlain, 132);
  EXPECT_EQ(RealTickLabel, 36);
}

TEST(IntToText, AlignsTickLabelsAlone) {
  EXPECT_EQ(IntToText(42, IntTickLabel, 5), "   42");
  EXPECT_EQ(IntToText(150000, IntTickLabel, 5), "150000");
  EXPECT_EQ(IntToText(42, 0, 5), "42");
  EXPECT_EQ(IntToText(-1, IntTickLabel, 4), "  -1");
  EXPECT_EQ(IntToText(9999999999, IntTickLabel, -1), "9999999999");
}

}  // namespace
}  // namespace poweranalysis
