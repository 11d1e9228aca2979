#include "procedures/Variances.h"

#include <gmock/gmock.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <nlohmann/json.hpp>
#include <sstream>

#include "distributions/NoncentralChiSquare.h"
#include "distributions/Normal.h"
#include "procedures/ProceduresTest.h"
#include "support/TestData.h"

namespace poweranalysis {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

using Json = nlohmann::json;

constexpr std::int64_t kLimit = 150000;
constexpr std::int16_t kForms[] = {H0TwoTailed, H0AtMost, H0AtLeast};
constexpr double kInfinity = std::numeric_limits<double>::infinity();

void ExpectMissing(const SearchResult& result, int status) {
  EXPECT_EQ(result.requiredSize, SizeFailure);
  EXPECT_EQ(result.actualPower, NumericFailure);
  EXPECT_EQ(result.status, status);
}

class VariancesTest : public ProceduresTest {
 protected:
  CriticalChiSquareCache chiSquares;
  CriticalFCache criticalFs;
  int err = 0;

  double One(std::int64_t df, double var, double var0, double alpha, std::int16_t form) {
    return HeardOf([&](Refusal& refusal) {
      return ChiSquareVariancePower(alpha, df, var, var0, form, err, refusal, chiSquares);
    });
  }
  double Two(double ratio, std::int64_t df1, std::int64_t df2, double alpha, std::int16_t form) {
    return HeardOf([&](Refusal& refusal) {
      return TwoVariancePower(ratio, alpha, df1, df2, form, err, FExact, refusal, criticalFs);
    });
  }
  SearchResult RequiredDf(const OneVarianceDfRequest& request) {
    return Heard(OneVarianceRequiredDf(request, chiSquares, observer));
  }
  SearchResult RequiredDf(const TwoVariancesDfRequest& request) {
    return Heard(TwoVariancesRequiredDf(request, criticalFs, observer));
  }

  double Quantile(std::int32_t df, double p) {
    int status = 0;
    return NoncentralChiSquareQuantile(0, df, p, status);
  }
  double Cdf(double x, std::int32_t df) {
    int failure = 0;
    double density = 0;
    return NoncentralChiSquareCdf(x, df, 0, density, failure);
  }
};

OneVarianceDfRequest AskedOfOne(
    double var, double var0, double alpha, double goal, std::int16_t form) {
  return {.var = var,
          .var0 = var0,
          .alpha = alpha,
          .powerGoal = goal,
          .form = form,
          .sizeLimit = kLimit};
}

TwoVariancesDfRequest AskedOfTwo(
    double ratio, double alpha, double goal, std::int16_t form, std::int64_t fixedDf2 = 0) {
  return {.ratio = ratio,
          .alpha = alpha,
          .powerGoal = goal,
          .form = form,
          .dfToVary = fixedDf2 == 0 ? DfToVaryBoth : DfToVaryDf1,
          .fixedDf2 = fixedDf2,
          .sizeLimit = kLimit};
}

// --- Critical values.

TEST_F(VariancesTest, KeepsCriticalValuesBitForBit) {
  for (int pass = 0; pass < 3; ++pass) {
    // 10 and 42 share an entry of the cache.
    for (const std::int32_t df : {10, 42, 10, 4, 500}) {
      for (const double p : {.95, .025, .975, .95}) {
        ASSERT_EQ(chiSquares.Find(df, p, err), Quantile(df, p)) << df << ' ' << p;
        ASSERT_EQ(err, 0) << df << ' ' << p;
      }
    }
  }
}

TEST_F(VariancesTest, KeepsTheStatusOfACriticalValueThatWasNotSolved) {
  for (int pass = 0; pass < 2; ++pass) {
    err = 0;
    EXPECT_EQ(chiSquares.Find(1, .025, err), 0);
    EXPECT_EQ(err, 1);
  }
}

TEST_F(VariancesTest, GivesTheCriticalValuesOfPrintedTables) {
  // Pearson, E. S. and Hartley, H. O. (1966). Biometrika tables for statisticians 1, table 8.
  EXPECT_NEAR(chiSquares.Find(10, .95, err), 18.3070, 5e-5);
  EXPECT_NEAR(chiSquares.Find(10, .025, err), 3.24697, 5e-6);
  EXPECT_NEAR(chiSquares.Find(30, .975, err), 46.9792, 5e-5);
}

// --- Power of the test of one variance.

TEST_F(VariancesTest, TakesTheTailThatTheFormRejectsIn) {
  EXPECT_EQ(One(10, 2, 1, .05, H0AtMost), 1 - Cdf(Quantile(10, .95) / 2, 10));
  EXPECT_EQ(One(10, 1, 2, .05, H0AtLeast), Cdf(Quantile(10, .05) * 2, 10));
  EXPECT_EQ(One(10, 1, 2, .05, H0TwoTailed),
            (1 - Cdf(Quantile(10, .975) * 2, 10)) + Cdf(Quantile(10, .025) * 2, 10));
  EXPECT_EQ(err, 0);
  EXPECT_NEAR(One(10, 2, 1, .05, H0AtMost), .517598774, 1e-8);
  EXPECT_NEAR(One(10, 2, 1, .05, H0TwoTailed), .421063299, 1e-8);
}

TEST_F(VariancesTest, RefusesEqualVariances) {
  for (const std::int16_t form : kForms) {
    EXPECT_EQ(One(10, 2, 2, .05, form), NumericFailure);
    EXPECT_EQ(err, 1);
  }
  EXPECT_EQ(One(10, 1, 2, .05, H0AtMost), NumericFailure);
  EXPECT_EQ(One(10, 2, 1, .05, H0AtLeast), NumericFailure);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisTrue,
                                   Said::NullHypothesisTrue, Said::NullHypothesisTrue,
                                   Said::NullHypothesisTrue));
}

