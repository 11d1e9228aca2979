#pragma once

#include <array>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "dialogs/FieldDialog.h"
#include "distributions/Common.h"

namespace poweranalysis {

// The fields that calculators have in common.
inline constexpr const char* ProbabilityField = "CumP";
inline constexpr const char* OneMinusPField = "OneMinusP";
inline constexpr const char* SelectorField = "WhatToCompute";
inline constexpr const char* ActualField = "ActualValue";
inline constexpr const char* AlgorithmField = "Algorithm";

// The most decimals of a real number in a box.
inline constexpr int BoxDecimals = 8;

// What a computation gives.
struct CalculatorAnswer {
  bool good = false;
  double value = NumericFailure;
  // Where no value of the unknown has the requested probability: the message that says so, and the
  // probability that the dialog shows instead, which belongs to `value`.
  TextId noSolution = text::None;
  double nearestProbability = NumericFailure;
  // The probability of a discrete answer, which rarely is the requested one.
  double actual = NumericFailure;
  // The upper tail of a probability so close to 1 that one minus it has lost its digits.
  double upper = NumericFailure;
};

inline CalculatorAnswer GoodAnswer(double value) {
  return {true, value, text::None, NumericFailure, NumericFailure, NumericFailure};
}

// A probability, held to [0, 1], which rounding may have left. `upper` computes its upper tail from
// its own side; it is called only where one minus the probability has lost its digits.
template <class Upper>
CalculatorAnswer ProbabilityAnswer(double p, Upper upper) {
  constexpr double kSmallTail = 1e-4;
  CalculatorAnswer answer = GoodAnswer(p < 0 ? 0 : p > 1 ? 1 : p);
  if (1 - answer.value < kSmallTail) {
    const double tail = upper();
    answer.upper = tail < 0 && tail != NumericFailure ? 0 : tail;
  }
  return answer;
}

// One of the three numbers of an equation that can be asked for.
struct CalculatorUnknown {
  const char* field;  // that its box shows
  const char* name;   // for commands: "delta"
  const char* flag;   // the field that is 1 when this is the unknown; null: WhatToCompute decides
  TextId caption;     // of its radio button; that of the probability goes by OneMinusP
  // Solves for it from Working; `p` is the cumulative probability.
  CalculatorAnswer (*compute)(const PowerSettings& block, double p);
};

inline constexpr std::size_t UnknownStatistic = 0;
inline constexpr std::size_t UnknownProbability = 1;
inline constexpr std::size_t UnknownParameter = 2;

// One calculator: an equation among the numbers of a record.
struct CalculatorTable {
  const char* calculator;  // its code in the task catalogue
  Family family;
  std::span<const char* const> fields;  // of its page, in tab order
  std::array<CalculatorUnknown, 3> unknowns;
  // Comes before every computation; false ends it.
  bool (*before)(WindowHandle parent, const PowerSettings& block) = nullptr;
};

// The six calculators, in the order of the catalogue.
std::span<const CalculatorTable> Calculators();
// By its code in the catalogue; null when there is none.
const CalculatorTable* FindCalculator(std::string_view code);

// Whether a field of its record belongs to the calculator: a number or a choice of its page, or what
// says which number is the unknown.
bool HasField(const CalculatorTable& calculator, std::string_view field);

// What a field of a calculator means. A working value, which no family keeps in a file, does not
// have its own text: it takes that of the same number in another calculator.
std::string MeaningOfBox(const Field& field);

// What stands beside the box of a field: its label, or the caption of its radio button.
std::string CaptionOfBox(const CalculatorTable& calculator, const Field& field);
// The same of the probability, whose label follows what is computed.
TextId ProbabilityLabel(bool requested, bool oneMinusP);
// Whether the answer is discrete, so that its probability stands beside the requested one.
bool ShowsRequested(const CalculatorTable& calculator, std::size_t unknown);

// A text of a control without the mark of its mnemonic.
std::string WithoutMnemonic(std::string caption);

// Presents a distribution as an equation among a few numbers: the user names one of them as the
// unknown, fills in the rest and presses Compute. The numbers live in Working, the answer with
// them, so that the next computation takes it as an input. One engine for all six.
class CCalculatorDialog : public CFieldDialog {
 public:
  CCalculatorDialog(CAnalysisSupport& analysis,
                    const CatalogueDialog& entry,
                    const CalculatorTable& rows);

  DialogSpec Spec() const override;
  // The number of a field as the dialog shows it, with all its digits: a probability is the upper
  // tail with OneMinusP set.
  double Shown(const char* field) const;
  std::optional<ResultsInPlace> TakeResults() override;

 protected:
  long EventHandler(const DialogEvent& event) override;
  void ShowOnStart() override;
  void ShowValues() override;
  long Command(int control) override;
  int StageBefore() const override { return StageStartup; }

 private:
  long Compute();
  long RestoreDefaults();
  long FlipOneMinusP();

  // What is stored.
  double Get(const char* field) const { return View(Instance::Working).Get(FieldOf(field)); }
  void Set(const char* field, double value) { View(Instance::Working).Set(FieldOf(field), value); }
  const Field& FieldOf(const char* name) const { return *table().Find(name); }
  bool OneMinusP() const { return Get(OneMinusPField) != 0; }
  // A probability on its way in: 1 - p with OneMinusP set.
  double Complemented(double p) const;
  // On its way out, from the upper tail itself where that is known.
  double ShownProbability(double p) const;
  bool InputsPass();
  bool IsOwnAnswer(const Field& field) const;
  std::size_t UnknownIndex() const;
  const CalculatorUnknown& Unknown() const { return rows_.unknowns[UnknownIndex()]; }
  void ChooseUnknown(std::size_t index);
  bool ShowsActual() const { return table().Find(ActualField) != nullptr; }
  // Both the requested and the actual probability are shown.
  bool ShowsRequested() const { return poweranalysis::ShowsRequested(rows_, UnknownIndex()); }

  // The controls.
  bool IsBox(const char* field) const { return RadiosOf(field, family()) == nullptr; }
  bool StoreBox(int control);
  void ExchangeBoxes();
  void ClearUnknown();
  void ShowBox(const char* field);
  void ShowActual();
  void ShowUnknown();
  void ShowLabels();
  void ShowAnswer(const CalculatorAnswer& answer, double p);
  void KeepResults(const CalculatorAnswer& answer);
  std::vector<ControlSpec> BoxSpecs() const;

  const CalculatorTable& rows_;
  // The probability whose upper tail was computed, and the tail.
  struct Tail {
    double p = NumericFailure;
    double upper = NumericFailure;
  } tail_;
  std::map<std::string, std::string, std::less<>> shown_;  // texts that the dialog put into boxes
  std::set<std::string, std::less<>> answers_;  // fields that hold an answer, not an entry
  std::optional<ResultsInPlace> results_;       // of the last computation, until they are taken
};

// The dialog of a catalogue row of the calculators; null for another.
std::unique_ptr<CAnalysisDialog> CreateCalculator(CAnalysisSupport& analysis,
                                                  const CatalogueDialog& entry);

}  // namespace poweranalysis
