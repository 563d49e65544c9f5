#include "Foundation/Process/VirtualEnvironment.h"
#include "Support/Fixtures.h"
#include "VelloroCore/Appearance/PositionedTheme.h"
#include "VelloroCore/Log/TaskRecentHistory.h"
#include "VelloroSnapshots/ComplicationTaskSnapshot.h"
#include "VelloroSnapshots/NotificationTask.h"
#include "VelloroTaskShare/TaskCloudSummary.h"

#include <cctype>
#include <map>
#include <set>
#include <utility>

#include <gtest/gtest.h>

namespace velloro {
namespace {

/// The way to a value: "history.multi.0.type".
std::string step(const std::string& way, const std::string& name) {
  return way.empty() ? name : way + "." + name;
}

/// Calls `visit(value, way)` for each number and text below a place.
template <typename Visit>
void forEachLeaf(PropertyList& place, const std::string& way, const Visit& visit) {
  if (auto* fields = place.dictionary()) {
    for (auto& [name, value] : *fields) forEachLeaf(value, step(way, name), visit);
  } else if (auto* elements = place.array()) {
    for (std::size_t i = 0; i < elements->size(); ++i) {
      forEachLeaf((*elements)[i], step(way, std::to_string(i)), visit);
    }
  } else if (place.text() != nullptr || place.real()) {
    visit(place, way);
  }
}

std::map<std::string, PropertyList> partsOf(const PropertyList& list) {
  std::map<std::string, PropertyList> parts;
  if (const auto* fields = list.dictionary()) parts.insert(fields->begin(), fields->end());
  if (const auto* elements = list.array()) {
    for (std::size_t i = 0; i < elements->size(); ++i) parts[std::to_string(i)] = (*elements)[i];
  }
  return parts;
}

/// The first of the elements that are missing, where what is left is as it was.
std::optional<std::size_t> takenOut(const PropertyList::Array& whole,
                                    const PropertyList::Array& left) {
  for (std::size_t i = 0; left.size() < whole.size() && i <= left.size(); ++i) {
    const auto first = whole.begin() + static_cast<std::ptrdiff_t>(i);
    const auto count = static_cast<std::ptrdiff_t>(whole.size() - left.size());
    if (std::equal(whole.begin(), first, left.begin()) &&
        std::equal(first + count, whole.end(), left.begin() + static_cast<std::ptrdiff_t>(i))) {
      return i;
    }
  }
  return std::nullopt;
}

/// The way to the smallest value that holds all that has changed; empty where nothing has.
std::string changed(const PropertyList& before, const PropertyList& after, const std::string& way) {
  if (before == after) return "";
  if (before.array() != nullptr && after.array() != nullptr) {
    if (const auto i = takenOut(*before.array(), *after.array()))
      return step(way, std::to_string(*i));
  }
  const auto was = partsOf(before), is = partsOf(after);
  std::set<std::string> differing;
  for (const auto& [name, value] : was) {
    if (!is.contains(name) || is.at(name) != value) differing.insert(name);
  }
  if (differing.size() != 1 || is.size() > was.size()) return way.empty() ? "all" : way;
  const std::string& name = *differing.begin();
  return is.contains(name) ? changed(was.at(name), is.at(name), step(way, name)) : step(way, name);
}

struct Sweep {
  /// The keys of what is lost as a whole ("[]" for an element), with those of the values in it for
  /// which nothing stands in.
  std::map<std::string, std::set<std::string>> losses;
  int count = 0;  ///< Of the damaged places.
};

std::string lastStep(const std::string& way) {
  const std::string last = way.substr(way.rfind('.') + 1);
  return std::isdigit(last[0]) != 0 ? "[]" : last;
}

/// Reads a fixture with each of its values in turn damaged, and writes down where more is lost than
/// that value. What a strict decoder still reads is no damage.
template <typename T>
void sweep(Sweep& result, const std::string& name, DateForm form = {}) {
  PropertyList record = PropertyList::fromJSON(fixtureText(name));
  const PropertyList whole = record;
  const auto damage = [&](PropertyList& place, const std::string& way, std::string_view value) {
    const PropertyList kept = std::exchange(place, "damage");
    std::string json = record.json();
    place = kept;
    json.replace(json.find("\"damage\""), 8, value);
    try {
      (void)JSONDecoder{.dateForm = form, .isStrict = true}.decode<T>(json);
      return;
    } catch (const DecodingError&) {
      ++result.count;
    }
    std::string lost = "all";
    try {
      const T read = JSONDecoder{.dateForm = form}.decode<T>(json);
      lost = changed(whole, toPropertyList(read, {.dateForm = form}), "");
    } catch (const DecodingError&) {
    }
    if (!lost.empty() && lost != way) result.losses[lastStep(lost)].insert(lastStep(way));
  };
  forEachLeaf(record, "", [&](PropertyList& place, const std::string& way) {
    if (place.text() != nullptr) return damage(place, way, R"("no such case")");
    damage(place, way, "-98765432101");
    damage(place, way, "-1e999");
  });
}

TEST(Records, AValueThatIsNotKnownSpoilsItselfAlone) {
  const VirtualEnvironment environment;
  Sweep result;
  sweep<NotificationTask>(result, "NotificationTaskWithOptionals", DateForm::iso8601);
  sweep<PositionedTheme>(result, "PositionedTheme");
  sweep<ComplicationTaskSnapshot>(result, "ComplicationTaskSnapshot");
  sweep<WatchTaskActions>(result, "WatchTaskActions");
  sweep<TaskCloudSummary>(result, "TaskCloudSummary");
  sweep<TaskNotificationSettings>(result, "TaskNotificationSettings");
  sweep<TaskReminder>(result, "TaskReminder");
  sweep<AutomaticTaskType>(result, "AutomaticTaskType");
  sweep<TaskDisplayTitle>(result, "TaskDisplayTitle");
  sweep<TaskRecentHistory>(result, "TaskRecentHistory");
  sweep<TaskProgressDateRange>(result, "TaskProgressDateRange");
  const std::set<std::string> colors{"a", "b", "g", "r"}, rate{"numSamples", "successPct", "type"};
  const std::map<std::string, std::set<std::string>> losses{
      {"all",
       {"created", "createdDate", "date", "finishDate", "quantity", "startDate", "status",
        "statusDate", "taskId", "type", "uniqueId"}},
      {"[]",
       {"[]", "_0", "actionID", "date", "end", "entryID", "entryId", "entryType", "finishDate",
        "start", "startDate", "status", "system", "taskID", "taskIdentifier", "type", "uniqueID",
        "uniqueId"}},
      {"automaticTaskType", {"quantity", "type"}},
      {"codableColor", colors},
      {"color", colors},
      {"longTerm", rate},
      {"numUniqueCompletions", {"count", "end", "start"}},
      {"period", {"date", "from", "to"}},
      {"periodOfLastCompletionBeforeToday", {"finishDate", "startDate"}},
      {"progress", {"date", "value"}},
      {"quantity", {"quantity", "unit"}},
      {"region", {"latitude", "longitude", "radius"}},
      {"shortTerm", rate},
      {"snapshotPinnedNote", {"uniqueID"}},
      {"timeZone", {"identifier"}}};
  EXPECT_EQ(result.losses, losses);
  EXPECT_GT(result.count, 100);
}

}  // namespace
}  // namespace velloro
