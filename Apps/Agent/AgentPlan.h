#pragma once

#include "Agent/AgentRecord.h"
#include "Agent/OpenReminder.h"
#include "OxKit/FunctionRef.h"

#include <map>
#include <string>
#include <vector>

namespace velloro {

/// What the agent is to do so that what is seen agrees with what is open.
struct AgentPlan {
  std::vector<OpenReminder> fresh = {};  ///< Shown for the first time, with all that draws notice.
  std::vector<OpenReminder> again = {};  ///< Shown before, and lost from sight: quietly.
  std::vector<OpenReminder> summary = {};  ///< Shown as one; empty where there is no summary.
  bool isSummaryFresh = false;
  std::vector<std::string> withdrawn = {};   ///< Keys of what is seen.
  std::vector<std::string> settled = {};     ///< Identifiers that nobody needs any more.
  std::vector<std::string> superseded = {};  ///< Occurrences that a newer one stands for.

  /// The key of the summary.
  static constexpr const char* summaryKey = "summary";
  /// So many missed reminders are shown as one.
  static constexpr std::size_t summarised = 3;
  /// A reminder that is shown later than that was missed.
  static constexpr TimeInterval lateness = 90;

  struct Situation {
    /// The delivered notifications of the centre.
    std::vector<OpenReminder> delivered = {};
    const AgentRecord& record;
    /// What is seen: the occurrence by its key; for the summary, all of them in one text.
    std::map<std::string, std::string> visible = {};
    Date now;
    /// Whether nothing new is shown at present: the user wants peace, or the machine has just been
    /// woken.
    bool isHeld = false;
    /// Whether the user does not want to be disturbed, says the server.
    bool isInhibited = false;
    /// Whether what is shown stays to be seen, and can be withdrawn.
    bool staysVisible = true;
  };

  /// \param isNeeded Whether the task of a reminder still needs it.
  [[nodiscard]] static AgentPlan of(const Situation& situation,
                                    FunctionRef<bool(const OpenReminder&)> isNeeded);
  /// Of the summary, as what is seen.
  [[nodiscard]] static std::string occurrence(const std::vector<OpenReminder>& summary);
};

}  // namespace velloro