TEST_F(VariancesTest, ComputesThePowerOfADifferenceTooSmallToSearchFor) {
  EXPECT_NEAR(One(10, 1.001, 1, .05, H0AtMost), .05, 1e-3);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(VariancesTest, HasNoPowerForAFormWithoutABranch) {
  for (const std::int16_t form : {std::int16_t{H0Zero}, std::int16_t{4}, std::int16_t{-1}}) {
    err = 0;
    EXPECT_EQ(One(10, 2, 1, .05, form), NumericFailure);
    EXPECT_EQ(err, 1);
    ExpectMissing(RequiredDf(AskedOfOne(2, 1, .05, .9, form)), SearchNullTrue);
  }
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(VariancesTest, LacksTheLowerTailWhereItsQuantileIsFoundAsZero) {
  // In truth .0368749: the search for the quantile starts, and ends, at 0.
  EXPECT_NEAR(One(1, .5, 1, .05, H0TwoTailed), .0015253, 1e-7);
  EXPECT_EQ(err, 1);
  One(4, .5, 1, .05, H0TwoTailed);
  EXPECT_EQ(err, 0);
}

TEST_F(VariancesTest, LetsAVarianceBeZero) {
  EXPECT_EQ(One(10, 0, 1, .05, H0TwoTailed), 1);
  EXPECT_EQ(One(10, 0, 1, .05, H0AtLeast), 1);
  EXPECT_EQ(One(10, 1, 0, .05, H0TwoTailed), 1);
  EXPECT_EQ(One(10, 1, 0, .05, H0AtMost), 1);
  EXPECT_EQ(err, 0);
  EXPECT_THAT(Shown(), IsEmpty());
  // No test has the form of this null: both are 0.
  EXPECT_EQ(One(10, 0, 0, .05, H0TwoTailed), NumericFailure);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue));
}

