#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/KeywordLine.h"

// Keyword files: UTF-8 text of `[section]` headers and `key=value` lines, shared with people who
// edit them by hand and with other programs that keep their own sections in them.
namespace poweranalysis {

// The largest keyword file that is read or written. A settings file has some ten kilobytes; what is
// larger than this is some other file, named by mistake.
inline constexpr std::size_t KeywordFileLimit = std::size_t{4} << 20;

struct KeywordResult {
  bool ok = true;
  std::string error;  // empty when ok; else a sentence that names the file and the reason
};

// The shortest text that reads back to the same bits, a negative zero included. Infinities and NaN
// give "inf", "-inf" and "nan", which ParseReal refuses: every setting is finite.
std::string FormatReal(double value);

// Decimal digits, with a minus sign when negative.
std::string FormatLong(std::int32_t value);

// The number that the whole text, but for blanks around it, spells, with or without a plus sign.
// Nothing when it is not a number, is not finite, or lies outside what a double can hold. The
// locale is never asked.
std::optional<double> ParseReal(std::string_view text);

// Likewise for a whole number in any of its spellings, as "100", "1e2" and "100.0"; nothing outside
// 32 bits.
std::optional<std::int32_t> ParseLong(std::string_view text);

// True for a name without a slash, which belongs to the user's configuration folder.
bool IsBareFileName(std::string_view name);

// Where a file name leads: a bare name into `folder`, a path with a slash to itself. Empty for an
// empty name, and for a bare name when no folder is known.
std::string ResolveFileName(const std::string& name, const std::string& folder);

// The text of a keyword file, in memory. Whatever is not set stays byte for byte: comments (lines
// that begin with ';' or '#', and the rest of a value line from a blank and such a mark on), blank
// and unknown lines, order, blanks around names and values, line endings, a byte order mark, bytes
// that are not UTF-8.
//
// Names are case-sensitive. Of a key that stands twice in its section the last one counts, for
// reading and for writing. A section may come in several pieces. Lines before the first header
// belong to no section, and so do those under a header that is not well formed.
class KeywordFile {
 public:
  // Never fails; Parse(text).Text() == text for any bytes.
  static KeywordFile Parse(std::string_view text);

  // The value without the blanks around it; it lasts until the next Set. An empty section or key is
  // never found.
  std::optional<std::string_view> Find(std::string_view section, std::string_view key) const;

  // The keys of a section with their values, in the order of their lines; of a key that stands
  // twice the last.
  std::vector<KeywordLine> Keys(std::string_view section) const;

  // Replaces the value of a key, or adds the key after the last one of its section, or adds the
  // section at the end. New lines end as the first line of the file does, in LF when there is none.
  // False, and nothing changed, when the value would not read back: an empty section or key, names
  // or values with line ends or NUL bytes, a value with blanks around it or a comment in it.
  bool Set(std::string_view section, std::string_view key, std::string_view value);

  std::string Text() const;

 private:
  // Lines are chained by index, so that a line can be added between others without moving them.
  struct Line {
    std::string text;  // with its line end
    std::size_t valueBegin = 0;
    std::size_t valueLength = 0;
    std::size_t next = 0;  // 0 at the end: no line precedes the first
  };
  struct Position;

  void TakeLine(std::string_view line, Position& position);
  void TakeKey(std::string_view line, const std::string& section);
  std::size_t InsertAfter(std::size_t line, std::string text);
  std::size_t AddSection(std::string_view section);

  std::vector<Line> lines_ = {Line{}};  // the first holds the byte order mark, or nothing
  std::size_t last_ = 0;
  std::string lineEnd_ = "\n";
  std::unordered_map<std::string, std::size_t> keys_;      // "section\nkey" to its line
  std::unordered_map<std::string, std::size_t> sections_;  // to the line that a new key follows
};

struct LoadedKeywordFile {
  KeywordFile file;   // holds nothing when there is no file or an error
  std::string error;  // empty also for a missing file, which is not an error
  bool exists = false;
};

// Reads a file whole. Folders, FIFOs and devices, files with NUL bytes and files larger than
// KeywordFileLimit give an error; none of them blocks.
LoadedKeywordFile LoadKeywordFile(const std::string& path);

// One change of a keyword file, which other processes see whole or not at all.
//
// From construction to Commit (or destruction) the writer holds an advisory lock (flock) on the
// folder that the file stands in, and the file is read under that lock; so writers of different
// sections, in any number of processes and threads, lose nothing of each other's. The lock is the
// folder's because the file itself is replaced, and because so no lock file is left behind.
// Therefore a thread must not hold two writers for one folder.
//
// Commit writes a temporary file in the same folder, with the permissions and where possible the
// owner of the old file, brings it to the disk and renames it over the old one. A symbolic link is
// followed, and stays. When anything fails the old file is whole and no temporary file remains.
//
// A file that LoadKeywordFile would refuse, or that the user has write-protected, is never
// replaced.
class KeywordWriter {
 public:
  enum class MissingFolder {
    Refuse,  // a path that the user gave: a missing folder is most likely a slip
    Create,  // the user's configuration folder: made on Commit, for the user alone
  };

  // `patience`: how long to wait for other writers before giving up.
  explicit KeywordWriter(std::string path,
                         MissingFolder missingFolder = MissingFolder::Refuse,
                         std::chrono::milliseconds patience = std::chrono::seconds(10));
  ~KeywordWriter();
  KeywordWriter(const KeywordWriter&) = delete;
  KeywordWriter& operator=(const KeywordWriter&) = delete;

  // Whether the file could be locked and read, and a Commit can be hoped for.
  KeywordResult status() const;

  // Notes a change for Commit.
  void Put(std::string_view section, std::string_view key, std::string_view value);

  // Makes all changes that were noted, or none, and releases the lock; to be called once. A file
  // that already says what it should is not touched.
  KeywordResult Commit();

 private:
  struct Change {
    std::string section;
    std::string key;
    std::string value;
  };

  void Open();
  void Refuse(const std::string& reason);
  std::string ApplyChanges();
  void Release();

  std::string path_;
  MissingFolder missingFolder_;
  std::chrono::milliseconds patience_;
  int folder_ = -1;   // open and locked while the writer holds the file
  std::string name_;  // of the file in that folder, links followed
  KeywordFile file_;
  std::vector<Change> changes_;
  KeywordResult status_;
};

}  // namespace poweranalysis
