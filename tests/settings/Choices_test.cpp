#include "settings/Choices.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace poweranalysis {
namespace {

std::vector<std::string> Words(Family family, const char* field) {
  std::vector<std::string> words;
  for (const Choice& choice : ChoicesOf(family, field)) {
    words.emplace_back(choice.word);
  }
  return words;
}

TEST(Choices, BelongToFieldsOfTheirFamily) {
  std::set<std::pair<Family, std::string>> seen;
  for (const ChoiceRow& row : ChoiceRows()) {
    const FamilyTable& family = TableOf(row.family);
    ASSERT_NE(family.Find(row.field), nullptr) << family.code << ' ' << row.field;
    EXPECT_TRUE(seen.emplace(row.family, row.field).second) << family.code << ' ' << row.field;
    EXPECT_NE(family.Find(row.field)->type, FieldType::Real) << family.code << ' ' << row.field;
  }
}

TEST(Choices, LieWithinTheBoundsOfTheirField) {
  for (const ChoiceRow& row : ChoiceRows()) {
    const Field& field = *TableOf(row.family).Find(row.field);
    for (const Choice& choice : row.choices) {
      EXPECT_TRUE(!field.keyed() || WithinRange(field, choice.value))
          << TableOf(row.family).code << ' ' << row.field << ' ' << choice.word;
    }
    EXPECT_NE(FindChoice(row.choices, field.factory), nullptr)
        << TableOf(row.family).code << ' ' << row.field << ": the built-in value is no choice";
  }
}

TEST(Choices, AscendAndDifferInTheirWords) {
  for (const ChoiceRow& row : ChoiceRows()) {
    std::set<std::string> words;
    int last = -1;
    for (const Choice& choice : row.choices) {
      EXPECT_GT(choice.value, last) << TableOf(row.family).code << ' ' << row.field;
      last = choice.value;
      EXPECT_TRUE(words.insert(choice.word).second) << choice.word;
      EXPECT_EQ(choice.caption == text::None, row.choices.front().caption == text::None)
          << "some of the buttons of " << row.field << " have no caption";
    }
  }
}

TEST(Choices, AFamilyOffersWhatItHas) {
  using List = std::vector<std::string>;
  const List threeForms = {"two-sided", "upper", "lower"};
  const List twoForms = {"two-sided", "upper"};
  for (const FamilyTable& family : FamilyTables()) {
    const std::string code = family.code;
    const bool survival = code.rfind("SA", 0) == 0;
    if (family.Find("H0Type") != nullptr) {
      EXPECT_EQ(Words(family.family, "H0Type"), code == "R2"
                                                    ? List({"two-sided", "upper", "lower", "zero"})
                                                : survival ? twoForms
                                                           : threeForms)
          << code;
    }
  }
  EXPECT_EQ(Words(Family::T2, "NToVary"), List({"equal", "n1", "n2"}));
  EXPECT_EQ(Words(Family::P2, "NToVary"), List({"equal", "n1", "n2", "ratio"}));
  EXPECT_EQ(Words(Family::V2, "DfToVary"), List({"equal", "df1"}));
  EXPECT_EQ(Words(Family::Z2R, "Algorithm"), List({"refined", "crude"}));
  EXPECT_EQ(Words(Family::R, "Algorithm"), List({"exact", "refined", "crude"}));
}

TEST(Choices, AFieldForAnyNumberHasNone) {
  EXPECT_TRUE(ChoicesOf(Family::T1, "Alpha").empty());
  EXPECT_TRUE(ChoicesOf(Family::T1, "NToVary").empty());
}

}  // namespace
}  // namespace poweranalysis