TEST_F(VariancesTest, HasNoPowerForANegativeVariance) {
  EXPECT_EQ(One(10, -1, 1, .05, H0TwoTailed), NumericFailure);
  EXPECT_EQ(One(10, -1e30, 1, .05, H0AtLeast), NumericFailure);
  EXPECT_EQ(One(10, 1, -1, .05, H0AtMost), NumericFailure);
  EXPECT_EQ(err, 1);
  ExpectMissing(RequiredDf(AskedOfOne(-1, 1, .05, .9, H0TwoTailed)), SearchNullTrue);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(VariancesTest, MakesAFailedDistributionAFailedPower) {
  EXPECT_EQ(One(0, 2, 1, .05, H0AtMost), NumericFailure);
  EXPECT_EQ(One(LargestChiSquareDf + std::int64_t{1}, 2, 1, .05, H0AtMost), NumericFailure);
  EXPECT_NE(err, 0);
  EXPECT_EQ(One(std::int64_t{1} << 33, 2, 1, .05, H0AtMost), NumericFailure);
  EXPECT_NE(err, 0);
  EXPECT_EQ(Two(2, 20, 20, -1, H0AtMost), NumericFailure);
  EXPECT_NE(err, 0);
  EXPECT_EQ(Two(2, 20, 20, 3, H0TwoTailed), NumericFailure);
  EXPECT_NE(err, 0);
}

// --- Required degrees of freedom of one variance.

TEST_F(VariancesTest, StartsOneVarianceByItsForm) {
  const auto start = [](double var, double var0, double z1, double z2) {
    const double root = std::sqrt(2.) * var * (z2 - var0 / var * z1) / (var0 - var);
    return std::floor(root * root);
  };
  const double z975 = NormalQuantile(.975);
  const double z95 = NormalQuantile(.95);
  const double z10 = NormalQuantile(1 - .9);
  EXPECT_EQ(OneVarianceStart(1.25, 1, .05, .9, H0TwoTailed), start(1.25, 1, z975, z10));
  EXPECT_EQ(OneVarianceStart(1, 1.25, .05, .9, H0TwoTailed), start(1, 1.25, -z975, -z10));
  EXPECT_EQ(OneVarianceStart(1.25, 1, .05, .9, H0AtMost), start(1.25, 1, z95, z10));
  EXPECT_EQ(OneVarianceStart(1, 1.25, .05, .9, H0AtLeast),
            start(1, 1.25, NormalQuantile(.05), NormalQuantile(.9)));
}

TEST_F(VariancesTest, RefusesToSearchNearlyEqualVariances) {
  ExpectMissing(RequiredDf(AskedOfOne(1, 1, .05, .9, H0TwoTailed)), SearchNullTrue);
  ExpectMissing(RequiredDf(AskedOfOne(1.0199, 1, .05, .9, H0TwoTailed)), SearchNullTrue);
  ExpectMissing(RequiredDf(AskedOfOne(0, 0, .05, .9, H0TwoTailed)), SearchNullTrue);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisNearlyTrue,
                                   Said::NullHypothesisTrue));
  EXPECT_EQ(ToleranceIn(1), .02);
}

TEST_F(VariancesTest, EndsAtOneDegreeOfFreedomOfOneVarianceAboveTheGoalOnly) {
  const double power = One(1, 1000, 1, .05, H0AtMost);
  const SearchResult above =
      RequiredDf(AskedOfOne(1000, 1, .05, std::nextafter(power, 0.), H0AtMost));
  EXPECT_EQ(above.requiredSize, 1);
  EXPECT_EQ(above.actualPower, power);
  const SearchResult equal = RequiredDf(AskedOfOne(1000, 1, .05, power, H0AtMost));
  EXPECT_EQ(equal.requiredSize, 2);
  EXPECT_EQ(equal.status, SearchOk);
}

