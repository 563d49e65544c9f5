#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/PropertyList.h"
#include "OxKit/FunctionRef.h"
#include "velloro/Calendar/PeriodStretch.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

class TaskEntity;

/// All that a reminder could say on a day, in the order in which one run tries it.
struct ReminderWords {
  struct Motivation {
    std::string kind;
    std::optional<std::string> stringKey = {};
    std::optional<std::string> bracketStringKey = {};
    /// By parameter the text that is put in: for an amount one with its unit, and one without for
    /// the bracket.
    PropertyList parameters = PropertyList::Dictionary{};
    std::optional<std::string> text = {};
    std::optional<std::string> why = {};  ///< Why there is no text.

    static constexpr auto codingKeys =
        keys(key("kind", &Motivation::kind), key("stringKey", &Motivation::stringKey),
             key("bracketStringKey", &Motivation::bracketStringKey),
             key("parameters", &Motivation::parameters), key("text", &Motivation::text),
             key("why", &Motivation::why));
  };

  std::string task;  ///< Its identifier.
  PeriodStretch period;
  std::vector<Motivation> motivations;
  std::optional<std::string> picked;  ///< The kind of the first that has a text.

  static constexpr auto codingKeys =
      keys(key("task", &ReminderWords::task), key("period", &ReminderWords::period),
           key("motivations", &ReminderWords::motivations), key("picked", &ReminderWords::picked));

  /// \param random 64 random bits.
  [[nodiscard]] static ReminderWords of(const TaskEntity& task, YYYYMMDD day, Date now,
                                        FunctionRef<std::uint64_t()> random);

  /// A line for each motivation; an arrow stands before the one that is picked.
  [[nodiscard]] std::string text() const;
};

}  // namespace velloro
