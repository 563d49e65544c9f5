#include "Agent/AgentPlan.h"
#include "Agent/QuietTime.h"
#include "Agent/ReminderAnswer.h"

#include <gmock/gmock.h>

namespace velloro {
namespace {

using State = AgentRecord::State;

const Date now = Date::since1970(1'709'809'200);

/// "A1" is the first reminder of the task A; it was due so many seconds ago.
OpenReminder due(const std::string& name, TimeInterval ago) {
  OpenReminder open;
  open.key = name.substr(0, 1);
  open.occurrence = name;
  open.due = now - ago;
  open.isReminder = true;
  open.notification.request.identifier = "id " + name;
  open.notification.request.content.title = name;
  return open;
}

std::string names(const std::vector<OpenReminder>& reminders) {
  std::string names;
  for (const auto& each : reminders) names += (names.empty() ? "" : " ") + each.occurrence;
  return names;
}

struct Case {
  const char* what;
  std::vector<OpenReminder> delivered;
  std::map<std::string, State> told;        // of occurrences
  std::map<std::string, std::string> seen;  // occurrences by keys
  const char* expected;                     // "fresh | again | summary | withdrawn | superseded"
  bool isHeld = false;
  bool isInhibited = false;
  bool staysVisible = true;
};

TEST(AgentPlan, BringsWhatIsSeenInAgreementWithWhatIsOpen) {
  const Case cases[] = {
      {"a new one", {due("A1", 0)}, {}, {}, "A1 | | | |"},
      {"one that is seen", {due("A1", 9)}, {{"A1", State::open}}, {{"A", "A1"}}, "| | | |"},
      {"after a restart", {due("A1", 9)}, {{"A1", State::open}}, {}, "| A1 | | |"},
      {"printed before", {due("A1", 9)}, {{"A1", State::open}}, {}, "| | | |", false, false, false},
      {"dismissed or expired", {due("A1", 9)}, {{"A1", State::done}}, {}, "| | | |"},
      {"a newer one of the task",
       {due("A2", 0), due("A1", 60)},
       {{"A1", State::open}},
       {{"A", "A1"}},
       "A2 | | | | A1"},
      {"two were missed", {due("A1", 900), due("B1", 800)}, {}, {}, "A1 B1 | | | |"},
      {"three were missed, one twice, and one comes now",
       {due("A1", 900), due("B1", 800), due("B2", 700), due("C1", 600), due("D1", 0)},
       {},
       {},
       "D1 | | A1 B2 C1 | | B1"},
      {"one of the summary is done",
       {due("A1", 900), due("B1", 800)},
       {{"A1", State::summarised}, {"B1", State::summarised}},
       {{"summary", "A1\nB1\nC1\n"}},
       "| | A1 B1 | |"},
      {"all of it are done", {}, {}, {{"summary", "A1\n"}}, "| | | summary |"},
      {"gone from the centre", {}, {{"A1", State::open}}, {{"A", "A1"}}, "| | | A |"},
      {"no longer needed", {due("X1", 0)}, {{"X1", State::open}}, {{"X", "X1"}}, "| | | X |"},
      {"the user wants peace", {due("A1", 0)}, {}, {}, "| | | |", true},
      {"not to be disturbed", {due("A1", 9)}, {{"A1", State::held}}, {}, "| | | |", false, true},
      {"to be disturbed again", {due("A1", 9)}, {{"A1", State::held}}, {}, "A1 | | | |"},
  };
  for (const Case& each : cases) {
    AgentRecord record;
    for (const auto& [occurrence, state] : each.told) record.set(occurrence, state, now);
    const auto plan = AgentPlan::of({.delivered = each.delivered,
                                     .record = record,
                                     .visible = each.seen,
                                     .now = now,
                                     .isHeld = each.isHeld,
                                     .isInhibited = each.isInhibited,
                                     .staysVisible = each.staysVisible},
                                    [](const auto& reminder) { return reminder.key != "X"; });
    std::string found;
    for (const auto& part : {names(plan.fresh), names(plan.again), names(plan.summary)}) {
      found += part + (part.empty() ? "| " : " | ");
    }
    for (const auto& key : plan.withdrawn) found += key + " ";
    found += "|";
    for (const auto& occurrence : plan.superseded) found += " " + occurrence;
    EXPECT_EQ(found, each.expected) << each.what;
    EXPECT_EQ(plan.settled.size(),
              each.delivered.empty() || each.delivered[0].key != "X" ? 0u : 1u);
  }
}

TEST(AgentRecord, ForgetsWhatWasDoneLongAgo) {
  AgentRecord record;
  record.set("open", State::open, now - 2 * AgentRecord::kept);
  record.set("old", State::done, now - 2 * AgentRecord::kept);
  record.set("new", State::done, now - AgentRecord::kept / 2);
  record.removeOld(now);
  EXPECT_EQ(record.told.size(), 2u);
  EXPECT_EQ(record.find("old"), nullptr);
}

TEST(QuietHours, MayGoOverMidnight) {
  const auto zone = TimeZone::fromIdentifier("Europe/Berlin").value();
  const struct {
    QuietHours hours;
    const char* instant;
    const char* end;
  } cases[] = {
      {{{.h = 22}, {.h = 7}}, "2024-03-07T21:30:00Z", "2024-03-08T06:00:00Z"},
      {{{.h = 22}, {.h = 7}}, "2024-03-08T05:59:59Z", "2024-03-08T06:00:00Z"},
      {{{.h = 22}, {.h = 7}}, "2024-03-08T06:00:00Z", nullptr},
      {{{.h = 22}, {.h = 7}}, "2024-03-30T22:00:00Z", "2024-03-31T05:00:00Z"},  // a short night
      {{{.h = 9}, {.h = 17}}, "2024-03-08T15:59:59Z", "2024-03-08T16:00:00Z"},
      {{{.h = 9}, {.h = 17}}, "2024-03-08T16:00:00Z", nullptr},
  };
  for (const auto& [hours, instant, end] : cases) {
    const Date at = Date::fromISO8601(instant).value();
    const bool isQuiet = hours.contains(HHMMSS::fromDate(at, zone));
    EXPECT_EQ(isQuiet ? hours.end(at, zone).iso8601() : "", end == nullptr ? "" : end) << instant;
  }
}

TEST(ReminderAnswer, TakesNothingButAnAmount) {
  const std::pair<const char*, std::optional<double>> cases[] = {
      {"2", 2},    {" 2.5\n", 2.5}, {"2,5", 2.5}, {"0", {}},   {"-1", {}},     {"", {}},
      {"two", {}}, {"1e9", {}},     {"nan", {}},  {"inf", {}}, {"2 cups", {}}, {"1,000.5", {}}};
  for (const auto& [text, amount] : cases) EXPECT_EQ(amountIn(text), amount) << text;
}

}  // namespace
}  // namespace velloro