TEST_F(VariancesTest, SearchesOneVarianceWithoutALimitOfItsOwnField) {
  // The limit is 150000 whatever the record's is, and the message tells the record's.
  OneVarianceDfRequest request = AskedOfOne(1.25, 1, .05, .9, H0TwoTailed);
  request.sizeLimit = 10;
  EXPECT_GT(RequiredDf(request).requiredSize, 100);
  request = AskedOfOne(1.0200001, 1, .0001, .999, H0TwoTailed);
  request.sizeLimit = 10;
  ExpectMissing(RequiredDf(request), SearchTooLarge);
  EXPECT_THAT(Shown(), ElementsAre(Said::SearchTooLarge));
  EXPECT_EQ(SizeIn(0), 10);
}

TEST_F(VariancesTest, CancelsASearch) {
  observer.stop = [] { return true; };
  OneVarianceDfRequest one = AskedOfOne(1.25, 1, .05, .9, H0TwoTailed);
  observer.showsBar = true;
  ExpectMissing(RequiredDf(one), SearchCancelled);
  TwoVariancesDfRequest two = AskedOfTwo(1.25, .05, .9, H0TwoTailed);
  observer.showsBar = true;
  ExpectMissing(RequiredDf(two), SearchCancelled);
  EXPECT_THAT(Shown(), ElementsAre(Said::CancelledAtRequest, Said::CancelledAtRequest));
  EXPECT_FALSE(observer.barOpen);
}

TEST_F(VariancesTest, NamesItsBarAfterDfForOneVarianceAndAfterNForTwo) {
  observer.showsBar = true;
  RequiredDf(AskedOfOne(1.25, 1, .05, .9, H0TwoTailed));
  RequiredDf(AskedOfTwo(1.25, .05, .9, H0TwoTailed));
  EXPECT_THAT(observer.bars,
              ElementsAre(Pair(Said::SearchingForDf, 10), Pair(Said::SearchingForN, 10)));
}

TEST_F(VariancesTest, FindsADfForAVarianceOfZero) {
  // The quantile and the ratio are 0 and infinite at 1 degree of freedom: no number, so 2.
  const SearchResult result = RequiredDf(AskedOfOne(0, 1, .05, .9, H0TwoTailed));
  EXPECT_EQ(result.status, SearchOk);
  EXPECT_EQ(result.requiredSize, 2);
  EXPECT_EQ(RequiredDf(AskedOfOne(1, 0, .05, .9, H0TwoTailed)).requiredSize, 1);
}

// --- Power of the test of two variances.

TEST_F(VariancesTest, ComparesTwoVariancesInTheTailThatTheFormRejectsIn) {
  const auto quantile = [&](double p) { return CentralFQuantile(20, 7, p, err); };
  const auto cdf = [&](double x) { return NoncentralFCdf(x, 20, 7, 0, err); };
  EXPECT_EQ(Two(2, 20, 7, .05, H0AtMost), 1 - cdf(quantile(.95) / 2));
  EXPECT_EQ(Two(.5, 20, 7, .05, H0TwoTailed),
            cdf(quantile(.025) / .5) + (1 - cdf(quantile(.975) / .5)));
  EXPECT_EQ(err, 0);
}

TEST_F(VariancesTest, AlwaysRefusesTheLowerTailedTestOfTwoVariances) {
  // The ratio itself is checked, and it is always above 0.
  for (const double ratio : {.25, .5, 2.}) {
    err = 0;
    EXPECT_EQ(Two(ratio, 20, 20, .05, H0AtLeast), NumericFailure);
    EXPECT_EQ(err, 1);
  }
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisTrue,
                                   Said::NullHypothesisTrue));
}

