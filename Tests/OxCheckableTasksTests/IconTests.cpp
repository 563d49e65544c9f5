#include "CoreGraphics/CGImage.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "OxCheckableTasks/Icons/IconDisplayRepresentation.h"
#include "OxCheckableTasks/Icons/IconManagerIconCases.h"
#include "Support/Fixtures.h"

#include <cmath>
#include <set>
#include <tuple>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::ElementsAre;
using testing::SizeIs;
using Icon = IconManagerIcon;
using Visual = IconVisualRepresentation;
using Overlay = Visual::Overlay;
using enum OxImageOrientation;

TEST(IconManagerIcon, HasTheReleasedNamesInAlphabeticalOrder) {
  expectFixture("IconManagerIcon", everyCase<Icon>());
  EXPECT_THAT(allCases<Icon>(), SizeIs(725));
  EXPECT_FALSE(fromRawValue<Icon>("no_such_icon"));
  EXPECT_FALSE(fromRawValue<Icon>(""));
}

TEST(IconManagerIcon, StandsInOneGroupEach) {
  expectRawValues<IconCategory>(
      {"sports",     "workout",        "health",    "food",        "drink",
       "animals",    "music",          "people",    "faces",       "nature",
       "tech",       "onlineServices", "transport", "homeGeneral", "homeWork",
       "artsCrafts", "clothing",       "other",     "letters",     "numbers",
       "games",      "productivity",   "religion",  "zodiac",      "hidden"});
  std::set<Icon> seen;
  for (const IconCategory group : allCases<IconCategory>()) {
    EXPECT_GE(sortedIcons(group).size(), 12U) << rawValue(group);
    for (const Icon icon : sortedIcons(group)) {
      EXPECT_EQ(category(icon), group);
      EXPECT_TRUE(seen.insert(icon).second) << rawValue(icon);
    }
  }
  EXPECT_THAT(seen, SizeIs(725));
}

TEST(IconManagerIcon, TellsWhatStandsForIt) {
  const std::tuple<char32_t, std::optional<Icon>> characters[] = {
      {U'0', Icon::char_0}, {U'9', Icon::char_9}, {U'a', Icon::char_a},   {U'x', Icon::char_x},
      {U'Z', Icon::char_z}, {U'/', std::nullopt}, {U':', std::nullopt},   {U'@', std::nullopt},
      {U'{', std::nullopt}, {U'é', std::nullopt}, {U'\x10', std::nullopt}};
  for (const auto& [character, icon] : characters) {
    EXPECT_EQ(characterIcon(character), icon) << static_cast<std::uint32_t>(character);
  }
  EXPECT_TRUE(isDynamic(Icon::activity_rings));
  EXPECT_FALSE(isDynamic(Icon::ring));
  EXPECT_EQ(textVersion(Icon::star), "★");
  EXPECT_FALSE(textVersion(Icon::mug));
  EXPECT_EQ(customSymbol(Icon::star_half_empty), OxSymbol{"star.leadinghalf.filled"});
  EXPECT_FALSE(customSymbol(Icon::mug));
}

TEST(IconManagerIcon, IsDrawnByChance) {
  VirtualEnvironment environment;
  EnumSet<IconCategory> rest;
  for (const IconCategory group : allCases<IconCategory>()) rest.insert(group);
  rest.remove(IconCategory::zodiac);

  const auto all = randomIcons(20, rest);
  EXPECT_EQ(std::set(all.begin(), all.end()).size(), 12U);  // no more than there are
  EXPECT_NE(all, allIcons(rest));
  std::vector<Icon> most(all.begin(), all.end() - 1);
  EXPECT_EQ(randomIcon(rest, most), all.back());
  EXPECT_FALSE(randomIcon(rest, all));
  EXPECT_THAT(allIcons(EnumSet{IconCategory::hidden}),
              SizeIs(725 - sortedIcons(IconCategory::hidden).size()));
}

