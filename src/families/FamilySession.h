#pragma once

#include <cstddef>
#include <cstdint>

#include "families/Computed.h"
#include "families/Statistic.h"
#include "procedures/ProcedureObserver.h"
#include "settings/PowerSettings.h"

namespace poweranalysis {

struct FamilyRow;

enum class Question { Power, RequiredSize };

// What a computation gives: whether there is anything to show, the numbers, and why not.
struct Outcome {
  bool good = false;
  Computed computed;
  Refusal refusal;
};

// What varies from point to point of a curve.
struct Varied {
  enum class Kind { Field, Effect, Sizes };

  Kind kind = Kind::Field;
  const char* field = nullptr;
};

constexpr Varied Along(const char* field) { return {Varied::Kind::Field, field}; }
// The measure of the effect, where that varies and not a field of the record.
inline constexpr Varied AlongEffect = {Varied::Kind::Effect, nullptr};
// The sizes of both groups, which stay equal.
inline constexpr Varied AlongSizes = {Varied::Kind::Sizes, nullptr};

// An input of a session, found once for many values.
struct Input {
  const Field* field = nullptr;
  const Field* follower = nullptr;
  bool isEffect = false;
};

// A family's computations for one question. It takes a record over, and remembers from one record
// to the next what they share: the critical values of a design. A session belongs to one thread at
// a time; any number of them may be at work.
class FamilySession {
 public:
  FamilySession() = default;
  FamilySession(const FamilySession&) = delete;
  FamilySession& operator=(const FamilySession&) = delete;
  virtual ~FamilySession() = default;

  // The record in question; `sizeLimit` ends a search.
  void Take(const RecordView& record, std::int64_t sizeLimit);
  // The same, with the limit of the field tables.
  void Take(const RecordView& record);

  // Sets one input of the record; a whole field takes the whole part.
  Input Find(const Varied& varied) const;
  void Vary(const Input& input, double x);

  // The answer to the question, with all that a table shows. Refusals that do not end the
  // computation are reported to the observer.
  virtual Outcome Compute(ProcedureObserver& observer) = 0;
  // The power or the size alone, of one effect, as at the points of a curve; NumericFailure when
  // there is none. Any refusal is reported to the observer.
  virtual double Value(std::size_t effect, ProcedureObserver& observer) = 0;
  // What decides the test of one effect. False when there is no such test.
  virtual bool Describe(std::size_t effect, Statistic& statistic) = 0;

 protected:
  virtual Family family() const = 0;
  virtual void* record() = 0;
  virtual void SetLimit(std::int64_t sizeLimit) = 0;
  virtual void Follow() = 0;
  virtual void SetEffect(double measure) = 0;
  virtual void Started() = 0;
};

}  // namespace poweranalysis