TEST_F(VariancesTest, DoesNotRefuseEqualVariancesOfTwo) {
  EXPECT_NEAR(Two(1, 20, 7, .05, H0TwoTailed), .05, 1e-9);
  EXPECT_NEAR(Two(1, 20, 7, .05, H0AtMost), .05, 1e-9);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(VariancesTest, LeavesTheErrorWordWithoutDegreesOfFreedom) {
  for (const int word : {0, 7}) {
    err = word;
    EXPECT_EQ(Two(2, 0, 20, .05, H0AtMost), NumericFailure);
    EXPECT_EQ(Two(2, 20, 0, .05, H0AtLeast), NumericFailure);
    EXPECT_EQ(err, word);
  }
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(VariancesTest, HasNoPowerForAnotherFormOfTwoVariances) {
  EXPECT_EQ(Two(2, 20, 20, .05, 5), NumericFailure);
  EXPECT_EQ(err, 1);
  EXPECT_EQ(Two(2, 20, 20, .05, H0Zero), NumericFailure);
  ExpectMissing(RequiredDf(AskedOfTwo(2, .05, .9, H0Zero)), SearchNullTrue);
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(VariancesTest, HasNoPowerForARatioThatIsNone) {
  EXPECT_EQ(Two(std::nan(""), 20, 20, .05, H0TwoTailed), NumericFailure);
  EXPECT_EQ(err, 1);
  EXPECT_EQ(Two(-2, 20, 20, .05, H0TwoTailed), NumericFailure);
  EXPECT_EQ(err, 1);
  EXPECT_THAT(Shown(), IsEmpty());
  EXPECT_EQ(Two(0, 20, 20, .05, H0TwoTailed), NumericFailure);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue));
}

TEST_F(VariancesTest, LetsARatioBeAsLargeOrSmallAsADoubleGets) {
  for (const double ratio : {1e300, kInfinity}) {
    EXPECT_EQ(Two(ratio, 20, 20, .05, H0TwoTailed), 1);
    EXPECT_EQ(Two(ratio, 20, 20, .05, H0AtMost), 1);
  }
  for (const double ratio : {1e-300, 5e-324}) {
    EXPECT_EQ(Two(ratio, 20, 20, .05, H0TwoTailed), 1);
    EXPECT_EQ(Two(ratio, 20, 20, .05, H0AtMost), 0);
  }
}

TEST_F(VariancesTest, GivesATwoTailedPowerAtFewDegreesOfFreedom) {
  for (const std::int64_t df : {1, 2, 3, 10}) {
    for (const double alpha : {.0001, .01, .05, .25}) {
      const double power = Two(2, df, df, alpha, H0TwoTailed);
      EXPECT_EQ(err, 0) << df << ' ' << alpha;
      EXPECT_GT(power, alpha);
      EXPECT_LT(power, 1);
    }
  }
}

// --- Required degrees of freedom of two variances.

TEST_F(VariancesTest, StartsTwoVariancesFromTheRatioAboveOne) {
  const auto start = [](double r, double a) {
    const double e = (a + NormalQuantile(.9) * r) / (r - 1);
    return std::floor(2 * e * e);
  };
  EXPECT_EQ(TwoVariancesStart(2, .05, .9, H0TwoTailed), start(2, NormalQuantile(.975)));
  EXPECT_EQ(TwoVariancesStart(.5, .05, .9, H0TwoTailed), start(2, NormalQuantile(.975)));
  EXPECT_EQ(TwoVariancesStart(2, .05, .9, H0AtMost), start(2, NormalQuantile(.95)));
  EXPECT_EQ(TwoVariancesStart(.5, .05, .9, H0AtLeast), start(2, NormalQuantile(.95)));
}

TEST_F(VariancesTest, GivesTheNullCheckItselfAsTheStatusOfTwoVariances) {
  ExpectMissing(RequiredDf(AskedOfTwo(1, .05, .9, H0TwoTailed)), 1);
  ExpectMissing(RequiredDf(AskedOfTwo(1.0009, .05, .9, H0TwoTailed)), 2);
  ExpectMissing(RequiredDf(AskedOfTwo(.5, .05, .9, H0AtMost)), 1);
  EXPECT_THAT(Shown(), ElementsAre(Said::NullHypothesisTrue, Said::NullHypothesisNearlyTrue,
                                   Said::NullHypothesisTrue));
  EXPECT_EQ(ToleranceIn(1), .001);
}

TEST_F(VariancesTest, EndsAtOneDegreeOfFreedomOfTwoVariancesAtTheGoal) {
  const double power = Two(1e6, 1, 1, .05, H0AtMost);
  const SearchResult equal = RequiredDf(AskedOfTwo(1e6, .05, power, H0AtMost));
  EXPECT_EQ(equal.requiredSize, 1);
  EXPECT_EQ(equal.actualPower, power);
  const SearchResult above = RequiredDf(AskedOfTwo(1e6, .05, std::nextafter(power, 1.), H0AtMost));
  EXPECT_EQ(above.requiredSize, 2);
}

TEST_F(VariancesTest, ServesNoThirdChoiceOfDfToVary) {
  for (const std::int16_t choice : {std::int16_t{2}, std::int16_t{-1}}) {
    TwoVariancesDfRequest request = AskedOfTwo(2, .05, .9, H0TwoTailed, 20);
    request.dfToVary = choice;
    ExpectMissing(RequiredDf(request), SearchNullTrue);
  }
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(VariancesTest, RefusesEveryTrialOfALowerTailedSearchUntilTheLimit) {
  TwoVariancesDfRequest request = AskedOfTwo(.25, .05, .9, H0AtLeast);
  request.sizeLimit = 300;
  ExpectMissing(RequiredDf(request), SearchTooLarge);
  ASSERT_GT(observer.remarks.size(), 100U);
  std::vector<Said> shown = Shown();
  EXPECT_EQ(shown.back(), Said::SearchTooLarge);
  shown.pop_back();
  EXPECT_THAT(shown, Each(Said::NullHypothesisTrue));
}

TEST_F(VariancesTest, FailsAFixedGroupThatNoOtherGroupCanHelp) {
  ExpectMissing(RequiredDf(AskedOfTwo(1.25, .05, .9, H0TwoTailed, 20)), SearchTooLarge);
  EXPECT_THAT(Shown(), ElementsAre(Said::SearchTooLarge));
}

// --- Independent computations.

std::vector<std::vector<double>> RowsOf(const std::string& name, std::vector<int>& families) {
  std::ifstream file(TestDataDir() + "/" + name);
  std::vector<std::vector<double>> rows;
  std::string line;
  while (std::getline(file, line)) {
    if (line.empty() || line[0] != 'V') {
      continue;
    }
    families.push_back(line[1] - '0');
    std::istringstream fields(line.substr(2));
    std::vector<double> row;
    char comma = 0;
    for (double value = 0; fields >> comma >> value;) {
      row.push_back(value);
    }
    rows.push_back(row);
  }
  return rows;
}

TEST_F(VariancesTest, AgreesWithAnIndependentComputationOfPower) {
  std::vector<int> families;
  const auto rows = RowsOf("variance_power.csv", families);
  ASSERT_THAT(rows, SizeIs(624));
  // At odd degrees of freedom the chi-square distribution rests on a normal one of seven digits,
  // whose error of some 4e-8 weighs most in the quantile of a small tail. The incomplete beta
  // function of the F distribution is good to some 1e-10, felt at alpha .0001 alone.
  constexpr double kErrors[] = {0, 2e-6, 2e-7};
  double largest[] = {0, 0, 0};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    ASSERT_THAT(rows[i], SizeIs(7));
    const auto df1 = static_cast<std::int64_t>(rows[i][0]);
    const auto df2 = static_cast<std::int64_t>(rows[i][1]);
    const auto form = static_cast<std::int16_t>(rows[i][4]);
    const double alpha = rows[i][5];
    const double power = families[i] == 1 ? One(df1, rows[i][2], rows[i][3], alpha, form)
                                          : Two(rows[i][2] / rows[i][3], df1, df2, alpha, form);
    double& worst = largest[families[i]];
    worst = std::max(worst, std::fabs(power - rows[i][6]));
    EXPECT_NEAR(power, rows[i][6], kErrors[families[i]])
        << families[i] << testing::PrintToString(rows[i]);
  }
  RecordProperty("largest_difference_of_one", std::to_string(largest[1] * 1e9) + "e-9");
  RecordProperty("largest_difference_of_two", std::to_string(largest[2] * 1e9) + "e-9");
  EXPECT_THAT(Shown(), IsEmpty());
}

TEST_F(VariancesTest, EndsAtTheSmallestDfAboveTheGoal) {
  std::vector<int> families;
  const auto rows = RowsOf("variance_df.csv", families);
  ASSERT_THAT(rows, SizeIs(441));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    SCOPED_TRACE(std::to_string(families[i]) + testing::PrintToString(rows[i]));
    ASSERT_THAT(rows[i], SizeIs(8));
    const auto fixed = static_cast<std::int64_t>(rows[i][0]);
    const double ratio = rows[i][1] / rows[i][2];
    const auto form = static_cast<std::int16_t>(rows[i][3]);
    const double alpha = rows[i][4];
    const double goal = rows[i][5];
    const auto powerAt = [&](std::int64_t df) {
      return families[i] == 1 ? One(df, rows[i][1], rows[i][2], alpha, form)
                              : Two(ratio, df, fixed == 0 ? df : fixed, alpha, form);
    };
    const SearchResult result =
        families[i] == 1 ? RequiredDf(AskedOfOne(rows[i][1], rows[i][2], alpha, goal, form))
                         : RequiredDf(AskedOfTwo(ratio, alpha, goal, form, fixed));
    ASSERT_EQ(result.status, SearchOk);
    EXPECT_EQ(result.requiredSize, static_cast<std::int64_t>(rows[i][6]));
    EXPECT_EQ(result.actualPower, powerAt(result.requiredSize));
    EXPECT_NEAR(result.actualPower, rows[i][7], 2e-6);
    EXPECT_GT(result.actualPower, goal);
    EXPECT_LE(powerAt(result.requiredSize - 1), goal);
  }
  EXPECT_THAT(Shown(), IsEmpty());
}