TEST(IconVisualRepresentation, ReadsItsStoredText) {
  const std::tuple<const char*, std::optional<std::string>, std::optional<Visual>> cases[] = {
      {"mg_AB", std::nullopt, Visual::monogram("AB")},
      {"mg_AB", "CD", Visual::monogram("CD")},
      {"mg_", "CD", Visual::monogram("CD")},
      {"mg_", std::nullopt, std::nullopt},
      {"em_🚲", "CD", Visual::emoji("🚲")},
      {"sf_pause.fill", std::nullopt, Visual::sfSymbol("pause.fill")},
      {"ic_mug", "CD", Visual::icon(Icon::mug)},
      {"mug", std::nullopt, Visual::icon(Icon::mug)},
      {"ic_muggle", std::nullopt, std::nullopt},
      {"muggle", std::nullopt, std::nullopt},
      {"ic_ic_mug", std::nullopt, std::nullopt},
      {"", std::nullopt, std::nullopt}};
  for (const auto& [text, monogram, expected] : cases) {
    EXPECT_EQ(Visual::fromStorableValue(text, monogram), expected) << text;
  }
  for (const char* text : {"mg_AB", "em_🚲", "sf_pause.fill", "ic_mug"}) {
    EXPECT_EQ(Visual::fromStorableValue(text)->storableValue(), text);
  }
  EXPECT_EQ(Visual::monogram("AB").storableValueWithAutoMonogram(), "mg_");
  EXPECT_EQ(Visual::emoji("🚲").storableValueWithAutoMonogram(), "em_🚲");
}

TEST(IconVisualRepresentation, HasAFormInJSON) {
  expectFixture("IconVisualRepresentation",
                std::vector{Visual::icon(Icon::mug), Visual::emoji("🚲"), Visual::sfSymbol("star"),
                            Visual::monogram("AB")});
  EXPECT_EQ(decodingFailure<Visual>(R"({"image":"mug"})"), "Unable to decode enum");
  EXPECT_THAT(decodingFailure<Visual>(R"({"icon":"muggle"})"), testing::StartsWith("icon: "));
  expectRawValues<Visual::EncodingPrefix>({"ic_", "em_", "mg_", "sf_"});
}

TEST(IconVisualRepresentation, StandsInALineOfText) {
  const UIFont font = UIFont::system(20, UIFont::Weight::bold);
  const CGColor red{.red = 1};
  const auto inLine = [&](const Visual& visual, const Visual::DisplayProperties& how = {}) {
    return visual.inlineAttributedString(font, red, NSWritingDirection::rightToLeft, how);
  };
  const auto letters = inLine(Visual::monogram("AB")).runs().front();
  EXPECT_EQ(letters.text, "AB");
  EXPECT_EQ(letters.attributes.font, font);
  EXPECT_EQ(letters.attributes.color, red);
  EXPECT_EQ(letters.attributes.writingDirection, NSWritingDirection::rightToLeft);

  const std::tuple<Visual, double, double> images[] = {{Visual::icon(Icon::star), 15, 0},
                                                       {Visual::sfSymbol("star"), 16.4, 2},
                                                       {Visual::sfSymbol("hourglass"), 15, 0}};
  for (const auto& [visual, size, raised] : images) {
    const auto run = inLine(visual).runs().front();
    EXPECT_DOUBLE_EQ(run.attachment->size().height, size) << visual.text();
    EXPECT_DOUBLE_EQ(run.attributes.baselineOffset, raised) << visual.text();
    EXPECT_NEAR(raised - run.attachment->descent() + size / 2, 7.3, 0.3) << "half of a capital";
    const auto image = run.attachment->image(2);
    ASSERT_TRUE(image) << visual.text();
    EXPECT_EQ(image->width(), static_cast<std::size_t>(std::round(size * 2))) << visual.text();
  }
  const auto star = inLine(Visual::icon(Icon::star));
  EXPECT_NE(star, inLine(Visual::icon(Icon::star_empty)));
  EXPECT_NE(star, inLine(Visual::icon(Icon::star), {.overlay = Overlay::slash}));
}

