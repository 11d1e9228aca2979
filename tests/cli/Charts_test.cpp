#include "cli/Program.h"

namespace poweranalysis {

namespace {

using Charts = Program;

TEST_F(Charts, GoToPngAndPdfByTheirExtension) {
  const Result result =
      Run({"power", "t1", "--chart", "power-vs-n=n.png", "--chart", "power-vs-es=es.PDF"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(Read("n.png").substr(0, 8), "\x89PNG\r\n\x1A\n");
  EXPECT_EQ(Read("es.PDF").substr(0, 5), "%PDF-");
}

TEST_F(Charts, AreTheSameBytesOnTwoRuns) {
  for (const char* extension : {"png", "pdf"}) {
    for (const char* name : {"one", "two"}) {
      Run({"power", "t1", "--chart", std::string("power-vs-n=") + name + "." + extension});
    }
    EXPECT_FALSE(Read(std::string("one.") + extension).empty()) << extension;
    EXPECT_EQ(Read(std::string("one.") + extension), Read(std::string("two.") + extension))
        << extension;
  }
}

TEST_F(Charts, WritesSvg) {
  const Result result = Run(
      {"power", "t1", "--mu", "5", "--chart", "power-vs-n=n.svg", "--chart", "power-vs-es=es.svg"});
  EXPECT_EQ(0, result.status) << result.err;
  EXPECT_TRUE(Has(Read("n.svg"), "<svg "));
  EXPECT_TRUE(Has(Read("es.svg"), "<svg "));
  EXPECT_NE(Read("n.svg"), Read("es.svg"));
  // What went to files is not drawn among the text.
  EXPECT_EQ(Run({"power", "t1", "--mu", "5"}).out, result.out);
}

TEST_F(Charts, WritesTheSameBytesTwice) {
  for (const char* file : {"power-vs-n=one.svg", "power-vs-n=two.svg"}) {
    EXPECT_EQ(0, Run({"power", "t1", "--chart", file}).status);
  }
  EXPECT_EQ(Read("one.svg"), Read("two.svg"));
}

TEST_F(Charts, WritesOneChartIntoTwoFiles) {
  EXPECT_EQ(
      0, Run({"power", "t1", "--chart", "power-vs-n=a.svg", "--chart", "power-vs-n=b.svg"}).status);
  EXPECT_FALSE(Read("a.svg").empty());
  EXPECT_EQ(Read("a.svg"), Read("b.svg"));
}

TEST_F(Charts, WritesAllChartsIntoAFolder) {
  EXPECT_EQ(0, Run({"size", "t2", "--chart", "all=charts"}).status);
  const std::vector<std::string> files = FilesIn("charts");
  EXPECT_EQ(3U, files.size());
  for (const char* name : {"n-vs-es", "n-vs-alpha", "n-vs-power"}) {
    EXPECT_TRUE(Exists(std::string("charts/") + name + ".svg")) << name;
  }
}

TEST_F(Charts, DrawsInTheTerminalBehindTheReport) {
  const std::string plain = Run({"power", "t1", "--mu", "5"}).out;
  const Result result = Run({"power", "t1", "--mu", "5", "--chart", "power-vs-n"});
  EXPECT_EQ(0, result.status);
  EXPECT_EQ(0U, result.out.find(plain));
  EXPECT_TRUE(Has(result.out, "Power vs. N")) << result.out;
  EXPECT_TRUE(Has(result.out, "\u2502")) << result.out;  // the frame
}

TEST_F(Charts, TakesTheRangesFromTheOptions) {
  const auto json = RunJson({"size", "t1", "--chart", "n-vs-power", "--power-start", "0.7",
                             "--power-end", "0.9", "--n-interval", "4"});
  EXPECT_EQ((nlohmann::json{0.7, 0.75, 0.8, 0.85, 0.9}), json["charts"][0]["x"]);
}

TEST_F(Charts, AnUnknownExtensionIsWrongUse) {
  for (const char* file : {"power-vs-n=chart.gif", "power-vs-n=chart", "power-vs-n=.svg"}) {
    const Result result = Run({"power", "t1", "--chart", file});
    EXPECT_EQ(2, result.status) << file;
    EXPECT_TRUE(Has(result.err, ".svg")) << result.err;
  }
}

TEST_F(Charts, AFolderThatIsNotThereIsAnErrorBesideTheAnswer) {
  const Result result = Run({"power", "t1", "--chart", "power-vs-n=nowhere/chart.svg"});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(Has(result.err, "cannot write the chart 'nowhere/chart.svg'")) << result.err;
  EXPECT_EQ(Run({"power", "t1"}).out, result.out);
  const auto json = RunJson({"power", "t1", "--chart", "power-vs-n=nowhere/chart.svg"}, 1);
  EXPECT_EQ(1, json["status"]);
}

TEST_F(Charts, AChartWithoutPointsIsRefusedBesideTheAnswer) {
  // The effects are so small that every required size is too large.
  const Result result = Run({"size", "t2", "--mu1", "5", "--es-start", "0.001", "--es-end", "0.002",
                             "--chart", "n-vs-es=chart.svg"});
  EXPECT_EQ(1, result.status);
  EXPECT_TRUE(Has(result.out, "Required N (per group)"));
  EXPECT_FALSE(result.err.empty());
  EXPECT_FALSE(Exists("chart.svg"));
}

}  // namespace

}  // namespace poweranalysis
