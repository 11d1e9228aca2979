#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <string>

#include "settings/PowerSettings.h"
#include "support/DataTable.h"
#include "support/TestData.h"

// The tables of fields, keys, labels and sections, held against each other and against the lists
// beside this test.
namespace poweranalysis {
namespace {

using testing::ReadTable;
using testing::SplitAt;

std::string DataFile(const char* name) { return TestDataDir() + "/" + name; }

std::vector<const Field*> KeyedFields(const FamilyTable& family) {
  std::vector<const Field*> keyed;
  for (const Field& field : family.fields) {
    if (field.keyed()) {
      keyed.push_back(&field);
    }
  }
  return keyed;
}

std::map<std::string, std::vector<testing::DataRow>> ExpectedFields() {
  std::map<std::string, std::vector<testing::DataRow>> expected;
  for (const auto& row : ReadTable(DataFile("fields.tsv"))) {
    expected[row[0]].push_back(row);
  }
  return expected;
}

const char* TypeName(FieldType type) {
  return type == FieldType::Int16 ? "i16" : type == FieldType::Int32 ? "i32" : "f64";
}

TEST(FieldTables, HoldEveryKeyedFieldInTheOrderOfTheRecord) {
  const auto expected = ExpectedFields();
  ASSERT_EQ(expected.size(), 21u);
  for (const auto& [code, rows] : expected) {
    const FamilyTable* family = FindFamily(code);
    ASSERT_NE(family, nullptr) << code;
    const auto keyed = KeyedFields(*family);
    ASSERT_EQ(keyed.size(), rows.size()) << code;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const auto& row = rows[i];
      const std::string where = code + "." + row[1];
      EXPECT_EQ(keyed[i]->name, row[1]) << where;
      EXPECT_EQ(TypeName(keyed[i]->type), row[2]) << where;
      EXPECT_EQ(keyed[i]->factory, std::stod(row[3])) << where;
      EXPECT_EQ(keyed[i]->lower, std::stod(row[4])) << where;
      EXPECT_EQ(keyed[i]->upper, std::stod(row[5])) << where;
      EXPECT_EQ(static_cast<int>(keyed[i]->form), std::stoi(row[6])) << where;
    }
  }
}

TEST(FieldTables, CountTheFieldsOfEachFamily) {
  const std::map<std::string, std::size_t> counts = {
      {"T1", 24},    {"T2", 24},   {"T3", 24},         {"PC", 19},  {"AV1", 19}, {"AV2", 22},
      {"V1", 17},    {"V2", 20},   {"R", 21},          {"Z2R", 18}, {"R2", 22},  {"P1", 22},
      {"P2", 24},    {"QMAC", 18}, {"SA1", 15},        {"SA2", 17}, {"SA3", 18}, {"SEM", 22},
      {"X2Calc", 5}, {"FCalc", 6}, {"BinomialCalc", 4}};
  ASSERT_EQ(FamilyTables().size(), counts.size());
  for (const FamilyTable& family : FamilyTables()) {
    EXPECT_EQ(KeyedFields(family).size(), counts.at(family.code)) << family.code;
  }
}

TEST(FieldTables, StandInTheOrderOfTheBlock) {
  std::vector<std::string> codes;
  for (const FamilyTable& family : FamilyTables()) {
    EXPECT_EQ(&TableOf(family.family), &family);
    codes.emplace_back(family.code);
  }
  EXPECT_EQ(codes, (std::vector<std::string>{"T1",  "T2",  "T3",          "R2",  "X2Calc", "FCalc",
                                             "AV1", "PC",  "V1",          "V2",  "R",      "Z2R",
                                             "P1",  "P2",  "QMAC",        "SA1", "SA2",    "SA3",
                                             "SEM", "AV2", "BinomialCalc"}));
}

TEST(FieldTables, NumberTheTypesAsTheKeyTablesDo) {
  EXPECT_EQ(static_cast<int>(FieldType::Int16), 0);
  EXPECT_EQ(static_cast<int>(FieldType::Int32), 1);
  EXPECT_EQ(static_cast<int>(FieldType::Real), 3);
}

TEST(FieldTables, BuiltInValuesLieInsideTheirRanges) {
  for (const FamilyTable& family : FamilyTables()) {
    for (const Field* field : KeyedFields(family)) {
      EXPECT_TRUE(WithinRange(*field, field->factory)) << family.code << "." << field->name;
      EXPECT_LE(field->lower, field->upper) << family.code << "." << field->name;
    }
  }
}

TEST(FieldTables, WholeFieldsHaveWholeNumbers) {
  for (const FamilyTable& family : FamilyTables()) {
    for (const Field& field : family.fields) {
      if (field.type == FieldType::Real) {
        continue;
      }
      const double widest = field.type == FieldType::Int16 ? 32767 : 2147483647;
      for (const double value : {field.factory, field.lower, field.upper}) {
        EXPECT_EQ(value, static_cast<double>(static_cast<std::int64_t>(value))) << field.name;
        EXPECT_LE(std::abs(value), widest) << field.name;
      }
    }
  }
}

TEST(FieldTables, FieldsOfARecordDoNotOverlap) {
  for (const FamilyTable& family : FamilyTables()) {
    std::size_t end = 0;
    for (const Field& field : family.fields) {
      EXPECT_GE(field.offset, end) << family.code << "." << field.name;
      end = field.offset + (field.type == FieldType::Int16   ? 2u
                            : field.type == FieldType::Int32 ? 4u
                                                             : 8u);
    }
    EXPECT_LE(end, family.recordSize) << family.code;
  }
}

TEST(FieldTables, NamesAreUniqueAndFound) {
  for (const FamilyTable& family : FamilyTables()) {
    std::set<std::string> names;
    for (const Field& field : family.fields) {
      EXPECT_TRUE(names.insert(field.name).second) << family.code << "." << field.name;
      EXPECT_EQ(family.Find(field.name), &field);
    }
    EXPECT_EQ(family.Find(""), nullptr);
    EXPECT_EQ(family.Find("samplesize"), nullptr);
  }
}

TEST(FieldTables, FamiliesAreFoundInAnyCase) {
  EXPECT_EQ(FindFamily("t1"), &TableOf(Family::T1));
  EXPECT_EQ(FindFamily("BINOMIALCALC"), &TableOf(Family::BinomialCalc));
  EXPECT_EQ(FindFamily("t"), nullptr);
  EXPECT_EQ(FindFamily(""), nullptr);
}

// Working values: copied with the record, neither saved nor checked.
TEST(FieldTables, HoldTheUnkeyedFields) {
  std::map<std::string, std::map<std::string, double>> unkeyed;
  for (const FamilyTable& family : FamilyTables()) {
    for (const Field& field : family.fields) {
      if (!field.keyed()) {
        unkeyed[family.code][field.name] = field.factory;
        EXPECT_EQ(field.lower, -9999);
        EXPECT_EQ(field.upper, -9999);
        EXPECT_EQ(field.key, text::None);
        EXPECT_EQ(field.label, text::None);
      }
    }
  }
  const std::map<std::string, std::map<std::string, double>> expected = {
      {"T1", {{"Delta", 0}}},
      {"Z2R", {{"NToVary", 0}}},
      {"AV1", {{"Algorithm", 0}}},
      {"AV2", {{"Algorithm", 0}}},
      {"V2", {{"Algorithm", 0}}},
      {"X2Calc", {{"WhatToCompute", 1}}},
      {"FCalc", {{"WhatToCompute", 1}}},
      {"BinomialCalc", {{"WhatToCompute", 1}, {"OneMinusP", 0}, {"ActualValue", -9999}}}};
  EXPECT_EQ(unkeyed, expected);
}

// --- Keys.

TEST(KeyTables, HoldTheKeysInTheOrderOfTheFile) {
  const auto rows = ReadTable(DataFile("keys.tsv"));
  ASSERT_EQ(rows.size(), 21u);
  PowerSettings block{};
  for (const auto& row : rows) {
    const FamilyTable* family = FindFamily(row[0]);
    ASSERT_NE(family, nullptr) << row[0];
    std::vector<std::string> names;
    for (const KeyEntry& entry : FillKeys(block, family->family).entries) {
      names.emplace_back(entry.field->name);
    }
    EXPECT_EQ(names, SplitAt(row[1], ',')) << row[0];
  }
}

TEST(KeyTables, EveryKeyedFieldHasAPlaceOfItsOwn) {
  for (const FamilyTable& family : FamilyTables()) {
    std::set<int> places;
    const auto keyed = KeyedFields(family);
    for (const Field* field : keyed) {
      EXPECT_TRUE(places.insert(field->place).second) << family.code << "." << field->name;
    }
    EXPECT_EQ(*places.begin(), 0) << family.code;
    EXPECT_EQ(*places.rbegin(), static_cast<int>(keyed.size()) - 1) << family.code;
  }
}

TEST(KeyTables, EntriesPointIntoTheirInstances) {
  PowerSettings block{};
  const KeyTable keys = FillKeys(block, Family::T1);
  EXPECT_EQ(keys.entries[0].working, &block.T1.Working.SampleSize);
  EXPECT_EQ(keys.entries[0].factory, &block.T1.Factory.SampleSize);
  EXPECT_EQ(keys.entries[0].lower, &block.T1.Lower.SampleSize);
  EXPECT_EQ(keys.entries[0].upper, &block.T1.Upper.SampleSize);
  EXPECT_EQ(keys.entries[23].working, &block.T1.Working.DegreesOfFreedom);
  EXPECT_EQ(FillKeys(block, Family::SEM).entries[21].upper, &block.SEM.Upper.DfEnd);
}

TEST(KeyTables, TheOrderOfRecordAndKeysIsTheSameInFourFamiliesAlone) {
  std::set<std::string> same;
  for (const FamilyTable& family : FamilyTables()) {
    const auto keyed = KeyedFields(family);
    if (std::is_sorted(keyed.begin(), keyed.end(),
                       [](const Field* a, const Field* b) { return a->place < b->place; })) {
      same.insert(family.code);
    }
  }
  EXPECT_EQ(same, (std::set<std::string>{"T2", "PC", "AV1", "QMAC"}));
}

// --- Labels and key texts.

TEST(Labels, AreThoseOfTheListWithTheirMarks) {
  const auto rows = ReadTable(DataFile("labels.tsv"));
  ASSERT_EQ(rows.size(), 108u);
  std::map<std::string, testing::DataRow> expected;
  for (const auto& row : rows) {
    expected[row[0]] = row;
  }
  std::set<std::string> seen;
  for (const FamilyTable& family : FamilyTables()) {
    for (const Field* field : KeyedFields(family)) {
      if (std::string_view(field->name) == "PopulationR2") {
        continue;
      }
      ASSERT_EQ(expected.count(field->name), 1u) << field->name;
      const auto& row = expected[field->name];
      EXPECT_EQ(RawText(field->label), row[1]) << field->name;
      EXPECT_EQ(RawText(field->key), (row[2] == "1" ? "DontTranslate!!" : "") + row[0]);
      EXPECT_EQ(LoadText(field->key), field->name);
      EXPECT_NE(LoadText(field->meaning), "") << field->name;
      seen.insert(field->name);
    }
  }
  EXPECT_EQ(seen.size(), 108u);
}

// Deliberately so: a setting stored under no name, and reported without one.
TEST(Labels, ThePopulationSquaredMultipleCorrelationHasNeitherKeyNorLabel) {
  const Field* field = TableOf(Family::R2).Find("PopulationR2");
  ASSERT_NE(field, nullptr);
  EXPECT_TRUE(field->keyed());
  EXPECT_EQ(field->place, 4);
  EXPECT_EQ(LoadText(field->key), "");
  EXPECT_EQ(LoadText(field->label), "");
}

// The second standard deviation is deliberately unlike its neighbour.
TEST(Labels, OfTheStandardDeviationsOneIsNotMarked) {
  const FamilyTable& table = TableOf(Family::T3);
  EXPECT_EQ(RawText(table.Find("Sigma1")->label), "DontTranslate!!PopulationSigma1");
  EXPECT_EQ(RawText(table.Find("Sigma2")->label), "PopulationSigma2");
  EXPECT_EQ(LoadText(table.Find("Sigma1")->label), "PopulationSigma1");
  EXPECT_EQ(LoadText(table.Find("Sigma2")->label), "PopulationSigma2");
  EXPECT_EQ(TableOf(Family::T1).Find("Sigma")->label, 13919);
}

TEST(Labels, OfTheStepsDifferInOneCapital) {
  EXPECT_EQ(LoadText(TableOf(Family::T1).Find("NInterval")->label), "No. Of Steps");
  EXPECT_EQ(LoadText(TableOf(Family::V1).Find("DfIntervals")->label), "No. of Steps");
}

TEST(Labels, OneKeyHasOneLabelAndOneMeaningInAllFamilies) {
  std::map<std::string, const Field*> first;
  for (const FamilyTable& family : FamilyTables()) {
    for (const Field* field : KeyedFields(family)) {
      const Field* known = first.emplace(field->name, field).first->second;
      EXPECT_EQ(field->label, known->label) << field->name;
      EXPECT_EQ(field->key, known->key) << field->name;
    }
  }
  EXPECT_EQ(first.size(), 109u);
}

// --- Sections.

TEST(Sections, AreThoseOfTheListWithTheirMarks) {
  const auto rows = ReadTable(DataFile("sections.tsv"));
  ASSERT_EQ(rows.size(), 18u);
  std::set<std::string> withSection;
  for (const auto& row : rows) {
    const FamilyTable* family = FindFamily(row[0]);
    ASSERT_NE(family, nullptr) << row[0];
    EXPECT_EQ(family->section, std::stoi(row[1])) << row[0];
    EXPECT_EQ(RawText(family->section), row[2]) << row[0];
    withSection.insert(row[0]);
  }
  for (const FamilyTable& family : FamilyTables()) {
    EXPECT_EQ(family.section != 0, withSection.count(family.code) == 1) << family.code;
  }
}

TEST(Sections, KeepTheirMisleadingNames) {
  EXPECT_EQ(LoadText(TableOf(Family::P1).section), "POWER_ANALYSIS_X2TEST_ON_ONE_PROPORTION");
  EXPECT_EQ(LoadText(TableOf(Family::SA2).section),
            "POWER_ANALYSIS_SURVIVAL_ANALYSIS_EXPONENTIAL_NO_DROPOUTS");
}

}  // namespace
}  // namespace poweranalysis
