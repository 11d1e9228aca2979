#include "host/Workbook.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>

namespace poweranalysis {
namespace {

TEST(MissingValue, HasItsBits) {
  const double missing = MissingValue();
  std::uint64_t bits = 0;
  std::memcpy(&bits, &missing, sizeof bits);
  EXPECT_EQ(bits, 0xFFFFFFFDFFFFFFFFu);
  EXPECT_TRUE(std::isnan(missing));
}

TEST(MissingValue, IsToldFromEveryOtherNumber) {
  EXPECT_TRUE(IsMissing(MissingValue()));
  for (const double value :
       {0.0, -0.0, -9999.0, std::numeric_limits<double>::quiet_NaN(),
        -std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    EXPECT_FALSE(IsMissing(value)) << value;
  }
}

TEST(MissingValue, SurvivesItsWayThroughTables) {
  SummaryTable table;
  table.rows.push_back({"title", 2, {MissingValue(), 1}});
  const Workbook book{{table}};
  const Workbook copy = book;
  EXPECT_TRUE(IsMissing(std::get<SummaryTable>(copy.items[0]).rows[0].values[0]));
  EXPECT_EQ(std::get<SummaryTable>(copy.items[0]).rows[0].values[1], 1);
}

TEST(Workbook, TablesStartWithTheirUsualWidths) {
  const SummaryTable table;
  EXPECT_EQ(table.cellWidth, 8);
  EXPECT_EQ(table.columnTitleWidth, 10);
}

TEST(ContinueReport, AddsToAReportAtTheEndAlone) {
  Workbook workbook;
  EXPECT_FALSE(ContinueReport(workbook, "a"));
  EXPECT_TRUE(workbook.items.empty());
  workbook.items.emplace_back(Report{{"a"}});
  EXPECT_TRUE(ContinueReport(workbook, "b"));
  EXPECT_EQ(std::get<Report>(workbook.items[0]).paragraphs, (std::vector<std::string>{"a", "b"}));
  workbook.items.emplace_back(Chart{});
  EXPECT_FALSE(ContinueReport(workbook, "c"));
}

std::vector<Message> Added(const std::vector<std::pair<int, std::string>>& shown) {
  std::vector<Message> messages;
  for (const auto& [id, text] : shown) {
    AddMessage(messages, id, text);
  }
  return messages;
}

std::vector<std::string> Lines(const std::vector<Message>& messages) {
  std::vector<std::string> lines;
  for (const Message& message : messages) {
    lines.push_back(std::to_string(message.id) + message.text + std::to_string(message.count));
  }
  return lines;
}

TEST(Messages, CountARepeatOfTheLast) {
  const auto messages = Added({{1, "a"}, {1, "a"}, {2, "a"}, {1, "b"}, {1, "a"}});
  EXPECT_EQ(Lines(messages), (std::vector<std::string>{"1a2", "2a1", "1b1", "1a1"}));
}

TEST(Messages, JoinAllRepeatsWhereTheFirstCame) {
  const auto messages = Added({{1, "a"}, {1, "a"}, {2, "a"}, {1, "b"}, {1, "a"}});
  EXPECT_EQ(Lines(JoinRepeats(messages)), (std::vector<std::string>{"1a3", "2a1", "1b1"}));
}

}  // namespace
}  // namespace poweranalysis
