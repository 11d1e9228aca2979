#pragma once

#include <array>

#include "settings/PowerSettings.h"

// Texts, and what else is shown or not, by the value of a field: the hypothesis, the algorithm, the
// group that is varied.
namespace poweranalysis {

// The value of a field as the number of a choice.
int ChoiceBy(const char* field, const RecordView& record);

// A text, or of several the one that a field's value chooses.
struct ChosenText {
  constexpr ChosenText() = default;
  constexpr ChosenText(TextId only) : texts{only} {}  // NOLINT(google-explicit-constructor)
  constexpr ChosenText(const char* byField, std::array<TextId, 4> choices)
      : field(byField), texts(choices) {}

  // text::None for a value that has no text.
  TextId At(int value) const;
  TextId In(const RecordView& record) const;

  const char* field = nullptr;
  std::array<TextId, 4> texts{};
};

// When something is shown: always, or by a field's value.
struct Condition {
  bool Holds(const RecordView& record) const;
  bool HoldsAt(int value) const { return (first <= value && value <= last) != otherwise; }

  const char* field = nullptr;
  int first = 0;
  int last = 0;
  bool otherwise = false;  // while the value lies outside first to last
};

}  // namespace poweranalysis
