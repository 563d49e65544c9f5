#pragma once

#include <string_view>

namespace platform {

/// Tells the service manager that started this process something: "READY=1", "WATCHDOG=1",
/// "STOPPING=1", "STATUS=…". Nothing happens where there is none, or it does not listen.
void notifyServiceManager(std::string_view state);

}  // namespace platform
