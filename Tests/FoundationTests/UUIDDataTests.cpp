#include "Foundation/Process/VirtualEnvironment.h"
#include "Foundation/Values/Data.h"
#include "Foundation/Values/UUID.h"

#include <set>
#include <unordered_set>

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(UUID, ReadsAndWritesTheUsualForm) {
  const std::pair<const char*, const char*> cases[] = {
      // empty where the text is none
      {"1b4e28ba-2fa1-11d2-883F-0016d3cca427", "1B4E28BA-2FA1-11D2-883F-0016D3CCA427"},
      {"00000000-0000-0000-0000-000000000000", "00000000-0000-0000-0000-000000000000"},
      {"FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF", "FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF"},
      {"1b4e28ba-2fa1-11d2-883f-0016d3cca42", ""},
      {"1b4e28ba-2fa1-11d2-883f-0016d3cca4277", ""},
      {"1b4e28ba2fa1-11d2-883f-0016d3cca42700", ""},
      {"1b4e28ba-2fa1-11d2-883f00016d3cca427-", ""},
      {"1b4e28bg-2fa1-11d2-883f-0016d3cca427", ""},
      {"{b4e28ba-2fa1-11d2-883f-0016d3cca42}", ""},
      {"", ""}};
  for (const auto& [text, written] : cases) {
    const auto id = UUID::fromString(text);
    EXPECT_EQ(id ? id->uuidString() : "", written) << text;
  }
}

TEST(UUID, RandomOnesAreVersion4AndDiffer) {
  VirtualEnvironment environment;
  std::unordered_set<UUID> seen;
  for (int i = 0; i < 1000; ++i) {
    const UUID id = UUID::random();
    EXPECT_TRUE(seen.insert(id).second);
    const std::string text = id.uuidString();
    EXPECT_EQ(text[14], '4') << text;
    EXPECT_TRUE(std::string_view("89AB").contains(text[19])) << text;
  }
  environment.seed(7);
  const UUID first = UUID::random();
  environment.seed(7);
  EXPECT_EQ(UUID::random(), first);
}

TEST(UUID, StandInTheOrderOfTheirTexts) {
  VirtualEnvironment environment;
  std::set<UUID> ids;
  std::set<std::string> texts;
  for (int i = 0; i < 200; ++i) texts.insert(ids.insert(UUID::random()).first->uuidString());
  auto text = texts.begin();
  for (const UUID& id : ids) EXPECT_EQ(id.uuidString(), *text++);
}

TEST(Data, GoesThroughBase64) {
  const std::pair<std::string, const char*> cases[] = {
      {"", ""},        {"f", "Zg=="},          {"fo", "Zm8="},
      {"foo", "Zm9v"}, {"foobar", "Zm9vYmFy"}, {std::string("\x00\xFF\xFE\x7F", 4), "AP/+fw=="}};
  for (const auto& [bytes, base64] : cases) {
    EXPECT_EQ(Data(bytes).base64EncodedString(), base64);
    EXPECT_EQ(Data::fromBase64(base64), Data(bytes)) << base64;
  }
  std::string every;
  for (int i = 0; i < 1000; ++i) every += static_cast<char>(i * 7);
  EXPECT_EQ(Data::fromBase64(Data(every).base64EncodedString()), Data(every));
}

TEST(Data, RefusesWhatIsNoBase64) {
  for (const char* text : {"Zg", "Zg=", "Zg=a", "====", "=", "Z===", "Zg==Zg==", "Zm9v\n", "Zm9-",
                           "Zm 9v", "Zm9v\x80mFy"}) {
    EXPECT_FALSE(Data::fromBase64(text)) << text;
  }
}

}  // namespace
}  // namespace platform
