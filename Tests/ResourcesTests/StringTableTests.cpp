#include "Foundation/Coding/PropertyList.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Text/LocalizedStrings.h"
#include "OxCheckableTasks/Ring/CheckableTaskTextKeys.h"
#include "OxHealthKit/OxHKWorkoutActivityType.h"
#include "OxKit/Localization.h"
#include "VelloroCharts/ChartTextKeys.h"
#include "VelloroCore/Appearance/ColorScheme.h"
#include "VelloroCore/Reminders/NotificationTextKeys.h"
#include "VelloroCore/Status/StreakTextKeys.h"
#include "VelloroCore/Titles/FormatManager.h"
#include "VelloroCore/Titles/HealthTitleKey.h"
#include "VelloroCore/Titles/TaskDisplayTitle.h"
#include "VelloroCore/Titles/TitleTextKeys.h"
#include "VelloroCore/Wording/ReminderWordingKeys.h"
#include "VelloroPictures/PictureTextKeys.h"

#include <map>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unicode/messagepattern.h>
#include <unicode/plurrule.h>

namespace velloro {
namespace {

using Table = std::map<std::string, std::string>;

/// The keys of health types' words: of every type in every unit, form and choice of speed.
std::set<std::string> healthKeys() {
  std::set<std::string> keys;
  const auto add = [&](HealthType type, const TaskTarget& target) {
    for (const HealthTitleForm form :
         {HealthTitleForm{}, {true, false}, {false, true}, {true, true}}) {
      if (const auto key = titleKey(type, target, form)) keys.insert(*key);
    }
  };
  for (const auto& row : health_type_detail::rows) {
    if (const auto key = predefinedTitleKey(row.value)) keys.emplace(*key);
    for (const TypeUnit unit : row.units.options) {
      for (const double quantity : {0., 1.}) {
        add(row.value, {quantity, unit, {}});
        for (const TypeSpeed speed : row.speeds.options) add(row.value, {quantity, unit, {speed}});
      }
    }
  }
  return keys;
}

/// All that the code can ask for, with the kinds of the arguments.
Table askedKeys() {
  Table asked;
  const auto add = [&](const LocalizedKey& key) {
    EXPECT_TRUE(asked.emplace(key.key, key.arguments).second) << key.key;
  };
  for (const std::string& key : healthKeys()) add({key, ""});
  for (const auto activity : allCases<OxHKWorkoutActivityType>()) add({titleKey(activity), ""});
  for (const auto scheme : allCases<ColorScheme>()) add({titleKey(scheme), ""});
  for (const auto mode : allCases<ThemeMode>()) add({titleKey(mode), ""});
  add(titleInModeKey);
  for (const LocalizedKey& key : chart_text::all) add(key);
  for (const LocalizedKey& key : picture_text::all) add(key);
  for (const LocalizedKey& key : title_text::all) add(key);
  for (const LocalizedKey& key : checkable_task_text::all) add(key);
  for (const LocalizedKey& key : notification_text::all) add(key);
  for (const auto& row : streakLengthKeys) add(row.key);
  add(withCurrentAndBestStreak);
  for (const LocalizedKey& key : reminder_wording::all()) add(key);
  return asked;
}

Table tableOf(const std::string& language) {
  const auto path = Environment::current().directories().resources / language / "Localizable.json";
  const auto list = PropertyList::fromJSON(NSFileManager::contents(path).value());
  Table texts;
  for (const auto& [key, value] : *list.dictionary()) texts.emplace(key, *value.text());
  return texts;
}

std::string utf8(const icu::UnicodeString& text) {
  std::string result;
  return text.toUTF8String(result);
}

/// The plural categories that numbers of a language have, decided by ICU from the numbers alone.
std::set<std::string> categoriesOf(const std::string& language) {
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::PluralRules> rules(
      icu::PluralRules::forLocale(icu::Locale(language.c_str()), status));
  std::set<std::string> categories{"other"};
  for (const double number : {0., 1., 2., 3., 5., 11., 21., 22., 100., 1.5}) {
    categories.insert(utf8(rules->select(number)));
  }
  return categories;
}

/// What a message takes: for each placeholder 'n' or 't', '-' for one that is left out. Plurals
/// must have the given categories, no more and no fewer.
std::string argumentsOf(const std::string& text, const std::set<std::string>& categories) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::MessagePattern pattern(icu::UnicodeString::fromUTF8(text), nullptr, status);
  if (U_FAILURE(status) != 0) return "no message";
  std::string kinds;
  for (std::int32_t i = 0; i < pattern.countParts(); ++i) {
    const icu::MessagePattern::Part& part = pattern.getPart(i);
    if (part.getType() != UMSGPAT_PART_TYPE_ARG_START) continue;
    const auto number = static_cast<std::size_t>(pattern.getPart(i + 1).getValue());
    kinds.resize(std::max(kinds.size(), number + 1), '-');
    const bool isPlural = part.getArgType() == UMSGPAT_ARG_TYPE_PLURAL;
    EXPECT_TRUE(isPlural || part.getArgType() == UMSGPAT_ARG_TYPE_NONE) << text;
    if (kinds[number] != 'n') kinds[number] = isPlural ? 'n' : 't';
    if (!isPlural) continue;
    std::set<std::string> forms;
    for (std::int32_t j = i + 2; j < pattern.getLimitPartIndex(i); ++j) {
      const icu::MessagePattern::Part& form = pattern.getPart(j);
      if (form.getType() == UMSGPAT_PART_TYPE_ARG_SELECTOR) {
        forms.insert(utf8(pattern.getSubstring(form)));
      }
    }
    EXPECT_EQ(forms, categories) << text;
  }
  return kinds;
}

/// Whether a text that takes `taken` does for code that gives `given`: a number can be shown as it
/// stands, but a text can't be counted.
bool serves(const std::string& taken, const std::string& given) {
  return std::ranges::equal(taken, given,
                            [](char t, char g) { return t == g || (t == 't' && g == 'n'); });
}

TEST(StringTables, HaveATextForEveryKeyThatIsAskedFor) {
  VirtualEnvironment environment;
  const Table asked = askedKeys();
  const auto& languages =
      LocalizedStrings::inFolder(environment.directories().resources).localizations();
  EXPECT_THAT(languages, ::testing::ElementsAre("ar", "en", "pl"));
  for (const std::string& language : languages) {
    SCOPED_TRACE(language);
    const auto categories = categoriesOf(language);
    const Table texts = tableOf(language);
    for (const auto& [key, arguments] : asked) {
      EXPECT_TRUE(texts.contains(key)) << "no text: " << key;
    }
    for (const auto& [key, text] : texts) {
      const auto found = asked.find(key);
      if (found == asked.end()) {
        ADD_FAILURE() << "never asked for: " << key;
        continue;
      }
      const std::string taken = argumentsOf(text, categories);
      EXPECT_TRUE(serves(taken, found->second)) << key << " takes " << taken << ": " << text;
    }
  }
}

/// Texts as they are put into others: a title, an amount, a bare one, a duration, a day.
std::vector<std::string> formattedValues() {
  using enum TaskDisplayTitle::Context;
  const Locale locale = Locale::current();
  const TaskDisplayTitle::Quantity distance{.quantity = {1234.5, TypeUnit::distanceKm}};
  const TaskDisplayTitle::Quantity time{.quantity = {630, TypeUnit::durationSeconds}};
  return {"Read",
          distance.localizedFormatted(notificationWithQuantity, locale).value(),
          distance.localizedFormatted(notificationBracket, locale).value(),
          time.localizedFormatted(notificationWithQuantity, locale).value(),
          time.localizedFormatted(notificationBracket, locale).value(),
          FormatManager::shared(locale).dateFormatterMedium.string(Date::now(), TimeZone::gmt()),
          localizedTitle(DayOfWeek::friday, locale)};
}

TEST(StringTables, ShowWhatIsPutIn) {
  VirtualEnvironment environment;
  const Table asked = askedKeys();
  for (const std::string locale : {"ar_AE", "ar_EG", "en_US", "pl_PL"}) {
    environment.setLocale(locale);
    const std::vector<std::string> values = formattedValues();
    const std::string odd =  // what is left of a placeholder or a key, and "1 days"
        std::string("[{}#]|Notif|  |^ | $") + (locale == "en_US" ? "|\\b1 [a-z]+s\\b" : "");
    for (const auto& [key, kinds] : asked) {
      for (const std::int64_t number : {0, 1, 2, 5, 11, 22, 100}) {
        std::vector<LocalizedArgument> arguments;
        std::vector<std::string> texts;  // nothing for a number
        for (const char kind : kinds) {
          const auto next = static_cast<std::size_t>(number) + arguments.size();
          texts.push_back(kind == 't' ? values[next % values.size()] : "");
          arguments.emplace_back(number);
          if (kind == 't') arguments.back() = texts.back();
        }
        const std::string text = localized({key, kinds}, arguments);
        const char* const foreign = locale == "ar_EG" && !kinds.empty() ? "|[0-9]" : "";
        EXPECT_THAT(text, testing::Not(testing::ContainsRegex(odd + foreign))) << locale << key;
        for (const std::string& given : texts) EXPECT_THAT(text, testing::HasSubstr(given)) << key;
      }
    }
  }
  EXPECT_THAT(environment.reports(), ::testing::IsEmpty());
}

TEST(StringTables, CountByTheRulesOfTheirLanguage) {
  VirtualEnvironment environment;
  const std::tuple<const char*, double, const char*> cases[] = {
      {"en_US", 1, "1 day"},    {"en_US", 1200, "1,200 days"}, {"pl_PL", 1, "1 dzień"},
      {"pl_PL", 22, "22 dni"},  {"pl_PL", 1.5, "1,5 dnia"},    {"ar_AE", 2, "يومان"},
      {"ar_AE", 11, "11 يومًا"}, {"ar_AE", 100, "100 يوم"}};
  for (const auto& [locale, number, shown] : cases) {
    environment.setLocale(locale);
    EXPECT_EQ(localized(streakLengthKeys[0].key, {number}), shown) << locale << " " << number;
  }
  EXPECT_THAT(environment.reports(), ::testing::IsEmpty());
}

}  // namespace
}  // namespace velloro
