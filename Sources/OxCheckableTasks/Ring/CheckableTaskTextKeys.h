#pragma once

#include "OxKit/LocalizedKey.h"

namespace velloro {

namespace checkable_task_text {

/// What a screen reader says of the state of a task's ring.
struct StateSentences {
  LocalizedKey done;
  LocalizedKey timesPerDay;  ///< {0} of {1} steps are done.
  LocalizedKey pct;          ///< {0} how much is done, in percent.
  LocalizedKey open;         ///< Nothing is done.
};

inline constexpr StateSentences positive{.done = {"VoiceoverTaskComplete", ""},
                                         .timesPerDay = {"VoiceoverTaskCompleteTimesPerDay", "tt"},
                                         .pct = {"VoiceoverTaskCompletePct", "t"},
                                         .open = {"VoiceoverTaskIncomplete", ""}};
/// Of a task of staying clear of something: while nothing has happened it counts as complete.
inline constexpr StateSentences negative{.done = {"VoiceoverTaskMissed", ""},
                                         .timesPerDay = {"VoiceoverTaskMissedTimesPerDay", "tt"},
                                         .pct = {"VoiceoverTaskMissedPct", "t"},
                                         .open = positive.done};

/// Of the icon beside a run that is as long as the best one.
inline constexpr LocalizedKey bestStreak{"TrophyRoom.BestStreak", ""};

inline constexpr LocalizedKey all[] = {
    positive.done, positive.timesPerDay, positive.pct, positive.open,
    negative.done, negative.timesPerDay, negative.pct, bestStreak};

}  // namespace checkable_task_text
}  // namespace velloro
