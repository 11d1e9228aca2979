#include "exporters/Study.h"

#include <sstream>

namespace poweranalysis {

namespace {

// The title of a separator row.
constexpr const char* kSeparator = "\x01";
constexpr const char* kBlanks = " \t\r\n";

std::string Trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  return first == std::string::npos
             ? std::string()
             : text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

void AddParagraph(std::vector<std::string>& paragraphs, std::string& open) {
  if (std::string text = Trimmed(open); !text.empty()) {
    paragraphs.push_back(std::move(text));
  }
  open.clear();
}

// Does a text begin its own line, far to the right, as the points of a list do?
bool OpensLine(const std::string& text) {
  constexpr std::size_t kIndent = 4;
  const std::size_t first = text.find_first_not_of(' ');
  return first != std::string::npos && first >= kIndent;
}

// Sentences that meet without a blank on either side get one.
bool NeedsBlank(const std::string& before, const std::string& after) {
  const std::string blanks = kBlanks;
  return !before.empty() && !after.empty() && blanks.find(before.back()) == std::string::npos &&
         blanks.find(after.front()) == std::string::npos;
}

void Flow(const std::string& text, std::vector<std::string>& paragraphs, std::string& open) {
  if (OpensLine(text)) {
    AddParagraph(paragraphs, open);
  } else if (NeedsBlank(open, text)) {
    open += ' ';
  }
  for (const char c : text) {
    if (c == '\n') {
      AddParagraph(paragraphs, open);
    } else if (c != '\r') {
      open += c;
    }
  }
}

}  // namespace

std::vector<std::string> ParagraphsOf(const Study& study) {
  std::vector<std::string> paragraphs;
  for (const Report* report : ReportsOf(study)) {
    const std::vector<std::string> own = ParagraphsOf(*report);
    paragraphs.insert(paragraphs.end(), own.begin(), own.end());
  }
  return paragraphs;
}

std::vector<std::string> ParagraphsOf(const Report& report) {
  std::vector<std::string> paragraphs;
  std::string open;
  for (const std::string& text : report.paragraphs) {
    Flow(text, paragraphs, open);
  }
  AddParagraph(paragraphs, open);
  return paragraphs;
}

std::string ShownMessage(const Message& message) {
  const std::string times =
      message.count > 1 ? " (" + std::to_string(message.count) + " times)" : std::string();
  return message.text + times;
}

std::string ShownTitle(const TableRow& row) {
  return row.title == kSeparator ? std::string() : row.title;
}

std::string ColumnTitleLine(const std::string& title) {
  std::string line;
  std::istringstream words(title);
  for (std::string word; words >> word;) {
    line += (line.empty() ? "" : " ") + word;
  }
  return line;
}

}  // namespace poweranalysis
