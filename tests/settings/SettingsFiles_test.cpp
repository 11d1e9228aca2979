#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <filesystem>

#include "support/DataTable.h"
#include "support/TestSettings.h"

namespace poweranalysis {
namespace {

using testing::ReadWhole;
using testing::SettingsTest;
using testing::WriteWhole;

constexpr const char* kT1 = "[POWER_ANALYSIS_ONE_SAMPLE_TTEST]";

class SettingsFilesTest : public SettingsTest {
 protected:
  // Saves a family under a name of this test's folder, as the user does.
  void SaveAs(Family family, const std::string& name) {
    host.saveAnswers.push_back(folder.File(name));
    EXPECT_EQ(Command(family, ControlSaveAs), 0);
  }
  int Open(Family family, const std::string& name) {
    host.openAnswers.push_back(folder.File(name));
    return Command(family, ControlOpen);
  }
  int OpenContent(Family family, const std::string& content) {
    WriteWhole(folder.File("opened.ini"), content);
    return Open(family, "opened.ini");
  }
  void RestoreDefaults(Family family) {
    View(family, Instance::Working).CopyFrom(View(family, Instance::Defaults));
  }
  // Every keyed field of a family at its built-in value, but for one.
  void ExpectFactory(Family family, std::string_view except = {}) {
    for (const KeyEntry& entry : FillKeys(block, family).entries) {
      if (entry.field->name != except) {
        EXPECT_EQ(View(family, Instance::Working).Get(*entry.field), entry.field->factory)
            << entry.field->name;
      }
    }
  }
  static std::vector<std::string> Lines(const std::string& content) {
    auto lines = testing::SplitAt(content, '\n');
    while (!lines.empty() && lines.back().empty()) {
      lines.pop_back();
    }
    return lines;
  }
};

constexpr Family kWithSection[] = {Family::T1,   Family::T2,  Family::T3,  Family::PC, Family::AV1,
                                   Family::AV2,  Family::V1,  Family::V2,  Family::P1, Family::P2,
                                   Family::QMAC, Family::R,   Family::Z2R, Family::R2, Family::SA1,
                                   Family::SA2,  Family::SA3, Family::SEM};

// --- The file.

TEST_F(SettingsFilesTest, AFileHoldsTheSectionAndEveryKeyInOrder) {
  SaveAs(Family::T1, "a.ini");
  EXPECT_EQ(Lines(ReadWhole(folder.File("a.ini"))),
            (std::vector<std::string>{kT1,
                                      "SampleSize=25",
                                      "Mu0=0",
                                      "Mu=2",
                                      "TObserved=1",
                                      "Confidence=0.9",
                                      "Alpha=0.05",
                                      "Sigma=10",
                                      "AlphaStart=0.01",
                                      "AlphaEnd=0.25",
                                      "PowerStart=0.65",
                                      "PowerEnd=0.95",
                                      "PowerGoal=0.9",
                                      "NStart=10",
                                      "NEnd=100",
                                      "NInterval=10",
                                      "EsStart=0.3",
                                      "EsEnd=0.9",
                                      "OneMinusP=0",
                                      "ComputeT=0",
                                      "ComputeP=1",
                                      "ComputeDelta=0",
                                      "H0Type=0",
                                      "CumP=0.95",
                                      "DegreesOfFreedom=24"}));
}

TEST_F(SettingsFilesTest, EveryFamilyWritesItsKeysUnderItsSection) {
  for (const Family family : kWithSection) {
    const std::string file = folder.File(std::string(TableOf(family).code) + ".ini");
    const KeyTable keys = FillKeys(block, family);
    EXPECT_EQ(WriteSettings(keys, file), 1) << TableOf(family).code;
    const auto lines = Lines(ReadWhole(file));
    std::vector<std::string> names;
    for (std::size_t i = 1; i < lines.size(); ++i) {
      names.push_back(lines[i].substr(0, lines[i].find('=')));
    }
    std::vector<std::string> expected;
    for (const KeyEntry& entry : keys.entries) {
      if (std::string_view(entry.field->name) != "PopulationR2") {
        expected.emplace_back(entry.field->name);
      }
    }
    ASSERT_FALSE(lines.empty()) << TableOf(family).code;
    EXPECT_EQ(lines[0], "[" + LoadText(TableOf(family).section) + "]");
    EXPECT_EQ(names, expected) << TableOf(family).code;
  }
}

TEST_F(SettingsFilesTest, TheFieldWithoutAKeyIsNeverWrittenAndReadAsFactory) {
  SetWorking(Family::R2, "PopulationR2", 0.4);
  SetWorking(Family::R2, "R2Null", 0.1);
  SaveAs(Family::R2, "r2.ini");
  EXPECT_EQ(MessageIds(), (std::vector<int>{text::SettingNotHeld}));
  const std::string content = ReadWhole(folder.File("r2.ini"));
  EXPECT_NE(content.find("R2Null=0.1\n"), std::string::npos);
  EXPECT_NE(content.find("CumP=0.95\n"), std::string::npos);
  EXPECT_EQ(content.find("\n="), std::string::npos);
  EXPECT_EQ(content.find("PopulationR2"), std::string::npos);
  EXPECT_EQ(Open(Family::R2, "r2.ini"), 1);
  EXPECT_EQ(Working(Family::R2, "PopulationR2"), 0.2);
  EXPECT_EQ(Working(Family::R2, "R2Null"), 0.1);

  EXPECT_EQ(OpenContent(Family::R2, "[POWER_ANALYSIS_SQUARED_MULTIPLE_CORRELATION]\n=0.7\n"), 1);
  EXPECT_EQ(Working(Family::R2, "PopulationR2"), 0.2);
}

TEST_F(SettingsFilesTest, EveryValueIsReadBackBitForBit) {
  const double values[] = {
      0.1 + 0.2, std::nextafter(0.05, 1), -0.0,   5e-324, 1.7976931348623157e308,
      -1e30,     123456789.123456789,     1.0 / 3};
  for (const double value : values) {
    block.T1.Working.Mu = value;
    EXPECT_EQ(WriteSettings(FillKeys(block, Family::T1), folder.File("bits.ini")), 1);
    block.T1.Working.Mu = 7;
    EXPECT_EQ(ReadSettings(FillKeys(block, Family::T1), folder.File("bits.ini")), 0);
    EXPECT_EQ(std::memcmp(&block.T1.Working.Mu, &value, sizeof value), 0) << value;
  }
  for (const std::int32_t value : {-2147483647 - 1, -1, 0, 2147483647}) {
    block.T1.Working.SampleSize = value;
    WriteSettings(FillKeys(block, Family::T1), folder.File("bits.ini"));
    block.T1.Working.SampleSize = 7;
    ReadSettings(FillKeys(block, Family::T1), folder.File("bits.ini"));
    EXPECT_EQ(block.T1.Working.SampleSize, value);
  }
  for (const int value : {-32768, -1, 32767}) {
    block.T1.Working.H0Type = static_cast<i16>(value);
    WriteSettings(FillKeys(block, Family::T1), folder.File("bits.ini"));
    block.T1.Working.H0Type = 7;
    ReadSettings(FillKeys(block, Family::T1), folder.File("bits.ini"));
    EXPECT_EQ(block.T1.Working.H0Type, value);
  }
}

TEST_F(SettingsFilesTest, EveryFamilyComesBackFromOneFile) {
  for (const Family family : kWithSection) {
    SetWorking(family, "AlphaEnd", 0.2 + 0.001 * static_cast<int>(family));
    SaveAs(family, "all.ini");
  }
  EXPECT_TRUE(host.messages().empty());
  for (const Family family : kWithSection) {
    SetWorking(family, "AlphaEnd", 0.15);
    Open(family, "all.ini");
    EXPECT_EQ(Working(family, "AlphaEnd"), 0.2 + 0.001 * static_cast<int>(family))
        << TableOf(family).code;
  }
}

TEST_F(SettingsFilesTest, OtherSectionsAndCommentsOfAFileAreLeftAlone) {
  const std::string others =
      "; mine\n[POWER_ANALYSIS_SEM]\nR=0.3\nUnknown=1\n\n[Elsewhere]\nSampleSize=7\n";
  WriteWhole(folder.File("b.ini"), others);
  SaveAs(Family::T1, "b.ini");
  const std::string content = ReadWhole(folder.File("b.ini"));
  EXPECT_EQ(content.substr(0, others.size()), others);
  EXPECT_NE(content.find(kT1), std::string::npos);
  Open(Family::SEM, "b.ini");
  EXPECT_EQ(Working(Family::SEM, "R"), 0.3);
}

TEST_F(SettingsFilesTest, UnkeyedFieldsAreNotInTheFile) {
  block.T1.Working.Delta = 3.25;
  SaveAs(Family::T1, "c.ini");
  EXPECT_EQ(ReadWhole(folder.File("c.ini")).find("Delta=3.25"), std::string::npos);
  block.Z2R.Working.NToVary = 2;
  SaveAs(Family::Z2R, "c.ini");
  EXPECT_EQ(ReadWhole(folder.File("c.ini")).find("NToVary"), std::string::npos);
}

TEST_F(SettingsFilesTest, AnEmptyTableIsWrittenWell) {
  const KeyTable empty{&TableOf(Family::T1), {}};
  EXPECT_EQ(WriteSettings(empty, folder.File("none.ini")), 1);
  EXPECT_FALSE(std::filesystem::exists(folder.File("none.ini")));
  EXPECT_EQ(ReadSettings(empty, folder.File("none.ini")), 0);
}

// --- Save As.

TEST_F(SettingsFilesTest, SaveAsAsksWithTitleNameAndExtension) {
  SaveAs(Family::T1, "a.ini");
  ASSERT_EQ(host.calls.saveDialogs.size(), 1u);
  EXPECT_EQ(host.calls.saveDialogs[0],
            (std::array<std::string, 3>{"Save Settings to a File", "NEW.INI", ".INI"}));
  EXPECT_EQ(block.CurrentFile, folder.File("a.ini"));
  EXPECT_EQ(block.FileNamed, 1);
  SaveAs(Family::T1, "b.ini");
  EXPECT_EQ(host.calls.saveDialogs[1][1], folder.File("a.ini"));
}

TEST_F(SettingsFilesTest, CancelOnSaveAsIsNothingEvenWithABadField) {
  SetWorking(Family::T1, "Alpha", 0.5);
  EXPECT_EQ(Command(Family::T1, ControlSaveAs), 0);
  EXPECT_TRUE(host.messages().empty());
  EXPECT_EQ(block.FileNamed, 0);
  EXPECT_EQ(block.CurrentFile, "NEW.INI");
}

TEST_F(SettingsFilesTest, AFailedSaveShowsTwoMessagesAndForgetsTheName) {
  SetWorking(Family::T1, "Alpha", 0.5);
  SaveAs(Family::T1, "a.ini");
  EXPECT_EQ(MessageIds(), (std::vector<int>{12853, 12856}));
  EXPECT_EQ(LastMessage(),
            "File not saved.\r\n1. Revise your parameter to be within the correct range.\r\n"
            "2. Try saving the file again.");
  EXPECT_EQ(block.FileNamed, 0);
  EXPECT_EQ(block.CurrentFile, "NEW.INI");
  EXPECT_FALSE(std::filesystem::exists(folder.File("a.ini")));
}

// --- Save.

TEST_F(SettingsFilesTest, SaveBeforeAnyNameIsSaveAs) {
  host.saveAnswers.push_back(folder.File("a.ini"));
  EXPECT_EQ(Command(Family::T1, ControlSave), 0);
  ASSERT_EQ(host.calls.saveDialogs.size(), 1u);
  EXPECT_EQ(host.calls.saveDialogs[0][1], "NEW.INI");
  EXPECT_EQ(block.FileNamed, 1);
}

TEST_F(SettingsFilesTest, SaveGoesToTheNamedFileOfAnyFamily) {
  SaveAs(Family::T1, "a.ini");
  SetWorking(Family::T2, "Alpha", 0.1);
  EXPECT_EQ(Command(Family::T2, ControlSave), 0);
  EXPECT_EQ(host.calls.saveDialogs.size(), 1u);
  const std::string content = ReadWhole(folder.File("a.ini"));
  EXPECT_NE(content.find("[POWER_ANALYSIS_TWO_SAMPLE_TTEST_INDEPENDENT]"), std::string::npos);
  EXPECT_NE(content.find("Alpha=0.1\n"), std::string::npos);
}

TEST_F(SettingsFilesTest, SaveOfABadFieldShowsTwoMessagesAndLeavesTheFile) {
  SaveAs(Family::T1, "a.ini");
  const std::string before = ReadWhole(folder.File("a.ini"));
  SetWorking(Family::T1, "Mu", 3);
  SetWorking(Family::T1, "NStart", 1);
  EXPECT_EQ(Command(Family::T1, ControlSave), 0);
  EXPECT_EQ(MessageIds(), (std::vector<int>{12852, 12856}));
  EXPECT_EQ(ReadWhole(folder.File("a.ini")), before);
  EXPECT_EQ(block.FileNamed, 1);
}

// --- Open.

TEST_F(SettingsFilesTest, OpenAsksWithTitleAndExtensionAndNamesNoFile) {
  WriteWhole(folder.File("a.ini"), std::string(kT1) + "\nAlpha=0.1\n");
  EXPECT_EQ(Open(Family::T1, "a.ini"), 1);
  ASSERT_EQ(host.calls.openDialogs.size(), 1u);
  EXPECT_EQ(host.calls.openDialogs[0],
            (std::array<std::string, 2>{"Open a File with Parameter Settings", ".INI"}));
  EXPECT_EQ(block.CurrentFile, folder.File("a.ini"));
  EXPECT_EQ(block.FileNamed, 0);
  // So a following Save asks for a name, and offers this one.
  Command(Family::T1, ControlSave);
  ASSERT_EQ(host.calls.saveDialogs.size(), 1u);
  EXPECT_EQ(host.calls.saveDialogs[0][1], folder.File("a.ini"));
}

TEST_F(SettingsFilesTest, CancelOnOpenRedrawsAndChangesNothing) {
  SetWorking(Family::T1, "Alpha", 0.1);
  EXPECT_EQ(Command(Family::T1, ControlOpen), 1);
  EXPECT_EQ(Working(Family::T1, "Alpha"), 0.1);
  EXPECT_EQ(block.CurrentFile, "NEW.INI");
}

TEST_F(SettingsFilesTest, OpenReadsWithoutARangeCheck) {
  EXPECT_EQ(OpenContent(Family::T1, std::string(kT1) + "\nAlpha=0.9\nSampleSize=-4\n"), 1);
  EXPECT_TRUE(host.messages().empty());
  EXPECT_EQ(Working(Family::T1, "Alpha"), 0.9);
  EXPECT_EQ(Working(Family::T1, "SampleSize"), -4);
  EXPECT_EQ(Check(Family::T1), 0);
}

TEST_F(SettingsFilesTest, OpenChangesWorkingAlone) {
  OpenContent(Family::T1, std::string(kT1) + "\nAlpha=0.1\n");
  EXPECT_EQ(block.T1.Working.Alpha, 0.1);
  EXPECT_EQ(block.T1.Committed.Alpha, 0.05);
  EXPECT_EQ(block.T1.Defaults.Alpha, 0.05);
}

TEST_F(SettingsFilesTest, OpenFallsBackToFactoryAndNotToTheDefaults) {
  block.T1.Defaults.Mu = 5;
  SetWorking(Family::T1, "Mu", 6);
  SetWorking(Family::T1, "NEnd", 60);
  EXPECT_EQ(OpenContent(Family::T1, std::string(kT1) + "\nAlpha=0.1\n"), 1);
  EXPECT_EQ(Working(Family::T1, "Alpha"), 0.1);
  ExpectFactory(Family::T1, "Alpha");
}

TEST_F(SettingsFilesTest, AFileOfAnotherKindResetsEveryKeyAndSaysSo) {
  for (const char* content :
       {"", "\n\n", "no settings at all",
        "\x7f"
        "ELF\x01\x02",
        "[Other]\nAlpha=0.2\n", "Alpha=0.2\n", "[power_analysis_one_sample_ttest]\nAlpha=0.2\n"}) {
    SetWorking(Family::T1, "Alpha", 0.1);
    SetWorking(Family::T1, "SampleSize", 30);
    block.T1.Working.Delta = 2.5;
    host.ClearMessages();
    EXPECT_EQ(OpenContent(Family::T1, content), 1);
    ExpectFactory(Family::T1);
    EXPECT_EQ(block.T1.Working.Delta, 2.5) << "an unkeyed field keeps its value";
    EXPECT_EQ(MessageIds(), (std::vector<int>{text::SettingsOfNone}));
  }
}

TEST_F(SettingsFilesTest, AMissingFileAndAFolderResetEveryKeyAndSaySo) {
  for (const char* name : {"missing.ini", "missing/deep.ini", "."}) {
    SetWorking(Family::T1, "Alpha", 0.1);
    EXPECT_EQ(Open(Family::T1, name), 1) << name;
    ExpectFactory(Family::T1);
    EXPECT_EQ(block.CurrentFile, folder.File(name));
  }
  EXPECT_EQ(MessageIds(), (std::vector<int>{text::SettingsFileMissing, text::SettingsFileMissing,
                                            text::SettingsFileNotRead}));
}

struct OddValue {
  const char* line;
  const char* field;
  double expected;
  int remark;  // 0: none
};

TEST_F(SettingsFilesTest, AValueThatCannotBeReadGivesTheBuiltInOneAndIsTold) {
  constexpr OddValue kCases[] = {
      {"Alpha=abc", "Alpha", 0.05, text::SettingNotANumber},
      {"Alpha=", "Alpha", 0.05, text::SettingNotANumber},
      {"Alpha=nan", "Alpha", 0.05, text::SettingNotANumber},
      {"Alpha=inf", "Alpha", 0.05, text::SettingNotANumber},
      {"Alpha=0,1", "Alpha", 0.05, text::SettingNotANumber},
      {"Alpha=0.1x", "Alpha", 0.05, text::SettingNotANumber},
      {"Alpha=1e400", "Alpha", 0.05, text::SettingNotANumber},
      {"SampleSize=12.5", "SampleSize", 25, text::SettingNotWhole},
      {"SampleSize=2147483648", "SampleSize", 25, text::SettingNotWhole},
      {"SampleSize=99999999999999999999", "SampleSize", 25, text::SettingNotWhole},
      {"alpha=0.1", "Alpha", 0.05, text::SettingUnknown},
      {"Alpha = 0.1", "Alpha", 0.1, 0},
      {"Alpha=1e-1", "Alpha", 0.1, 0},
      {"Mu=+3", "Mu", 3, 0},
      {"SampleSize=1e2", "SampleSize", 100, 0},
      {"SampleSize=+30", "SampleSize", 30, 0},
      {"SampleSize= 30 ", "SampleSize", 30, 0},
      {"SampleSize=2147483647", "SampleSize", 2147483647, 0},
  };
  for (const OddValue& c : kCases) {
    host.ClearMessages();
    OpenContent(Family::T1, std::string(kT1) + "\n" + c.line + "\n");
    EXPECT_EQ(Working(Family::T1, c.field), c.expected) << c.line;
    EXPECT_EQ(MessageIds(), c.remark == 0 ? std::vector<int>() : std::vector<int>{c.remark})
        << c.line;
  }
}

TEST_F(SettingsFilesTest, WhatAFileCouldNotGiveIsOneMessageWithKeyTextAndLine) {
  WriteWhole(folder.File("a.ini"),
             "; mine\n" + std::string(kT1) + "\nMu=9,5\nSampleSize=12.5\nPower=0.8\nAlpha=0.1\n");
  Open(Family::T1, "a.ini");
  EXPECT_EQ(LastMessage(),
            "'a.ini', line 3: Mu=9,5 is not a number; the built-in value 2 stands.\r\n"
            "'a.ini', line 4: SampleSize=12.5 is not a whole number of 32 bits; the built-in value "
            "25 stands.\r\n"
            "'a.ini', line 5: Power=0.8 is not a setting of T1.");
  EXPECT_EQ(host.messages().size(), 1u);
  EXPECT_EQ(Working(Family::T1, "Alpha"), 0.1);
}

TEST_F(SettingsFilesTest, AMessageHoldsTwentyLinesOfManyBadOnes) {
  std::string content = std::string(kT1) + "\n";
  for (int i = 0; i < 100; ++i) {
    content += "Unknown" + std::to_string(i) + "=" + std::string(5000, 'x') + "\n";
  }
  OpenContent(Family::T1, content);
  EXPECT_EQ(Lines(LastMessage()).size(), 21u);
  EXPECT_NE(LastMessage().find(": 80 more lines were not taken."), std::string::npos);
  EXPECT_LT(LastMessage().size(), 4000u);
}

TEST_F(SettingsFilesTest, TheStartSaysWhatTheDefaultsCouldNotGive) {
  host.ClearMessages();
  WriteWhole(folder.File("POWER.INI"),
             std::string(kT1) + "\nMu=9,5\nSigma=4\n[POWER_ANALYSIS_SEM]\nR=x\n");
  LoadAllDefaults(block);
  EXPECT_EQ(Working(Family::T1, "Mu"), 2);
  EXPECT_EQ(Working(Family::T1, "Sigma"), 4);
  EXPECT_EQ(LastMessage(),
            "'POWER.INI', line 2: Mu=9,5 is not a number; the built-in value 2 stands.\r\n"
            "'POWER.INI', line 5: R=x is not a number; the built-in value 0.08 stands.");
  host.ClearMessages();
  WriteWhole(folder.File("POWER.INI"), std::string("\0", 1));
  LoadAllDefaults(block);
  EXPECT_EQ(MessageIds(), (std::vector<int>{text::DefaultsNotRead}));
}

// --- What a file cannot hold.

TEST_F(SettingsFilesTest, WhatAFileCannotHoldIsToldOnSavingWhenItIsLost) {
  SaveAs(Family::Z2R, "z.ini");
  SaveAs(Family::R2, "z.ini");
  EXPECT_TRUE(host.messages().empty()) << "the built-in values are not lost";
  block.Z2R.Working.NToVary = 1;
  SaveAs(Family::Z2R, "z.ini");
  EXPECT_EQ(LastMessage(),
            "A settings file cannot hold NToVary=1: enter it again after opening the file.");
  SetWorking(Family::R2, "PopulationR2", 0.4);
  Command(Family::R2, ControlSave);
  EXPECT_EQ(LastMessage(),
            "A settings file cannot hold PopulationR2=0.4: enter it again after opening the file.");
  for (const Family family : {Family::AV1, Family::V2, Family::AV2}) {
    host.ClearMessages();
    SetWorking(family, "Algorithm", 1);
    SaveAs(family, "z.ini");
    EXPECT_EQ(MessageIds(), (std::vector<int>{text::SettingNotHeld})) << TableOf(family).code;
  }
}

TEST_F(SettingsFilesTest, WhatAFileCannotHoldIsToldOnOpeningWithTheValueInForce) {
  SaveAs(Family::Z2R, "z.ini");
  SaveAs(Family::R2, "z.ini");
  block.Z2R.Working.NToVary = 2;
  Open(Family::Z2R, "z.ini");
  EXPECT_EQ(LastMessage(), "A settings file cannot hold NToVary: after opening it is 2.");
  SetWorking(Family::R2, "PopulationR2", 0.4);
  Open(Family::R2, "z.ini");
  EXPECT_EQ(LastMessage(), "A settings file cannot hold PopulationR2: after opening it is 0.2.");
}

// A short is widened on its way out and narrowed on its way in.
TEST_F(SettingsFilesTest, ShortFieldsAreNarrowedFromTheFile) {
  OpenContent(Family::T1, std::string(kT1) + "\nH0Type=65537\n");
  EXPECT_EQ(block.T1.Working.H0Type, 1);
  OpenContent(Family::T1, std::string(kT1) + "\nH0Type=-1\n");
  EXPECT_EQ(block.T1.Working.H0Type, -1);
}

TEST_F(SettingsFilesTest, FilesOfOtherSystemsAreRead) {
  OpenContent(Family::T1, "\xEF\xBB\xBF" + std::string(kT1) + "\r\nAlpha=0.1\r\nSampleSize=30\r\n");
  EXPECT_EQ(Working(Family::T1, "Alpha"), 0.1);
  EXPECT_EQ(Working(Family::T1, "SampleSize"), 30);
}

TEST_F(SettingsFilesTest, AFileChangedFromOutsideIsReadAnew) {
  OpenContent(Family::T1, std::string(kT1) + "\nAlpha=0.1\n");
  OpenContent(Family::T1, std::string(kT1) + "\nAlpha=0.20\n");
  EXPECT_EQ(Working(Family::T1, "Alpha"), 0.2);
}

// --- Save As Default.

TEST_F(SettingsFilesTest, SaveAsDefaultRefreshesDefaultsInEveryFamilyButOneCorrelation) {
  for (const Family family : kWithSection) {
    SetWorking(family, "Alpha", 0.1);
    EXPECT_EQ(Command(family, ControlSaveAsDefault), 1) << "the dialog shows the values again";
    EXPECT_EQ(Get(family, Instance::Defaults, "Alpha"), family == Family::R ? 0.05 : 0.1)
        << TableOf(family).code;
    RestoreDefaults(family);
    EXPECT_EQ(Working(family, "Alpha"), family == Family::R ? 0.05 : 0.1) << TableOf(family).code;
    EXPECT_EQ(Get(family, Instance::Committed, "Alpha"), 0.05) << TableOf(family).code;
  }
  EXPECT_TRUE(host.messages().empty());
  EXPECT_TRUE(host.calls.saveDialogs.empty());
  EXPECT_EQ(block.FileNamed, 0);
  EXPECT_EQ(block.CurrentFile, "NEW.INI");
  // The next start gives the new values to all of them.
  LoadAllDefaults(block);
  for (const Family family : kWithSection) {
    EXPECT_EQ(Working(family, "Alpha"), 0.1) << TableOf(family).code;
    EXPECT_EQ(Get(family, Instance::Defaults, "Alpha"), 0.1) << TableOf(family).code;
  }
}

TEST_F(SettingsFilesTest, SaveAsDefaultGoesOnWithWhatTheFileGaveBack) {
  SetWorking(Family::R2, "PopulationR2", 0.4);
  SetWorking(Family::R2, "Alpha", 0.1);
  EXPECT_EQ(Command(Family::R2, ControlSaveAsDefault), 1);
  EXPECT_EQ(LastMessage(),
            "A settings file cannot hold PopulationR2=0.4: reading the defaults gives 0.2.");
  EXPECT_EQ(Working(Family::R2, "PopulationR2"), 0.2);
  EXPECT_EQ(Working(Family::R2, "Alpha"), 0.1);
  EXPECT_EQ(Get(Family::R2, Instance::Defaults, "Alpha"), 0.1);
}

TEST_F(SettingsFilesTest, SaveAsDefaultOfABadFieldShowsTwoMessages) {
  SetWorking(Family::T1, "H0Type", 3);
  EXPECT_EQ(Command(Family::T1, ControlSaveAsDefault), 0);
  EXPECT_EQ(MessageIds(), (std::vector<int>{12851, 12856}));
  EXPECT_FALSE(std::filesystem::exists(folder.File("POWER.INI")));
  EXPECT_EQ(block.T1.Defaults.H0Type, 0);
}

TEST_F(SettingsFilesTest, SaveAsDefaultMakesTheConfigurationFolder) {
  host.configFolder = folder.File("config/poweranalysis");
  SetWorking(Family::T1, "Alpha", 0.1);
  EXPECT_EQ(Command(Family::T1, ControlSaveAsDefault), 1);
  EXPECT_EQ(host.keywordError(), "");
  EXPECT_TRUE(std::filesystem::exists(folder.File("config/poweranalysis/POWER.INI")));
  EXPECT_EQ(Working(Family::T1, "Alpha"), 0.1);
}

TEST_F(SettingsFilesTest, DefaultsThatCannotBeWrittenAreToldAndChangeNothing) {
  std::filesystem::create_directory(folder.File("POWER.INI"));
  for (const std::string& config : {std::string(), folder.path()}) {
    host.configFolder = config;
    host.ClearMessages();
    SetWorking(Family::T1, "Alpha", 0.1);
    EXPECT_EQ(Command(Family::T1, ControlSaveAsDefault), 0);
    EXPECT_EQ(MessageIds(), (std::vector<int>{text::SettingsNotSaved}));
    EXPECT_NE(LastMessage().find(host.keywordError()), std::string::npos);
    EXPECT_EQ(Working(Family::T1, "Alpha"), 0.1);
    EXPECT_EQ(Get(Family::T1, Instance::Defaults, "Alpha"), 0.05);
  }
}

// --- Failing writes.

TEST_F(SettingsFilesTest, AFailingWriterLeavesTheKeysBeforeItAndSaysNothing) {
  host.failKeyword = 3;
  EXPECT_EQ(WriteSettings(FillKeys(block, Family::T1), folder.File("f.ini")), 0);
  EXPECT_EQ(Lines(ReadWhole(folder.File("f.ini"))),
            (std::vector<std::string>{kT1, "SampleSize=25", "Mu0=0"}));
  EXPECT_TRUE(host.messages().empty());
  EXPECT_EQ(host.calls.keywordsWritten, 2);
}

TEST_F(SettingsFilesTest, ASaveWithAFailingWriterReturnsZeroAndSaysWhy) {
  SaveAs(Family::T1, "f.ini");
  std::filesystem::remove(folder.File("f.ini"));
  host.failKeyword = 3;
  EXPECT_EQ(Command(Family::T1, ControlSave), 0);
  EXPECT_EQ(LastMessage(), "The settings were not saved.\r\nThe keyword could not be written.");
  EXPECT_EQ(Lines(ReadWhole(folder.File("f.ini"))).size(), 3u);
  host.failKeyword = 1;
  std::filesystem::remove(folder.File("f.ini"));
  EXPECT_EQ(Command(Family::T1, ControlSave), 0);
  EXPECT_EQ(host.messageCalls(), 2);
}

TEST_F(SettingsFilesTest, AFileThatCannotBeWrittenIsToldAndItsNameForgotten) {
  for (const char* name : {"missing/f.ini", ".", "/dev/full"}) {
    host.ClearMessages();
    host.saveAnswers.push_back(name[0] == '/' ? std::string(name) : folder.File(name));
    EXPECT_EQ(Command(Family::T1, ControlSaveAs), 0) << name;
    EXPECT_EQ(MessageIds(), (std::vector<int>{text::SettingsNotSaved})) << name;
    EXPECT_NE(LastMessage().find(host.keywordError()), std::string::npos) << name;
    EXPECT_EQ(block.FileNamed, 0) << name;
    EXPECT_EQ(block.CurrentFile, "NEW.INI") << name;
  }
  EXPECT_FALSE(std::filesystem::exists(folder.File("missing")));
  // The name of a file that was written stays, too.
  SaveAs(Family::T1, "good.ini");
  SaveAs(Family::T1, "missing/f.ini");
  EXPECT_EQ(block.FileNamed, 1);
  EXPECT_EQ(block.CurrentFile, folder.File("good.ini"));
}

TEST_F(SettingsFilesTest, AFileThatHoldsSomethingElseIsNotReplaced) {
  const std::string binary("\x00\x01\x02 not settings", 16);
  WriteWhole(folder.File("picture.png"), binary);
  SaveAs(Family::T1, "picture.png");
  EXPECT_EQ(ReadWhole(folder.File("picture.png")), binary);
  EXPECT_EQ(MessageIds(), (std::vector<int>{text::SettingsNotSaved}));
}

// --- Paths.

TEST_F(SettingsFilesTest, APathOfMoreThanTwoHundredFiftyFiveCharactersIsRefused) {
  const std::string fits = folder.path() + std::string(255 - folder.path().size() - 2, '/') + "/a";
  ASSERT_EQ(fits.size(), 255u);
  host.saveAnswers.push_back(fits);
  EXPECT_EQ(Command(Family::T1, ControlSaveAs), 0);
  EXPECT_EQ(block.CurrentFile, fits);
  EXPECT_TRUE(host.messages().empty());

  const std::string tooLong = fits + "b";
  host.saveAnswers.push_back(tooLong);
  EXPECT_EQ(Command(Family::T1, ControlSaveAs), 0);
  EXPECT_EQ(block.CurrentFile, fits);
  EXPECT_EQ(MessageIds(), std::vector<int>{text::PathTooLong});
  host.openAnswers.push_back(tooLong);
  SetWorking(Family::T1, "Alpha", 0.1);
  EXPECT_EQ(Command(Family::T1, ControlOpen), 1);
  EXPECT_EQ(block.CurrentFile, fits);
  EXPECT_EQ(Working(Family::T1, "Alpha"), 0.1);
  EXPECT_FALSE(std::filesystem::exists(tooLong));
}

TEST_F(SettingsFilesTest, ABareNameLeadsIntoTheConfigurationFolder) {
  host.saveAnswers.push_back("mine.ini");
  Command(Family::T1, ControlSaveAs);
  EXPECT_TRUE(std::filesystem::exists(folder.File("mine.ini")));
  EXPECT_EQ(block.CurrentFile, "mine.ini");
}

// --- Commands.

TEST_F(SettingsFilesTest, OtherCommandsAreNotTheirs) {
  for (const int command : {0, 1, 2, 118, 133, 9016, 13403}) {
    EXPECT_EQ(Command(Family::T1, command), 0) << command;
  }
  EXPECT_TRUE(host.calls.saveDialogs.empty());
  EXPECT_TRUE(host.calls.openDialogs.empty());
}

TEST_F(SettingsFilesTest, CalculatorsHaveNoSettingsFile) {
  for (const Family family : {Family::X2Calc, Family::FCalc, Family::BinomialCalc}) {
    for (const int command : {ControlSave, ControlSaveAs, ControlOpen, ControlSaveAsDefault}) {
      EXPECT_EQ(Command(family, command), 0) << TableOf(family).code;
    }
  }
  EXPECT_TRUE(host.calls.saveDialogs.empty());
  EXPECT_TRUE(host.calls.openDialogs.empty());
  EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(SettingsFilesTest, TheButtonsHaveTheirNumbers) {
  EXPECT_EQ(ControlSave, 9015);
  EXPECT_EQ(ControlSaveAs, 116);
  EXPECT_EQ(ControlOpen, 9018);
  EXPECT_EQ(ControlSaveAsDefault, 13402);
}

TEST_F(SettingsFilesTest, FactoryAndBoundsNeverChange) {
  for (const Family family : kWithSection) {
    SetWorking(family, "AlphaEnd", 0.12);
    Command(family, ControlSaveAsDefault);
    SaveAs(family, "a.ini");
    OpenContent(family, "[" + LoadText(TableOf(family).section) + "]\nAlphaEnd=5\n");
    Check(family);
    for (const Field& field : TableOf(family).fields) {
      EXPECT_EQ(View(family, Instance::Factory).Get(field), field.factory) << field.name;
      EXPECT_EQ(View(family, Instance::Lower).Get(field), field.lower) << field.name;
      EXPECT_EQ(View(family, Instance::Upper).Get(field), field.upper) << field.name;
    }
  }
}

}  // namespace
}  // namespace poweranalysis
