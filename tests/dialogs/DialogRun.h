#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "host/HeadlessHost.h"
#include "module/PowerAnalysisModule.h"
#include "settings/PowerSettings.h"

namespace poweranalysis {

// Drives an analysis through its real dialogs without a window.
class DialogRun : public ::testing::Test {
 protected:
  void SetUp() override {
    analysis_.reset(Zlv6NewAnalysis());
    host_.Start(*analysis_);
  }

  // Picks a task in the startup dialog and opens its parameters.
  void OpenParameters(int mode, const char* family) {
    host_.Select(101, mode);
    host_.Select(102, FindTask(mode, family));
    host_.Press(1);
  }
  void OpenResults(int mode, const char* family) {
    OpenParameters(mode, family);
    host_.Press(1);
  }

  PowerSettings& block() { return *Block(); }
  const HeadlessForm& form() { return *host_.form(); }
  std::string TextOf(int control) { return form().GetDlgItemText(control); }
  int OpenResource() { return host_.dialog() == nullptr ? 0 : host_.dialog()->resource(); }

  template <class Item>
  std::vector<Item> Items() {
    std::vector<Item> items;
    for (const WorkbookItem& item : host_.workbook().items) {
      if (const Item* found = std::get_if<Item>(&item)) {
        items.push_back(*found);
      }
    }
    return items;
  }
  // The value of a row of the last table.
  double Row(const std::string& title) {
    const SummaryTable table = Items<SummaryTable>().back();
    for (const TableRow& row : table.rows) {
      if (row.title == title) {
        return row.values.front();
      }
    }
    ADD_FAILURE() << "no row " << title;
    return 0;
  }
  std::vector<int> MessageIds() {
    std::vector<int> ids;
    for (const Message& message : host_.messages()) {
      ids.push_back(message.id);
    }
    return ids;
  }

  HeadlessHost host_;
  std::unique_ptr<CPowerAnalysis> analysis_;
};

}  // namespace poweranalysis
