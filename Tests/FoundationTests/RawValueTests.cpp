#include "Foundation/Coding/RawValue.h"
#include "Foundation/Values/TypeName.h"

#include <limits>

#include <gmock/gmock.h>

namespace platform {
namespace {

using testing::ElementsAre;

enum class Unit { hours, minutes, seconds };
constexpr auto rawValues(std::type_identity<Unit>) {
  return rawTexts<Unit>({{Unit::minutes, "m"}, {Unit::hours, "h"}, {Unit::seconds, ""}});
}

struct Task {
  // Not from 0, not in order, beyond the type's positive half.
  enum class Page : std::int8_t { last = -1, first = 10, second = 3 };
  friend constexpr auto rawValues(std::type_identity<Page>) {
    return rawIntegers<Page>({{Page::last, std::numeric_limits<std::int64_t>::min()},
                              {Page::second, 7},
                              {Page::first, std::numeric_limits<std::int64_t>::max()}});
  }
  enum class Weekday { sunday, monday, tuesday };
};
constexpr auto rawValues(std::type_identity<Task::Weekday>) {
  using enum Task::Weekday;
  return rawIntegers<Task::Weekday>({{sunday, 1}, {monday, 2}, {tuesday, 3}});
}

enum class Kind : std::uint8_t { plain_text, double_, keyword = 2 };
constexpr auto rawValues(std::type_identity<Kind>) {
  return caseNames<Kind::keyword>();
}

struct SizeRow {
  enum class Size { large = 30, small = 10 } value;
  std::string_view raw;
  int litres;
};
inline constexpr SizeRow sizeRows[] = {{SizeRow::Size::small, "s", 1},
                                       {SizeRow::Size::large, "l", 5}};
constexpr auto rawValues(std::type_identity<SizeRow::Size>) {
  return rawColumn(sizeRows);
}

static_assert(rawValue(Unit::minutes) == "m");
static_assert(rawValue(SizeRow::Size::large) == "l");
static_assert(rowOf(sizeRows, SizeRow::Size::large).litres == 5);
static_assert(rawValue(Kind::plain_text) == "plain_text" && rawValue(Kind::double_) == "double");
static_assert(fromRawValue<Kind>("keyword") == Kind::keyword && !fromRawValue<Kind>("double_"));
static_assert(fromRawValue<Task::Weekday>(3) == Task::Weekday::tuesday);

template <typename E>
void expectEveryCaseComesBack() {
  for (const E value : allCases<E>()) {
    EXPECT_EQ(fromRawValue<E>(rawValue(value)), value) << debugDescription(value);
  }
}

TEST(RawValue, EveryCaseComesBack) {
  expectEveryCaseComesBack<Unit>();
  expectEveryCaseComesBack<Task::Page>();
  expectEveryCaseComesBack<Task::Weekday>();
  EXPECT_THAT(allCases<Unit>(), ElementsAre(Unit::minutes, Unit::hours, Unit::seconds));
}

TEST(RawValue, UnknownValuesGiveNothing) {
  for (const char* text : {"M", "mm", " ", "z"}) EXPECT_FALSE(fromRawValue<Unit>(text)) << text;
  for (const std::int64_t page : {0, 6, 8, -7}) EXPECT_FALSE(fromRawValue<Task::Page>(page));
  using Limits = std::numeric_limits<std::int64_t>;
  for (const std::int64_t day : {std::int64_t{0}, std::int64_t{4}, Limits::min(), Limits::max()}) {
    EXPECT_FALSE(fromRawValue<Task::Weekday>(day)) << day;
  }
}

TEST(RawValue, NamesTheCaseInDebugTexts) {
  EXPECT_EQ(debugDescription(Unit::hours), "h");
  EXPECT_EQ(debugDescription(Task::Page::second), "7");
  EXPECT_EQ(typeName<Task::Weekday>(), "Task::Weekday");
}

}  // namespace
}  // namespace platform
