#pragma once

#include "AppExtensions/NotificationViewController.h"
#include "Foundation/Coding/PropertyList.h"

#include <memory>
#include <string>
#include <string_view>

namespace velloro {

/// What an expanded notification shows: `fallback`, the texts, the size, and the ring's own, null
/// where it is hidden.
[[nodiscard]] PropertyList notificationReport(const NotificationViewController& controller);
/// The same in a few lines to read.
[[nodiscard]] std::string notificationText(const NotificationViewController& controller);
/// The view as it is at this moment.
/// \throws RuntimeError If nothing can be drawn.
[[nodiscard]] std::shared_ptr<const CGImage> notificationPicture(NotificationView& view);

/// "checkable".
[[nodiscard]] std::string_view stateName(CheckableTaskView::State state);

}  // namespace velloro
