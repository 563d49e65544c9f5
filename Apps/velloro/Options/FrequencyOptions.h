#pragma once

#include "VelloroCore/Frequency/TaskFrequency.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velloro {

class Command;

/// `--every`, `--times`, `--total`, `--per`, `--days`, `--interval`, `--mode` and `--partial`: how
/// often a task is due.
struct FrequencyOptions {
  std::optional<std::string> every, times, total, per, days, interval, mode, partial;

  /// `base` is what holds where an option is left out, as its help says.
  void addTo(const Command& command, const TaskFrequency& base = TaskFrequency::defaultFrequency);
  /// Whether any option says how the task recurs, not only in how many steps.
  [[nodiscard]] bool areRecurring() const {
    return every || times || total || per || days || interval || mode;
  }
  [[nodiscard]] bool areGiven() const { return areRecurring() || partial; }
  /// The given options over a base. Without a mode, each option chooses its own: `--every` and
  /// `--days` chosen weekdays or an interval, `--times` days of a period (of a week, unless `--per`
  /// or the base names another), `--total` one total over the period of `--per`.
  /// \param isTotalTarget Whether `--total` is the target of an automatic type. Otherwise it is the
  ///   number of steps.
  /// \throws UsageError, also for an option that the mode does not use.
  [[nodiscard]] TaskFrequency over(TaskFrequency base, bool isTotalTarget = false) const;
  /// \throws UsageError for another option that was given although the frequency does not use it.
  void expectUse(const char* name, const std::optional<std::string>& text, bool isUsed) const;

 private:
  /// How many steps make a completion, and the option that says so.
  struct Steps {
    const char* option = "";
    std::optional<std::int64_t> count = {};
  };

  void setSteps(TaskFrequency& frequency, const Steps& steps) const;
  [[nodiscard]] std::string choice() const;
  [[nodiscard]] DayMode modeOver(DayMode base) const;
};

/// For a command's help: every mode's name.
[[nodiscard]] std::string modesFooter();

}  // namespace velloro
