#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Text/NSBundle.h"
#include "Support/VisibleText.h"

#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace platform {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
namespace fs = std::filesystem;

/// A program with tables of its own.
class NSBundleTest : public ::testing::Test {
 protected:
  NSBundleTest() { environment_.setResources(resources_); }

  void addTable(const char* language, std::string_view json) const {
    fs::create_directories(resources_ / language);
    ASSERT_TRUE(NSFileManager::write(json, resources_ / language / "Localizable.json"));
  }
  [[nodiscard]] static std::string text(const char* locale, const char* key,
                                        const std::vector<LocalizedArgument>& arguments = {}) {
    return visible(
        NSBundle::main().localizedString(key, arguments, Locale::fromIdentifier(locale)));
  }

  VirtualEnvironment environment_;
  const fs::path resources_ = environment_.directories().temporary / "resources";
};

TEST_F(NSBundleTest, PutsArgumentsIntoTextsByTheRulesOfTheirLanguage) {
  addTable("en", R"({"steps": "{0, plural, one {# step} other {# steps}}", "pair": "{1}: {0}",
                     "quoted": "It''s '{'{0}'}'"})");
  addTable("ru", R"({"steps": "{0, plural, one {# шаг} few {# шага} other {# шагов}}"})");
  addTable("ar", R"({"steps": "{0, plural, zero {صفر} two {خطوتان} other {# خطوة}}"})");
  using Arguments = std::vector<LocalizedArgument>;
  const std::tuple<const char*, const char*, Arguments, const char*> cases[] = {
      {"en_US", "steps", {1}, "1 step"},
      {"en_US", "pair", {std::int64_t{1} << 40, "{0}"}, "{0}: 1,099,511,627,776"},
      {"en_US", "pair", {"a"}, "{1}: a"},
      {"en_US", "quoted", {7}, "It's {7}"},
      {"ru_RU", "steps", {3}, "3 шага"},
      {"ru_RU", "steps", {1500}, "1 500 шагов"},
      {"ar_EG", "steps", {2}, "خطوتان"},
      {"ja_JP", "steps", {1}, "1 step"},
      {"ru_RU", "pair", {21.5, 1000}, "1,000: 21.5"}};
  for (const auto& [locale, key, arguments, shown] : cases) {
    EXPECT_EQ(text(locale, key, arguments), shown) << locale;
  }
  EXPECT_THAT(environment_.reports(), IsEmpty());
}

TEST_F(NSBundleTest, ChoosesTheLanguageThatServesTheReader) {
  for (const char* language : {"en", "de", "pt_PT", "zh_Hans", "zh_Hant"}) {
    addTable(language, R"({"language": ")" + std::string(language) + "\"}");
  }
  fs::create_directories(resources_ / "icons");
  EXPECT_THAT(NSBundle::main().localizations(),
              ElementsAre("de", "en", "pt_PT", "zh_Hans", "zh_Hant"));
  const std::pair<const char*, const char*> languages[] = {
      {"de_AT", "de"},      {"pt_BR", "pt_PT"}, {"zh_Hant_TW", "zh_Hant"},
      {"zh_CN", "zh_Hans"}, {"ja_JP", "en"},    {"en_US_POSIX", "en"}};
  for (const auto& [locale, language] : languages) {
    environment_.setLocale(locale);
    EXPECT_EQ(NSBundle::main().preferredLanguage(), language);
    EXPECT_EQ(NSBundle::main().localizedString("language"), language) << locale;
  }
}

TEST_F(NSBundleTest, ShowsAndReportsOnceWhatIsWrong) {
  addTable("en",
           R"({"both": "English", "broken": "{0, plural", "number": "{0, number}", "no": 7})");
  addTable("de", R"({"other": "Deutsch"})");
  addTable("fr", R"({"both": )");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(text("de_DE", "both"), "English");
    EXPECT_EQ(text("de_DE", "missing {0}", {5}), "missing {0}");
    EXPECT_EQ(text("en_US", "broken", {5}), "{0, plural");
    EXPECT_EQ(text("en_US", "number", {"five"}), "{0, number}");
    EXPECT_EQ(text("en_US", "no"), "no");
    EXPECT_EQ(text("fr_FR", "both"), "English");
  }
  EXPECT_THAT(
      environment_.reports(),
      UnorderedElementsAre(AllOf(HasSubstr("\"missing {0}\""), HasSubstr("/de/Localizable.json")),
                           HasSubstr("\"{0, plural\""), HasSubstr("\"{0, number}\""),
                           AllOf(HasSubstr("\"no\""), HasSubstr("is no text: 7")),
                           HasSubstr("no text for the key \"no\""),
                           AllOf(HasSubstr("cannot read"), HasSubstr("/fr/Localizable.json"))));
}

TEST_F(NSBundleTest, ServesManyThreads) {
  addTable("en", R"({"steps": "{0, plural, one {# step} other {# steps}}"})");
  const auto work = [] {
    for (int i = 2; i < 500; ++i) {
      ASSERT_EQ(text("de_DE", "steps", {i}), std::to_string(i) + " steps");
      ASSERT_EQ(text("de_DE", "missing"), "missing");
    }
  };
  std::thread other(work);
  work();
  other.join();
  EXPECT_EQ(environment_.reports().size(), 1U);
}

TEST(NSBundle, KnowsItself) {
  VirtualEnvironment environment;
  environment.setBundle({.identifier = "velloro.app.x", .shortVersion = "1.2", .version = "45"});
  EXPECT_EQ(NSBundle::main().identifier(), "velloro.app.x");
  const std::pair<const std::string, std::string> entries[] = {
      {"CFBundleIdentifier", "velloro.app.x"},
      {"CFBundleShortVersionString", "1.2"},
      {"CFBundleVersion", "45"}};
  EXPECT_THAT(NSBundle::main().infoDictionary(), ::testing::UnorderedElementsAreArray(entries));
}

}  // namespace
}  // namespace platform
