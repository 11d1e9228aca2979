#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/HeadlessHost.h"
#include "settings/PowerSettings.h"
#include "support/TemporaryFolder.h"

// The parameter block over a headless host, with a configuration folder of its own and no dialogs.
namespace poweranalysis::testing {

class PlainAnalysis : public CAnalysisSupport {
 public:
  explicit PlainAnalysis(Host* host) { AttachHost(host); }
  int InitializeAfterFileChanged() override { return 1; }
  void Initialize() override {}
  const void* GetLibInstance() const override { return nullptr; }
  int GetAnalysisID() const override { return 0; }
  std::string GetAnalysisName() const override { return {}; }
};

class SettingsTest : public ::testing::Test {
 protected:
  SettingsTest() : analysis(&host) {
    host.configFolder = folder.path();
    Module() = {};
    Module().analysis = &analysis;
    Module().settings = &block;
    LoadAllDefaults(block);
  }
  ~SettingsTest() override { Module() = {}; }

  RecordView View(Family family, Instance instance) { return ViewOf(block, family, instance); }
  double Get(Family family, Instance instance, const char* field) {
    const RecordView view = View(family, instance);
    return view.Get(*view.table().Find(field));
  }
  double Working(Family family, const char* field) { return Get(family, Instance::Working, field); }
  void SetWorking(Family family, const char* field, double value) {
    const RecordView view = View(family, Instance::Working);
    view.Set(*view.table().Find(field), value);
  }
  void SetCommitted(Family family, const char* field, double value) {
    const RecordView view = View(family, Instance::Committed);
    view.Set(*view.table().Find(field), value);
  }
  int Check(Family family) { return CheckRanges(nullptr, FillKeys(block, family)); }
  int Command(Family family, int command) {
    return SettingsCommand(block, nullptr, family, command);
  }
  std::vector<int> MessageIds() const {
    std::vector<int> ids;
    for (const Message& message : host.messages()) {
      ids.push_back(message.id);
    }
    return ids;
  }
  std::string LastMessage() const {
    return host.messages().empty() ? std::string() : host.messages().back().text;
  }

  TemporaryFolder folder;
  HeadlessHost host;
  PlainAnalysis analysis;
  PowerSettings block{};
};

}  // namespace poweranalysis::testing
