#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "calculators/CalculatorDialog.h"
#include "dialogs/DialogRun.h"

namespace poweranalysis {

// A calculator as its user works it: by its controls.
class CalculatorRun : public DialogRun {
 protected:
  void Open(const char* calculator) {
    OpenParameters({ModeDistribution, calculator});
    rows_ = FindCalculator(calculator);
    ASSERT_NE(rows_, nullptr);
    family_ = rows_->family;
    ASSERT_NE(host_.dialog(), nullptr);
  }
  // "TObserved=2 DegreesOfFreedom=4": boxes, and radio buttons by value.
  void Fill(const std::string& inputs) {
    std::istringstream in(inputs);
    for (std::string input; in >> input;) {
      const std::string field = input.substr(0, input.find('='));
      const std::string value = input.substr(input.find('=') + 1);
      if (RadiosOf(field, rows_->family) != nullptr) {
        Press(input);
      } else {
        Type(field, value);
      }
    }
  }
  void Choose(std::size_t unknown) { Press(ControlUnknown + static_cast<int>(unknown)); }
  void Choose(const std::string& field) {
    for (std::size_t i = 0; i < rows_->unknowns.size(); ++i) {
      if (field == rows_->unknowns[i].field) {
        return Choose(i);
      }
    }
    ADD_FAILURE() << "no unknown " << field;
  }
  void Compute() { Press(ControlAccept); }

  std::string Box(const char* field) { return TextOf(field); }
  // The number behind a box at full precision.
  double Number(const char* field) {
    double value = 0;
    EXPECT_EQ(form().GetDlgItemDouble(ControlOfField(field), value), 0)
        << field << " '" << Box(field) << "'";
    return value;
  }
  double Get(const char* field, Instance instance = Instance::Working) {
    const RecordView view = ViewOf(block(), rows_->family, instance);
    return view.Get(*view.table().Find(field));
  }
  void Set(const char* field, double value, Instance instance = Instance::Working) {
    const RecordView view = ViewOf(block(), rows_->family, instance);
    view.Set(*view.table().Find(field), value);
  }
  bool Visible(const ControlName& control) { return Find(control)->visible; }
  std::string LastMessage() {
    return host_.messages().empty() ? std::string() : host_.messages().back().text;
  }

  const CalculatorTable* rows_ = nullptr;
};

}  // namespace poweranalysis
