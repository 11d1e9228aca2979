#include "families/Families.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace poweranalysis {
namespace {

// A record of its own with the built-in values.
class OwnRecord {
 public:
  explicit OwnRecord(Family family)
      : table_(TableOf(family)), bytes_(table_.recordSize / sizeof(double) + 1) {
    for (const Field& field : table_.fields) {
      view().Set(field, field.factory);
    }
  }

  RecordView view() const { return {table_, const_cast<double*>(bytes_.data())}; }
  const Field* Find(const char* name) const { return table_.Find(name); }
  double Get(const char* name) const { return view().Get(*Find(name)); }
  void Set(const char* name, double value) { view().Set(*Find(name), value); }
  // Only where the family has the field.
  void SetWhere(const char* name, double value) {
    if (Find(name) != nullptr) {
      Set(name, value);
    }
  }

 private:
  const FamilyTable& table_;
  std::vector<double> bytes_;
};

std::string NameOf(const FamilyRow& row) { return TableOf(row.family).code; }

bool HasType(const FamilyRow& row, const char* name, FieldType type) {
  const Field* field = TableOf(row.family).Find(name);
  return field != nullptr && field->type == type;
}

double ValueOf(const FamilyRow& row,
               Question question,
               const RecordView& record,
               std::size_t effect = 0) {
  SilentProcedureObserver observer;
  const std::unique_ptr<FamilySession> session = row.open(question);
  session->Take(record);
  return session->Value(effect, observer);
}

Outcome Asked(const FamilyRow& row, Question question, const RecordView& record) {
  SilentProcedureObserver observer;
  const std::unique_ptr<FamilySession> session = row.open(question);
  session->Take(record);
  return session->Compute(observer);
}

// --- The table against the tables of fields.

TEST(Families, EveryFamilyOfTheBlockThatIsNoCalculatorHasARowInItsOrder) {
  std::vector<Family> expected;
  for (const FamilyTable& table : FamilyTables()) {
    if (table.section != 0) {
      expected.push_back(table.family);
    }
  }
  std::vector<Family> rows;
  for (const FamilyRow& row : FamilyRows()) {
    rows.push_back(row.family);
    EXPECT_EQ(&RowOf(row.family), &row);
  }
  EXPECT_EQ(rows, expected);
  EXPECT_EQ(rows.size(), 18u);
  EXPECT_EQ(FindFamilyRow(Family::FCalc), nullptr);
}

TEST(Families, SizesAreWholeFieldsOfTheirRecord) {
  for (const FamilyRow& row : FamilyRows()) {
    SCOPED_TRACE(NameOf(row));
    if (row.sizes.choice != nullptr) {
      EXPECT_TRUE(HasType(row, row.sizes.choice, FieldType::Int16));
    }
    for (int i = 0; i < row.sizes.count; ++i) {
      const SizeRule& rule = row.sizes.rules[static_cast<std::size_t>(i)];
      EXPECT_TRUE(HasType(row, rule.field, FieldType::Int32));
      EXPECT_TRUE(rule.follower == nullptr || HasType(row, rule.follower, FieldType::Int32));
      EXPECT_TRUE(rule.ratio == nullptr || HasType(row, rule.ratio, FieldType::Real));
    }
  }
}

TEST(Families, AnEffectSolvesARealFieldOfItsRecordAgainstItsNullValue) {
  for (const FamilyRow& row : FamilyRows()) {
    SCOPED_TRACE(NameOf(row));
    ASSERT_FALSE(row.effects.empty());
    std::set<std::string> parts;
    for (const EffectRow& effect : row.effects) {
      EXPECT_TRUE(HasType(row, effect.solved, FieldType::Real));
      EXPECT_TRUE(effect.nullField == nullptr || HasType(row, effect.nullField, FieldType::Real));
      parts.insert(effect.of == nullptr ? "" : effect.of);
    }
    EXPECT_EQ(parts.size(), row.effects.size());
    EXPECT_EQ(parts.count("") != 0, row.effects.size() == 1);
  }
}

TEST(Families, AnAlgorithmIsAValueOfItsFieldWithAReference) {
  for (const FamilyRow& row : FamilyRows()) {
    SCOPED_TRACE(NameOf(row));
    ASSERT_FALSE(row.algorithms.empty());
    for (const AlgorithmRow& algorithm : row.algorithms) {
      EXPECT_NE(std::strlen(algorithm.name), 0u);
      EXPECT_NE(std::string(algorithm.reference).find(" ("), std::string::npos)
          << algorithm.reference;
      if (algorithm.field == nullptr) {
        EXPECT_EQ(row.algorithms.size(), 1u);
        continue;
      }
      ASSERT_TRUE(HasType(row, algorithm.field, FieldType::Int16));
      const Field& field = *TableOf(row.family).Find(algorithm.field);
      EXPECT_TRUE(!field.keyed() || WithinRange(field, algorithm.value)) << algorithm.name;
    }
  }
}

TEST(Families, ASizeSaysInAWordWhatItCounts) {
  std::map<std::string, std::string> words;
  for (const FamilyRow& row : FamilyRows()) {
    words[NameOf(row)] = WordOf(row.sizes.rules[0].counts);
  }
  const std::map<std::string, std::string> expected = {
      {"T1", "total"},      {"T2", "per group"},  {"T3", "pairs"},      {"R2", "total"},
      {"AV1", "per group"}, {"PC", "per group"},  {"V1", "df"},         {"V2", "df"},
      {"R", "total"},       {"Z2R", "per group"}, {"P1", "total"},      {"P2", "per group"},
      {"QMAC", "pairs"},    {"SA1", "per group"}, {"SA2", "per group"}, {"SA3", "per group"},
      {"SEM", "total"},     {"AV2", "per cell"}};
  EXPECT_EQ(words, expected);
}

// --- Groups.

TEST(Families, TheObservationsOfADesignAreTheSumOfItsGroups) {
  const std::map<std::string, std::int64_t> expected = {
      {"T1", 25},    {"T2", 50},   {"T3", 25},   {"R2", 100},  {"AV1", 30}, {"PC", 30},
      {"V1", 11},    {"V2", 42},   {"R", 100},   {"Z2R", 200}, {"P1", 100}, {"P2", 200},
      {"QMAC", 100}, {"SA1", 200}, {"SA2", 200}, {"SA3", 200}, {"SEM", 100}};
  for (const FamilyRow& row : FamilyRows()) {
    SCOPED_TRACE(NameOf(row));
    const OwnRecord record(row.family);
    if (row.family == Family::AV2) {
      EXPECT_EQ(static_cast<double>(TotalOf(row, record.view())),
                record.Get("Rows") * record.Get("Columns") * record.Get("N"));
    } else {
      EXPECT_EQ(TotalOf(row, record.view()), expected.at(NameOf(row)));
    }
  }
}

// --- The statistic is what the power is made of.

struct FormAndAlgorithm {
  std::int16_t form;
  const AlgorithmRow* algorithm;
};

// Every hypothesis form of a family with every algorithm.
std::vector<FormAndAlgorithm> WaysOf(const FamilyRow& row) {
  const Field* forms = TableOf(row.family).Find("H0Type");
  std::vector<FormAndAlgorithm> ways;
  for (std::int16_t form = 0; form <= (forms == nullptr ? 0 : forms->upper); ++form) {
    for (const AlgorithmRow& algorithm : row.algorithms) {
      ways.push_back({form, &algorithm});
    }
  }
  return ways;
}

// Sizes and effects about the built-in values.
std::vector<OwnRecord> DesignsOf(const FamilyRow& row, const FormAndAlgorithm& way) {
  std::vector<OwnRecord> designs;
  for (const double alpha : {.01, .05, .2}) {
    for (const std::int64_t size : {8, 35, 120}) {
      for (const double away : {-.12, -.04, .04, .12}) {
        OwnRecord record(row.family);
        record.SetWhere("H0Type", way.form);
        record.Set("Alpha", alpha);
        if (way.algorithm->field != nullptr) {
          record.Set(way.algorithm->field, way.algorithm->value);
        }
        PutSize(row, record.view(), size);
        // A null value of 0 makes a test of its own.
        record.SetWhere("R2Null", size == 35 ? 0 : .3);
        record.SetWhere("R0", size == 35 ? 0 : .13);
        for (const EffectRow& effect : row.effects) {
          const double null = NullValueOf(effect, record.view());
          const double scale = record.Find("Sigma") || record.Find("Sigma1") ? 10 : 1;
          record.Set(effect.solved, null + away * scale);
        }
        designs.push_back(std::move(record));
      }
    }
  }
  return designs;
}

TEST(Families, ThePowerIsTheChanceOfAStatisticBeyondItsCriticalValues) {
  constexpr double kTolerance = 1e-11;
  SilentProcedureObserver observer;
  for (const FamilyRow& row : FamilyRows()) {
    for (const FormAndAlgorithm& way : WaysOf(row)) {
      SCOPED_TRACE(NameOf(row) + " form " + std::to_string(way.form) + " " + way.algorithm->name);
      int compared = 0;
      for (const OwnRecord& record : DesignsOf(row, way)) {
        const std::unique_ptr<FamilySession> session = row.open(Question::Power);
        session->Take(record.view());
        for (std::size_t effect = 0; effect < row.effects.size(); ++effect) {
          const double power = session->Value(effect, observer);
          if (power == NumericFailure) {
            continue;
          }
          Statistic statistic;
          ASSERT_TRUE(session->Describe(effect, statistic));
          EXPECT_NEAR(RejectionChance(statistic, statistic.alternative), power, kTolerance);
          ++compared;
        }
      }
      // Survival has no form that rejects below, and that of two variances is always refused.
      const bool never =
          (way.form == H0AtLeast && (row.family == Family::V2 || row.family == Family::SA1 ||
                                     row.family == Family::SA2 || row.family == Family::SA3)) ||
          (way.form == H0Zero && row.family != Family::R2 && row.family != Family::SEM);
      EXPECT_EQ(compared == 0, never) << compared;
    }
  }
}

TEST(Families, UnderTheNullHypothesisAContinuousStatisticRejectsByAlpha) {
  for (const Family family : {Family::T1, Family::T2, Family::T3, Family::PC, Family::AV1,
                              Family::AV2, Family::V1, Family::V2, Family::Z2R}) {
    const FamilyRow& row = RowOf(family);
    SCOPED_TRACE(NameOf(row));
    const OwnRecord record(family);
    const std::unique_ptr<FamilySession> session = row.open(Question::Power);
    session->Take(record.view());
    Statistic statistic;
    ASSERT_TRUE(session->Describe(0, statistic));
    EXPECT_NEAR(RejectionChance(statistic, statistic.null), record.Get("Alpha"), 1e-7);
  }
}

TEST(Families, AStatisticWithoutCriticalValuesHasNoRejectionChance) {
  EXPECT_EQ(RejectionChance({}, {}), NumericFailure);
}

TEST(Families, ANormalStatisticWithoutVarianceIsItsMean) {
  Distribution fixed;
  fixed.mean = .5;
  fixed.sd = 0;
  EXPECT_EQ(ChanceUpTo(fixed, .5), 1);
  EXPECT_EQ(ChanceBelow(fixed, .5), 0);
  EXPECT_EQ(ChanceUpTo(fixed, .4), 0);
  EXPECT_EQ(ChanceBelow(fixed, .6), 1);
}

// --- Effects.

TEST(Families, AnEffectThatIsPutIsTheEffectThatIsMeasured) {
  for (const FamilyRow& row : FamilyRows()) {
    for (const EffectRow& effect : row.effects) {
      SCOPED_TRACE(NameOf(row) + " " + effect.solved);
      for (const double measure : {.05, .21, .4}) {
        const OwnRecord record(row.family);
        PutEffect(effect, record.view(), measure);
        EXPECT_NEAR(effect.measure(record.view()), measure, 1e-14);
      }
    }
  }
}

TEST(Families, TheNullValueOfTheSolvedFieldIsATrueNullHypothesis) {
  for (const FamilyRow& row : FamilyRows()) {
    for (const EffectRow& effect : row.effects) {
      SCOPED_TRACE(NameOf(row) + " " + effect.solved);
      OwnRecord record(row.family);
      EXPECT_EQ(RefusalOf(effect.powerCheck, record.view(), Question::Power), Refusal{});
      record.Set(effect.solved, NullValueOf(effect, record.view()));
      record.SetWhere("Ratio", 1);
      // The power of one-way tests has no null hypothesis to refuse.
      if (row.family != Family::AV1) {
        EXPECT_EQ(RefusalOf(effect.powerCheck, record.view(), Question::Power),
                  Refusal{Said::NullHypothesisTrue});
      }
      EXPECT_EQ(RefusalOf(effect.sizeCheck, record.view(), Question::RequiredSize),
                Refusal{Said::NullHypothesisTrue});
    }
  }
}

// --- Sizes.

TEST(Families, ARequiredSizeThatIsPutHasThePowerThatTheSearchFound) {
  for (const FamilyRow& row : FamilyRows()) {
    for (int choice = 0; choice < row.sizes.count; ++choice) {
      SCOPED_TRACE(NameOf(row) + " choice " + std::to_string(choice));
      OwnRecord record(row.family);
      record.SetWhere("SampleSizeN1", 900);
      record.SetWhere("SampleSizeN2", 900);
      record.SetWhere("Df2", 90);
      if (row.sizes.choice != nullptr) {
        record.Set(row.sizes.choice, choice);
      }
      record.SetWhere("Ratio", row.family == Family::P2 ? 1.5 : 2);
      const Outcome found = Asked(row, Question::RequiredSize, record.view());
      ASSERT_TRUE(found.good);
      for (std::size_t effect = 0; effect < row.effects.size(); ++effect) {
        const SizeRule& rule = row.sizes.rules[static_cast<std::size_t>(choice)];
        const std::size_t place = row.effects.size() > 1 ? effect : rule.place;
        const std::int64_t sought = found.computed.size[place];
        // A curve at a fixed ratio names the other group.
        if (rule.ratio == nullptr) {
          EXPECT_EQ(ValueOf(row, Question::RequiredSize, record.view(), effect),
                    static_cast<double>(sought));
        }
        ASSERT_TRUE(PutSize(row, record.view(), sought));
        const Outcome power = Asked(row, Question::Power, record.view());
        EXPECT_EQ(power.computed.power[effect], found.computed.power[effect]);
        EXPECT_GE(power.computed.power[effect], record.Get("PowerGoal"));
      }
    }
  }
}

TEST(Families, ASizeOutsideItsRangeIsNotPut) {
  OwnRecord record(Family::T2);
  EXPECT_FALSE(PutSize(RowOf(Family::T2), record.view(), 1));
  EXPECT_EQ(record.Get("SampleSizeN1"), 25);
  record.Set("NToVary", 3);
  EXPECT_EQ(RuleOf(RowOf(Family::T2), record.view()), nullptr);
  EXPECT_FALSE(PutSize(RowOf(Family::T2), record.view(), 30));
}

// --- Checks.

TEST(Families, InputsThatAreRefusedBeyondTheirRangesSayWhy) {
  OwnRecord paired(Family::QMAC);
  EXPECT_EQ(RowOf(Family::QMAC).check(paired.view()), Refusal{});
  paired.Set("Eta", .1);
  EXPECT_EQ(RowOf(Family::QMAC).check(paired.view()), Refusal{Said::EtaTooSmall});
  for (const Family family : {Family::SA2, Family::SA3}) {
    OwnRecord record(family);
    EXPECT_EQ(RowOf(family).check(record.view()), Refusal{});
    record.Set("Lambda2", 0);
    EXPECT_EQ(RowOf(family).check(record.view()), Refusal{Said::LambdaNotPositive});
    record.Set("T", 5);
    EXPECT_EQ(RowOf(family).check(record.view()), Refusal{Said::FollowUpBeforeAccrual});
  }
}

TEST(Families, RangesHoldWhereEveryKeyedFieldIsInsideItsOwn) {
  for (const FamilyRow& row : FamilyRows()) {
    OwnRecord record(row.family);
    EXPECT_TRUE(RangesHold(record.view())) << NameOf(row);
    record.Set("Alpha", .5);
    EXPECT_FALSE(RangesHold(record.view())) << NameOf(row);
  }
}

// --- Sessions.

TEST(FamilySession, GoesThroughACurveAsAFreshSessionAtEachPointDoes) {
  for (const FamilyRow& row : FamilyRows()) {
    for (const Question question : {Question::Power, Question::RequiredSize}) {
      SCOPED_TRACE(NameOf(row) + (question == Question::Power ? " power" : " size"));
      SilentProcedureObserver observer;
      OwnRecord record(row.family);
      const std::unique_ptr<FamilySession> curve = row.open(question);
      curve->Take(record.view());
      const char* field = question == Question::Power ? row.sizes.rules[0].field : "PowerGoal";
      const Input input = curve->Find(Along(field));
      for (int i = 0; i < 5; ++i) {
        const double x = question == Question::Power ? 40 + 7 * i : .7 + .05 * i;
        curve->Vary(input, x);
        record.Set(field, x);
        EXPECT_EQ(curve->Value(0, observer), ValueOf(row, question, record.view())) << x;
      }
    }
  }
}

TEST(FamilySession, KeepsTwoSizesEqualAlongBoth) {
  SilentProcedureObserver observer;
  for (const Family family : {Family::T2, Family::Z2R, Family::P2, Family::V2}) {
    const FamilyRow& row = RowOf(family);
    SCOPED_TRACE(NameOf(row));
    OwnRecord record(family);
    const std::unique_ptr<FamilySession> session = row.open(Question::Power);
    session->Take(record.view());
    session->Vary(session->Find(AlongSizes), 77);
    record.Set(row.sizes.rules[0].field, 77);
    record.Set(row.sizes.rules[0].follower, 77);
    EXPECT_EQ(session->Value(0, observer), ValueOf(row, Question::Power, record.view()));
  }
}

TEST(FamilySession, TakesAnEffectInPlaceOfTheRecordsOwn) {
  SilentProcedureObserver observer;
  for (const Family family : {Family::T1, Family::T2, Family::T3, Family::V2}) {
    const FamilyRow& row = RowOf(family);
    SCOPED_TRACE(NameOf(row));
    OwnRecord record(family);
    const std::unique_ptr<FamilySession> session = row.open(Question::Power);
    session->Take(record.view());
    session->Vary(session->Find(AlongEffect), 1.25);
    PutEffect(row.effects[0], record.view(), 1.25);
    EXPECT_NEAR(session->Value(0, observer), ValueOf(row, Question::Power, record.view()), 1e-14);
  }
}

TEST(FamilySession, EndsASearchAtTheLimitThatItIsGiven) {
  SilentProcedureObserver observer;
  const OwnRecord record(Family::T2);
  const std::unique_ptr<FamilySession> session = RowOf(Family::T2).open(Question::RequiredSize);
  session->Take(record.view(), 300);
  const Outcome outcome = session->Compute(observer);
  EXPECT_FALSE(outcome.good);
  EXPECT_EQ(outcome.refusal.text, Said::SearchTooLarge);
  session->Take(record.view());
  EXPECT_TRUE(session->Compute(observer).good);
}

TEST(FamilySession, GivesTheSameNumbersOnTwoThreads) {
  const auto numbers = [] {
    std::vector<double> values;
    for (const FamilyRow& row : FamilyRows()) {
      const OwnRecord record(row.family);
      for (const Question question : {Question::Power, Question::RequiredSize}) {
        values.push_back(ValueOf(row, question, record.view()));
      }
    }
    return values;
  };
  const std::vector<double> expected = numbers();
  std::vector<double> first;
  std::vector<double> second;
  std::thread one([&] { first = numbers(); });
  std::thread two([&] { second = numbers(); });
  one.join();
  two.join();
  EXPECT_EQ(first, expected);
  EXPECT_EQ(second, expected);
}

}  // namespace
}  // namespace poweranalysis
