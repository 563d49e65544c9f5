#pragma once

#include "Foundation/Time/TimeZone.h"
#include "OxLog/LogManager.h"

#include <string>
#include <string_view>

namespace velloro {

/// The text of a log line, its line feed included.
/// \param prefix Stands before the category; empty for none.
[[nodiscard]] std::string logLineText(const LogManager::WatchDebugPacket& line,
                                      std::string_view prefix, const TimeZone& zone);

/// The name of a function, with "()", from its signature as the compiler writes it: "update()" for
/// "void velloro::NotificationManager::update(int)". For a lambda, it is the name of the enclosing
/// function. A text without a parameter list is returned as it is.
[[nodiscard]] std::string functionName(std::string_view signature);

}  // namespace velloro
