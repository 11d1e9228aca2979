#pragma once

namespace poweranalysis::qags {

// Wynn's epsilon algorithm on a growing sequence of approximations: the lower diagonals of its
// table, and an error estimate from the last three limits (DQELG).
//
// Source: Piessens, R. et al. (1983). QUADPACK. Springer.
class EpsilonTable {
 public:
  void Start(double first) {
    elements_[0] = first;
    count_ = 2;
  }

  void SetSecond(double second) { elements_[1] = second; }

  // Appends the element and gives the extrapolated limit with its error.
  double Extrapolate(double element, double& abserr);

  // How many elements the next one will follow. One means that the table has broken down.
  int Count() const { return count_; }

 private:
  static constexpr int Entries = 52;
  static constexpr int CountLimit = 50;

  double Accelerate(double& abserr, bool& converged);
  void Shift(int before, int passes);
  double ErrorOfLimit(double limit);

  double elements_[Entries] = {};
  double limits_[3] = {};
  int count_ = 0;
  int calls_ = 0;
};

}  // namespace poweranalysis::qags
