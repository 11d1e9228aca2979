#include "cli/Program.h"

namespace poweranalysis {
namespace {

using Macro = Program;

TEST_F(Macro, RunsInAPythonProcessOfItsOwn) {
  Write("macro.py", "import sys\nprint('ran')\nsys.exit(7)\n");
  const Result result = Run({"macro", "run", At("macro.py")});
  EXPECT_EQ(result.status, 7) << result.err;
  EXPECT_EQ(result.out, "ran\n");
}

TEST_F(Macro, ThatCannotBeReadIsRefused) {
  const Result result = Run({"macro", "run", At("none.py")});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(Has(result.err, "cannot read the macro")) << result.err;
}

TEST_F(Macro, NeedsItsWord) {
  for (const Arguments& arguments :
       {Arguments{"macro"}, Arguments{"macro", "run"}, Arguments{"macro", "start", "x.py"}}) {
    const Result result = Run(arguments);
    EXPECT_EQ(result.status, 2);
    EXPECT_TRUE(Has(result.err, "poweranalysis macro run study.py")) << result.err;
  }
  EXPECT_EQ(Run({"macro", "--help"}).status, 0);
}

}  // namespace
}  // namespace poweranalysis
