#include "frame/FormatText.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <stdexcept>

namespace poweranalysis {
namespace {

std::string Printf(const char* format, double value) {
  std::array<char, 512> buffer{};
  std::snprintf(buffer.data(), buffer.size(), format, value);  // NOLINT: the reference
  return buffer.data();
}

constexpr double kReals[] = {
    0,          -0.0, 1,     -1,      0.05,     0.1,  1.0 / 3, 2.0 / 3, 0.0001, 0.00001,
    1e-10,      1e30, -1e30, 99999.5, 999999.5, 1e6,  150000,  1234567, 1e5,    0.9999,
    0.99999949, 12.5, 2.5,   0.5,     1.5,      80.0, 64.5e-5, 1e100,   5e-324, 1e308};

TEST(FormatText, GeneralNumbersAreThoseOfPrintf) {
  for (const double value : kReals) {
    EXPECT_EQ(FormatText("%g", {value}), Printf("%g", value)) << value;
    EXPECT_EQ(FormatText("%.12g", {value}), Printf("%.12g", value)) << value;
    EXPECT_EQ(FormatText("%12g|", {value}), Printf("%12g|", value)) << value;
  }
}

TEST(FormatText, FixedNumbersAreThoseOfPrintf) {
  for (const double value : kReals) {
    EXPECT_EQ(FormatText("%f", {value}), Printf("%f", value)) << value;
    EXPECT_EQ(FormatText("%-5.2f%%", {value}), Printf("%-5.2f%%", value)) << value;
    EXPECT_EQ(FormatText("%.0f", {value}), Printf("%.0f", value)) << value;
    EXPECT_EQ(FormatText("%10.3f", {value}), Printf("%10.3f", value)) << value;
  }
}

TEST(FormatText, WidthAndPlacesCanComeFromArguments) {
  EXPECT_EQ(FormatText("%-*.*f|", {5, 1, 1234.5}), "1234.5|");
  EXPECT_EQ(FormatText("%-*.*f|", {8, 2, 1.5}), "1.50    |");
  EXPECT_EQ(FormatText("%*d|", {6, 42}), "    42|");
}

TEST(FormatText, WholeNumbersOfEveryWidthFit) {
  EXPECT_EQ(FormatText("%ld", {std::int16_t{-3}}), "-3");
  EXPECT_EQ(FormatText("%ld", {std::int32_t{150000}}), "150000");
  EXPECT_EQ(FormatText("%d", {std::numeric_limits<std::int64_t>::min()}), "-9223372036854775808");
  EXPECT_EQ(FormatText("%ld", {std::int64_t{9999999999}}), "9999999999");
}

// As in C: a precision of zero prints nothing for zero. Plot titles rely on it.
TEST(FormatText, PrecisionZeroPrintsNothingForZero) {
  EXPECT_EQ(FormatText("N = %.ld", {0}), "N = ");
  EXPECT_EQ(FormatText("N = %.ld", {7}), "N = 7");
  EXPECT_EQ(FormatText("N = %ld", {0}), "N = 0");
}

TEST(FormatText, ArgumentsAreNoFormats) {
  EXPECT_EQ(FormatText("%s and %s", {"50%s", std::string("%d%%")}), "50%s and %d%%");
  EXPECT_EQ(FormatText("%-6s|%6s|", {"ab", "cd"}), "ab    |    cd|");
}

TEST(FormatText, ArgumentsThatDoNotFitAreRefused) {
  EXPECT_THROW(FormatText("%s", {1}), std::invalid_argument);
  EXPECT_THROW(FormatText("%ld", {1.0}), std::invalid_argument);
  EXPECT_THROW(FormatText("%g", {1}), std::invalid_argument);
  EXPECT_THROW(FormatText("%g", {}), std::invalid_argument);
  EXPECT_THROW(FormatText("none", {1}), std::invalid_argument);
  EXPECT_THROW(FormatText("%q", {1}), std::invalid_argument);
  EXPECT_THROW(FormatText("at the end %", {}), std::invalid_argument);
}

TEST(FormatText, APercentSignAtTwoStandsForItself) {
  EXPECT_EQ(FormatText("100%%", {}), "100%");
  EXPECT_EQ(FormatText("", {}), "");
}

TEST(FormatText, SlotsNameTheConversionsInOrder) {
  EXPECT_EQ(FormatSlots("no slots"), "");
  EXPECT_EQ(FormatSlots("%-5.2f%% with %ld and %s, %g"), "fdsg");
  EXPECT_EQ(FormatSlots("%-*.*f"), "**f");
}

TEST(FormatText, ResourcesAreFilledWithoutTheirMark) {
  EXPECT_EQ(FormatResource(13189, {3}), "  Group 3");
  EXPECT_EQ(FormatResource(12881, {3, 4}), "2-Way (3 X 4) ANOVA Cell Means");
  EXPECT_EQ(FormatResource(0, {}), "");
}

TEST(FormatText, NeverAsksTheLocale) {
  const char* chosen = nullptr;
  for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "de_DE.utf8", "de_AT.UTF-8"}) {
    if (chosen == nullptr) {
      chosen = std::setlocale(LC_ALL, name);
    }
  }
  if (chosen == nullptr) {
    GTEST_SKIP() << "no locale with a decimal comma is installed";
  }
  EXPECT_EQ(FormatText("%g %-5.2f %ld", {0.5, 12.25, 150000}), "0.5 12.25 150000");
  std::setlocale(LC_ALL, "C");
}

}  // namespace
}  // namespace poweranalysis
