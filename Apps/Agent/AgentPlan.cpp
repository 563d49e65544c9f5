#include "Agent/AgentPlan.h"

#include <algorithm>
#include <set>

namespace velloro {
namespace {

using State = AgentRecord::State;
using Situation = AgentPlan::Situation;

/// The newest of each key, in the order in which they were due; the others are superseded.
std::vector<OpenReminder> newest(std::vector<OpenReminder> open, AgentPlan& plan) {
  std::ranges::stable_sort(open, {}, &OpenReminder::due);
  std::vector<OpenReminder> kept;
  for (std::size_t i = 0; i < open.size(); ++i) {
    const bool hasNewer = std::any_of(open.begin() + static_cast<std::ptrdiff_t>(i) + 1, open.end(),
                                      [&](const auto& later) { return later.key == open[i].key; });
    if (hasNewer) {
      plan.superseded.push_back(open[i].occurrence);
    } else {
      kept.push_back(open[i]);
    }
  }
  return kept;
}

/// Sorts what is to be seen by how it comes to be seen.
class Sorting {
 public:
  Sorting(const Situation& situation, AgentPlan& plan) : situation_(situation), plan_(plan) {}

  void add(const OpenReminder& open) {
    const auto* told = situation_.record.find(open.occurrence);
    if (told == nullptr) return addUntold(open);
    switch (told->state) {
      case State::open:
        // Of what was done or has run, once is enough.
        if (situation_.staysVisible && open.isReminder && !isVisible(open)) {
          plan_.again.push_back(open);
        }
        seen_.insert(open.key);
        break;
      case State::summarised:
        members_.push_back(open);
        break;
      case State::held:
        if (!situation_.isHeld && !situation_.isInhibited) addUntold(open);
        break;
      case State::done:
        break;
    }
  }

  void finish() {
    if (missed_.size() >= AgentPlan::summarised) {
      plan_.isSummaryFresh = true;
      std::ranges::move(missed_, std::back_inserter(members_));
    } else {
      for (const OpenReminder& each : missed_) seen_.insert(each.key);
      std::ranges::move(missed_, std::back_inserter(plan_.fresh));
    }
    if (!situation_.staysVisible && !plan_.isSummaryFresh) members_.clear();
    const auto shown = situation_.visible.find(AgentPlan::summaryKey);
    const bool isShown = shown != situation_.visible.end();
    if (members_.empty()) return;
    seen_.insert(AgentPlan::summaryKey);
    if (plan_.isSummaryFresh || !isShown || shown->second != AgentPlan::occurrence(members_)) {
      plan_.summary = std::move(members_);
    }
  }

  [[nodiscard]] bool isSeen(const std::string& key) const { return seen_.contains(key); }

 private:
  [[nodiscard]] bool isVisible(const OpenReminder& open) const {
    const auto shown = situation_.visible.find(open.key);
    return shown != situation_.visible.end() && shown->second == open.occurrence;
  }

  void addUntold(const OpenReminder& open) {
    const bool isLate = situation_.now.timeIntervalSince(open.due) > AgentPlan::lateness;
    if (!situation_.isHeld && isLate && open.isReminder) return missed_.push_back(open);
    seen_.insert(open.key);
    if (!situation_.isHeld) plan_.fresh.push_back(open);
  }

  const Situation& situation_;
  AgentPlan& plan_;
  std::vector<OpenReminder> missed_, members_;
  std::set<std::string> seen_;
};

}  // namespace

AgentPlan AgentPlan::of(const Situation& situation,
                        FunctionRef<bool(const OpenReminder&)> isNeeded) {
  AgentPlan plan;
  std::vector<OpenReminder> open;
  for (const OpenReminder& each : situation.delivered) {
    if (!each.content().hasText()) continue;
    if (!each.isReminder || isNeeded(each)) {
      open.push_back(each);
    } else {
      plan.settled.push_back(each.id());
    }
  }
  Sorting sorting(situation, plan);
  for (const OpenReminder& each : newest(std::move(open), plan)) sorting.add(each);
  sorting.finish();
  std::erase_if(plan.superseded, [&](const auto& occurrence) {
    const auto* told = situation.record.find(occurrence);
    return told != nullptr && told->state == State::done;
  });
  for (const auto& [key, occurrence] : situation.visible) {
    if (!sorting.isSeen(key)) plan.withdrawn.push_back(key);
  }
  return plan;
}

std::string AgentPlan::occurrence(const std::vector<OpenReminder>& summary) {
  std::string all;
  for (const OpenReminder& each : summary) all += each.occurrence + "\n";
  return all;
}

}  // namespace velloro
