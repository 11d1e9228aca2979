#include "host/Workbook.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace poweranalysis {

namespace {

// The bit pattern is a distinct NaN, so that a computed NaN is not taken for it.
constexpr std::uint64_t kMissingBits = 0xFFFFFFFDFFFFFFFFULL;

}  // namespace

double MissingValue() {
  double value = 0;
  std::memcpy(&value, &kMissingBits, sizeof value);
  return value;
}

bool IsMissing(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits == kMissingBits;
}

bool ContinueReport(Workbook& workbook, const std::string& paragraph) {
  Report* report = workbook.items.empty() ? nullptr : std::get_if<Report>(&workbook.items.back());
  if (report != nullptr) {
    report->paragraphs.push_back(paragraph);
  }
  return report != nullptr;
}

namespace {

bool IsSame(const Message& message, int id, const std::string& text) {
  return message.id == id && message.text == text;
}

}  // namespace

bool AddMessage(std::vector<Message>& messages, int id, const std::string& text) {
  if (!messages.empty() && IsSame(messages.back(), id, text)) {
    ++messages.back().count;
    return false;
  }
  messages.push_back({id, text, 1});
  return true;
}

std::vector<Message> JoinRepeats(const std::vector<Message>& messages) {
  std::vector<Message> joined;
  for (const Message& message : messages) {
    const auto same = std::find_if(joined.begin(), joined.end(), [&](const Message& other) {
      return IsSame(other, message.id, message.text);
    });
    if (same == joined.end()) {
      joined.push_back(message);
    } else {
      same->count += message.count;
    }
  }
  return joined;
}

}  // namespace poweranalysis
