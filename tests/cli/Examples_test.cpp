// The examples of the documentation are run, and what they show is compared with what they print.
#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli/Program.h"
#include "support/TestData.h"

namespace poweranalysis {
namespace {

struct Example {
  std::string file;
  std::vector<std::string> arguments;
  std::string output;
};

// An example is a comment "<!-- example: poweranalysis ... -->" followed by a fenced block.
std::vector<Example> ExamplesIn(const std::filesystem::path& path) {
  static const std::string kMark = "<!-- example: poweranalysis ";
  std::vector<Example> examples;
  std::ifstream file(path);
  std::string line;
  while (std::getline(file, line)) {
    if (line.rfind(kMark, 0) != 0) {
      continue;
    }
    Example example{path.filename(), {}, {}};
    std::istringstream words(line.substr(kMark.size(), line.rfind(" -->") - kMark.size()));
    for (std::string word; words >> word;) {
      example.arguments.push_back(word);
    }
    std::getline(file, line);
    EXPECT_EQ(line, "```text") << path;
    while (std::getline(file, line) && line != "```") {
      example.output += line + "\n";
    }
    examples.push_back(example);
  }
  return examples;
}

using Examples = Program;

TEST_F(Examples, OfTheDocumentationPrintWhatTheyShow) {
  const std::filesystem::path root =
      std::filesystem::path(TestDataDir()).parent_path().parent_path().parent_path();
  std::vector<Example> examples = ExamplesIn(root / "README.md");
  EXPECT_FALSE(examples.empty()) << "the README has a worked example";
  for (const auto& entry : std::filesystem::directory_iterator(root / "docs")) {
    if (entry.path().extension() == ".md") {
      const std::vector<Example> more = ExamplesIn(entry.path());
      examples.insert(examples.end(), more.begin(), more.end());
    }
  }
  for (const Example& example : examples) {
    const Result result = Run(example.arguments);
    EXPECT_EQ(result.status, 0) << example.file << ": " << result.err;
    EXPECT_EQ(result.out, example.output) << example.file;
  }
}

}  // namespace
}  // namespace poweranalysis
