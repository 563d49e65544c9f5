#include "Desktop/NotificationBus.h"

#include "CoreGraphics/ModuleLoader.h"

namespace platform {

Result<std::unique_ptr<NotificationBus>> NotificationBus::connect(MainLoop& loop, Signals signals) {
  constexpr const char* domain = "velloro.desktop";
  std::string problem;
  void* const entry = loadModule("DesktopBus.so", "velloroNotificationBus", problem);
  if (entry == nullptr) return failure<Error>(domain, 1, problem);
  std::unique_ptr<NotificationBus> bus(reinterpret_cast<decltype(&velloroNotificationBus)>(entry)(
      loop, std::move(signals), problem));
  if (bus == nullptr) return failure<Error>(domain, 2, problem);
  return bus;
}

}  // namespace platform
