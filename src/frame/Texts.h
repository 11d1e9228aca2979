#pragma once

#include <string>
#include <string_view>

// The texts by number. A number below 30000 is the system's own and stays; the blocks above are
// listed at the head of Texts.def, which alone has the wording.
namespace poweranalysis {

namespace text {

enum Id : int {
  None = 0,
#define TEXT(number, name) name = (number),
#include "frame/TextIds.def"
#undef TEXT
};

}  // namespace text

using TextId = text::Id;

// The text as the table holds it, with the mark "DontTranslate!!" where it has one; empty for a
// number that the table lacks.
std::string_view RawText(int id);

// The text to show: the mark is removed here and nowhere else.
std::string LoadText(int id);

struct TextEntry {
  int id;
  const char* name;
  const char* value;
};

struct TextTable {
  const TextEntry* entries;
  int count;
};

// The whole table, ascending by number.
TextTable AllTexts();

}  // namespace poweranalysis
