#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Coding/RawValue.h"
#include "Foundation/Time/Date.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <type_traits>

namespace velloro {

/// What became of a notification that was delivered.
enum class AgentRecordState : std::uint8_t {
  open,        ///< Shown, and not answered.
  summarised,  ///< Shown as a part of the summary.
  held,        ///< The server showed nothing, since the user did not want to be disturbed.
  done,        ///< Nothing is left to show.
};

constexpr auto rawValues(std::type_identity<AgentRecordState>) {
  return caseNames<AgentRecordState::done>();
}

/// The same with what belongs to it.
struct AgentRecordEntry {
  AgentRecordState state = AgentRecordState::done;
  Date date = {};             ///< When that became so.
  bool wasOffered = false;    ///< Shown again after it had been held.
  std::int64_t serverId = 0;  ///< Its identifier at the server; 0 for none.

  bool operator==(const AgentRecordEntry&) const = default;
  static constexpr auto codingKeys =
      keys(key("state", &AgentRecordEntry::state, initialValue),
           key("date", &AgentRecordEntry::date, initialValue),
           key("wasOffered", &AgentRecordEntry::wasOffered, initialValue),
           key("serverId", &AgentRecordEntry::serverId, initialValue));
};

/// What the agent has done with the notifications that were delivered, kept from run to run: so an
/// agent that was killed neither forgets one nor shows one twice.
struct AgentRecord {
  using State = AgentRecordState;
  using Told = AgentRecordEntry;

  /// Of the identifiers: another bus, or another server on it, has given out its own.
  std::string server = {};
  std::map<std::string, Told> told = {};  ///< By the occurrence.

  bool operator==(const AgentRecord&) const = default;
  static constexpr auto codingKeys = keys(key("server", &AgentRecord::server, initialValue),
                                          key("told", &AgentRecord::told, initialValue));

  [[nodiscard]] const Told* find(const std::string& occurrence) const;
  void set(const std::string& occurrence, State state, Date now);
  /// Forgets what was done with long ago. A clock that was set back by less brings nothing again.
  void removeOld(Date now);

  static constexpr TimeInterval kept = 8 * 86400.0;

  /// Empty where there is none, or it can't be read.
  [[nodiscard]] static AgentRecord read(const std::filesystem::path& file);
  void write(const std::filesystem::path& file) const;
};

}  // namespace velloro
