#include "Foundation/JSON.h"
#include "OxDateTime/YYYYMMDD.h"
#include "Support/Fixtures.h"

#include <gtest/gtest.h>

namespace velloro {
namespace {

template <typename T>
void expectForm(const T& value, const char* json) {
  EXPECT_EQ(JSONEncoder{}.encode(value), json);
  EXPECT_EQ(JSONDecoder{}.decode<T>(json), value);
}

TEST(Serialization, KeepsTheFormsOfTheStore) {
  expectForm(std::vector<HHMMSS>{{.h = 9}, {.h = 23, .m = 59, .s = 59}}, "[32400,86399]");
  expectForm(YYYYMMDD::Range::from({.y = 2024, .m = 3, .d = 7}), R"({"minDate":20240307})");
  expectForm(DaysOfWeek{DaysOfWeek::monday, DaysOfWeek::friday}, "34");
  expectForm(EnumSet<DayOfWeek>{DayOfWeek::saturday, DayOfWeek::sunday}, "[0,6]");
}

TEST(Serialization, ReadsTheKeyedFormOfATime) {
  const auto time = JSONDecoder{}.decode<HHMMSS>(R"({"h":25,"m":1,"s":2})");
  EXPECT_EQ(time.intValue(), 90062) << "the fields are taken as they stand";
}

TEST(Serialization, NamesWhatIsWrongAndWhere) {
  EXPECT_EQ(decodingFailure<std::vector<YYYYMMDD>>("[20240307,-5]"),
            "[1]: Unable to create YYYYMMDD from -5");
  EXPECT_EQ(decodingFailure<std::vector<YYYYMM>>("[0]"), "[0]: Unable to create YYYYMM");
  EXPECT_EQ(decodingFailure<std::vector<HHMMSS>>("[86400]"), "[0]: Unable to create HHMMSS");
  EXPECT_NE(decodingFailure<std::vector<DayOfWeek>>("[7]"), "none");
  EXPECT_NE(decodingFailure<std::vector<CalendarDayOfWeek>>("[0]"), "none");
  EXPECT_NE(decodingFailure<std::vector<DaysOfWeek>>("[40000]"), "none");
}

}  // namespace
}  // namespace velloro
