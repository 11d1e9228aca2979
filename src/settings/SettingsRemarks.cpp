#include "settings/SettingsRemarks.h"

#include <algorithm>

#include "host/AtomicFile.h"
#include "host/NumberText.h"
#include "host/Utf8.h"

namespace poweranalysis {

namespace {

// More would not be read in a message box.
constexpr std::size_t kMostLines = 20;
// Names and values of a file that is not ours may be of any length.
constexpr std::size_t kShownCharacters = 40;
constexpr std::size_t kShownName = 255;

std::string Shown(const std::string& text) { return Excerpt(text, kShownCharacters); }

std::string ShownName(const std::string& file) { return Excerpt(NameOf(file), kShownName); }

void Add(SettingsRemarks& remarks, TextId id, std::initializer_list<FormatArg> args) {
  remarks.push_back({id, FormatResource(id, args)});
}

KeywordKind KindOf(const Field& field) {
  return field.type == FieldType::Real ? KeywordKind::Double : KeywordKind::Long;
}

// Inputs that no file brings back: those without a key, and the keyed one whose key is empty. An
// unkeyed real number is what a calculator works out for itself.
bool IsNotHeld(const Field& field) {
  return field.keyed() ? LoadText(field.key).empty() : field.type != FieldType::Real;
}

// A file's keys under the section of one family, against the table of its fields.
class SectionReader {
 public:
  SectionReader(Host& host, const FamilyTable& family, const std::string& file)
      : host_(host),
        family_(family),
        file_(file),
        section_(LoadText(static_cast<TextId>(family.section))) {}

  KeywordSection Read() const { return host_.GetInitSection(file_, section_); }

  void AddRemark(SettingsRemarks& remarks, const KeywordLine& key) const {
    const Field* field = FieldOfKey(key.key);
    if (field == nullptr) {
      Add(remarks, text::SettingUnknown,
          {ShownName(file_), key.line, Shown(key.key), Shown(key.text), family_.code});
    } else if (!host_.GetInitKeywordPrivate(KindOf(*field), file_, section_, key.key)) {
      Add(remarks,
          KindOf(*field) == KeywordKind::Double ? text::SettingNotANumber : text::SettingNotWhole,
          {ShownName(file_), key.line, Shown(key.key), Shown(key.text),
           FormatShortest(field->factory)});
    }
  }

 private:
  const Field* FieldOfKey(const std::string& key) const {
    const auto found =
        std::find_if(family_.fields.begin(), family_.fields.end(),
                     [&](const Field& row) { return row.keyed() && LoadText(row.key) == key; });
    return found == family_.fields.end() ? nullptr : &*found;
  }

  Host& host_;
  const FamilyTable& family_;
  const std::string& file_;
  std::string section_;
};

void AddKeys(SettingsRemarks& remarks, const SectionReader& reader, const KeywordSection& section) {
  for (const KeywordLine& key : section.keys) {
    reader.AddRemark(remarks, key);
  }
}

// Keeps as many as a message box holds, and says how many those are not.
void Shorten(SettingsRemarks& remarks, const std::string& file) {
  if (remarks.size() <= kMostLines) {
    return;
  }
  const std::size_t more = remarks.size() - kMostLines;
  remarks.resize(kMostLines);
  Add(remarks, text::MoreSettingsNotRead, {ShownName(file), more});
}

void AddFields(SettingsRemarks& remarks, const RecordView& working) {
  for (const Field& field : working.table().fields) {
    if (IsNotHeld(field)) {
      Add(remarks, text::SettingNotRead, {field.name, FormatShortest(working.Get(field))});
    }
  }
}

// Those whose value a saving loses.
std::vector<const Field*> LostFields(const RecordView& working) {
  std::vector<const Field*> lost;
  for (const Field& field : working.table().fields) {
    if (IsNotHeld(field) && working.Get(field) != field.factory) {
      lost.push_back(&field);
    }
  }
  return lost;
}

// Whether the file was there and could be read, and holds the section.
bool AddFile(SettingsRemarks& remarks,
             const KeywordSection& section,
             const std::string& file,
             const FamilyTable& family) {
  if (!section.error.empty()) {
    Add(remarks, text::SettingsFileNotRead, {ShownName(file), section.error});
  } else if (!section.exists) {
    Add(remarks, text::SettingsFileMissing, {ShownName(file)});
  } else if (section.keys.empty()) {
    Add(remarks, text::SettingsOfNone, {ShownName(file), family.code});
  }
  return remarks.empty();
}

}  // namespace

SettingsRemarks RemarksOnOpening(PowerSettings& block, Family family, const std::string& file) {
  SettingsRemarks remarks;
  Host* host = ModuleHost();
  if (host == nullptr) {
    return remarks;
  }
  const FamilyTable& table = TableOf(family);
  const SectionReader reader(*host, table, file);
  const KeywordSection section = reader.Read();
  if (AddFile(remarks, section, file, table)) {
    AddKeys(remarks, reader, section);
    Shorten(remarks, file);
    AddFields(remarks, ViewOf(block, family, Instance::Working));
  }
  return remarks;
}

SettingsRemarks RemarksOnDefaults(PowerSettings& block) {
  SettingsRemarks remarks;
  Host* host = ModuleHost();
  if (host == nullptr) {
    return remarks;
  }
  for (const FamilyTable& table : FamilyTables()) {
    if (table.section == 0) {
      continue;
    }
    const SectionReader reader(*host, table, block.DefaultFile);
    const KeywordSection section = reader.Read();
    if (!section.error.empty()) {
      Add(remarks, text::DefaultsNotRead, {ShownName(block.DefaultFile), section.error});
      return remarks;
    }
    AddKeys(remarks, reader, section);
  }
  Shorten(remarks, block.DefaultFile);
  return remarks;
}

SettingsRemarks RemarksOnSaving(PowerSettings& block, Family family) {
  SettingsRemarks remarks;
  const RecordView working = ViewOf(block, family, Instance::Working);
  for (const Field* field : LostFields(working)) {
    Add(remarks, text::SettingNotHeld, {field->name, FormatShortest(working.Get(*field))});
  }
  return remarks;
}

SettingsRemarks RemarksOnSavingDefaults(PowerSettings& block, Family family) {
  SettingsRemarks remarks;
  const RecordView working = ViewOf(block, family, Instance::Working);
  for (const Field* field : LostFields(working)) {
    Add(remarks, text::SettingNotHeldByDefaults,
        {field->name, FormatShortest(working.Get(*field)), FormatShortest(field->factory)});
  }
  return remarks;
}

bool IsSettingsRemark(int id) {
  return id >= text::SettingsNotSaved && id <= text::MoreSettingsNotRead;
}

void ShowRemarks(WindowHandle parent, const SettingsRemarks& remarks) {
  if (remarks.empty()) {
    return;
  }
  std::string lines;
  for (const SettingsRemark& remark : remarks) {
    lines += (lines.empty() ? "" : "\r\n") + remark.text;
  }
  ShowMessage(MessagePlain, parent, static_cast<int>(remarks.front().id), lines);
}

}  // namespace poweranalysis
