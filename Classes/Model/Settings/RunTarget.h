#pragma once

#include "Foundation/Process/Environment.h"
#include "OxKit/Platform.h"

#include <cstdint>

namespace velloro {

/// Which build of the system a process is.
///
///     runTarget({.identifier = "velloro.app.notification"});   // RunTarget::notification
///     isExtension({.identifier = "velloro.app.notification"}); // true
enum class RunTarget : std::uint8_t {
  app,
  today,
  widgets,
  siri,
  siriUI,
  notification,
  deviceActivity,
  macApp,
  macWidgets,
  macSiri,
  macSiriUI,
  watchApp,
  watchSiri,
  unknown,
};

/// The target with the bundle's identifier; on a Mac some have the phone's. `unknown` for an
/// identifier that none has.
[[nodiscard]] RunTarget runTarget(const BundleInfo& bundle);

/// Whether a bundle is that of an extension, which runs beside the application: any but the
/// applications of phone, Mac and watch. One that is unknown is when its name ends in ".appex".
[[nodiscard]] bool isExtension(const BundleInfo& bundle);
/// The same for the running process.
[[nodiscard]] bool isExtension();

}  // namespace velloro
