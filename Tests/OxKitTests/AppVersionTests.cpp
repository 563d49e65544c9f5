#include "Foundation/Coding/JSON.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "OxKit/AppVersion.h"
#include "OxKit/Platform.h"

#include <algorithm>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

namespace velloro {
namespace {

TEST(AppVersion, ReadsAndWritesText) {
  const std::tuple<const char*, const char*, const char*> cases[] = {
      {"1.2.3.45", "1.2.3.45", ""}, {"1.2.3", "1.2.3", "1.2.3.9"}, {"10", "10.0.0", "10.0.0.9"}};
  const auto formatted = [](const std::optional<AppVersion>& version) {
    return version ? version->formatted() : "";
  };
  for (const auto& [text, withBuild, withoutBuild] : cases) {
    EXPECT_EQ(formatted(AppVersion::fromTextWithBuild(text)), withBuild) << text;
    EXPECT_EQ(formatted(AppVersion::fromTextWithoutBuild(text, 9)), withoutBuild) << text;
  }
  for (const char* bad : {"1.2.3.4.5", "1..3", "1.2.", "1.-2", " 1", "1.2b", "99999999999", ""}) {
    EXPECT_FALSE(AppVersion::fromTextWithBuild(bad) || AppVersion::fromTextWithoutBuild(bad, 9));
  }
}

TEST(AppVersion, IsOrderedByNumbersThenBuild) {
  const char* const ascending[] = {"0.9.9",  "1.2.3",  "1.2.3.0",  "1.2.3.1", "1.2.3.2",
                                   "1.2.10", "1.10.0", "1.10.0.7", "2.0.0"};
  std::vector<AppVersion> versions;
  for (const char* text : ascending) versions.push_back(*AppVersion::fromTextWithBuild(text));
  EXPECT_EQ(std::ranges::adjacent_find(versions, std::greater_equal{}), versions.end());
}

TEST(AppVersion, NextVersionsHaveNoBuild) {
  const AppVersion version = AppVersion::fromTextWithBuild("1.2.3.5").value();
  EXPECT_EQ(version.nextMajor().formatted() + ", " + version.nextMinor().formatted() + ", " +
                version.nextPatch().formatted() + ", " + version.withoutBuild().formatted(),
            "2.0.0, 1.3.0, 1.2.4, 1.2.3");
}

TEST(AppVersion, CurrentIsThatOfTheBundle) {
  VirtualEnvironment environment;
  environment.setBundle({.identifier = "a", .shortVersion = "3.1", .version = "812"});
  EXPECT_EQ(AppVersion::current().value().formatted(), "3.1.0.812");
  environment.setBundle({.identifier = "a", .shortVersion = "beta", .version = "812"});
  EXPECT_FALSE(AppVersion::current());
}

TEST(AppVersion, IsATextInJSON) {
  const AppVersion version{.major = 1, .minor = 2, .patch = 3, .build = 45};
  EXPECT_EQ(JSONEncoder{}.encode(version), R"("1.2.3.45")");
  EXPECT_THROW((void)JSONDecoder{}.decode<AppVersion>(R"("1.2.x")"), DecodingError);
}

}  // namespace
}  // namespace velloro
