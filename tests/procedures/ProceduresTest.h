#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <ostream>
#include <utility>
#include <variant>
#include <vector>

#include "procedures/ProcedureObserver.h"
#include "procedures/RequiredSizeSearch.h"

namespace poweranalysis {

inline void PrintTo(Said text, std::ostream* out) { *out << "text " << static_cast<int>(text); }

// Remembers what a procedure says, its bars and how far it got.
class RecordingObserver final : public ProcedureObserver {
 public:
  struct Remark {
    Said text;
    SlotNumbers numbers;
    bool barOpen;  // when it was said
  };

  void Start(std::int32_t /*count*/) override { ADD_FAILURE() << "a bar without a title"; }
  bool Advance(std::int32_t counter) override {
    EXPECT_TRUE(barOpen) << "moved to " << counter;
    positions.push_back(counter);
    return StopRequested();
  }
  void Stop() override {
    EXPECT_TRUE(barOpen);
    barOpen = false;
  }
  bool Open(Said title, std::int32_t count) override {
    if (showsBar) {
      bars.emplace_back(title, count);
      barOpen = true;
    }
    return showsBar;
  }
  // Whoever has asked to stop goes on asking.
  bool StopRequested() override {
    stopped_ = (stop && stop()) || stopped_;
    return stopped_;
  }
  void Notice(Said text, const SlotNumbers& numbers) override {
    remarks.push_back({text, numbers, barOpen});
  }

  bool showsBar = false;
  std::function<bool()> stop;  // asked at every poll
  bool barOpen = false;
  std::vector<std::pair<Said, std::int32_t>> bars;
  std::vector<int> positions;
  std::vector<Remark> remarks;

 private:
  bool stopped_ = false;
};

// Procedures under a recording observer, which also hears the refusals as whoever shows them would.
class ProceduresTest : public testing::Test {
 protected:
  SearchResult Heard(const SearchResult& result) {
    observer.Tell(result.refusal);
    return result;
  }
  // What `call`, which is handed a Refusal, gives.
  template <class Call>
  auto HeardOf(Call&& call) {
    Refusal refusal;
    const auto value = call(refusal);
    observer.Tell(refusal);
    return value;
  }

  // What was said, in order.
  std::vector<Said> Shown() const {
    std::vector<Said> texts;
    for (const RecordingObserver::Remark& remark : observer.remarks) {
      texts.push_back(remark.text);
    }
    return texts;
  }
  // What fills the slot of a remark: a tolerance, or a size.
  double ToleranceIn(std::size_t remark) const {
    return std::get<double>(observer.remarks.at(remark).numbers[0]);
  }
  std::int64_t SizeIn(std::size_t remark) const {
    return std::get<std::int64_t>(observer.remarks.at(remark).numbers[0]);
  }

  RecordingObserver observer;
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
