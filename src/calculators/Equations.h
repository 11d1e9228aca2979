#pragma once

#include "calculators/CalculatorDialog.h"

namespace poweranalysis {

// How each calculator solves for each of its unknowns: functions of the values in Working and of
// the cumulative probability.

CalculatorAnswer SolveForT(const PowerSettings& block, double p);
CalculatorAnswer SolveForTProbability(const PowerSettings& block, double p);
CalculatorAnswer SolveForTDelta(const PowerSettings& block, double p);

CalculatorAnswer SolveForF(const PowerSettings& block, double p);
CalculatorAnswer SolveForFProbability(const PowerSettings& block, double p);
CalculatorAnswer SolveForFDelta(const PowerSettings& block, double p);

CalculatorAnswer SolveForChiSquare(const PowerSettings& block, double p);
CalculatorAnswer SolveForChiSquareProbability(const PowerSettings& block, double p);
CalculatorAnswer SolveForChiSquareDelta(const PowerSettings& block, double p);

// Values of r² outside (0, 1) have probability 0 or 1 without a call. No more observations than
// variables leave nothing to compute.
CalculatorAnswer SolveForR2(const PowerSettings& block, double p);
CalculatorAnswer SolveForR2Probability(const PowerSettings& block, double p);
CalculatorAnswer SolveForRho2(const PowerSettings& block, double p);

// Values of r outside (-1, 1) have probability 0 or 1 without a call. The search for rho shows a
// progress bar and can be cancelled; the host's results are locked meanwhile.
CalculatorAnswer SolveForR(const PowerSettings& block, double p);
CalculatorAnswer SolveForRProbability(const PowerSettings& block, double p);
CalculatorAnswer SolveForRho(const PowerSettings& block, double p);

CalculatorAnswer SolveForX(const PowerSettings& block, double p);
CalculatorAnswer SolveForXProbability(const PowerSettings& block, double p);
CalculatorAnswer SolveForPi(const PowerSettings& block, double p);

}  // namespace poweranalysis
