#include "output/ChosenText.h"

namespace poweranalysis {

int ChoiceBy(const char* field, const RecordView& record) {
  return static_cast<int>(record.Get(*record.table().Find(field)));
}

TextId ChosenText::At(int value) const {
  return value >= 0 && static_cast<std::size_t>(value) < texts.size()
             ? texts[static_cast<std::size_t>(value)]
             : text::None;
}

TextId ChosenText::In(const RecordView& record) const {
  return field == nullptr ? texts[0] : At(ChoiceBy(field, record));
}

bool Condition::Holds(const RecordView& record) const {
  return field == nullptr || HoldsAt(ChoiceBy(field, record));
}

}  // namespace poweranalysis
