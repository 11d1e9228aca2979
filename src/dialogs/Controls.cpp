#include "dialogs/Controls.h"

#include <algorithm>
#include <iterator>

namespace poweranalysis {

namespace {

struct FieldControl {
  std::string_view field;
  int number;
};

// By the field's name, ascending. The numbers below 1000 are the system's own. A field that is not
// listed takes a free number, in the order of the field tables.
constexpr FieldControl kFieldControls[] = {
    {"Alpha", 111},
    {"AlphaEnd", 139},
    {"AlphaStart", 138},
    {"BetweenGroupR", 21001},
    {"Columns", 21002},
    {"Confidence", 705},
    {"Continuity", 22050},
    {"CumP", 21003},
    {"D", 21004},
    {"DegreesOfFreedom", 21005},
    {"Delta", 21006},
    {"DeltaEnd", 21007},
    {"DeltaStart", 21008},
    {"Df1", 21009},
    {"Df2", 21010},
    {"DfEnd", 21011},
    {"DfIntervals", 21012},
    {"DfStart", 21013},
    {"EndRMSSE", 21014},
    {"EqualN", 22051},
    {"EsEnd", 137},
    {"EsStart", 136},
    {"Eta", 21015},
    {"EtaEnd", 21016},
    {"EtaStart", 21017},
    {"FObserved", 21079},
    {"Groups", 21018},
    {"Lambda1", 21019},
    {"Lambda2", 21020},
    {"Lambda2End", 21021},
    {"Lambda2Start", 21022},
    {"Mu", 112},
    {"Mu0", 108},
    {"Mu1", 21023},
    {"Mu2", 21024},
    {"N", 21025},
    {"NEnd", 130},
    {"NInterval", 140},
    {"NStart", 129},
    {"NullHypothesizedVariance", 21026},
    {"NumberOfGroups", 21027},
    {"ObservedChiSquare", 21028},
    {"OneMinusP", 22070},
    {"P", 21029},
    {"PObserved", 21030},
    {"Pi", 21031},
    {"Pi0", 21032},
    {"Pi1", 21033},
    {"Pi2", 21034},
    {"Pi2End", 21035},
    {"Pi2Start", 21036},
    {"PiEnd", 21037},
    {"PiStart", 21038},
    {"PopulationR2", 21039},
    {"PopulationVariance", 21040},
    {"PowerEnd", 406},
    {"PowerGoal", 114},
    {"PowerStart", 403},
    {"R", 21041},
    {"R0", 21042},
    {"R2End", 21043},
    {"R2Null", 21044},
    {"R2Observed", 21045},
    {"R2Start", 21046},
    {"REnd", 21047},
    {"RMSSE", 21048},
    {"RMSSE_Col", 21049},
    {"RMSSE_Int", 21050},
    {"RMSSE_Row", 21051},
    {"RObserved", 21052},
    {"RStart", 21053},
    {"Ratio", 21054},
    {"RatioEnd", 21055},
    {"RatioStart", 21056},
    {"Rho", 21057},
    {"Rho0", 21058},
    {"Rho1", 21059},
    {"Rho2", 21060},
    {"RhoEnd", 21061},
    {"RhoStart", 21062},
    {"Rows", 21063},
    {"SampleSize", 104},
    {"SampleSizeN1", 21064},
    {"SampleSizeN2", 21065},
    {"Sigma", 119},
    {"Sigma1", 21066},
    {"Sigma2", 21067},
    {"StandardizedEffect", 21068},
    {"StartRMSSE", 21069},
    {"SumOfSquaredWeights", 21070},
    {"T", 21071},
    {"T0", 21072},
    {"TObserved", 701},
    {"TotalNumberOfVars", 21073},
    {"Var1", 21074},
    {"Var2", 21075},
    {"VarEnd", 21076},
    {"VarStart", 21077},
    {"XObserved", 21078},
};

constexpr bool AscendingByField() {
  for (std::size_t i = 1; i < std::size(kFieldControls); ++i) {
    if (!(kFieldControls[i - 1].field < kFieldControls[i].field)) {
      return false;
    }
  }
  return true;
}
static_assert(AscendingByField(), "kFieldControls: a field stands twice or out of order");

// The number of a field; 0 when it is not listed.
int ListedNumber(std::string_view field) {
  const auto* row =
      std::lower_bound(std::begin(kFieldControls), std::end(kFieldControls), field,
                       [](const FieldControl& r, std::string_view name) { return r.field < name; });
  return row != std::end(kFieldControls) && row->field == field ? row->number : 0;
}

// The same in a short list without an order.
int NumberIn(std::span<const FieldControl> list, std::string_view field) {
  const auto row = std::find_if(list.begin(), list.end(),
                                [field](const FieldControl& r) { return r.field == field; });
  return row == list.end() ? 0 : row->number;
}

// Fields that radio buttons show do not have their own number.
std::vector<FieldControl> MakeFreeNumbers() {
  constexpr int kFirstFree = 21101;
  std::vector<FieldControl> free;
  for (const FamilyTable& family : FamilyTables()) {
    for (const Field& field : family.fields) {
      const bool numbered = ListedNumber(field.name) != 0 || NumberIn(free, field.name) != 0 ||
                            RadioBaseOf(field.name) != 0;
      if (!numbered) {
        free.push_back({field.name, kFirstFree + static_cast<int>(free.size())});
      }
    }
  }
  return free;
}

// Made at the first field that no list has, since most dialogs have none.
int FreeNumber(std::string_view field) {
  static const std::vector<FieldControl> free = MakeFreeNumbers();
  return NumberIn(free, field);
}

constexpr std::string_view kCheckBoxes[] = {"Continuity", "EqualN", "OneMinusP"};

// --- Radio buttons.

// The button of value 0; the others count on from it.
constexpr FieldControl kRadioBases[] = {
    {"Algorithm", 22020}, {"DfToVary", 22040}, {"EffectToTest", 22010},           {"H0Type", 1210},
    {"ModelType", 22000}, {"NToVary", 22030},  {"WhatToCompute", ControlUnknown},
};

struct FamilyRadios {
  Family family;
  RadioGroup group;
};

// A field whose choices have captions shows them as radio buttons.
std::vector<FamilyRadios> MakeRadios() {
  std::vector<FamilyRadios> radios;
  for (const ChoiceRow& row : ChoiceRows()) {
    if (row.choices.front().caption != text::None) {
      radios.push_back({row.family, {row.field, RadioBaseOf(row.field), row.caption, row.choices}});
    }
  }
  return radios;
}

// The label of one field is empty, and a page cannot ask for a number without a name.
std::string CaptionOf(const Field& field) {
  const std::string label = LoadText(field.label);
  return label.empty() ? LoadText(field.meaning) : label;
}

// What a field means and what it may be, for tool tips.
std::string HelpOf(const Field& field) {
  return LoadText(field.meaning) + " (" + RangeText(field) + ")";
}

// The ratio of two proportions' groups stands with the choice that it belongs to.
TextId GroupOf(Family family, const Field& field, TextId groupCaption) {
  const bool ratioOfGroups = family == Family::P2 && std::string_view(field.name) == "Ratio";
  return ratioOfGroups ? text::GroupGroupToVary : groupCaption;
}

}  // namespace

int ControlOfField(std::string_view field) {
  const int listed = ListedNumber(field);
  return listed != 0 ? listed : FreeNumber(field);
}

int ControlOfField(Family family, std::string_view field) {
  constexpr int kObservedFOfOneWay = 4801;
  return family == Family::AV1 && field == "FObserved" ? kObservedFOfOneWay : ControlOfField(field);
}

bool IsCheckBox(std::string_view field) {
  return std::find(std::begin(kCheckBoxes), std::end(kCheckBoxes), field) != std::end(kCheckBoxes);
}

int RadioBaseOf(std::string_view field) { return NumberIn(kRadioBases, field); }

const RadioGroup* RadiosOf(std::string_view field, Family family) {
  static const std::vector<FamilyRadios> all = MakeRadios();
  const auto row = std::find_if(all.begin(), all.end(), [&](const FamilyRadios& radios) {
    return radios.family == family && field == radios.group.field;
  });
  return row == all.end() ? nullptr : &row->group;
}

std::vector<ControlSpec> ControlsOfField(const FamilyTable& family,
                                         const Field& field,
                                         TextId groupCaption) {
  std::vector<ControlSpec> controls;
  if (const RadioGroup* radios = RadiosOf(field.name, family.family)) {
    for (const Choice& choice : radios->choices) {
      controls.push_back({radios->base + choice.value, ControlKind::Radio, field.name,
                          LoadText(choice.caption), LoadText(field.meaning),
                          LoadText(radios->caption), choice.value});
    }
    return controls;
  }
  const ControlKind kind = IsCheckBox(field.name)          ? ControlKind::CheckBox
                           : field.type == FieldType::Real ? ControlKind::RealEdit
                                                           : ControlKind::IntEdit;
  controls.push_back({ControlOfField(family.family, field.name), kind, field.name, CaptionOf(field),
                      HelpOf(field), LoadText(GroupOf(family.family, field, groupCaption)), 0});
  return controls;
}

ControlSpec ButtonSpec(int number, std::string name, TextId caption) {
  return {number, ControlKind::Button, std::move(name), LoadText(caption), {}, {}, 0};
}

PageSpec SettingsPageSpec() {
  return {SettingsPage,
          LoadText(text::CaptionSettingsIO),
          {ButtonSpec(ControlSave, "Save", text::ButtonSave),
           ButtonSpec(ControlSaveAs, "SaveSettingsAs", text::ButtonSaveAs),
           ButtonSpec(ControlOpen, "Open", text::ButtonOpenSettings),
           ButtonSpec(ControlSaveAsDefault, "SaveAsDefault", text::ButtonSaveAsDefault)}};
}

int PageOfFrame(int frame) {
  // One above the frame would be the frame of another dialog here.
  constexpr int kOneProportionInterval = 6307;
  constexpr int kItsPage = 6309;
  return frame == kOneProportionInterval ? kItsPage : frame + 1;
}

}  // namespace poweranalysis
