#include "families/FamilySession.h"

#include "families/Families.h"

namespace poweranalysis {

void FamilySession::Take(const RecordView& taken, std::int64_t sizeLimit) {
  RecordView(TableOf(family()), record()).CopyFrom(taken);
  SetLimit(sizeLimit);
  Started();
  Follow();
}

void FamilySession::Take(const RecordView& taken) {
  Take(taken, static_cast<std::int64_t>(LimitField(RowOf(family())).upper));
}

Input FamilySession::Find(const Varied& varied) const {
  const FamilyTable& table = TableOf(family());
  if (varied.kind == Varied::Kind::Effect) {
    return {nullptr, nullptr, true};
  }
  if (varied.kind == Varied::Kind::Field) {
    return {table.Find(varied.field), nullptr, false};
  }
  const SizeRule& both = RowOf(family()).sizes.rules[0];
  return {table.Find(both.field), both.follower == nullptr ? nullptr : table.Find(both.follower),
          false};
}

void FamilySession::Vary(const Input& input, double x) {
  if (input.isEffect) {
    SetEffect(x);
    return;
  }
  const RecordView view(TableOf(family()), record());
  view.Set(*input.field, x);
  if (input.follower != nullptr) {
    view.Set(*input.follower, x);
  }
  Follow();
}

}  // namespace poweranalysis
