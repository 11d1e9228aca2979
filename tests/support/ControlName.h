#pragma once

#include <algorithm>
#include <ostream>
#include <string>

#include "dialogs/Controls.h"
#include "dialogs/DialogFactory.h"
#include "frame/DefineTask.h"
#include "settings/PowerSettings.h"

namespace poweranalysis {

// A control as a test names it: by a constant of Controls.h, a field ("Mu1"), a radio button by the
// word or the value of its choice ("H0Type=upper", "H0Type=1"), or a chart ("power-vs-n").
struct ControlName {
  ControlName(int number_) : number(number_) {}
  ControlName(const char* text_) : text(text_) {}
  ControlName(std::string text_) : text(std::move(text_)) {}

  int number = 0;
  std::string text;
};

inline std::ostream& operator<<(std::ostream& out, const ControlName& name) {
  return name.text.empty() ? out << name.number : out << name.text;
}

// The radio button of a value, also of one that no choice stands for.
inline ControlName RadioOf(const std::string& field, int value) {
  return field + "=" + std::to_string(value);
}
inline ControlName H0(int form) { return RadioOf("H0Type", form); }

inline int NumberOfRadio(const std::string& field, const std::string& value, Family family) {
  for (const Choice& choice : ChoicesOf(family, field)) {
    if (choice.word == value) {
      return RadioBaseOf(field) + choice.value;
    }
  }
  const bool isNumber = value.find_first_not_of("0123456789") == std::string::npos;
  return isNumber ? RadioBaseOf(field) + std::stoi(value) : 0;
}

// The number of a control in the dialogs of a family; 0 when the name names none.
inline int NumberOf(const ControlName& name, Family family) {
  if (name.text.empty()) {
    return name.number;
  }
  if (const std::size_t equals = name.text.find('='); equals != std::string::npos) {
    return NumberOfRadio(name.text.substr(0, equals), name.text.substr(equals + 1), family);
  }
  const bool chart = name.text.find("-vs-") != std::string::npos;
  return chart ? std::max(ChartControl(family, ModePower, name.text),
                          ChartControl(family, ModeSampleSize, name.text))
               : ControlOfField(family, name.text);
}

}  // namespace poweranalysis
