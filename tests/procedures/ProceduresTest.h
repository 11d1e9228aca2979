#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "frame/Services.h"
#include "host/AnalysisSupport.h"
#include "host/HeadlessHost.h"
#include "procedures/RequiredSizeSearch.h"

namespace poweranalysis {

// The headless host, with what a message box is given besides its text.
class RecordingHost : public HeadlessHost {
 public:
  struct Box {
    unsigned flags;
    WindowHandle parent;
    int id;
    std::string text;
    bool barOpen;  // when it was shown
  };

  void DspMessageBox(unsigned flags,
                     WindowHandle parent,
                     int textId,
                     const std::string& text) override {
    boxes.push_back({flags, parent, textId, text, IsProgressBarOpen()});
    HeadlessHost::DspMessageBox(flags, parent, textId, text);
  }

  std::vector<Box> boxes;
};

class SilentAnalysis : public CAnalysisSupport {
 public:
  int InitializeAfterFileChanged() override { return 0; }
  void Initialize() override {}
  const void* GetLibInstance() const override { return nullptr; }
  int GetAnalysisID() const override { return 0; }
  std::string GetAnalysisName() const override { return {}; }
};

// A live analysis over a recording host, as every procedure meets it.
class ProceduresTest : public testing::Test {
 protected:
  void SetUp() override {
    analysis.AttachHost(&host);
    Module() = {};
    Module().analysis = &analysis;
    host.onProgress = [this](const ProgressState& bar) {
      if (bar.open && bar.position > 0) {
        positions.push_back(bar.position);
      }
    };
  }
  void TearDown() override { Module() = {}; }

  // The numbers of the texts shown, in order.
  std::vector<int> Shown() const {
    std::vector<int> ids;
    for (const RecordingHost::Box& box : host.boxes) {
      ids.push_back(box.id);
    }
    return ids;
  }

  RecordingHost host;
  SilentAnalysis analysis;
  std::vector<int> positions;  // of the progress bar
};

// A power function that remembers what it was asked.
class Script {
 public:
  explicit Script(std::function<double(std::int64_t)> power) : power_(std::move(power)) {}

  double operator()(std::int64_t size) {
    trials.push_back(size);
    return power_(size);
  }

  std::vector<std::int64_t> trials;

 private:
  std::function<double(std::int64_t)> power_;
};

// `below` up to `answer` - 1 and `above` from there on.
inline Script StepAt(std::int64_t answer, double below, double above) {
  return Script([=](std::int64_t size) { return size < answer ? below : above; });
}

}  // namespace poweranalysis
