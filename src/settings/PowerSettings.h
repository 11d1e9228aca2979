#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "frame/Services.h"
#include "settings/Records.h"

// The one block of all parameter records, the table of every field, and what is derived from it.
namespace poweranalysis {

// --- The field tables.

enum class FieldType : int { Int16 = 0, Int32 = 1, Real = 3 };

// Form of a range: which of its bounds belongs to it.
enum class RangeForm : int {
  Open = 0,         // lower <  value <  upper
  ClosedBelow = 1,  // lower <= value <  upper
  ClosedAbove = 2,  // lower <  value <= upper
  Closed = 3,       // lower <= value <= upper
};

// The built-in value of an answer that a record holds: not computed yet.
inline constexpr double NotComputed = -9999.0;

struct Field {
  const char* name;
  FieldType type;
  std::size_t offset;  // in the record
  double factory;
  double lower;
  double upper;
  RangeForm form;
  int place;  // in the key table; -1 for an unkeyed working value
  TextId key;
  TextId label;
  TextId meaning;

  bool keyed() const { return place >= 0; }
};

enum class Family : int {
#define POWERANALYSIS_ENUMERATOR(family, section, cells) family,
  POWERANALYSIS_FAMILIES(POWERANALYSIS_ENUMERATOR)
#undef POWERANALYSIS_ENUMERATOR
};

struct FamilyTable {
  Family family;
  const char* code;  // "T1"
  int section;       // text of its section in a settings file; 0 for a calculator's record
  std::size_t recordSize;
  std::span<const Field> fields;  // in the order of the record

  // By the field's own spelling, or null.
  const Field* Find(std::string_view name) const;
};

// All families and calculators, in the order of the block.
std::span<const FamilyTable> FamilyTables();
const FamilyTable& TableOf(Family family);
// By code in any case ("t1"); null when there is none.
const FamilyTable* FindFamily(std::string_view code);

// --- The block.

template <class Record>
struct FamilySet {
  Record Committed;  // as of the last accepted dialog
  Record Defaults;   // of this run, from the default file
  Record Factory;    // the built-in values; never changes
  Record Working;    // the edit buffer
  Record Lower;
  Record Upper;
};

// With the copy that a cell-means grid edits.
template <class Record>
struct GridFamilySet : FamilySet<Record> {
  Record GridScratch;
};

template <class Record>
concept HasGrid = requires(Record record) {
  record.GridMeans;
};
template <class Record>
using SetOf = std::conditional_t<HasGrid<Record>, GridFamilySet<Record>, FamilySet<Record>>;

struct PowerSettings : PowerSettingsHead {
  std::string DefaultFile;
// NOLINTNEXTLINE(bugprone-macro-parentheses): a member's name
#define POWERANALYSIS_SET(family, section, cells) SetOf<family##Params> family;
  POWERANALYSIS_FAMILIES(POWERANALYSIS_SET)
#undef POWERANALYSIS_SET
  std::string CurrentFile;
  i16 FileNamed = 0;
};

// The block of the live analysis; null before Init and after the destructor.
PowerSettings* Block();

enum class Instance { Committed, Defaults, Factory, Working, Lower, Upper, GridScratch };

// One instance of a family's record without its type, for what works by table: fields are read and
// written as numbers, narrowed to the field's own type.
class RecordView {
 public:
  RecordView(const FamilyTable& table, void* record) : table_(&table), record_(record) {}

  const FamilyTable& table() const { return *table_; }
  void* address(const Field& field) const;
  double Get(const Field& field) const;
  void Set(const Field& field, double value) const;
  // Copies the whole record.
  void CopyFrom(const RecordView& other) const;
  const void* record() const { return record_; }

 private:
  const FamilyTable* table_;
  void* record_;
};

RecordView ViewOf(PowerSettings& block, Family family, Instance instance);

// Sets every record of the block to its built-in values and reads the default file. A message says
// what of it could not be read.
void LoadAllDefaults(PowerSettings& block);

// --- The key table: what files and checks go by, in its order.

struct KeyEntry {
  const Field* field;
  void* factory;
  void* working;
  void* lower;
  void* upper;
};

struct KeyTable {
  const FamilyTable* family;
  std::vector<KeyEntry> entries;
};

KeyTable FillKeys(PowerSettings& block, Family family);

// --- Range checks.

// Checks the entries in order and stops at the first outside its range, with a message that names
// the field, its range and its value. 1 when all pass, 0 when one fails; 1 for an empty table. NaN
// and infinities fail. Changes nothing.
int CheckRanges(WindowHandle parent, const KeyTable& keys);
int CheckRanges(WindowHandle parent, std::span<const KeyEntry> entries);

// "0.0001 <= Alpha <= 0.25", the range as the message words it; a field without a label goes by its
// name.
std::string RangeText(const Field& field);
bool WithinRange(const Field& field, double value);

// --- Settings files.

// Reads every key of the family's section into Working; what is missing or cannot be read takes its
// Factory value. No range check. Always 0.
int ReadSettings(const KeyTable& keys, const std::string& file);
// Writes every key; stops at the first error, with what went before in the file, and returns 0
// without a message. 1 when all went out, and for an empty table.
int WriteSettings(const KeyTable& keys, const std::string& file);

// Buttons of the page "Settings I/O".
inline constexpr int ControlSave = 9015;
inline constexpr int ControlSaveAs = 116;
inline constexpr int ControlOpen = 9018;
inline constexpr int ControlSaveAsDefault = 13402;

// The handler of the four buttons, which every dialog with the page asks first. 1 when the dialog
// must show the record's values again, else 0. A file that cannot be written leaves everything as
// it was, and a message says why.
int SettingsCommand(PowerSettings& block, WindowHandle parent, Family family, int commandId);

}  // namespace poweranalysis
