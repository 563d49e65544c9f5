#include "Foundation/Process/Terminal.h"

#include <string>

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(Terminal, IsGivenNothingThatActsOnIt) {
  using namespace std::string_literals;
  const struct {
    std::string text, line;
  } cases[] = {
      {"Zażółć\\n مرحبا ⁨x⁩ 👩‍👧",
       "Zażółć\\n مرحبا ⁨x⁩ 👩‍👧"},  // isolate, joiner
      {"\0a\0"s, R"(\u0000a\u0000)"},
      {"a\r\n\tb", R"(a\r\n\tb)"},
      {"\x1b[31m\x7f\a", R"(\u001b[31m\u007f\u0007)"},
      {"\u0080\u009b2J\u009f\u00a0", "\\u0080\\u009b2J\\u009f\u00a0"},
      {"\u2028\u202e\u2066\u206f", R"(\u2028\u202e\u2066\u206f)"},
      {"\u2068\u2069\u2069\u2068", "\u2068\u2069\\u2069\\u2068"},  // what opens and closes
      {"caf\xE9 \xC0\x80 \xED\xA0\x80 \xF0\x9F", R"(caf\xe9 \xc0\x80 \xed\xa0\x80 \xf0\x9f)"}};
  for (const auto& [text, line] : cases) {
    EXPECT_EQ(terminalText(text), line);
    EXPECT_EQ(terminalText(line), line);
    EXPECT_EQ(hasControlCharacters(text), text != line) << line;
  }
  for (const char* blank : {"", " \t\u00a0", "\u200b\u200d\ufeff", "\u2800\u3164\u202e"}) {
    EXPECT_FALSE(isVisible(blank)) << blank;
  }
  for (const char* seen : {"a", " .", "\u200b🚲", "ą"}) EXPECT_TRUE(isVisible(seen)) << seen;
  EXPECT_EQ(terminalLines("{\n \"a\": \"\u009b\"}"), "{\n \"a\": \"\\u009b\"}");
}

}  // namespace
}  // namespace platform
