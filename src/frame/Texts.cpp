#include "frame/Texts.h"

#include <algorithm>
#include <iterator>

namespace poweranalysis {

namespace {

constexpr TextEntry kTexts[] = {
#define TEXT(number, name, value) {number, #name, value},
#include "frame/Texts.def"
#undef TEXT
};

// Is every row of Texts.def among the numbers that sources see?
constexpr int kIds[] = {
#define TEXT(number, name) (number),
#include "frame/TextIds.def"
#undef TEXT
};
static_assert(std::size(kIds) == std::size(kTexts),
              "a row of Texts.def is not written TEXT(number, name, ...");

constexpr bool AscendingByNumber() {
  for (std::size_t i = 1; i < std::size(kTexts); ++i) {
    if (kTexts[i - 1].id >= kTexts[i].id) {
      return false;
    }
  }
  return true;
}
static_assert(AscendingByNumber(), "Texts.def: a number stands twice or out of order");

constexpr std::string_view kMark = "DontTranslate!!";

}  // namespace

std::string_view RawText(int id) {
  const auto* entry =
      std::lower_bound(std::begin(kTexts), std::end(kTexts), id,
                       [](const TextEntry& row, int wanted) { return row.id < wanted; });
  return entry != std::end(kTexts) && entry->id == id ? std::string_view(entry->value)
                                                      : std::string_view();
}

std::string LoadText(int id) {
  std::string_view raw = RawText(id);
  if (raw.substr(0, kMark.size()) == kMark) {
    raw.remove_prefix(kMark.size());
  }
  return std::string(raw);
}

TextTable AllTexts() { return {kTexts, static_cast<int>(std::size(kTexts))}; }

}  // namespace poweranalysis
