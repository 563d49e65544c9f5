#pragma once

#include "CheckableTasks/CheckableTaskView.h"
#include "VelloroCore/Appearance/CaptionIcons.h"
#include "VelloroCore/Appearance/PositionedTheme.h"
#include "VelloroCore/Status/CompletionStatus.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// A task's ring as `velloro ring` shows it: what the task is and how it stands.
struct RingLook {
  struct Caption {
    std::optional<std::string> text = {};
    std::vector<CaptionIcon> icons = {};  ///< Behind the text.
  };

  Theme theme = {};
  TaskDisplayOrder order = {};
  CompletionStatus::Status status = {};
  std::optional<IconDisplayRepresentation> icon = {};
  double progress = 0;
  double subProgress = 0;
  double trackProgress = 1;
  int numSegments = 1;
  std::optional<FillDirection> fillDirection = {};  ///< Absent: what the status asks for.
  std::optional<bool> useRoundedLineCaps = {};      ///< Absent: what the theme asks for.
  std::optional<double> timerDuration = {};         ///< Seconds; a dot then shows the time.
  Caption bottomCaption = {};
  Caption topCaption = {};
  std::vector<Badge> badges = {};
  double diameter = 84;        ///< Points.
  bool isTransparent = false;  ///< Nothing lies behind the ring, else the theme's background.

  /// The view, with its state and progress.
  [[nodiscard]] std::shared_ptr<CheckableTaskView> view() const;

 private:
  void configure(CheckableTaskView::Configuration& ring) const;
};

}  // namespace velloro
