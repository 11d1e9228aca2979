// Any bytes: what is read is written back as it was, and what is set is found again.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "host/KeywordFile.h"

namespace {

using poweranalysis::KeywordFile;

void Require(bool condition) {
  if (!condition) {
    std::abort();
  }
}

void SetAndFind(const std::string& text, std::string_view key, std::string_view value) {
  KeywordFile file = KeywordFile::Parse(text);
  const auto unknown = file.Find("Other", "Kept");
  const std::string kept(unknown.value_or(""));
  if (!file.Set("Section", key, value)) {
    Require(file.Text() == text);
    return;
  }
  const KeywordFile again = KeywordFile::Parse(file.Text());
  Require(again.Text() == file.Text());
  Require(again.Find("Section", key) == value);
  Require(again.Find("Other", "Kept").value_or("") == kept);
  Require(file.Set("Section", key, value) && file.Text() == again.Text());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  Require(KeywordFile::Parse(text).Text() == text);
  SetAndFind(text, "Key", "0.5");
  // The input is a name and a value as well.
  const std::size_t half = size / 2;
  SetAndFind(text, std::string_view(text).substr(0, half), std::string_view(text).substr(half));
  if (const auto real = poweranalysis::ParseReal(text)) {
    Require(poweranalysis::ParseReal(poweranalysis::FormatReal(*real)) == real);
  }
  if (const auto whole = poweranalysis::ParseLong(text)) {
    Require(poweranalysis::ParseLong(poweranalysis::FormatLong(*whole)) == whole);
  }
  return 0;
}
