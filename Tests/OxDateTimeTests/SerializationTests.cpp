#include "Foundation/JSON.h"
#include "OxDateTime/YYYYMMDD.h"
#include "Support/Fixtures.h"

#include <gtest/gtest.h>

namespace velloro {
namespace {

struct Reminder {
  std::vector<HHMMSS> times;
  YYYYMMDD::Range range;
  DaysOfWeek days;
  EnumSet<DayOfWeek> dayList;

  bool operator==(const Reminder&) const = default;
  static constexpr auto codingKeys =
      keys(key("times", &Reminder::times), key("range", &Reminder::range),
           key("days", &Reminder::days), key("dayList", &Reminder::dayList));
};

TEST(Serialization, KeepsTheFormsOfTheStore) {
  const Reminder reminder{.times = {{.h = 9}, {.h = 23, .m = 59, .s = 59}},
                          .range = YYYYMMDD::Range::from({.y = 2024, .m = 3, .d = 7}),
                          .days = {DaysOfWeek::monday, DaysOfWeek::friday},
                          .dayList = {DayOfWeek::saturday, DayOfWeek::sunday}};
  const std::string json = JSONEncoder{}.encode(reminder);
  EXPECT_EQ(json,
            R"({"times":[32400,86399],"range":{"minDate":20240307},"days":34,"dayList":[0,6]})");
  EXPECT_EQ(JSONDecoder{}.decode<Reminder>(json), reminder);
}

TEST(Serialization, ReadsTheKeyedFormOfATime) {
  const auto time = JSONDecoder{}.decode<HHMMSS>(R"({"h":25,"m":1,"s":2})");
  EXPECT_EQ(time.intValue(), 90062) << "the fields are taken as they stand";
}

TEST(Serialization, NamesWhatIsWrongAndWhere) {
  EXPECT_EQ(decodingFailure<std::vector<YYYYMMDD>>("[20240307,-5]"),
            "[1]: Unable to create YYYYMMDD from -5");
  EXPECT_EQ(decodingFailure<std::vector<YYYYMM>>("[0]"), "[0]: Unable to create YYYYMM");
  EXPECT_EQ(decodingFailure<Reminder>(R"({"times":[86400],"range":{},"days":0,"dayList":[]})"),
            "times[0]: Unable to create HHMMSS");
  EXPECT_NE(decodingFailure<std::vector<DayOfWeek>>("[7]"), "none");
  EXPECT_NE(decodingFailure<std::vector<CalendarDayOfWeek>>("[0]"), "none");
  EXPECT_NE(decodingFailure<std::vector<DaysOfWeek>>("[40000]"), "none");
}

}  // namespace
}  // namespace velloro
