#include "AppTests/Program.h"
#include "CoreGraphics/CGImage.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/VirtualEnvironment.h"

#include <cstdlib>
#include <filesystem>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using platform::CGImage;
using platform::NSFileManager;
using testing::HasSubstr;

std::shared_ptr<const CGImage> decoded(const std::string& png) {
  return CGImage::fromPNG(std::as_bytes(std::span(png))).value();
}

std::shared_ptr<const CGImage> ring(const std::string& arguments) {
  const auto result = runProgram("ring --png - " + arguments);
  EXPECT_EQ(result.exitCode, 0) << result.errors;
  return decoded(result.output);
}

TEST(RingCommand, DrawsARing) {
  const auto page = ring("--progress 0.3 --segments 3 --size 50 --scale 2 --theme blue");
  EXPECT_EQ(page->width(), 100U);
  EXPECT_EQ(page->height(), 100U);
  EXPECT_EQ(page->pixel(0, 0) >> 24U, 255U);
  const auto ringAlone = ring("--size 50 --transparent");
  EXPECT_EQ(ringAlone->pixel(0, 0), 0U);
  EXPECT_NE(ringAlone->pixel(50, 3), 0U);
  const auto faded = ring("--size 50 --transparent --status s --badge topTrailing");
  EXPECT_NEAR(faded->pixel(50, 30) >> 24U, 128, 1);
  EXPECT_NEAR(faded->pixel(82, 18) >> 24U, 128, 1) << "the badge lets the page through, too";
}

TEST(RingCommand, PutsAllSchemesByAllStatusesOnASheet) {
  const auto sheet = ring("--sheet --size 10 --scale 1 --mode white");
  EXPECT_EQ(sheet->width(), 19U + 13 * 13);
  EXPECT_EQ(sheet->height(), 4U + 25 * 13);

  const auto black = ring("--sheet --size 11 --scale 1.5 --mode black");
  const auto page = black->pixel(1, black->height() - 1);
  for (std::size_t y = 8; y < black->height(); ++y) EXPECT_EQ(black->pixel(1, y), page) << y;
}

TEST(RingCommand, PlaysAnAnimationInNoTime) {
  const platform::VirtualEnvironment environment;
  const auto folder = environment.directories().temporary / "frames";
  const auto file = environment.directories().temporary / "check.png";
  const auto result = runProgram("ring --animate check --fps 20 --size 20 --frames '" +
                                 folder.string() + "' --png '" + file.string() + "'");
  EXPECT_EQ(result.exitCode, 0) << result.errors;
  const auto frames = NSFileManager::contentsOfDirectory(folder).value();
  EXPECT_EQ(frames.size(), 30U);  // from 0 to 1.45 s
  const auto frame = [&](const char* name) { return NSFileManager::contents(folder / name); };
  const auto empty = frame("frame-0000.png").value();
  EXPECT_NE(empty, frame("frame-0005.png").value());
  EXPECT_NE(frame("frame-0011.png").value(), frame("frame-0012.png").value());  // checked
  EXPECT_EQ(frame("frame-0020.png").value(), frame("frame-0029.png").value());
  EXPECT_THAT(NSFileManager::contents(file).value(), HasSubstr("acTL"));
}

TEST(RingCommand, WritesThroughLinksAndPipesAndLeavesNothingWhenItIsInterrupted) {
  namespace fs = std::filesystem;
  const platform::VirtualEnvironment environment;
  const fs::path folder = environment.directories().temporary;
  const std::string file = (folder / "secret.png").string(), link = (folder / "link").string();
  ASSERT_TRUE(NSFileManager::write("old", file));  // for the owner alone
  fs::create_symlink("secret.png", link);
  EXPECT_EQ(runProgram("ring --size 8 --png '" + link + "'").exitCode, 0);
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_TRUE(decoded(NSFileManager::contents(file).value()));
  EXPECT_EQ(fs::status(file).permissions(), fs::perms(0600));
  const std::string longest = (folder / std::string(255, 'n')).string();
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(runProgram("ring --size 8 --png '" + longest + "'").exitCode, 0);
  fs::remove(longest);
  const std::string pipe = (folder / "pipe").string();
  ASSERT_EQ(std::system(("mkfifo '" + pipe + "'").c_str()), 0);
  const auto piped = runProgram("ring --size 8 --png '" + pipe + "' & cat '" + pipe + "'");
  EXPECT_TRUE(decoded(piped.output)) << piped.errors;
  EXPECT_TRUE(fs::is_fifo(pipe));
  EXPECT_EQ(runProgram("ring --animate check --png /dev/full").exitCode, 1);
  // The system ends the process by a signal when the file grows beyond one block.
  const std::string killed = "ulimit -c 0; ulimit -f 1; '" VELLORO_PROGRAM
                             "' ring --animate check --size 500 --png '" +
                             file + "' 2>/dev/null";
  EXPECT_NE(std::system(killed.c_str()), 0);
  EXPECT_EQ(NSFileManager::contentsOfDirectory(folder).value(),
            (std::vector<std::string>{"link", "pipe", "secret.png"}));
}

TEST(RingCommand, NamesWhatItCannotUse) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "a --png is needed"},
      {"--png x --icon watr_glass", "did you mean \"water_glass\""},
      {"--png x --mode alternate", "not a mode of the scheme \"orange\""},
      {"--png x --badge top", "--badge \"top\": not a place of a badge; did you mean"},
      {"--png x --badge topLeading:ic_bok", "did you mean \"book\""},
      {"--png x --sign best", "did you mean \"bestStreak\""},
      {"--png x --size 7", "--size \"7\": out of range; write points from 8"},
      {"--png x --size 2000 --scale 8", "more than 8192 pixels"},
      {"--png x --segments 101", "write 1 to 100"},
      {"--png x --icon book --emoji x", "--icon excludes --emoji"},
      {"--png x --caption \"$(printf '\\377')\"", "--caption \"\\xff\": not a text in UTF-8"},
      {"--png x --caption \"$(printf '%0101d' 1)\"", "longer than 100 characters"},
      {"--png x --emoji \"$(printf '\\342\\200\\213')\"", "has nothing that can be seen"},
      {"--png x --badge topLeading:mg_123456789", "longer than 8 characters"},
      {"--png x --sheet --animate check", "--sheet excludes --animate"},
      {"--png x --animate uncheck", "not an animation; write check"},
      {"--animate check", "a --png or a --frames is needed"},
      {"--png x --fps 3", "--fps \"3\": only with --animate"}};
  for (const auto& [arguments, complaint] : cases) expectRefusal("ring " + arguments, complaint);
  const auto lost = runProgram("ring --png /dev/null/ring.png");
  EXPECT_EQ(lost.exitCode, 1);
  EXPECT_THAT(lost.errors, HasSubstr("--png \"/dev/null/ring.png\": cannot "));
  const platform::VirtualEnvironment environment;
  const auto loop = environment.directories().temporary / "loop";
  std::filesystem::create_symlink("loop", loop);
  EXPECT_THAT(runProgram("ring --png " + loop.string()).errors, HasSubstr("Too many levels"));
  EXPECT_TRUE(std::filesystem::is_symlink(loop));
}

}  // namespace
}  // namespace velloro
