#pragma once

#include "Foundation/Coding/CodingError.h"
#include "OxLog/Log.h"

#include <functional>
#include <source_location>
#include <string_view>

namespace velloro {

/// What a decoder calls for each value that it leaves out of a record (`JSONDecoder::didLeaveOut`).
/// The value is logged with the name of the record, as an error of whoever asked for this:
/// "NotificationData: task.colour: Expected a text, found the number 5."
[[nodiscard]] std::function<void(const DecodingError&)> logLeftOut(
    Log log, std::string_view record,
    const std::source_location& caller = std::source_location::current());

}  // namespace velloro
