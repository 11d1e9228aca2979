#pragma once

#include <string>
#include <vector>

#include "settings/PowerSettings.h"

// What a settings file could not give or take, worded for the user. A file is taken as far as it
// can be read, so these are remarks beside the values and refuse nothing.
namespace poweranalysis {

struct SettingsRemark {
  TextId id;
  std::string text;
};
using SettingsRemarks = std::vector<SettingsRemark>;

// After the opening of a file: that it is missing, cannot be read or holds nothing of the family;
// else each of its keys that was not taken, with text and line, and each field that a file cannot
// hold, with the value that it has now.
SettingsRemarks RemarksOnOpening(PowerSettings& block, Family family, const std::string& file);

// After the reading of the default file at the start: that it cannot be read, or the keys of all
// families that were not taken.
SettingsRemarks RemarksOnDefaults(PowerSettings& block);

// On what a saving leaves out: the fields that a file cannot hold and that have another value than
// the built-in one.
SettingsRemarks RemarksOnSaving(PowerSettings& block, Family family);
SettingsRemarks RemarksOnSavingDefaults(PowerSettings& block, Family family);

// Whether a message is one of these, or says that a file could not be written.
bool IsSettingsRemark(int id);

// Shows them as one message, one per line, under the number of the first.
void ShowRemarks(WindowHandle parent, const SettingsRemarks& remarks);

}  // namespace poweranalysis
