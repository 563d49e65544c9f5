#include "Foundation/Coding/CodingError.h"
#include "Foundation/Coding/PropertyList.h"
#include "Foundation/Values/Hasher.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace platform {
namespace {

using Array = PropertyList::Array;
using Dictionary = PropertyList::Dictionary;

const Date instant = Date::sinceReferenceDate(731462399.25);

TEST(PropertyList, FileTextLosesNothing) {
  using Integers = std::numeric_limits<std::int64_t>;
  const PropertyList scalars(Array{nullptr, true, Integers::min(), Integers::max(), 0.1, -0.0, 5.0,
                                   1e300, 123456789012345680000.0, "", std::string("a\0b", 3),
                                   std::numeric_limits<double>::denorm_min(), Date::distantPast(),
                                   instant, Data(std::string("\x00\xFF", 2))});
  const PropertyList values[] = {scalars,
                                 "tab\t quote\" \\ \x01 \xC3\xA4 \xF0\x9F\x8F\x86",
                                 Array{},
                                 Array{1, "a", Array{nullptr}},
                                 Dictionary{},
                                 Dictionary{{"", 1}, {"b", Dictionary{{"c", instant}}}},
                                 Dictionary{{"$data", "AAAA"}},
                                 Dictionary{{"$date", 5}},
                                 Dictionary{{"$$date", 5}, {"$", 1}},
                                 Dictionary{{"$data", "AAAA"}, {"b", 1}}};
  for (const PropertyList& value : values) {
    const std::string text = value.fileText();
    const PropertyList back = PropertyList::fromFileText(text);
    EXPECT_EQ(back, value) << text;
    EXPECT_EQ(back.fileText(), text);
    EXPECT_EQ(hashValue(back), hashValue(value)) << text;
  }
}

TEST(PropertyList, PlainJSONHasNoTags) {
  const PropertyList value(Dictionary{{"$b", Data("hi!")}, {"a", instant}, {"c", Array{nullptr}}});
  EXPECT_EQ(value.json(), R"({"$b":"aGkh","a":731462399.25,"c":[null]})");
  const PropertyList back = PropertyList::fromJSON(value.json());
  EXPECT_EQ(*back["$b"].text(), "aGkh");
  EXPECT_EQ(back["a"].real(), 731462399.25);
}

TEST(PropertyList, TellsKindsApart) {
  EXPECT_EQ(PropertyList(5.0), PropertyList(5));
  EXPECT_EQ(PropertyList(1).boolean(), std::nullopt);
  EXPECT_EQ(PropertyList(true).real(), std::nullopt);
  EXPECT_EQ(PropertyList(2.5).integer(), std::nullopt);
  EXPECT_EQ(PropertyList(0x1p63).integer(), std::nullopt);
  EXPECT_EQ(PropertyList(-0x1p63), PropertyList(std::numeric_limits<std::int64_t>::min()));
  EXPECT_NE(PropertyList("5"), PropertyList(5));
  EXPECT_NE(PropertyList(), PropertyList(false));
  EXPECT_EQ(PropertyList("a").data(), nullptr);
  EXPECT_TRUE(PropertyList(5)["a"]["b"].isNull());
  EXPECT_TRUE(std::signbit(PropertyList(-0.0).real().value()));
}

TEST(PropertyList, ABadTagIsADictionarysKey) {
  for (const char* tagged : {R"({"$data":"!!"})", R"({"$data":5})", R"({"$date":"2024-03-07"})"}) {
    const PropertyList read = PropertyList::fromFileText(tagged);
    EXPECT_EQ(read, PropertyList::fromJSON(tagged));
    EXPECT_EQ(PropertyList::fromFileText(read.fileText()), read) << tagged;
  }
}

TEST(PropertyList, WritesAsDeepAsItReads) {
  PropertyList value;
  for (int depth = 0; depth < 512; ++depth) value = Array{value};
  EXPECT_EQ(PropertyList::fromJSON(value.json()), value);
  EXPECT_THROW((void)PropertyList(Array{value}).json(), EncodingError);
  EXPECT_THROW((void)PropertyList::fromJSON("[" + value.json() + "]"), DecodingError);
  EXPECT_THROW((void)PropertyList::fromFileText("[" + value.json() + "]"), DecodingError);
}

}  // namespace
}  // namespace platform
