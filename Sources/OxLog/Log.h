#pragma once

#include "Foundation/Coding/RawValue.h"
#include "Foundation/Values/Error.h"
#include "OxKit/Platform.h"

#include <compare>
#include <concepts>
#include <cstdint>
#include <exception>
#include <iterator>
#include <source_location>
#include <string>
#include <string_view>
#include <type_traits>

namespace velloro {

/// How much a log line matters.
enum class LogLevel : std::uint8_t { debug, info, error };

constexpr auto rawValues(std::type_identity<LogLevel>) {
  return rawTexts<LogLevel>(
      {{LogLevel::debug, "debug"}, {LogLevel::info, "info"}, {LogLevel::error, "error"}});
}

/// What builds the text of a log line when it is called.
template <typename M>
concept LogMessage =
    std::invocable<M> && std::constructible_from<std::string, std::invoke_result_t<M>>;

/// A category of log lines, and the way to write them:
///
///     Log::notifications.info([&] { return "Updating badges..."; });
///     Log::database.error(Error("velloro.store", 2, "The file is not a database."));
///
/// The message is built only if the line is written. Which lines are is chosen in `LogManager`; at
/// first none. A line carries its caller's file, function and line number. Any thread may write,
/// and none waits for the disk. A line that is not written costs its caller a few loads.
struct Log {
  enum class Category : std::uint8_t {
    general,
    cache,
    watchConnectivity,
    speechOutput,
    healthKit,
    animation,
    workout,
    settings,
    sound,
    dataManager,
    analytics,
    cloud,
    siri,
    intents,
    database,
    notifications,
    music,
    widgets,
    watchComplications,
    network,
  };

  static const Log general, cache, watchConnectivity, speechOutput, healthKit, animation, workout,
      settings, sound, dataManager, analytics, cloud, siri, intents, database, notifications, music,
      widgets, watchComplications, network;

  Category category = Category::general;

  /// As a line shows it, such as "Watch Connectivity".
  [[nodiscard]] constexpr std::string_view categoryName() const;
  /// Empty for `cache`.
  [[nodiscard]] constexpr std::string_view emoji() const;

  void debug(LogMessage auto&& message,
             const std::source_location& caller = std::source_location::current()) const {
    if (isWritten(LogLevel::debug)) write(LogLevel::debug, std::string(message()), caller);
  }
  void info(LogMessage auto&& message,
            const std::source_location& caller = std::source_location::current()) const {
    if (isWritten(LogLevel::info)) write(LogLevel::info, std::string(message()), caller);
  }
  void error(LogMessage auto&& message,
             const std::source_location& caller = std::source_location::current()) const {
    if (isWritten(LogLevel::error)) write(LogLevel::error, std::string(message()), caller);
  }
  /// Writes the error's description; "unknown error" for a null pointer.
  void error(const std::exception& error,
             const std::source_location& caller = std::source_location::current()) const;
  void error(const ErrorPtr& error,
             const std::source_location& caller = std::source_location::current()) const;

  constexpr auto operator<=>(const Log&) const = default;
  static constexpr auto codingValue = &Log::category;

 private:
  [[nodiscard]] bool isWritten(LogLevel level) const;
  void write(LogLevel level, std::string message, const std::source_location& caller) const;
};

inline constexpr Log Log::general{Log::Category::general};
inline constexpr Log Log::cache{Log::Category::cache};
inline constexpr Log Log::watchConnectivity{Log::Category::watchConnectivity};
inline constexpr Log Log::speechOutput{Log::Category::speechOutput};
inline constexpr Log Log::healthKit{Log::Category::healthKit};
inline constexpr Log Log::animation{Log::Category::animation};
inline constexpr Log Log::workout{Log::Category::workout};
inline constexpr Log Log::settings{Log::Category::settings};
inline constexpr Log Log::sound{Log::Category::sound};
inline constexpr Log Log::dataManager{Log::Category::dataManager};
inline constexpr Log Log::analytics{Log::Category::analytics};
inline constexpr Log Log::cloud{Log::Category::cloud};
inline constexpr Log Log::siri{Log::Category::siri};
inline constexpr Log Log::intents{Log::Category::intents};
inline constexpr Log Log::database{Log::Category::database};
inline constexpr Log Log::notifications{Log::Category::notifications};
inline constexpr Log Log::music{Log::Category::music};
inline constexpr Log Log::widgets{Log::Category::widgets};
inline constexpr Log Log::watchComplications{Log::Category::watchComplications};
inline constexpr Log Log::network{Log::Category::network};

struct LogDescription {
  Log::Category category;
  std::string_view rawValue;
  std::string_view categoryName;
  std::string_view emoji;
};

/// All that is known of the categories, in their order.
inline constexpr LogDescription logDescriptions[] = {
    {Log::Category::general, "general", "General", "🔵"},
    {Log::Category::cache, "cache", "Cache", ""},
    {Log::Category::watchConnectivity, "watchConnectivity", "Watch Connectivity", "⌚️"},
    {Log::Category::speechOutput, "speechOutput", "Speech Output", "🗣"},
    {Log::Category::healthKit, "healthKit", "HealthKit", "♥️"},
    {Log::Category::animation, "animation", "Animation", "🎥"},
    {Log::Category::workout, "workout", "Workout", "💪"},
    {Log::Category::settings, "settings", "Settings", "⚙️"},
    {Log::Category::sound, "sound", "Sound", "🔊"},
    {Log::Category::dataManager, "dataManager", "Data Manager", "🗄"},
    {Log::Category::analytics, "analytics", "Analytics", "📈"},
    {Log::Category::cloud, "cloud", "Cloud", "☁️"},
    {Log::Category::siri, "siri", "Siri", "🤖"},
    {Log::Category::intents, "intents", "Intents", "🤖"},
    {Log::Category::database, "database", "Database", "🗄"},
    {Log::Category::notifications, "notifications", "Notifications", "🚨"},
    {Log::Category::music, "music", "Music", "🎵"},
    {Log::Category::widgets, "widgets", "Widgets", "🎛"},
    {Log::Category::watchComplications, "watchComplications", "Watch Complications", "⌚️"},
    {Log::Category::network, "network", "Network", "🌐"},
};

consteval auto rawValues(std::type_identity<Log::Category>) {
  RawCase<Log::Category, std::string_view> rows[std::size(logDescriptions)]{};
  for (std::size_t i = 0; i < std::size(rows); ++i) {
    rows[i] = {logDescriptions[i].category, logDescriptions[i].rawValue};
  }
  return rawTexts(rows);
}

constexpr std::string_view Log::categoryName() const {
  return logDescriptions[static_cast<std::size_t>(category)].categoryName;
}

constexpr std::string_view Log::emoji() const {
  return logDescriptions[static_cast<std::size_t>(category)].emoji;
}

}  // namespace velloro