// --- Published cases.

void ExpectPublished(const Json& published, const char* key, double value) {
  if (!published.at("expected").contains(key)) {
    return;
  }
  const bool different = published.at("relation") == "different_formula";
  const Json& expected = published.at(different ? "recomputed" : "expected");
  EXPECT_NEAR(value, expected.at(key).get<double>(),
              published.at("tolerance").at(key).get<double>())
      << published.at("id") << ' ' << published.at("source");
}

TEST_F(VariancesTest, AgreesWithPublishedCases) {
  std::ifstream file(TestDataDir() + "/published_variances.json");
  const Json cases = Json::parse(file);
  ASSERT_THAT(cases, SizeIs(8));
  for (const Json& published : cases) {
    const bool one = published.at("family") == "V1";
    const Json& in = published.at("inputs");
    const double alpha = in.at("Alpha");
    const std::int16_t form = in.at("H0Type");
    if (published.at("mode") == "power") {
      const double power = one ? One(in.at("DegreesOfFreedom"), in.at("PopulationVariance"),
                                     in.at("NullHypothesizedVariance"), alpha, form)
                               : Two(in.at("Var1").get<double>() / in.at("Var2").get<double>(),
                                     in.at("Df1"), in.at("Df2"), alpha, form);
      ExpectPublished(published, "power", power);
      continue;
    }
    const SearchResult result =
        one ? RequiredDf(AskedOfOne(in.at("PopulationVariance"), in.at("NullHypothesizedVariance"),
                                    alpha, in.at("PowerGoal"), form))
            : RequiredDf(AskedOfTwo(in.at("Ratio"), alpha, in.at("PowerGoal"), form));
    EXPECT_EQ(result.status, SearchOk);
    ExpectPublished(published, one ? "df" : "Df1", static_cast<double>(result.requiredSize));
    ExpectPublished(published, "power", result.actualPower);
  }
}

}  // namespace
}  // namespace poweranalysis
