#include "Foundation/Process/VirtualEnvironment.h"
#include "Fuzz.h"
#include "VelloroImport/HarshReader.h"
#include "VelloroImport/JSONReaders.h"
#include "VelloroImport/LoopReader.h"

#include <array>
#include <cstdlib>

namespace {

using namespace velloro;

/// What was read is a backup that reads as the same again, and every decision says something.
void check(const ImportedBackup& imported) {
  const std::string written = imported.backup.jsonData();
  if (VelloroJSONBackup::fromJSON(written).jsonData() != written) std::abort();
  for (const auto& [what, why] : imported.decisions) {
    if (what.empty() || why.empty()) std::abort();
  }
}

void check(const Result<ImportedBackup>& imported) {
  if (imported) return check(*imported);
  if (imported.error()->localizedDescription().empty()) std::abort();
}

constexpr std::array<std::string_view, 9> seeds = {
    "! Body\nRun: 3/7\nSwim: 1w: 2025-01-01\nRest: 0\n\v",
    "Run: 1\n\v2024-03-05 : Run : y : in rain : 5.5\n2024-03-06 : Gone : s\n",
    "Position,Name,Type,Question,Description,FrequencyNumerator,FrequencyDenominator,Color,Unit,"
    "Target Type,Target Value,Archived?\n1,Run,NUMERICAL,Did you?,,3,7,#FF8000,km,AT_LEAST,5.0,"
    "false\n\vDate,Value,Notes\n2024-03-07,YES_MANUAL,\"a, b\"\n2024-03-06,7500,\n",
    "Position,Name,Description,NumRepetitions,Interval,Color\n1,Read,x,2,10,#008000\n\v"
    "2024-03-07,2\n2024-03-06,-1\n",
    R"({"preferences":{"dayStart":3,"timezoneOffset":-60},"tasks":{"dailys":[{"_id":"1","text":)"
    R"("Read","frequency":"weekly","everyX":2,"repeat":{"m":true},"checklist":[{"text":"a"}],)"
    R"("reminders":[{"time":"2024-03-01T06:30:00Z"}],"history":[{"date":1709771400000,)"
    R"("completed":true,"isDue":true}]}]}})",
    R"({"tasks":{"habits":[{"_id":"2","text":"Eat","up":true,"down":true,"history":)"
    R"([{"date":1709780400000,"scoredUp":2,"scoredDown":1}]}],"todos":[{}]}})",
    R"({"habits":[{"name":"Read","start_date":19780,"type":2,"freq_type":3,"freq_custom":"[2,10]",)"
    R"("daily_goal":4,"daily_goal_extra":6,"reminder":"{\"type\":3,\"time\":{\"hour\":7,)"
    R"(\"minute\":5},\"extra\":[1]}","records":[{"record_date":19789,"record_type":1,)"
    R"("record_value":2.5,"reason":"late"}]}]})",
    R"([{"uuid":"p","description":"Read","status":"recurring","recur":"2wks","project":"Mind",)"
    R"("due":"20240304T230000Z","annotations":[{"entry":"20240305T100000Z","description":"x"}]},)"
    R"({"uuid":"c","description":"Read","status":"completed","parent":"p",)"
    R"("due":"20240305T230000Z"}])",
    "{\"uuid\":\"p\",\"description\":\"Read\",\"status\":\"recurring\",\"recur\":\"P1M\"}\n"
    "{\"uuid\":\"c\",\"description\":\"Read\",\"status\":\"deleted\",\"parent\":\"q\"}\n",
};

}  // namespace

std::span<const std::string_view> fuzzSeeds() {
  return seeds;
}

/// Two files of one program have a vertical tab between them.
int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const platform::VirtualEnvironment environment;
  const TimeZone zone = TimeZone::gmt();
  const Date now = Date::now();
  const std::string_view text(reinterpret_cast<const char*>(bytes), size);
  const auto end = std::min(text.find('\v'), text.size());
  const std::string_view first = text.substr(0, end), second = text.substr(std::min(end + 1, size));
  check(readHarsh(first, second, zone, now));
  check(readLoopFiles(
      {{"Habits.csv", std::string(first)}, {"001 Run/Checkmarks.csv", std::string(second)}}, zone,
      now));
  check(readHabitica(text, zone, now));
  check(readMhabit(text, zone, now));
  check(readTaskwarrior(text, zone, now));
  return 0;
}
