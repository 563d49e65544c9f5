#include "Agent/AgentRecord.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Files/NSFileManager.h"
#include "OxLog/Log.h"

namespace velloro {

const AgentRecord::Told* AgentRecord::find(const std::string& occurrence) const {
  const auto found = told.find(occurrence);
  return found == told.end() ? nullptr : &found->second;
}

void AgentRecord::set(const std::string& occurrence, State state, Date now) {
  Told& entry = told[occurrence];
  entry.state = state;
  entry.date = now;
  if (state != State::open) entry.serverId = 0;
}

void AgentRecord::removeOld(Date now) {
  std::erase_if(told, [&](const auto& each) {
    return each.second.state == State::done && each.second.date < now - kept;
  });
}

AgentRecord AgentRecord::read(const std::filesystem::path& file) {
  if (!NSFileManager::exists(file)) return {};
  try {
    const auto text = NSFileManager::contents(file);
    if (!text) throw Error(*text.error());
    return JSONDecoder{}.decode<AgentRecord>(*text);
  } catch (const Error& error) {
    Log::notifications.error(error);
    return {};
  }
}

void AgentRecord::write(const std::filesystem::path& file) const {
  const auto written = NSFileManager::write(JSONEncoder{}.encode(*this), file, NewItemAccess::owner,
                                            NSFileManager::Durability::process);
  if (!written) Log::notifications.error(written.error());
}

}  // namespace velloro
