#include <pty.h>

#include <chrono>
#include <thread>

#include "cli/Program.h"
#include "office/Documents.h"

namespace poweranalysis {

namespace {

class Output : public Program {
 protected:
  // Runs with standard output on a file or device.
  Result RunInto(const std::string& path, const Arguments& arguments) {
    const int out = ::open(path.c_str(), O_WRONLY | O_CLOEXEC);
    EXPECT_GE(out, 0);
    Result result = RunOn(out, arguments);
    ::close(out);
    return result;
  }

  // Runs with standard output on a descriptor (-1: closed); standard error goes to a file.
  Result RunOn(int out, const Arguments& arguments) {
    const int err = ::open(At("err").c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const pid_t child = Start(arguments, out, err);
    Result result;
    result.status = Wait(child);
    ::close(err);
    result.err = Read("err");
    return result;
  }

  // Control-C, a moment after the program has begun to watch for it.
  static void Interrupt(pid_t child) {
    constexpr auto kMoment = std::chrono::milliseconds(20);
    while (!CatchesInterrupts(child)) {
      std::this_thread::sleep_for(kMoment);
    }
    std::this_thread::sleep_for(kMoment);
    ASSERT_EQ(0, ::kill(child, SIGINT));
  }

  // As the kernel tells; also true of a program that has already ended.
  static bool CatchesInterrupts(pid_t child) {
    std::ifstream status("/proc/" + std::to_string(child) + "/status");
    const std::string text{std::istreambuf_iterator<char>(status), {}};
    const std::size_t caught = text.find("SigCgt:");
    constexpr unsigned long long kInterrupt = 1ULL << (SIGINT - 1);
    constexpr int kHexadecimal = 16;
    return caught == std::string::npos || Has(text, "State:\tZ") ||
           (std::stoull(text.substr(caught + 7), nullptr, kHexadecimal) & kInterrupt) != 0;
  }

  // Runs with standard output and standard error on a terminal of 60 columns.
  std::string RunOnTerminal(const Arguments& arguments, int status = 0) {
    int master = -1;
    int slave = -1;
    winsize size{24, 60, 0, 0};
    EXPECT_EQ(0, ::openpty(&master, &slave, nullptr, nullptr, &size));
    const pid_t child = Start(arguments, slave, slave);
    ::close(slave);
    std::string text;
    std::array<char, 4096> buffer{};
    ssize_t count = 0;
    while ((count = ::read(master, buffer.data(), buffer.size())) > 0) {
      text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    ::close(master);
    EXPECT_EQ(status, Wait(child));
    return text;
  }
};

TEST_F(Output, WritesTheSameBytesToAFileAsToStandardOutput) {
  const std::string expected = Run({"size", "t2"}).out;
  const Result result = Run({"size", "t2", "-o", "result.txt"});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ("", result.out);
  EXPECT_EQ("", result.err);
  EXPECT_EQ(expected, Read("result.txt"));
  EXPECT_EQ(expected, Run({"size", "t2", "--output", "-"}).out);
}

TEST_F(Output, ReplacesAFileAndKeepsItsPermissions) {
  Write("result.txt", "old");
  ::chmod(At("result.txt").c_str(), 0640);
  EXPECT_EQ(0, Run({"size", "t2", "-o", At("result.txt")}).status);
  EXPECT_EQ(Run({"size", "t2"}).out, Read("result.txt"));
  struct stat status {};
  ASSERT_EQ(0, ::stat(At("result.txt").c_str(), &status));
  EXPECT_EQ(0640U, status.st_mode & 0777U);
}

TEST_F(Output, WritesThroughASymbolicLink) {
  Write("real.txt", "old");
  ASSERT_EQ(0, ::symlink(At("real.txt").c_str(), At("link.txt").c_str()));
  EXPECT_EQ(0, Run({"size", "t2", "-o", "link.txt"}).status);
  EXPECT_TRUE(std::filesystem::is_symlink(At("link.txt")));
  EXPECT_EQ(Run({"size", "t2"}).out, Read("real.txt"));
}

TEST_F(Output, WritesThroughALinkThatLeadsNowhereYet) {
  ASSERT_EQ(0, ::symlink("real.txt", At("link.txt").c_str()));
  EXPECT_EQ(0, Run({"size", "t2", "-o", "link.txt"}).status);
  EXPECT_TRUE(std::filesystem::is_symlink(At("link.txt")));
  EXPECT_EQ(Run({"size", "t2"}).out, Read("real.txt"));
}

TEST_F(Output, LeavesNothingBehindInAFolderItCannotWriteTo) {
  const Result result = Run({"size", "t2", "-o", "nowhere/result.txt"});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(Has(result.err, "cannot write 'nowhere/result.txt': No such file or directory"))
      << result.err;
  EXPECT_FALSE(Exists("nowhere"));
  Write("file", "mine");
  EXPECT_EQ(1, Run({"size", "t2", "-o", "file/result.txt"}).status);
  EXPECT_EQ("mine", Read("file"));
  EXPECT_EQ(1, Run({"size", "t2", "-o", "."}).status);
}

TEST_F(Output, ARefusalLeavesTheOldFileAlone) {
  Write("result.txt", "old");
  EXPECT_EQ(1, Run({"size", "t2", "--alpha", "0.5", "-o", "result.txt"}).status);
  EXPECT_EQ("old", Read("result.txt"));
  // But for JSON, which tells of the refusal.
  EXPECT_EQ(1,
            Run({"size", "t2", "--alpha", "0.5", "--format", "json", "-o", "result.txt"}).status);
  EXPECT_EQ(1, nlohmann::json::parse(Read("result.txt"))["status"]);
}

TEST_F(Output, AFullDeviceIsAnError) {
  const Result file = Run({"size", "t2", "-o", "/dev/full"});
  EXPECT_EQ(1, file.status);
  EXPECT_TRUE(Has(file.err, "No space left on device")) << file.err;
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
  const Result standard = RunInto("/dev/full", {"size", "t2"});
  EXPECT_EQ(1, standard.status);
  EXPECT_TRUE(Has(standard.err, "No space left on device")) << standard.err;
  EXPECT_EQ(1, RunInto("/dev/full", {"list"}).status);
}

TEST_F(Output, AClosedPipeEndsInSilence) {
  std::array<int, 2> pipe{};
  ASSERT_EQ(0, ::pipe2(pipe.data(), O_CLOEXEC));
  ::close(pipe[0]);
  for (const Arguments& arguments :
       {Arguments{"size", "t2"}, Arguments{"calc", "t"}, Arguments{"list"},
        Arguments{"describe", "t2"}, Arguments{"size", "t2", "--help"}, Arguments{"--version"}}) {
    const Result result = RunOn(pipe[1], arguments);
    EXPECT_EQ(128 + SIGPIPE, result.status) << arguments[0];
    EXPECT_EQ("", result.err) << arguments[0];
  }
  ::close(pipe[1]);
}

TEST_F(Output, TwoOutputsToOneFileAreWrongUse) {
  Write("there.txt", "old");
  ASSERT_EQ(0, ::symlink("there.txt", At("link.txt").c_str()));
  ASSERT_EQ(0, ::symlink("new.svg", At("link.svg").c_str()));
  const std::vector<Arguments> shared = {
      {"--save-settings", "x", "-o", "x"},
      {"--save-settings", "x", "-o", "./x"},
      {"--save-settings", At("x"), "-o", "x"},
      {"--save-settings", "there.txt", "-o", "link.txt"},
      {"--chart", "n-vs-es=new.svg", "--chart", "n-vs-power=link.svg"},
      {"--chart", "n-vs-es=a.svg", "--chart", "n-vs-power=../" + folder_.substr(5) + "/a.svg"},
      {"--chart", "n-vs-es=a.svg", "--chart", "n-vs-es=a.svg"},
      {"--config", ".", "--save-defaults", "-o", "POWER.INI"},
  };
  for (Arguments arguments : shared) {
    const std::string words = arguments[1];
    arguments.insert(arguments.begin(), {"size", "t2"});
    const Result result = Run(arguments);
    EXPECT_EQ(2, result.status) << words;
    EXPECT_TRUE(Has(result.err, "' is the file of ")) << result.err;
  }
  EXPECT_EQ("old", Read("there.txt"));
  EXPECT_FALSE(Exists("x") || Exists("a.svg") || Exists("new.svg"));
  EXPECT_EQ(0, Run({"size", "t2", "-o", "/dev/null", "--chart", "n-vs-es=a.svg"}).status);
}

TEST_F(Output, AChartDoesNotTakeTheNumberedNameOfAnother) {
  const Result result =
      Run({"power", "av2", "--chart", "power-vs-n=av.svg", "--chart", "power-vs-alpha=av-2.svg"});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(Has(result.err, "cannot write the chart 'av-2.svg': another chart of this run"))
      << result.err;
}

TEST_F(Output, AClosedStandardOutputIsAnErrorAndNoFileTakesItsPlace) {
  Write("settings.ini", "");
  const Result result = RunOn(-1, {"size", "t2", "--save-settings", "settings.ini"});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(Has(result.err, "cannot write the output")) << result.err;
  EXPECT_FALSE(Has(Read("settings.ini"), "Required N"));
}

TEST_F(Output, WrapsToTheTerminalAndPrintsHeadingsInBold) {
  const std::string text = RunOnTerminal({"size", "t2"});
  EXPECT_TRUE(Has(text, "\x1b[1mSample Size Calculation\x1b[0m\r\n")) << text;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = std::min(text.find("\r\n", start), text.size());
    const std::string line = text.substr(start, end - start);
    EXPECT_LE(line.size(), Has(line, "\x1b") ? 68U : 60U) << line;
    start = end + 2;
  }
}

TEST_F(Output, HonoursNoColorAndDumbTerminals) {
  environment_["NO_COLOR"] = "1";
  EXPECT_FALSE(Has(RunOnTerminal({"size", "t2"}), "\x1b"));
  environment_.erase("NO_COLOR");
  environment_["TERM"] = "dumb";
  EXPECT_FALSE(Has(RunOnTerminal({"size", "t2"}), "\x1b"));
  // A pipe never sees a control sequence.
  environment_["TERM"] = "xterm";
  EXPECT_FALSE(Has(Run({"size", "t2"}).out, "\x1b"));
  EXPECT_FALSE(Has(Run({"size", "t2", "--alpha", "x"}).err, "\x1b"));
}

TEST_F(Output, CsvIsOneTable) {
  Arguments arguments = {"power",    "t1", "--mu",         "5", "--n-start", "10",
                         "--n-end",  "50", "--n-interval", "4", "--chart",   "power-vs-n",
                         "--format", "csv"};
  const Result result = Run(arguments);
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(0U, result.out.find("Title,Value\nNull Hypothesized Mean (Mu0),0\n")) << result.out;
  EXPECT_FALSE(Has(result.out, "\n\n")) << result.out;
  arguments.emplace_back("--csv-full");
  const std::string full = Run(arguments).out;
  EXPECT_EQ(0U, full.find("Heading,Power Calculation\nHeading,")) << full;
  EXPECT_TRUE(Has(full, "\nTitle,Value\n")) << full;
  EXPECT_TRUE(Has(full, "\n\nChart,power-vs-n\nGroup Sample Size (N),Power\n10,")) << full;
  EXPECT_EQ(2, Run({"power", "t1", "--csv-full"}).status);
}

TEST_F(Output, MarkdownAndHtmlHoldTableReportAndCharts) {
  const Arguments arguments = {"size", "t2", "--chart", "n-vs-es", "--format"};
  const auto with = [&arguments](const char* format) {
    Arguments all = arguments;
    all.emplace_back(format);
    return all;
  };
  const std::string markdown = Run(with("markdown")).out;
  EXPECT_TRUE(Has(markdown, "| Required N (per group) | 527 |")) << markdown;
  EXPECT_TRUE(Has(markdown, "the actual power is 90.04%."));
  EXPECT_TRUE(Has(markdown, "### N vs. Es"));
  const std::string html = Run(with("html")).out;
  EXPECT_TRUE(Has(html, "<td data-value=\"527\">527</td>")) << html;
  EXPECT_TRUE(Has(html, "<svg "));
}

TEST_F(Output, DocumentsHoldTheTable) {
  for (const auto& [format, part] :
       {std::pair("xlsx", "xl/sharedStrings.xml"), std::pair("odt", "content.xml")}) {
    const Result result = Run({"size", "t2", "--format", format, "-o", "study.bin"});
    EXPECT_EQ(0, result.status) << result.err;
    EXPECT_EQ("", result.out);
    EXPECT_TRUE(Has(PartOf(Read("study.bin"), part), "Required N (per group)")) << format;
    // A pipe takes it as well.
    EXPECT_EQ(Read("study.bin"), Run({"size", "t2", "--format", format}).out) << format;
  }
  EXPECT_EQ(0, Run({"calc", "t", "--format", "odt", "-o", "calc.odt"}).status);
}

TEST_F(Output, DocumentsAreNotForATerminal) {
  const std::string text = RunOnTerminal({"size", "t2", "--format", "xlsx"}, 2);
  EXPECT_TRUE(Has(text, "name a file for it by --output FILE")) << text;
  EXPECT_FALSE(Has(text, "PK"));
  RunOnTerminal({"size", "t2", "--format", "odt", "-o", "-"}, 2);
  RunOnTerminal({"size", "t2", "--format", "odt", "-o", "study.odt"});
  EXPECT_TRUE(Exists("study.odt"));
}

TEST_F(Output, ARefusalWritesNoDocument) {
  EXPECT_EQ(1, Run({"size", "t2", "--alpha", "0.5", "--format", "odt", "-o", "study.odt"}).status);
  EXPECT_FALSE(Exists("study.odt"));
}

// --- Long work.

// Five curves of a hundred points at very large sizes.
const std::vector<std::string> kLongWork = {"power",
                                            "t2",
                                            "--mu1",
                                            "0.1",
                                            "--sample-size-n1",
                                            "150000",
                                            "--sample-size-n2",
                                            "150000",
                                            "--n-start",
                                            "140000",
                                            "--n-end",
                                            "150000",
                                            "--n-interval",
                                            "100",
                                            "--chart",
                                            "all=charts"};

TEST_F(Output, AnInterruptCancelsAndLeavesNothingHalfWritten) {
  Write("result.json", "old");
  Arguments arguments = kLongWork;
  arguments.insert(arguments.end(), {"-o", "result.json", "--format", "json"});
  const int err = ::open(At("err").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  const pid_t child = Start(arguments, err, err);
  Interrupt(child);
  EXPECT_EQ(130, Wait(child));
  ::close(err);
  EXPECT_EQ("Calculation cancelled at user request.\n", Read("err"));
  EXPECT_EQ("old", Read("result.json"));
  EXPECT_FALSE(Exists("charts"));
  EXPECT_EQ(2U, FilesIn(".").size());  // the result and the words, no temporary file
}

// They are saved once the calculation has taken them, before the charts, and are whole.
TEST_F(Output, AnInterruptKeepsTheSettingsThatWereSaved) {
  Arguments arguments = kLongWork;
  arguments.insert(arguments.end(), {"--save-settings", "study.ini"});
  const int err = ::open(At("err").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  const pid_t child = Start(arguments, err, err);
  for (int moment = 0; !Exists("study.ini") && moment < 1000; ++moment) {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  Interrupt(child);
  EXPECT_EQ(130, Wait(child));
  ::close(err);
  EXPECT_EQ("Calculation cancelled at user request.\n", Read("err"));
  // The same without the curves, not interrupted.
  arguments.assign(kLongWork.begin(), kLongWork.end() - 2);
  arguments.insert(arguments.end(), {"--save-settings", "whole.ini"});
  EXPECT_EQ(0, Run(arguments).status);
  EXPECT_FALSE(Read("study.ini").empty());
  EXPECT_EQ(Read("whole.ini"), Read("study.ini"));
}

TEST_F(Output, ACancelledRunIsValidJsonOnStandardOutput) {
  Arguments arguments = kLongWork;
  arguments.insert(arguments.end(), {"--format", "json"});
  const int out = ::open(At("out").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  const int err = ::open(At("err").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  const pid_t child = Start(arguments, out, err);
  Interrupt(child);
  EXPECT_EQ(130, Wait(child));
  ::close(out);
  ::close(err);
  const auto json = nlohmann::json::parse(Read("out"), nullptr, false);
  ASSERT_FALSE(json.is_discarded());
  EXPECT_EQ(130, json["status"]);
  ASSERT_EQ(1U, json["messages"].size());
  EXPECT_EQ(12865, json["messages"][0]["id"]);
}

TEST_F(Output, LongWorkShowsABarOnATerminalAndWipesIt) {
  // One curve is long enough.
  Arguments arguments = kLongWork;
  arguments.back() = "power-vs-n=chart.svg";
  const std::string text = RunOnTerminal(arguments);
  EXPECT_TRUE(Has(text, "\rComputing Plot Data [")) << text;
  EXPECT_TRUE(Has(text, "#")) << text;
  EXPECT_TRUE(Has(text, "\r\x1b[K")) << text;
}

}  // namespace

}  // namespace poweranalysis
