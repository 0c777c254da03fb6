// `velmorn board`, run as a process.
#include <gmock/gmock.h>

#include <filesystem>

#include "support/temp_dir.h"
#include "tools/process.h"

namespace velmorn::tool {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

class BoardProcess : public TempDirTest {
 protected:
  ProcessResult run(const std::vector<std::string>& more, const std::string& squares = "6x4",
                    const std::string& size = "20mm") {
    std::vector<std::string> arguments = {"board", "--squares", squares, "--size", size};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return runProcess(VELMORN_TOOL, arguments, dir());
  }
  void expectWrongUsage(const ProcessResult& result, const std::string& message) {
    EXPECT_EQ(result.status, 2) << message;
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr(message));
  }
};

TEST_F(BoardProcess, WritesEveryFormat) {
  for (const auto& [name, head] :
       {std::pair("b.pdf", "%PDF-"), std::pair("b.svg", "<?xml"), std::pair("b.png", "\x89PNG")}) {
    const ProcessResult result = run({"-o", name});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, StartsWith("board       data-code board, 6x4 squares of 20 mm\n"
                                       "symbols     12x12 modules, a module is 1.25 mm\n"));
    EXPECT_THAT(readFile(dir() / name), StartsWith(head));
  }
}

TEST_F(BoardProcess, GivesTheSameFileTwice) {
  for (const char* name : {"b.pdf", "b.svg", "b.png"}) {
    run({"-o", name});
    const std::string first = readFile(dir() / name);
    run({"-o", name});
    EXPECT_EQ(readFile(dir() / name), first) << name;
  }
}

TEST_F(BoardProcess, SaysThePlainBoardsInnerCorners) {
  const ProcessResult result = run({"--plain", "-o", "b.pdf"}, "10x7", "1in");
  EXPECT_THAT(result.out,
              AllOf(StartsWith("board       plain chessboard, 10x7 squares of 25.4 mm\n"),
                    HasSubstr("corners     9x6 inner ones: --board 9x6\n")));
}

TEST_F(BoardProcess, SaysThePicturesResolution) {
  EXPECT_THAT(run({"-o", "b.png"}).out,
              HasSubstr("resolution  304.8 dpi, a module is 15 pixels\n"));
  const ProcessResult coarse = run({"-o", "b.png", "--dpi", "50"});
  EXPECT_EQ(coarse.status, 0);
  EXPECT_THAT(coarse.err, StartsWith("velmorn: warning: a module is "));
}

TEST_F(BoardProcess, SaysWhatThePaperHolds) {
  writeFile(dir() / "b.pdf", "as it was");
  const ProcessResult result = run({"-o", "b.pdf", "--paper", "a4"}, "20x14");
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_THAT(result.err, AllOf(StartsWith("velmorn: the board needs 430x326.6 mm with "),
                                HasSubstr("it holds 9x12 squares of this size")));
  EXPECT_EQ(readFile(dir() / "b.pdf"), "as it was");
  EXPECT_THAT(run({"-o", "b.pdf", "--paper", "a4"}, "9x12").out,
              HasSubstr("page        210x297 mm\n"));
}

TEST_F(BoardProcess, CannotWriteEverywhere) {
  EXPECT_THAT(run({"-o", "no/where.pdf"}).err, StartsWith("velmorn: cannot write no/where.pdf"));
  fs::create_directory(dir() / "folder.pdf");
  const ProcessResult result = run({"-o", "folder.pdf"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, StartsWith("velmorn: cannot write folder.pdf"));
}

TEST_F(BoardProcess, RefusesAPictureThatIsTooLarge) {
  const ProcessResult result = run({"-o", "b.png", "--dpi", "10000"});
  EXPECT_EQ(result.status, 1);
  EXPECT_THAT(result.err, HasSubstr("lower --dpi"));
  EXPECT_FALSE(fs::exists(dir() / "b.png"));
}

TEST_F(BoardProcess, TellsWrongUsage) {
  for (const char* squares :
       {"0x0", "1x5", "201x5", "-3x5", "99999999999x2", "5", "5x", "x", "", "5x5x5", "5.5x4"})
    expectWrongUsage(run({"-o", "b.pdf"}, squares), "--squares");
  for (const char* size :
       {"0", "0.5", "1e9mm", "1000000000mm", "1001", "-20", "20ft", "nan", "", "wide", "2 0"})
    expectWrongUsage(run({"-o", "b.pdf"}, "6x4", size), "--size");
  for (const char* name : {"b", "b.jpg", "b.PDF", "b.pdf.gz", ".pdf", ""})
    expectWrongUsage(run({"-o", name}), "--output");
  for (const char* paper : {"a5", "0x0", "x", "-1x-1"})
    expectWrongUsage(run({"-o", "b.pdf", "--paper", paper}), "--paper");
  for (const char* dpi : {"0", "-300", "1e9", "nan", "fine"})
    expectWrongUsage(run({"-o", "b.png", "--dpi", dpi}), "--dpi");
  expectWrongUsage(run({"-o", "b.pdf", "--dpi", "300"}), "is for a .png file only");
  expectWrongUsage(run({"--plain", "-o", "b.pdf"}, "3x3"), "each 4 to 200");
  expectWrongUsage(run({}), "--output is required");
}

} // namespace
} // namespace velmorn::tool
