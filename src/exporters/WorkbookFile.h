#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "exporters/Study.h"

// The workbook file: studies with everything that came out of them, as indented JSON of the same
// shapes as `--format json`. It opens again without any calculation. docs/workbook-file.md is its
// contract.
namespace poweranalysis {

inline constexpr int WorkbookSchema = 1;  // raised by a change that would break a reader
inline constexpr int WorkbookMinor = 1;   // raised when members are added

// The largest workbook that is read or written. A study has some ten kilobytes.
inline constexpr std::size_t WorkbookFileLimit = std::size_t{32} << 20;
// The most values (numbers, texts, arrays, objects) in one.
inline constexpr std::size_t WorkbookValueLimit = std::size_t{2} << 20;

// What the workbook adds to an item of a study.
struct ItemLabel {
  std::string name;  // empty: the face's own word for it
  std::string date;  // as a study's
};

struct WorkbookInput {
  std::string field;  // as the record spells it: "SampleSize"
  double value = 0;
};

struct WorkbookStudy {
  std::string id;  // unique in its workbook; an empty one is made up when the file is written
  std::string name;
  std::string date;                   // "2024-05-17T09:30:00", also with "Z" or "+02:00"; or empty
  std::vector<WorkbookInput> inputs;  // in the order of the record
  Study study;
  std::vector<ItemLabel> labels;   // of study.workbook.items by position; those missing are empty
  std::vector<std::string> notes;  // lines of the workbook's own, never part of a system's table
};

struct LoadedWorkbook {
  std::vector<WorkbookStudy> studies;  // none when there is an error
  std::string error;                   // empty; or what is wrong and where
  // A newer version wrote it, with more in it than is understood here: saving it under its name
  // would lose that. The notes say where it stands.
  bool newer = false;
  std::vector<std::string> notes;
};

// Same studies, same bytes. Table values and chart points read back to the same bits; a NaN other
// than the missing value reads back as some NaN. Texts that are not UTF-8 get replacement
// characters, and dates that are invalid are left out.
std::string WorkbookText(const std::vector<WorkbookStudy>& studies);

// Reads any bytes. The error says where: a line and column, or a place such as
// studies[2].items[0].rows[3].value.
LoadedWorkbook ParseWorkbook(std::string_view text);

// Reads a file whole or not at all. The error is a sentence that names the file and the reason.
LoadedWorkbook LoadWorkbook(const std::string& path);

// Replaces the file as AtomicFile does: it is the old or the new one at every moment. Returns a
// sentence that names the file and the reason, empty when it is saved. What LoadWorkbook would
// refuse is not written.
std::string SaveWorkbook(const std::vector<WorkbookStudy>& studies, const std::string& path);

// The date in its own form ("2024-05-17T09:30:00", fractions of a second and a zone after it
// allowed) that a study can bear.
bool IsWorkbookDate(std::string_view text);

}  // namespace poweranalysis
