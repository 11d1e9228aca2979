#pragma once

#include <span>
#include <string_view>

#include "settings/PowerSettings.h"

// The choices that a field offers in a family: what radio buttons, options, Python and the object
// model have in common. A number within the field's bounds is taken everywhere, also one that no
// choice stands for.
namespace poweranalysis {

struct Choice {
  int value;
  const char* word;             // for commands: "two-sided"
  TextId caption = text::None;  // of its radio button; without one a check box shows the field
};

struct ChoiceRow {
  Family family;
  const char* field;
  TextId caption;                   // over the radio buttons
  std::span<const Choice> choices;  // ascending by value
};

// All of them, by family.
std::span<const ChoiceRow> ChoiceRows();

// The choices of a field, ascending by value; empty for a field that takes any number.
std::span<const Choice> ChoicesOf(Family family, std::string_view field);

// The choice that a value stands for; null when none does.
const Choice* FindChoice(std::span<const Choice> choices, double value);

}  // namespace poweranalysis
