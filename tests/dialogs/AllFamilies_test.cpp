#include <set>

#include "dialogs/DialogFactory.h"
#include "dialogs/FamilyRun.h"
#include "frame/FormatText.h"

// The rows of the dialogs of all families held against the tables of fields and texts.
namespace poweranalysis {
namespace {

class AllFamilies : public FamilyRun {};

// Does what fills the slot fit the conversion?
void ExpectSlotFits(const FamilyTable& family, const Slot& slot, char conversion) {
  if (conversion == 's') {
    EXPECT_NE(slot.word.texts[0], text::None);
    if (slot.word.field != nullptr) {
      ASSERT_NE(family.Find(slot.word.field), nullptr) << slot.word.field;
    }
    return;
  }
  EXPECT_EQ(slot.word.texts[0], text::None) << slot.word.texts[0];
  if (slot.quantity.kind == QuantityKind::Effect) {
    EXPECT_EQ(conversion, 'g');
    return;
  }
  ASSERT_EQ(slot.quantity.kind, QuantityKind::Field);
  const Field* field = family.Find(slot.quantity.field);
  ASSERT_NE(field, nullptr) << slot.quantity.field;
  EXPECT_EQ(conversion, field->type == FieldType::Real ? 'g' : 'd') << field->name;
}

void ExpectTextsFit(const FamilyTable& family, const PlotTexts& texts) {
  std::size_t last = 0;
  if (texts.byField != nullptr) {
    const Field* field = family.Find(texts.byField);
    ASSERT_NE(field, nullptr) << texts.byField;
    last = field->keyed() ? static_cast<std::size_t>(field->upper) : 2;
  }
  for (std::size_t i = 0; i < texts.alternatives.size(); ++i) {
    const PlotText& alternative = texts.alternatives[i];
    if (alternative.id == text::None) {
      // T2's fourth value and V2's third are within bounds, yet no plot comes to be drawn for them.
      EXPECT_TRUE(i > last ||
                  (texts.byField != nullptr && ((family.family == Family::T2 && i == 3) ||
                                                (family.family == Family::V2 && i == 2))))
          << text::None << " for " << i;
      continue;
    }
    const std::string format = LoadText(alternative.id);
    SCOPED_TRACE(format);
    const std::string conversions = FormatSlots(format);
    ASSERT_LE(conversions.size(), alternative.slots.size());
    for (std::size_t slot = 0; slot < alternative.slots.size(); ++slot) {
      if (slot < conversions.size()) {
        ExpectSlotFits(family, alternative.slots[slot], conversions[slot]);
      } else {
        EXPECT_EQ(alternative.slots[slot].quantity.kind, QuantityKind::None) << "a slot too many";
        EXPECT_EQ(alternative.slots[slot].word.texts[0], text::None) << "a slot too many";
      }
    }
  }
}

TEST_F(AllFamilies, AChartGoesByItsNameWhateverItsCaption) {
  for (const ResultsDialogTable* table : AllResultsDialogs()) {
    std::set<std::string> names;
    int control = table->mode == ModePower ? ControlPowerCharts : ControlSizeCharts;
    for (const ChartButton& button : ChartButtons(*table)) {
      const std::string name = button.chart.name;
      EXPECT_TRUE(names.insert(name).second) << name << " stands on two buttons";
      EXPECT_EQ(name.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-"), std::string::npos)
          << name;
      EXPECT_EQ(button.control, control++) << name;
      EXPECT_EQ(ChartControl(table->family, table->mode, name), button.control) << name;
      EXPECT_FALSE(LoadText(button.chart.caption).empty()) << name;
    }
    EXPECT_GE(names.size(), 3u);
    EXPECT_EQ(ChartControl(table->family, table->mode, "power-vs-nothing"), 0);
  }
  EXPECT_EQ(ChartControl(Family::T1, ModeSampleSize, "power-vs-n"), 0);
  EXPECT_EQ(ChartControl(Family::T1, ModeInterval, "power-vs-n"), 0);
}

TEST_F(AllFamilies, HaveAResultsDialogForPowerAndOneForSize) {
  std::set<std::pair<Family, int>> seen;
  for (const ResultsDialogTable* table : AllResultsDialogs()) {
    EXPECT_TRUE(seen.emplace(table->family, table->mode).second);
  }
  EXPECT_EQ(seen.size(), 36u);
}

TEST_F(AllFamilies, TextsOfPlotsFitWhatFillsThem) {
  for (const ResultsDialogTable* table : AllResultsDialogs()) {
    const FamilyTable& family = TableOf(table->family);
    SCOPED_TRACE(NameOf(DesignOf(*table)));
    for (const PlotRow& plot : table->plots) {
      ExpectTextsFit(family, plot.title);
      ExpectTextsFit(family, plot.xLabel);
      ExpectTextsFit(family, plot.yLabel);
      EXPECT_NE(plot.title.alternatives[0].id, text::None);
      EXPECT_NE(plot.xLabel.alternatives[0].id, text::None);
      EXPECT_NE(plot.yLabel.alternatives[0].id, text::None);
    }
    if (table->familyTitle.alternatives[0].id != text::None) {
      ExpectTextsFit(family, table->familyTitle);
    }
  }
}

TEST_F(AllFamilies, AxesOfPlotsAreFieldsOfTheirPage) {
  for (const ResultsDialogTable* table : AllResultsDialogs()) {
    const FamilyTable& family = TableOf(table->family);
    const std::set<std::string> page(table->fields.begin(), table->fields.end());
    for (const PlotRow& plot : table->plots) {
      for (const char* name : {plot.axis.start, plot.axis.end, plot.axis.intervals}) {
        EXPECT_NE(family.Find(name), nullptr) << family.code << ' ' << name;
        EXPECT_TRUE(page.count(name)) << family.code << ' ' << name;
      }
      EXPECT_EQ(plot.axis.whole, family.Find(plot.axis.start)->type != FieldType::Real)
          << family.code << ' ' << plot.axis.start;
    }
  }
}

// Kinds by what is drawn: the clamps of a power chart are not those of a size chart.
TEST_F(AllFamilies, PowerPlotsHavePowerKinds) {
  for (const ResultsDialogTable* table : AllResultsDialogs()) {
    for (const PlotRow& plot : table->plots) {
      const bool power = plot.kind == PowerVsEffect || plot.kind >= PowerVsSize;
      EXPECT_EQ(power, table->mode == ModePower) << TableOf(table->family).code;
      EXPECT_LT(plot.kind, ClampedChartKinds);
    }
  }
}

TEST_F(AllFamilies, EveryButtonOfEveryResultsDialogDrawsForTheBuiltInValues) {
  for (const ResultsDialogTable* table : AllResultsDialogs()) {
    SCOPED_TRACE(NameOf(DesignOf(*table)));
    OpenResults(DesignOf(*table));
    const int first = table->mode == ModePower ? ControlPowerCharts : ControlSizeCharts;
    for (int i = 0; i < static_cast<int>(ChartButtons(*table).size()); ++i) {
      host_.TakeWorkbook();
      EXPECT_EQ(Press(first + i), 1) << first + i;
      ASSERT_FALSE(Items<Chart>().empty());
      for (const Chart& chart : Items<Chart>()) {
        for (const std::string& title : chart.titles) {
          EXPECT_FALSE(title.empty());
          EXPECT_EQ(title.find("()"), std::string::npos) << title;
        }
        EXPECT_FALSE(chart.xLabel.empty());
        EXPECT_FALSE(chart.yLabel.empty());
        EXPECT_LE(chart.xLabel.size(), 60u);
        EXPECT_LE(chart.yLabel.size(), 60u);
      }
    }
    // No button more; the number after the last possible one is Change Params.
    const int next = first + static_cast<int>(ChartButtons(*table).size());
    EXPECT_TRUE(next == ControlChangeParams || form().Find(next) == nullptr) << next;
    EXPECT_THAT(host_.messages(), ::testing::IsEmpty());
  }
}

TEST_F(AllFamilies, CalculateSendsATableAndAReportForTheBuiltInValues) {
  for (const ResultsDialogTable* table : AllResultsDialogs()) {
    SCOPED_TRACE(NameOf(DesignOf(*table)));
    host_.TakeWorkbook();
    OpenResults(DesignOf(*table));
    EXPECT_EQ(Press(ControlAccept), 1);
    ASSERT_EQ(host_.workbook().items.size(), 2u);
    EXPECT_EQ(LastTable().code, FindTable(table->family, table->mode)->code);
    for (const std::string& paragraph : Paragraphs()) {
      EXPECT_EQ(paragraph.find("-----"), std::string::npos) << paragraph;
    }
    for (const TableRow& row : LastTable().rows) {
      const bool title = row.title.find("Effect") != std::string::npos &&
                         row.title.find("Es") == std::string::npos && row.title != "Effect Df";
      EXPECT_TRUE(!IsMissing(row.values[0]) || title || row.title.size() <= 1) << row.title;
    }
    EXPECT_THAT(host_.messages(), ::testing::IsEmpty());
  }
}

// Its noncentrality is far beyond what the recursion of the noncentral t distribution bears.
TEST_F(AllFamilies, AnEffectBeyondAllReachHasAPowerOfOne) {
  struct Case {
    const char* family;
    std::vector<std::pair<const char*, const char*>> typed;
  };
  const Case cases[] = {
      {"T1", {{"Mu", "1e30"}, {"Sigma", "1e-9"}}},
      {"T1", {{"Mu", "-1e30"}, {"Sigma", "1e-9"}}},
      {"T2", {{"Mu1", "1e30"}, {"Sigma", "1e-9"}}},
      {"T3", {{"Mu1", "1e30"}, {"Sigma1", "1e-9"}, {"Sigma2", "1e-9"}}},
      {"PC", {{"StandardizedEffect", "1e30"}, {"SumOfSquaredWeights", "1e-300"}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.family);
    std::vector<std::pair<ControlName, std::string>> typed;
    for (const auto& [field, value] : c.typed) {
      typed.emplace_back(ControlOfField(field), value);
    }
    OpenResults({ModePower, c.family, typed});
    ASSERT_EQ(Press(ControlAccept), 1);
    EXPECT_EQ(Row("Power"), 1);
    OpenResults({ModeSampleSize, c.family, typed});
    ASSERT_EQ(Press(ControlAccept), 1);
    EXPECT_LE(LastTable().rows.back().values.front(), 3);
  }
  EXPECT_THAT(host_.messages(), ::testing::IsEmpty());
}

}  // namespace
}  // namespace poweranalysis
