#include "cli/Program.h"

namespace poweranalysis {

namespace {

class Settings : public Program {
 protected:
  static constexpr const char* kSection = "[POWER_ANALYSIS_ONE_SAMPLE_TTEST]";
};

TEST_F(Settings, SavedSettingsGiveTheSameResult) {
  const Result saved = Run({"power", "t1", "--mu", "0.1", "--sigma", "0.3", "--sample-size", "40",
                            "--save-settings", "my.ini"});
  EXPECT_EQ(0, saved.status) << saved.err;
  EXPECT_TRUE(Has(Read("my.ini"), kSection)) << Read("my.ini");
  EXPECT_TRUE(Has(Read("my.ini"), "Sigma=0.3\n"));
  const Result opened = Run({"power", "t1", "--settings", "my.ini"});
  EXPECT_EQ(0, opened.status) << opened.err;
  EXPECT_EQ(saved.out, opened.out);
}

TEST_F(Settings, OptionsStandAboveTheFile) {
  Write("my.ini", std::string(kSection) + "\nMu=3\nSigma=4\n");
  EXPECT_EQ(Run({"power", "t1", "--mu", "5", "--sigma", "4"}).out,
            Run({"power", "t1", "--settings", "my.ini", "--mu", "5"}).out);
}

TEST_F(Settings, ReadsFilesWithCarriageReturnsAndAMark) {
  const std::string expected = Run({"power", "t1", "--mu", "3"}).out;
  Write("crlf.ini", std::string("\xEF\xBB\xBF") + kSection + "\r\nMu=3\r\n");
  const Result result = Run({"power", "t1", "--settings", "crlf.ini"});
  EXPECT_EQ(expected, result.out);
  EXPECT_EQ("", result.err);
}

TEST_F(Settings, ValuesOutOfRangeInAFileAreRefusedByTheDialog) {
  Write("my.ini", std::string(kSection) + "\nAlpha=0.9\n");
  const Result result = Run({"power", "t1", "--settings", "my.ini"});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(Has(result.err, "Current value is 0.9.")) << result.err;
}

TEST_F(Settings, AMissingFileIsToldAndNothingIsComputed) {
  const Result result = Run({"power", "t1", "--settings", "none.ini"});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("", result.out);
  EXPECT_EQ("poweranalysis: cannot read the settings file 'none.ini': No such file or directory\n",
            result.err);
}

TEST_F(Settings, AFileThatIsNoTextIsToldAndLeftAlone) {
  std::string bytes;
  for (int i = 0; i < 4096; ++i) {
    bytes += static_cast<char>(i * 31);
  }
  Write("binary.ini", bytes);
  const Result result = Run({"power", "t1", "--settings", "binary.ini"});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("", result.out);
  EXPECT_TRUE(Has(result.err, "cannot read the settings file 'binary.ini'")) << result.err;
  EXPECT_EQ(1, Run({"power", "t1", "--save-settings", "binary.ini"}).status);
  EXPECT_EQ(bytes, Read("binary.ini"));
}

TEST_F(Settings, AFolderIsNoSettingsFile) {
  const Result result = Run({"power", "t1", "--settings", "."});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(Has(result.err, "cannot read the settings file '.'")) << result.err;
}

TEST_F(Settings, AFileWithoutTheFamilyGivesTheBuiltInValuesWithAWord) {
  Write("other.ini", "[POWER_ANALYSIS_TWO_SAMPLE_TTEST_DEPENDENT]\nMu1=3\n");
  const Result result = Run({"power", "t1", "--settings", "other.ini"});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(Run({"power", "t1"}).out, result.out);
  EXPECT_EQ("poweranalysis: 'other.ini' holds no settings of T1: the built-in values stand\n",
            result.err);
}

TEST_F(Settings, RefusesAPathThatDoesNotFit) {
  std::string path = "./";
  for (int i = 0; i < 130; ++i) {
    path += "./";
  }
  Write("my.ini", std::string(kSection) + "\nMu=3\n");
  const Result result = Run({"power", "t1", "--settings", path + "my.ini"});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("", result.out);
  EXPECT_FALSE(result.err.empty());
  const Result saved = Run({"power", "t1", "--save-settings", path + "new.ini"});
  EXPECT_EQ(1, saved.status);
  EXPECT_TRUE(Has(saved.err, "longer than 255 characters")) << saved.err;
  EXPECT_FALSE(Exists("new.ini"));
}

TEST_F(Settings, AFileThatCannotBeWrittenIsAnErrorBesideTheAnswer) {
  const Result result = Run({"power", "t1", "--save-settings", "nowhere/my.ini"});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(Has(result.err, "cannot save the settings to 'nowhere/my.ini'")) << result.err;
  EXPECT_EQ(Run({"power", "t1"}).out, result.out);
}

TEST_F(Settings, SettingsThatTheCalculationRefusesAreNotSaved) {
  Write("my.ini", "mine\n");
  for (const char* option : {"--n-start", "--sample-size"}) {
    const Result result =
        Run({"power", "t1", option, "1", "--save-settings", "my.ini", "--save-defaults"});
    EXPECT_EQ(1, result.status);
    EXPECT_TRUE(Has(result.err,
                    "Current value is 1.\npoweranalysis: the settings were not saved: "
                    "no calculation has taken them\n"))
        << result.err;
    EXPECT_EQ("mine\n", Read("my.ini"));
  }
  EXPECT_FALSE(Exists("config/poweranalysis/POWER.INI"));
}

TEST_F(Settings, SavingKeepsWhatElseTheFileHolds) {
  Write("my.ini", "; note\n[OTHER]\nkey=1\n");
  EXPECT_EQ(0, Run({"power", "t1", "--save-settings", "my.ini"}).status);
  EXPECT_EQ(0U, Read("my.ini").find("; note\n[OTHER]\nkey=1\n")) << Read("my.ini");
}

TEST_F(Settings, SavedDefaultsHoldForLaterRuns) {
  const Result saved = Run({"power", "t1", "--mu", "3", "--save-defaults"});
  EXPECT_EQ(0, saved.status) << saved.err;
  EXPECT_TRUE(Exists("config/poweranalysis/POWER.INI"));
  EXPECT_EQ(saved.out, Run({"power", "t1"}).out);
  // In the folder of the user alone.
  environment_["XDG_CONFIG_HOME"] = At("elsewhere");
  EXPECT_NE(saved.out, Run({"power", "t1"}).out);
  EXPECT_EQ(saved.out, Run({"power", "t1", "--config", At("config/poweranalysis")}).out);
}

// The file of defaults has no place for P², so that reading it back gives 0.2.
TEST_F(Settings, SavingTheDefaultsDoesNotChangeTheAnswer) {
  for (const char* chart : {"power-vs-n", "power-vs-p2"}) {
    const Arguments run = {"power",   "r2",  "--population-r2", "0.4", "--sample-size", "15",
                           "--chart", chart, "--format",        "json"};
    const Result plain = Run(run);
    Arguments saving = run;
    saving.insert(saving.end(), {"--save-settings", "my.ini", "--save-defaults"});
    const Result saved = Run(saving);
    EXPECT_EQ(0, saved.status) << saved.err;
    EXPECT_EQ(plain.out, saved.out);
    EXPECT_TRUE(Has(saved.err, "cannot hold PopulationR2=0.4: reading the defaults gives 0.2\n"))
        << saved.err;
  }
}

TEST_F(Settings, WhatAFileCannotHoldIsToldOnSavingAndOnOpening) {
  const Result saved = Run({"size", "z2r", "--n-to-vary", "n1", "--save-settings", "my.ini"});
  EXPECT_EQ(0, saved.status);
  EXPECT_EQ(
      "poweranalysis: A settings file cannot hold NToVary=1: enter it again after opening the "
      "file\n",
      saved.err);
  const Result opened = Run({"size", "z2r", "--settings", "my.ini"});
  EXPECT_EQ(0, opened.status);
  EXPECT_EQ("poweranalysis: A settings file cannot hold NToVary: after opening it is 0\n",
            opened.err);
}

TEST_F(Settings, KeysThatCannotBeReadAreToldWithTextAndLine) {
  Write("my.ini", std::string(kSection) + "\nMu=9,5\nSampleSize=12.5\nPower=1\nSigma=+4\n");
  const Result result = Run({"power", "t1", "--settings", "my.ini"});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(Run({"power", "t1", "--sigma", "4"}).out, result.out);
  EXPECT_EQ(
      "poweranalysis: 'my.ini', line 2: Mu=9,5 is not a number; the built-in value 2 stands\n"
      "poweranalysis: 'my.ini', line 3: SampleSize=12.5 is not a whole number of 32 bits; the "
      "built-in value 25 stands\n"
      "poweranalysis: 'my.ini', line 4: Power=1 is not a setting of T1\n",
      result.err);
}

TEST_F(Settings, KeysOfTheDefaultsThatCannotBeReadAreTold) {
  std::filesystem::create_directories(At("config/poweranalysis"));
  Write("config/poweranalysis/POWER.INI", std::string(kSection) + "\nMu=9,5\n");
  const std::string told =
      "poweranalysis: 'POWER.INI', line 2: Mu=9,5 is not a number; the built-in value 2 stands\n";
  EXPECT_EQ(told, Run({"power", "t1"}).err);
  EXPECT_EQ(told, Run({"calc", "t", "--unknown", "p"}).err);
}

TEST_F(Settings, DefaultsResolveInTheHomeFolderWithoutXdg) {
  environment_.erase("XDG_CONFIG_HOME");
  EXPECT_EQ(0, Run({"power", "t1", "--save-defaults"}).status);
  EXPECT_TRUE(Exists(".config/poweranalysis/POWER.INI"));
}

TEST_F(Settings, BrokenDefaultsAreToldAndTheBuiltInValuesStand) {
  const std::string expected = Run({"power", "t1"}).out;
  std::filesystem::create_directories(At("config/poweranalysis"));
  Write("config/poweranalysis/POWER.INI", std::string("\0\xFF\0\xFE", 4));
  const Result result = Run({"power", "t1"});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(expected, result.out);
  EXPECT_TRUE(Has(result.err, "the default settings were not read")) << result.err;
}

TEST_F(Settings, ARunWithoutSaveWritesNothing) {
  Run({"power", "t1", "--mu", "3"});
  EXPECT_TRUE(FilesIn(".").empty());
}

}  // namespace

}  // namespace poweranalysis
