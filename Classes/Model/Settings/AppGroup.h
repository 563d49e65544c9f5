#pragma once

namespace velloro {

/// The group of the application and its extensions: its folder holds the stores, and the suite of
/// this name the settings that they share.
inline constexpr const char* appGroupIdentifier = "group.velloro.app.today";

}  // namespace velloro
