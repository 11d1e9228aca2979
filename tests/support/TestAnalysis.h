#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>
#include <vector>

#include "frame/PowerAnalysis.h"
#include "host/HeadlessHost.h"

// An analysis over the frame alone: a block that is nothing but its head, and dialogs that note
// their events.
namespace poweranalysis::testing {

struct TestBlock : PowerSettingsHead {
  int loads = 0;
};

// What the parts of the test analysis were asked for.
struct PartsLog {
  int constructed = 0;
  int loaded = 0;
  int destroyed = 0;
  int dialogsDestroyed = 0;
  std::vector<CatalogueDialog> dialogs;
  std::vector<DialogEvent> events;
  bool refuseDialogs = false;  // as if no dialog could be allocated
};

inline PartsLog& Log() {
  static PartsLog log;
  return log;
}

class RecordingDialog : public CPowerAnalysisModelessDialog {
 public:
  using CPowerAnalysisModelessDialog::CPowerAnalysisModelessDialog;
  ~RecordingDialog() override { ++Log().dialogsDestroyed; }

  DialogSpec Spec() const override { return {}; }

  static constexpr int kForward = 1;
  static constexpr int kBack = 2;

 protected:
  long EventHandler(const DialogEvent& event) override {
    Log().events.push_back(event);
    if (event.message == MessageCommand && event.control == kForward) {
      ExitDialog(StageResult, ExitForward, 0);
    } else if (event.message == MessageCommand && event.control == kBack) {
      ExitDialog(StageStartup, ExitBack, 0);
    }
    return 7;
  }
};

inline AnalysisParts TestParts() {
  AnalysisParts parts;
  parts.settingsSize = sizeof(TestBlock);
  parts.constructSettings = [](void* memory) -> PowerSettingsHead* {
    ++Log().constructed;
    return new (memory) TestBlock();
  };
  parts.loadAllDefaults = [](PowerSettingsHead& settings) {
    ++Log().loaded;
    ++static_cast<TestBlock&>(settings).loads;
  };
  parts.destroySettings = [](PowerSettingsHead& settings) {
    ++Log().destroyed;
    static_cast<TestBlock&>(settings).~TestBlock();
  };
  parts.createDialog = [](CPowerAnalysis& analysis,
                          const CatalogueDialog& entry) -> std::unique_ptr<CAnalysisDialog> {
    Log().dialogs.push_back(entry);
    if (Log().refuseDialogs) {
      return nullptr;
    }
    return std::make_unique<RecordingDialog>(analysis, entry.dialog->resource);
  };
  return parts;
}

// A headless host and one analysis on it.
class FrameTest : public ::testing::Test {
 protected:
  FrameTest() {
    Log() = {};
    Module() = {};
    analysis = std::make_unique<CPowerAnalysis>(nullptr, TestParts());
    analysis->AttachHost(&host);
  }
  ~FrameTest() override {
    analysis.reset();
    Module() = {};
  }

  PowerSettingsHead& head() { return *Module().settings; }
  // Runs the sequence to the startup dialog.
  void Start() { EXPECT_EQ(host.Start(*analysis), StageRuns); }
  // Puts a mode and a row into the block, as the startup dialog does.
  void Choose(int mode, int row) {
    head().Mode = static_cast<std::int16_t>(mode);
    head().Selection[static_cast<std::size_t>(mode)] = static_cast<std::int16_t>(row);
  }

  HeadlessHost host;
  std::unique_ptr<CPowerAnalysis> analysis;
};

}  // namespace poweranalysis::testing
