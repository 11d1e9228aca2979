// Expected cell means on the command line.
#include <cmath>

#include "cli/Program.h"

namespace poweranalysis {
namespace {

class Means : public Program {
 protected:
  // The value of a row of the table, by its title.
  double RowOf(const Arguments& arguments, const std::string& title) {
    const nlohmann::json json = RunJson(arguments);
    for (const auto& row : json["rows"]) {
      if (row["title"] == title) {
        return row["value"].get<double>();
      }
    }
    ADD_FAILURE() << "there is no row " << title;
    return 0;
  }
  void ExpectWrongUse(const Arguments& arguments, const std::string& why) {
    const Result result = Run(arguments);
    EXPECT_EQ(result.status, 2) << why;
    EXPECT_TRUE(Has(result.err, why)) << result.err;
  }
};

TEST_F(Means, OfGroupsGiveTheirEffectAndTheirNumber) {
  const Arguments arguments = {"power", "av1", "--means", "10,12,15", "--sigma", "4"};
  // Squares of the deviations from 37/3 are 38/3 in sum.
  EXPECT_DOUBLE_EQ(RowOf(arguments, "RMSSE"), std::sqrt(38. / 3 / 16 / 2));
  EXPECT_EQ(RowOf(arguments, "Number of Groups"), 3);
  const std::string rmsse = "0.6291528696058959";
  EXPECT_EQ(Run({"size", "av1", "--means", "10,12,15", "--sigma", "4"}).out,
            Run({"size", "av1", "--number-of-groups", "3", "--rmsse", rmsse}).out);
}

TEST_F(Means, InRowsGiveTheThreeEffects) {
  const Arguments arguments = {"power", "av2", "--means", "1,2,3;3,4,8"};
  EXPECT_EQ(RowOf(arguments, "Number of Rows"), 2);
  EXPECT_EQ(RowOf(arguments, "Number of Columns"), 3);
  EXPECT_DOUBLE_EQ(RowOf(arguments, "RMSSE"), std::sqrt(4.5)) << "of the rows: 2 and 5";
}

TEST_F(Means, OfAContrastComeWithWeights) {
  const Arguments means = {"--means", "1,2,4", "--weights", "1,1,-2", "--sigma", "2"};
  Arguments power = {"power", "pc"};
  power.insert(power.end(), means.begin(), means.end());
  EXPECT_EQ(RowOf(power, "Standardized Effect (Es)"), -2.5);
  EXPECT_EQ(RowOf(power, "SS Weights"), 6);
  Arguments interval = {"interval", "pc"};
  interval.insert(interval.end(), means.begin(), means.end());
  EXPECT_EQ(RowOf(interval, "Number of Groups"), 3);
}

TEST_F(Means, ComeFromASheetWhoseSigmaAnOptionReplaces) {
  Write("means.csv", "Mean\n10\n12\n15\n4\n");
  EXPECT_EQ(Run({"power", "av1", "--means-file", At("means.csv")}).out,
            Run({"power", "av1", "--means", "10,12,15", "--sigma", "4"}).out);
  EXPECT_EQ(Run({"power", "av1", "--means-file", At("means.csv"), "--sigma", "8"}).out,
            Run({"power", "av1", "--means", "10,12,15", "--sigma", "8"}).out);
  Write("table.csv", "1,2\n3,5\n4,\n");
  EXPECT_EQ(Run({"power", "av2", "--means-file", At("table.csv")}).out,
            Run({"power", "av2", "--means", "1,2;3,5", "--sigma", "4"}).out);
}

TEST_F(Means, ThatTheGridDoesNotHoldAreWrongUse) {
  ExpectWrongUse({"power", "av1", "--means", "1,2,3,4,5,6,7,8,9,10,11,12,13"}, "at most 12 groups");
  ExpectWrongUse({"power", "av2", "--means", "1,2,3,4,5,6,7,8,9;1,2,3,4,5,6,7,8,9"},
                 "at most 8 rows and 8 columns");
  ExpectWrongUse({"power", "pc", "--means", "1,2,3,4,5,6,7,8,9", "--weights", "1,1,1,1,1,1,1,1,1"},
                 "at most 8 groups");
  ExpectWrongUse({"power", "av1", "--means", "1"}, "at least 2 are wanted");
  ExpectWrongUse({"power", "av2", "--means", "1,2;3"}, "rows of 2 and of 1 means");
  ExpectWrongUse({"power", "av1", "--means", "1,2;3,4"}, "one row of means");
}

TEST_F(Means, ThatAreNotNumbersAreWrongUse) {
  ExpectWrongUse({"power", "av1", "--means", "1,x"}, "--means: 'x' is not a number");
  ExpectWrongUse({"power", "av1", "--means", "1,"}, "--means: '' is not a number");
  ExpectWrongUse({"power", "av1", "--means", "1,2", "--sigma", "0"}, "above 0");
  ExpectWrongUse({"power", "pc", "--means", "1,2"}, "0 weights for 2 means");
  ExpectWrongUse({"power", "av1", "--means", "1,2", "--weights", "1,2"}, "of a contrast");
  ExpectWrongUse({"power", "pc", "--weights", "1,2"}, "they go with --means");
}

TEST_F(Means, AllowNoFieldThatTheyFillOrContradict) {
  ExpectWrongUse({"power", "av1", "--means", "1,2", "--rmsse", "0.3"}, "RMSSE follows");
  ExpectWrongUse({"size", "av2", "--means", "1,2;3,4", "--rmsse-row", "0.3"}, "RMSSE_Row follows");
  ExpectWrongUse(
      {"power", "pc", "--means", "1,2", "--weights", "1,-1", "--standardized-effect", "1"},
      "StandardizedEffect follows");
  ExpectWrongUse({"power", "av1", "--means", "1,2", "--number-of-groups", "3"},
                 "NumberOfGroups is 3, and the means have 2");
  EXPECT_EQ(Run({"power", "av1", "--means", "1,2", "--number-of-groups", "2"}).status, 0);
}

TEST_F(Means, FromAFileOfAnotherShapeAreWrongUse) {
  Write("bare.csv", "10\n12\n15\n4\n");
  ExpectWrongUse({"power", "av1", "--means-file", At("bare.csv")}, "below a row of headings");
  Write("hole.csv", "1,2\n3,\n4,\n");
  ExpectWrongUse({"power", "av2", "--means-file", At("hole.csv")}, "the cell A2B2 is not a number");
  Write("empty.csv", "");
  ExpectWrongUse({"power", "av1", "--means-file", At("empty.csv")}, "cannot read");
  ExpectWrongUse({"power", "av1", "--means-file", At("none.csv")}, "cannot read");
  ExpectWrongUse({"power", "av1", "--means", "1,2", "--means-file", At("bare.csv")}, "already");
}

TEST_F(Means, AreOptionsWhereThereIsAGridAlone) {
  EXPECT_TRUE(Has(Run({"power", "av1", "--help"}).out, "--means LIST"));
  EXPECT_FALSE(Has(Run({"power", "t1", "--help"}).out, "--means"));
  ExpectWrongUse({"interval", "av1", "--means", "1,2"}, "there is no option '--means'");
}

}  // namespace
}  // namespace poweranalysis