TEST(IconVisualRepresentation, IsToldToListeners) {
  const std::tuple<Visual, const char*> cases[] = {
      {Visual::emoji("🚲"), "BICYCLE"},
      {Visual::emoji("❤️"), "HEAVY BLACK HEART, VARIATION SELECTOR-16"},
      {Visual::emoji("︘\n"),  // its name has a letter wrong
       "PRESENTATION FORM FOR VERTICAL RIGHT WHITE LENTICULAR BRACKET"},
      {Visual::icon(Icon::mug), "mug"},
      {Visual::monogram("AB"), "AB"}};
  for (const auto& [visual, label] : cases) EXPECT_EQ(visual.accessibilityLabel(), label);
}

TEST(IconDisplayRepresentation, IsReadFromAColumnInTwoSteps) {
  const IconDisplayRepresentation turned{
      .visualRepresentation = Visual::icon(Icon::mug),
      .displayProperties = {.orientation = leftMirrored, .overlay = Overlay::slash}};
  const std::string json = R"({"vr":{"icon":"mug"},"dp":{"orientation":6,"overlay":"slash"}})";
  EXPECT_EQ(turned.coreDataStringRepresentation(), json);
  const std::tuple<std::string, std::optional<IconDisplayRepresentation>> cases[] = {
      {json, turned},
      {"ic_mug", IconDisplayRepresentation{Visual::icon(Icon::mug), {}}},
      {"mug", IconDisplayRepresentation{Visual::icon(Icon::mug), {}}},
      {R"({"vr":{"icon":"mug"},"dp":{"orientation":8,"overlay":"veil"}})",
       IconDisplayRepresentation{Visual::icon(Icon::mug), {}}},
      {R"({"vr":{"icon":"muggle"},"dp":{"orientation":0}})", std::nullopt},
      {"muggle", std::nullopt},
      {"", std::nullopt}};
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(IconDisplayRepresentation::fromCoreDataStringRepresentation(text), expected) << text;
  }
}

/// Where the image's top left and top right corners are shown, as points of a square around 0.
std::pair<int, int> turn(std::pair<int, int> corner, FlipType flip) {
  const auto [x, y] = corner;  // y grows downwards
  switch (flip) {
    case FlipType::horizontal:
      return {-x, y};
    case FlipType::vertical:
      return {x, -y};
    case FlipType::rotateClockwise:
      return {-y, x};
    case FlipType::rotateCounterClockwise:
      return {y, -x};
  }
  return corner;
}

TEST(OxImageOrientation, TurnsAsAnImageDoes) {
  expectRawValues<OxImageOrientation>({0, 1, 2, 3, 4, 5, 6, 7});
  using Corners = std::pair<std::pair<int, int>, std::pair<int, int>>;
  std::map<OxImageOrientation, Corners> shown{{up, {{-1, -1}, {1, -1}}}};
  // every road to an orientation gives one picture, and no other orientation gives the same one
  for (int step = 0; step < 4; ++step) {
    for (const auto& [orientation, corners] : std::map(shown)) {
      for (const FlipType flip : allCases<FlipType>()) {
        const Corners turned{turn(corners.first, flip), turn(corners.second, flip)};
        const auto [found, isNew] = shown.emplace(reorient(orientation, flip), turned);
        EXPECT_EQ(found->second, turned) << rawValue(orientation) << " " << rawValue(flip);
      }
    }
  }
  std::set<Corners> pictures;
  for (const auto& [orientation, corners] : shown) pictures.insert(corners);
  EXPECT_THAT(pictures, SizeIs(8));
  EXPECT_EQ(shown.at(right), (Corners{{1, -1}, {1, 1}}));
  EXPECT_EQ(shown.at(upMirrored), (Corners{{1, -1}, {-1, -1}}));
}

}  // namespace
}  // namespace velloro
