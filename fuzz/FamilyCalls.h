#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "families/Families.h"

// Bytes as a question to the table of families, and what its answers promise: the first byte is a
// family, and each four after it set a field of its record.
namespace poweranalysis::fuzzing {

// --- Bytes.

struct Setting {
  std::uint8_t field;
  std::uint8_t where;
  std::uint16_t fraction;
};

inline std::vector<Setting> SettingsOf(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kMost = 24;
  std::vector<Setting> settings;
  for (std::size_t at = 1; at + 4 <= size && settings.size() < kMost; at += 4) {
    settings.push_back(
        {data[at], data[at + 1], static_cast<std::uint16_t>(data[at + 2] + 256 * data[at + 3])});
  }
  return settings;
}

// Larger sizes take more time, and are computed in the same way.
inline constexpr double LargestSize = 5000;

// Anywhere within the bounds of a field, on them, and now and then a bit outside.
inline double ValueOf(const Field& field, const Setting& setting) {
  // A working value has no bounds of its own.
  const double lower = field.keyed() ? field.lower : 0;
  const double upper = !field.keyed()                   ? 3
                       : field.type == FieldType::Int32 ? std::min(field.upper, LargestSize)
                                                        : field.upper;
  const double fraction = setting.fraction / 65535.0;
  const double sign = (setting.where & 128) != 0 ? -1 : 1;
  constexpr double kWidest = 1000;
  const double width = std::min(upper - lower, kWidest);
  switch (setting.where % 16) {
    case 0:
      return lower;
    case 1:
      return upper;
    case 2:
      return sign < 0 ? lower - width * fraction : upper + width * fraction;
    case 3:
    case 4:
      return lower + (upper - lower) * fraction;
    case 5:
    case 6:
    case 7:
      return lower + width * fraction;
    case 8:
    case 9:  // all magnitudes alike
      return std::clamp(sign * std::exp2(fraction * 80 - 40), lower, upper);
    default: {  // about the built-in value
      const double about = field.factory == 0 ? 1 : field.factory;
      return std::clamp(field.factory + sign * fraction * about, lower, upper);
    }
  }
}

class OwnRecord {
 public:
  explicit OwnRecord(Family family)
      : table_(TableOf(family)), bytes_(table_.recordSize / sizeof(double) + 1) {
    for (const Field& field : table_.fields) {
      view().Set(field, field.factory);
    }
  }
  RecordView view() { return {table_, bytes_.data()}; }
  void Apply(const Setting& setting) {
    const Field& field = table_.fields[setting.field % table_.fields.size()];
    view().Set(field, ValueOf(field, setting));
  }
  double Get(const char* name) { return view().Get(*table_.Find(name)); }

