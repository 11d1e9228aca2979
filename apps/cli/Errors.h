#pragma once

#include <stdexcept>

namespace poweranalysis {

// Exit statuses of the command line, a part of its contract.
inline constexpr int StatusAnswer = 0;
inline constexpr int StatusNoAnswer = 1;
inline constexpr int StatusWrongUse = 2;
inline constexpr int StatusCancelled = 130;

// Wrong use of the command line, in words for the user.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace poweranalysis
