#include "OxLog/LogManager.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Files/FileLock.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Environment.h"
#include "Foundation/Text/String.h"
#include "OxLog/LogLine.h"

#include <cerrno>
#include <utility>
#include <vector>

namespace velloro {
namespace {

constexpr std::string_view logsKey = "__lm.logs";
constexpr std::string_view levelKey = "__lm.level";

constexpr std::uint32_t bit(Log log) {
  return std::uint32_t{1} << static_cast<unsigned>(log.category);
}

}  // namespace

LogManager& LogManager::shared() {
  // Never destroyed: lines come from other threads until the process is gone.
  static auto* manager = new LogManager;
  return *manager;
}

LogManager::LogManager()
    : debugLogUrl_(Environment::current().directories().caches / "debug.log"),
      defaults_(NSUserDefaults::standardUserDefaults()) {}

LogManager::~LogManager() {
  flush();
}

void LogManager::enableDiskLogging(const std::set<Log>& logs, LogLevel minimumLevel) {
  DiskLevels levels{.logToDiskMinLevel = minimumLevel, .hasInitializedLogToDiskLevels = true};
  PropertyList::Array names;
  for (const Log log : logs) {
    levels.logToDiskLogs |= bit(log);
    names.emplace_back(rawValue(log.category));
  }
  const std::scoped_lock lock(mutex_);
  defaults_.setObjects(
      {{std::string(logsKey), std::move(names)}, {std::string(levelKey), rawValue(minimumLevel)}});
  diskLevels_ = levels;
}

bool LogManager::shouldLogToDisk(Log category, LogLevel level) {
  DiskLevels levels = diskLevels_.load(std::memory_order_acquire);
  if (!levels.hasInitializedLogToDiskLevels) {
    const std::scoped_lock lock(mutex_);
    levels = diskLevels_;
    if (!levels.hasInitializedLogToDiskLevels) diskLevels_ = levels = storedDiskLevels();
  }
  return (levels.logToDiskLogs & bit(category)) != 0 && level >= levels.logToDiskMinLevel;
}

LogManager::DiskLevels LogManager::storedDiskLevels() const {
  DiskLevels levels{.hasInitializedLogToDiskLevels = true};
  const auto names = defaults_.stringArrayForKey(logsKey).value_or(std::vector<std::string>());
  for (const std::string& name : names) {
    if (const auto category = fromRawValue<Log::Category>(name)) {
      levels.logToDiskLogs |= bit({*category});
    }
  }
  const auto level = fromRawValue<LogLevel>(defaults_.stringForKey(levelKey).value_or(""));
  if (level) levels.logToDiskMinLevel = *level;
  return levels;
}

void LogManager::receiveFromWatch(const Data& data) {
  try {
    auto packet = JSONDecoder().decode<WatchDebugPacket>(data.text());
    if (shouldLogToDisk(packet.category, packet.level)) write(std::move(packet), "WATCH");
  } catch (const DecodingError& error) {
    Log::watchConnectivity.error(error);
  }
}

void LogManager::write(WatchDebugPacket line, std::string_view prefix) {
  queue_.async([this, line = std::move(line), prefix = std::string(prefix),
                zone = TimeZone::current()] { append(logLineText(line, prefix, zone)); });
}

void LogManager::append(const std::string& line) {
  if (!isUTF8(line)) return;
  checkForLogDeletion();
  const auto appended = NSFileManager::append(line, debugLogUrl_);
  if (appended || appended.error()->code() != ENOENT) return;
  initDebugLog();
  (void)NSFileManager::append(line, debugLogUrl_);
}

void LogManager::checkForLogDeletion() {
  if (std::exchange(hasCheckedForLogDeletion_, true)) return;
  const auto isTooLarge = [this] {
    return NSFileManager::size(debugLogUrl_).value_or(0) >= logSizeLimit;
  };
  if (!isTooLarge()) return;
  // Another process may be clearing it too, and have written its first line by now.
  const auto lock = FileLock::exclusive(debugLogUrl_);
  if (!lock || !isTooLarge()) return;
  clearDebugLog();
  initDebugLog();
}

void LogManager::initDebugLog() const {
  (void)NSFileManager::createDirectory(debugLogUrl_.parent_path());
  (void)NSFileManager::createFile(debugLogUrl_);
}

void LogManager::clearDebugLog() const {
  (void)NSFileManager::removeItem(debugLogUrl_);
}

void LogManager::flush() const {
  queue_.sync([] {});
}

}  // namespace velloro