 private:
  const FamilyTable& table_;
  std::vector<double> bytes_;
};

// --- Work that ends.

inline double ProcessorSeconds() {
  timespec now{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// Asks to stop after a number of questions or some time.
class Patience final : public ProcedureObserver {
 public:
  void Start(std::int32_t /*count*/) override {}
  bool Advance(std::int32_t /*counter*/) override { return StopRequested(); }
  void Stop() override {}
  bool Open(Said /*title*/, std::int32_t /*count*/) override { return true; }
  bool StopRequested() override {
    constexpr int kMostQuestions = 400;
    constexpr double kSeconds = .3;
    ended = ended || ++questions_ > kMostQuestions || ProcessorSeconds() - start_ > kSeconds;
    return ended;
  }
  void Notice(Said /*text*/, const SlotNumbers& /*numbers*/) override {}

  bool ended = false;

 private:
  int questions_ = 0;
  double start_ = ProcessorSeconds();
};

// --- Promises.

inline bool IsSaid(Said text) {
  constexpr std::array<Said, 12> kReasons = {Said::Nothing,
                                             Said::SearchTooLarge,
                                             Said::CancelledAtRequest,
                                             Said::NullHypothesisTrue,
                                             Said::NullHypothesisNearlyTrue,
                                             Said::EtaTooSmall,
                                             Said::FollowUpTooShort,
                                             Said::SelectedGroupNotFound,
                                             Said::FollowUpBeforeAccrual,
                                             Said::IncreaseN2,
                                             Said::IncreaseN1,
                                             Said::LambdaNotPositive};
  return std::find(kReasons.begin(), kReasons.end(), text) != kReasons.end();
}

inline bool IsChance(double value) { return value == NumericFailure || (value >= 0 && value <= 1); }

// NaN equals itself here, and nothing else.
inline bool Same(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

class Questioning {
 public:
  Questioning(const std::uint8_t* data, std::size_t size)
      : row_(FamilyRows()[(size == 0 ? 0U : data[0]) % FamilyRows().size()]),
        first_(row_.family),
        record_(row_.family) {
    const std::vector<Setting> settings = SettingsOf(data, size);
    for (std::size_t i = 0; i < settings.size(); ++i) {
      record_.Apply(settings[i]);
      if (i % 2 == 0) {
        first_.Apply(settings[i]);
      }
    }
    asked_ = RangesHold(record_.view()) && !Refused();
  }

  // The promise that was broken; empty when all are kept.
  std::string Broken() {
    for (const Question question : {Question::Power, Question::RequiredSize}) {
      Ask(question);
    }
    AskForStatistics();
    return broken_;
  }

 private:
  static constexpr double kRounding = 1e-9;  // of 1 less a chance and a chance
  static constexpr double kInverse = 1e-8;   // of a size computed backwards from the goal

  bool Refused() {
    if (row_.check != nullptr && row_.check(record_.view())) {
      return true;
    }
    return std::any_of(row_.effects.begin(), row_.effects.end(), [this](const EffectRow& effect) {
      return RefusalOf(effect.powerCheck, record_.view(), Question::Power) ||
             RefusalOf(effect.sizeCheck, record_.view(), Question::RequiredSize);
    });
  }

  void Require(bool kept, const char* promise, double a = 0, double b = 0) {
    if (!kept && broken_.empty()) {
      std::array<char, 200> text{};
      std::snprintf(text.data(), text.size(), "%s%s: %s (%.17g, %.17g)", TableOf(row_.family).code,
                    asked_ ? "" : " out of range", promise, a, b);
      broken_ = text.data();
    }
  }

  // Bounds are checked before anyone asks; what is beyond them may give any number.
  bool IsChance(double value, double least = 0) const {
    return !asked_ || value == NumericFailure ||
           (value >= least - kRounding && value <= 1 + kRounding);
  }
  // By which algorithm a search seeks decides which of two powers reaches the goal.
  double Reached(const Computed& computed, std::size_t effect) {
    const bool normal = computed.normalPower != NumericFailure && record_.Get("Algorithm") == 1;
    return normal ? computed.normalPower : computed.power[effect];
  }
  // A power that subtracts its low tail may be below zero.
  double LeastPower(std::size_t effect) {
    Statistic statistic;
    const std::unique_ptr<FamilySession> session = row_.open(Question::Power);
    session->Take(record_.view());
    const bool subtracts =
        session->Describe(effect, statistic) && statistic.lowTail == LowTail::Subtracted;
    return subtracts ? -1 : 0;
  }

  void Ask(Question question) {
    const std::unique_ptr<FamilySession> session = row_.open(question);
    session->Take(record_.view());
    Patience patience;
    const Outcome outcome = session->Compute(patience);
    Require(IsSaid(outcome.refusal.text), "a refusal has a text",
            static_cast<double>(outcome.refusal.text));
    for (std::size_t effect = 0; effect < row_.effects.size(); ++effect) {
      const double power = outcome.computed.power[effect];
      Require(IsChance(power, LeastPower(effect)), "a power is a chance", power);
      if (question == Question::RequiredSize && outcome.good && !patience.ended && asked_) {
        Require(outcome.computed.size[effect] > 0 || row_.effects.size() > 1,
                "a size is above zero", static_cast<double>(outcome.computed.size[effect]));
        if (outcome.computed.size[effect] > 0) {
          const double reached = Reached(outcome.computed, effect);
          Require(reached >= record_.Get("PowerGoal") - kInverse,
                  "a required size reaches the goal", reached, record_.Get("PowerGoal"));
        }
      }
      CompareWithRemembered(question, effect);
    }
  }

  // What a session has remembered of another record does not show.
  void CompareWithRemembered(Question question, std::size_t effect) {
    Patience first;
    Patience second;
    Patience third;
    const std::unique_ptr<FamilySession> remembered = row_.open(question);
    remembered->Take(first_.view());
    remembered->Value(effect, first);
    remembered->Take(record_.view());
    const double again = remembered->Value(effect, second);
    const std::unique_ptr<FamilySession> fresh = row_.open(question);
    fresh->Take(record_.view());
    const double once = fresh->Value(effect, third);
    if (!second.ended && !third.ended) {
      Require(Same(again, once), "a session answers as a fresh one", again, once);
    }
    if (question == Question::Power) {
      Require(IsChance(once, LeastPower(effect)), "the value of a power is a chance", once);
    }
  }

  void AskForStatistics() {
    constexpr double kTolerance = 1e-9;
    const std::unique_ptr<FamilySession> session = row_.open(Question::Power);
    session->Take(record_.view());
    for (std::size_t effect = 0; effect < row_.effects.size(); ++effect) {
      Statistic statistic;
      if (!session->Describe(effect, statistic)) {
        continue;
      }
      const double chance = RejectionChance(statistic, statistic.alternative);
      Require(IsChance(chance, statistic.lowTail == LowTail::Subtracted ? -1 : 0),
              "the chance of a rejection is a chance", chance);
      Patience patience;
      const double power = session->Value(effect, patience);
      if (asked_ && power != NumericFailure && !patience.ended) {
        Require(std::fabs(chance - power) <= kTolerance, "a power is the chance of a rejection",
                chance, power);
      }
    }
  }

  const FamilyRow& row_;
  OwnRecord first_;     // half of the settings
  OwnRecord record_;    // all of them
  bool asked_ = false;  // a record that a dialog would ask about
  std::string broken_;
};

inline std::string Broken(const std::uint8_t* data, std::size_t size) {
  return Questioning(data, size).Broken();
}

}  // namespace poweranalysis::fuzzing
