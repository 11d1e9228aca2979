#include <cstring>

#include "settings/PowerSettings.h"
#include "settings/SettingsRemarks.h"

namespace poweranalysis {

namespace {

bool KnownType(FieldType type) {
  return type == FieldType::Int16 || type == FieldType::Int32 || type == FieldType::Real;
}

template <class T>
T At(const void* address) {
  T value;
  std::memcpy(&value, address, sizeof value);
  return value;
}

// A short is widened to a long on its way out and narrowed on its way in.
KeywordValue ValueOf(FieldType type, const void* address) {
  switch (type) {
    case FieldType::Int16:
      return {KeywordKind::Long, At<i16>(address), 0};
    case FieldType::Int32:
      return {KeywordKind::Long, At<i32>(address), 0};
    default:
      return {KeywordKind::Double, 0, At<f64>(address)};
  }
}

void StoreValue(FieldType type, void* address, const KeywordValue& value) {
  const auto store = [address](auto stored) { std::memcpy(address, &stored, sizeof stored); };
  switch (type) {
    case FieldType::Int16:
      return store(static_cast<i16>(value.whole));
    case FieldType::Int32:
      return store(value.whole);
    default:
      return store(value.real);
  }
}

}  // namespace

int ReadSettings(const KeyTable& keys, const std::string& file) {
  Host* host = ModuleHost();
  const std::string section = LoadText(keys.family->section);
  // At the start all families are read, and most have no keys in the file: a section is looked at
  // once.
  const bool hasKeys = host != nullptr && !host->GetInitSection(file, section).keys.empty();
  for (const KeyEntry& entry : keys.entries) {
    const FieldType type = entry.field->type;
    if (!KnownType(type)) {
      continue;
    }
    const KeywordValue factory = ValueOf(type, entry.factory);
    std::optional<KeywordValue> found;
    if (hasKeys) {
      found = host->GetInitKeywordPrivate(factory.kind, file, section, LoadText(entry.field->key));
    }
    StoreValue(type, entry.working, found.value_or(factory));
  }
  return 0;
}

int WriteSettings(const KeyTable& keys, const std::string& file) {
  if (keys.entries.empty()) {
    return 1;
  }
  Host* host = ModuleHost();
  if (host == nullptr || host->BeginInitKeywords(file) != 0) {
    return 0;
  }
  const std::string section = LoadText(keys.family->section);
  int good = 1;
  for (const KeyEntry& entry : keys.entries) {
    const FieldType type = entry.field->type;
    if (!KnownType(type)) {
      continue;
    }
    if (host->PutInitKeywordPrivate(file, section, LoadText(entry.field->key),
                                    ValueOf(type, entry.factory),
                                    ValueOf(type, entry.working)) != 0) {
      good = 0;
      break;
    }
  }
  return host->EndInitKeywords(file) == 0 ? good : 0;
}

namespace {

// Whose Defaults a Save As Default refreshes, by section number.
// Kept: the row of the one-correlation family bears the number of one of its keys and not of its
// section, so that Save As Default in that family writes and reads the file and leaves Defaults
// alone until the next start.
constexpr int kCorrelationKeyNumber = 13966;

int DefaultsRow(const FamilyTable& table) {
  return table.family == Family::R ? kCorrelationKeyNumber : table.section;
}

void RefreshDefaults(PowerSettings& block, int section) {
  for (const FamilyTable& table : FamilyTables()) {
    if (section != 0 && DefaultsRow(table) == section) {
      ViewOf(block, table.family, Instance::Defaults)
          .CopyFrom(ViewOf(block, table.family, Instance::Working));
    }
  }
}

bool ReadyToSave(PowerSettings& block, WindowHandle parent, Family family) {
  if (CheckRanges(parent, FillKeys(block, family)) != 0) {
    return true;
  }
  ShowMessage(MessagePlain, parent, text::FileNotSaved);
  return false;
}

// The text fields of the block hold up to 255 characters.
bool FitsBlock(const std::string& path) {
  constexpr std::size_t kLongestPath = 255;
  return path.size() <= kLongestPath;
}

// Whether all went out; if not, the user learns why.
bool Write(PowerSettings& block, WindowHandle parent, Family family, const std::string& file) {
  if (WriteSettings(FillKeys(block, family), file) != 0) {
    return true;
  }
  ShowMessage(MessagePlain, parent, text::SettingsNotSaved,
              {FormatArg(ModuleHost()->InitKeywordsError())});
  return false;
}

int SaveAs(PowerSettings& block, WindowHandle parent, Family family) {
  const std::optional<std::string> path = ModuleHost()->DoFileSaveAsDlg(
      LoadText(text::SaveSettingsTitle), block.CurrentFile, LoadText(text::SettingsExtension));
  if (!path || !ReadyToSave(block, parent, family)) {
    return 0;
  }
  if (!FitsBlock(*path)) {
    ShowMessage(MessagePlain, parent, text::PathTooLong);
    return 0;
  }
  if (Write(block, parent, family, *path)) {
    block.FileNamed = 1;
    block.CurrentFile = *path;
    ShowRemarks(parent, RemarksOnSaving(block, family));
  }
  return 0;
}

int Save(PowerSettings& block, WindowHandle parent, Family family) {
  if (block.FileNamed == 0) {
    return SaveAs(block, parent, family);
  }
  if (ReadyToSave(block, parent, family) && Write(block, parent, family, block.CurrentFile)) {
    ShowRemarks(parent, RemarksOnSaving(block, family));
  }
  return 0;
}

int Open(PowerSettings& block, WindowHandle parent, Family family) {
  const std::optional<std::string> path = ModuleHost()->DoFileOpenDlg(
      LoadText(text::OpenSettingsTitle), LoadText(text::SettingsExtension));
  if (!path) {
    return 1;
  }
  if (!FitsBlock(*path)) {
    ShowMessage(MessagePlain, parent, text::PathTooLong);
    return 1;
  }
  ReadSettings(FillKeys(block, family), *path);
  block.CurrentFile = *path;
  ShowRemarks(parent, RemarksOnOpening(block, family, *path));
  return 1;
}

int SaveAsDefault(PowerSettings& block, WindowHandle parent, Family family) {
  if (!ReadyToSave(block, parent, family) || !Write(block, parent, family, block.DefaultFile)) {
    return 0;
  }
  ShowRemarks(parent, RemarksOnSavingDefaults(block, family));
  // What the user goes on with is what the file gave back, and the dialog must show it.
  ReadSettings(FillKeys(block, family), block.DefaultFile);
  RefreshDefaults(block, TableOf(family).section);
  return 1;
}

}  // namespace

int SettingsCommand(PowerSettings& block, WindowHandle parent, Family family, int commandId) {
  // A calculator's record has no section, and so no settings file.
  if (ModuleHost() == nullptr || TableOf(family).section == 0) {
    return 0;
  }
  switch (commandId) {
    case ControlSaveAs:
      return SaveAs(block, parent, family);
    case ControlSave:
      return Save(block, parent, family);
    case ControlOpen:
      return Open(block, parent, family);
    case ControlSaveAsDefault:
      return SaveAsDefault(block, parent, family);
    default:
      return 0;
  }
}

}  // namespace poweranalysis
