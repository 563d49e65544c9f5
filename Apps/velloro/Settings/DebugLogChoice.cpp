#include "velloro/Settings/DebugLogChoice.h"

#include "OxLog/LogManager.h"
#include "velloro/Options/CaseArgument.h"

#include <algorithm>
#include <ranges>
#include <set>

namespace velloro {
namespace {

const std::string valueName = "VALUE";

std::set<Log> everyCategory() {
  std::set<Log> logs;
  for (const auto category : allCases<Log::Category>()) logs.insert({category});
  return logs;
}

std::set<Log> categories(std::string_view names) {
  std::set<Log> logs;
  for (const auto name : std::views::split(names, ',')) {
    logs.insert({caseArgument<Log::Category>(valueName, std::string(name.begin(), name.end()),
                                             "category of log lines")});
  }
  return logs;
}

}  // namespace

void chooseDebugLog(const std::optional<std::string>& text) {
  if (!text) return LogManager::shared().enableDiskLogging({}, LogLevel::error);
  const std::size_t colon = std::min(text->find(':'), text->size());
  const auto level =
      caseArgument<LogLevel>(valueName, text->substr(0, colon), "level of log lines");
  const auto logs = colon < text->size() ? categories(std::string_view(*text).substr(colon + 1))
                                         : everyCategory();
  LogManager::shared().enableDiskLogging(logs, level);
}

SettingsReport debugLogReport() {
  LogManager& manager = LogManager::shared();
  SettingsReport report{
      .name = std::string(debugLogName),
      .key = "__lm.level",
      .description = "The least level of log lines that are kept, and their categories.",
      .fallback = "none",
      .kind = Setting::Kind::string,
      .tier = SettingSource::local,
      .value = {}};
  std::string names;
  std::optional<LogLevel> least;
  bool isEvery = true;
  for (const auto category : allCases<Log::Category>()) {
    const auto levels = allCases<LogLevel>();
    const auto written = std::ranges::find_if(
        levels, [&](LogLevel level) { return manager.shouldLogToDisk({category}, level); });
    isEvery = isEvery && written != levels.end();
    if (written == levels.end()) continue;
    least = *written;
    names += (names.empty() ? ":" : ",") + std::string(rawValue(category));
  }
  if (least) report.value = std::string(rawValue(*least)) + (isEvery ? "" : names);
  return report;
}

}  // namespace velloro
