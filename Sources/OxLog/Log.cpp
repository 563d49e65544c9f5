#include "OxLog/Log.h"

#include "OxLog/LogLine.h"
#include "OxLog/LogManager.h"

#include <algorithm>

namespace velloro {

static_assert(std::ranges::all_of(logDescriptions, [](const LogDescription& description) {
  const auto index = static_cast<std::size_t>(description.category);
  return &description == &logDescriptions[index];
}));

void Log::error(const std::exception& error, const std::source_location& caller) const {
  this->error([&] { return error.what(); }, caller);
}

void Log::error(const ErrorPtr& error, const std::source_location& caller) const {
  this->error([&] { return error ? error->what() : "unknown error"; }, caller);
}

bool Log::isWritten(LogLevel level) const {
  return LogManager::shared().shouldLogToDisk(*this, level);
}

void Log::write(LogLevel level, std::string message, const std::source_location& caller) const {
  LogManager::shared().write({.date = Date::now(),
                              .category = *this,
                              .level = level,
                              .message = std::move(message),
                              .filename = caller.file_name(),
                              .function = functionName(caller.function_name()),
                              .line = caller.line()});
}

}  // namespace velloro
