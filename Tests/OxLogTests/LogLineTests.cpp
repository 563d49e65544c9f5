#include "OxLog/LogLine.h"

#include <tuple>

#include <gtest/gtest.h>

namespace velloro {
namespace {

TEST(LogLine, IsBuiltFromItsParts) {
  const TimeZone berlin = TimeZone::fromIdentifier("Europe/Berlin").value();
  const auto at = [](const char* text) { return Date::fromISO8601(text).value(); };
  const std::tuple<LogManager::WatchDebugPacket, const char*, const char*> cases[] = {
      {{at("2024-03-07T08:05:01.123Z"), Log::notifications, LogLevel::info, "Updating badges...",
        "Classes/Model/NotificationManager.cpp", "update()", 42},
       "",
       "🚨 [Notifications, INFO] 2024-03-07 9:05:01.123 [NotificationManager:42] update() "
       "Updating badges...\n"},
      {{at("2024-07-01T22:59:59.9996Z"), Log::cache, LogLevel::error, "", "a.test.cpp", "f()", 0},
       "WATCH",
       "[WATCH, Cache, ERROR] 2024-07-02 0:59:59.999 [a.test:0] f() \n"},
      {{at("1969-12-31T22:59:59.999Z"), Log::watchConnectivity, LogLevel::debug, "a\nb", "b",
        "g(_:)", -1},
       "",
       "⌚️ [Watch Connectivity, DEBUG] 1969-12-31 23:59:59.999 [b:-1] g(_:) "
       "a\nb\n"}};
  for (const auto& [line, prefix, text] : cases) {
    EXPECT_EQ(logLineText(line, prefix, berlin), text);
  }
}

TEST(LogLine, ReducesASignatureToTheName) {
  const std::pair<const char*, const char*> cases[] = {
      {"void velloro::NotificationManager::update(int)", "update()"},
      {"a::(anonymous namespace)::S::~S()", "~S()"},
      {"std::vector<T> a::S::t(std::map<int, T>) [with T = int]", "t()"},
      {"a::S::t<int>(std::map<int, std::less<int> >)::<lambda(int)>::<lambda()>", "t()"},
      {"static decltype(auto) a::S::d()", "d()"},
      {"void (* a::S::p(int))(int)", "p()"},
      {"void TT<T>::m(U) [with U = int; T = std::vector<int>]", "m()"},
      {"void a::S::operator()(int)", "operator()()"},
      {"bool a::S::operator<(const a::S&) const", "operator<()"},
      {"a::S::operator std::vector<int>()", "operator std::vector<int>()"},
      {"void a::operators(int)", "operators()"},
      {"<lambda()>", "<lambda()>"},
      {"", ""}};
  for (const auto& [signature, name] : cases) EXPECT_EQ(functionName(signature), name);
}

}  // namespace
}  // namespace velloro
