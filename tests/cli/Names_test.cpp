#include <gmock/gmock.h>

#include "automation/Application.h"
#include "automation/HeadlessDriver.h"
#include "automation/Names.h"
#include "cli/Program.h"
#include "frame/TaskCatalogue.h"
#include "module/PowerAnalysisModule.h"

namespace poweranalysis {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;

// A slip in the name of a field that is also a member of its dialog. python/tests has the same
// table for keywords.
struct Slip {
  const char* given;
  const char* meant;
};
constexpr Slip kSlips[] = {
    {"Alhpa", "Alpha"},           {"Alpah", "Alpha"},          {"Lapha", "Alpha"},
    {"Simga", "Sigma"},           {"sigm", "Sigma"},           {"Sigmaa", "Sigma"},
    {"SampelSize", "SampleSize"}, {"SmapleSize", "SampleSize"}};

class Slips : public Program {
 protected:
  std::shared_ptr<DialogObject> Parameters() {
    const auto startup = application_.StartAnalysis();
    startup->Put("AnalysisType", std::int64_t{FindTask(ModePower, "T1")});
    startup->OK();
    return application_.Dialog();
  }
  template <class Action>
  static std::string ErrorOf(Action action) {
    try {
      action();
    } catch (const UnknownMember& error) {
      return error.what();
    }
    return "nothing was raised";
  }

 private:
  HeadlessHost host_;
  HeadlessDriver driver_{host_, NewAnalysis};
  Application application_{driver_};
};

TEST_F(Slips, HaveTheSameNearestAsAnOptionAFieldAMemberAndInASetting) {
  const auto dialog = Parameters();
  for (const Slip& slip : kSlips) {
    const std::string member = "did you mean '" + std::string(slip.meant) + "'?";
    EXPECT_THAT(ErrorOf([&] { dialog->Get(slip.given); }), EndsWith(member));
    EXPECT_THAT(ErrorOf([&] { dialog->GetField(slip.given); }), EndsWith(member));
    EXPECT_THAT(Run({"power", "t1", "--" + OptionName(slip.given), "1"}).err,
                HasSubstr("the nearest is '--" + OptionName(slip.meant) + "'"));
    EXPECT_THAT(Run({"power", "t1", "--set", std::string(slip.given) + "=1"}).err,
                HasSubstr("the nearest is " + std::string(slip.meant) + "\n"));
  }
}

}  // namespace
}  // namespace poweranalysis
