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

/// The bare name in a function's signature as the compiler spells it, with "()": "update()" for
/// "void velloro::NotificationManager::update(int)". A lambda goes by the function around it. A
/// text without a parameter list stays as it is.
[[nodiscard]] std::string functionName(std::string_view signature);

}  // namespace velloro
