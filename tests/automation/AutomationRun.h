#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "automation/Application.h"
#include "automation/HeadlessDriver.h"
#include "module/PowerAnalysisModule.h"

namespace poweranalysis {

// The object model over the real dialogs, without a window.
class AutomationRun : public ::testing::Test {
 protected:
  // The parameter dialog of a task.
  std::shared_ptr<DialogObject> Parameters(int mode, const char* family) {
    const auto startup = application_.StartAnalysis();
    startup->Put("AnalysisItem", std::int64_t{mode});
    startup->Put("AnalysisType", std::int64_t{FindTask(mode, family)});
    EXPECT_EQ(startup->OK(), 1);
    return application_.Dialog();
  }
  std::shared_ptr<DialogObject> Results(int mode, const char* family) {
    EXPECT_EQ(Parameters(mode, family)->OK(), 1);
    return application_.Dialog();
  }
  std::string OpenInterface() {
    const auto dialog = application_.Dialog();
    return dialog == nullptr ? "" : dialog->interface().name;
  }

  HeadlessHost host_;
  HeadlessDriver driver_{host_, NewAnalysis};
  Application application_{driver_};
};

}  // namespace poweranalysis
