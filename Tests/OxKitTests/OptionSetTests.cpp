#include "Foundation/Coding/JSON.h"
#include "OxKit/EnumSet.h"
#include "OxKit/FunctionRef.h"
#include "OxKit/Platform.h"

#include <cstdint>

#include <gmock/gmock.h>

namespace velloro {
namespace {

using testing::ElementsAre;

enum class Letter : std::uint8_t { a, b, c = 63 };
constexpr auto rawValues(std::type_identity<Letter>) {
  return rawIntegers<Letter>({{Letter::a, 1}, {Letter::b, 2}, {Letter::c, 99}});
}

TEST(EnumSet, IsWalkedThroughAndCodedInTheOrderOfItsCases) {
  EnumSet<Letter> letters{Letter::c, Letter::a};
  EXPECT_THAT(letters, ElementsAre(Letter::a, Letter::c));
  EXPECT_FALSE(letters.contains(Letter::b));
  EXPECT_EQ(JSONEncoder{}.encode(letters), "[1,99]");
  EXPECT_EQ(JSONDecoder{}.decode<EnumSet<Letter>>("[99,1,1]"), letters);
  EXPECT_THROW((void)JSONDecoder{.isStrict = true}.decode<EnumSet<Letter>>("[1,3]"), DecodingError);
  letters.remove(Letter::c);
  EXPECT_THAT(letters, ElementsAre(Letter::a));
  EXPECT_EQ(EnumSet<Letter>().size(), 0u);
}

TEST(FunctionRef, CallsWhatItWasMadeOf) {
  int calls = 0;
  const auto twice = [](FunctionRef<std::int64_t(const int&)> f) { return f(1) + f(2); };
  EXPECT_EQ(twice([&](int n) { return n * 10 + ++calls; }), 33);
  EXPECT_EQ(calls, 2) << "the function itself was called, not a copy";
}

}  // namespace
}  // namespace velloro
