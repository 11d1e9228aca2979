// The whole process without a face: a required size printed by a bare program over the procedures
// alone. What the command line costs beyond it is start-up, dialogs and output.
#include <cstdio>

#include "procedures/TTests.h"

int main() {
  using namespace poweranalysis;
  CriticalTCache criticals;
  SilentProcedureObserver observer;
  TSizeRequest request;
  request.es = TwoMeansEffect(5, 0, 10);
  request.alpha = 0.05;
  request.powerGoal = 0.8;
  request.sizeLimit = 150000;
  const SearchResult found = TwoGroupsRequiredN(request, NToVaryBoth, 0, criticals, observer);
  std::printf("%lld %.6f\n", static_cast<long long>(found.requiredSize), found.actualPower);
  return found.status;
}
