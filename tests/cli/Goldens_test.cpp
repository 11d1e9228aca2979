// The golden files in goldens/ hold what the command line prints for designs of every family and
// mode: tables, reports and the data of charts as text to be read. goldens/update.py writes them.
#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli/Program.h"
#include "support/TestData.h"

namespace poweranalysis {
namespace {

struct Golden {
  std::string file;
  std::string line;    // arguments as typed
  std::string output;  // up to the next command, with the empty line before it
};

// A command is a line "$ poweranalysis ...".
std::vector<Golden> GoldensIn(const std::filesystem::path& path) {
  static const std::string kMark = "$ poweranalysis ";
  std::vector<Golden> goldens;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    if (line.rfind(kMark, 0) == 0) {
      goldens.push_back({path.filename(), line.substr(kMark.size()), {}});
    } else if (!goldens.empty()) {
      goldens.back().output += line + "\n";
    }
  }
  return goldens;
}

std::vector<std::string> Words(const std::string& line) {
  std::istringstream stream(line);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) {
    words.push_back(word);
  }
  return words;
}

class Goldens : public Program {
 protected:
  static std::filesystem::path Folder() {
    return std::filesystem::path(TestDataDir()).parent_path() / "goldens";
  }

  // What a golden holds of a run: the output, and of a refusal the message and the exit status.
  std::string Printed(const std::vector<std::string>& arguments) {
    const Result result = Run(arguments);
    const std::string refusal =
        result.status == 0 ? std::string()
                           : result.err + "(exit status " + std::to_string(result.status) + ")\n";
    return result.out + refusal + "\n";
  }
};

TEST_F(Goldens, AreWhatTheCommandLinePrints) {
  int runs = 0;
  for (const auto& entry : std::filesystem::directory_iterator(Folder())) {
    if (entry.path().extension() != ".md") {
      continue;
    }
    for (const Golden& golden : GoldensIn(entry.path())) {
      EXPECT_EQ(Printed(Words(golden.line)), golden.output) << golden.file << ": " << golden.line;
      ++runs;
    }
  }
  EXPECT_GT(runs, 150);
}

TEST_F(Goldens, CoverEveryFamilyInBothModes) {
  for (const char* family : {"t1", "t2", "t3", "pc", "av1", "av2", "v1", "v2", "r", "z2r", "r2",
                             "p1", "p2", "qmac", "sa1", "sa2", "sa3", "sem"}) {
    for (const char* mode : {"power", "size"}) {
      const std::vector<Golden> goldens =
          GoldensIn(Folder() / (std::string(family) + "-" + mode + ".md"));
      ASSERT_FALSE(goldens.empty()) << family << ' ' << mode;
      EXPECT_EQ(goldens.front().line,
                std::string(mode) + " " + family + " --format markdown --chart all");
      EXPECT_GE(goldens.size(), 3U) << family << ' ' << mode << " has designs of its options";
    }
  }
}

TEST_F(Goldens, CoverTheIntervalsOfTheTenFamiliesThatHaveThem) {
  for (const char* family : {"t1", "t2", "t3", "pc", "av1", "av2", "r", "r2", "p1", "sem"}) {
    const std::vector<Golden> goldens =
        GoldensIn(Folder() / (std::string(family) + "-interval.md"));
    ASSERT_FALSE(goldens.empty()) << family;
    EXPECT_EQ(goldens.front().line, std::string("interval ") + family + " --format markdown");
    EXPECT_GE(goldens.size(), 2U) << family << " has designs of its options";
  }
}

}  // namespace
}  // namespace poweranalysis
