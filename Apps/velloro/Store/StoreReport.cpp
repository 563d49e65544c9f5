#include "velloro/Store/StoreReport.h"

#include "CoreData/Context/NSPersistentStoreCoordinator.h"
#include "Foundation/Coding/JSON.h"
#include "Foundation/Files/NSFileManager.h"
#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"
#include "velloro/Store/UnreadableRows.h"

#include <algorithm>

namespace velloro {
namespace {

template <typename Value>
Value orThrow(Result<Value> result) {
  if (!result) throw Error(*result.error());
  return *std::move(result);
}

const NSPersistentStoreCoordinator& storeOf(const NSManagedObjectContext& context) {
  return *context.persistentStoreCoordinator();
}

template <typename Report>
std::string jsonOf(const Report& report) {
  return JSONEncoder{.dateForm = DateForm::iso8601}.encode(report) + "\n";
}

NSPersistentHistoryResult historyAfter(Date instant, NSManagedObjectContext& context) {
  return orThrow(context.execute(NSPersistentHistoryChangeRequest::fetchHistoryAfterDate(instant)));
}

/// IDs come sorted by entity.
std::vector<StoreSave::Rows> rowsOf(const std::vector<NSManagedObjectID>& ids) {
  std::vector<StoreSave::Rows> rows;
  for (const NSManagedObjectID id : ids) {
    if (rows.empty() || rows.back().entity != id.entity->name()) {
      rows.push_back({.entity = id.entity->name()});
    }
    rows.back().keys.push_back(id.key);
  }
  return rows;
}

/// "  +TaskLogEntry 17 18 19 and 3 more"
std::string rowsText(char sign, const std::vector<StoreSave::Rows>& rows) {
  constexpr std::size_t mostKeys = 5;
  std::string text;
  for (const auto& [entity, keys] : rows) {
    text += std::string("  ") + sign + entity;
    for (std::size_t i = 0; i < std::min(keys.size(), mostKeys); ++i) {
      text += " " + std::to_string(keys[i]);
    }
    if (keys.size() > mostKeys) {
      text += " and " + std::to_string(keys.size() - mostKeys) + " more";
    }
  }
  return text;
}

}  // namespace

StoreCheckReport StoreCheckReport::of(NSManagedObjectContext& context) {
  StoreCheckReport report{.file = storeOf(context).persistentStores().front().string(),
                          .findings = orThrow(storeOf(context).check())};
  std::ranges::move(orThrow(unreadableRows(context)), std::back_inserter(report.findings));
  return report;
}

std::string StoreCheckReport::json() const {
  return jsonOf(*this);
}

std::string StoreCheckReport::text() const {
  if (findings.empty()) return terminalText(inQuotes(file)) + " is sound\n";
  std::string text;
  for (const std::string& finding : findings) text += terminalText(finding) + "\n";
  return text;
}

StoreStats StoreStats::of(NSManagedObjectContext& context) {
  const auto history = historyAfter(Date::distantPast(), context).transactions;
  StoreStats stats{.file = storeOf(context).persistentStores().front().string(),
                   .saves = history.size()};
  for (const char* part : {"", "-wal"}) {
    stats.bytes += NSFileManager::size(stats.file + part).value_or(0);
  }
  if (!history.empty()) stats.newest = history.back().timestamp;
  for (const NSEntityDescription* entity : storeOf(context).managedObjectModel().entities()) {
    const auto rows = orThrow(context.count(NSFetchRequest(entity->name())));
    stats.entities.push_back({.name = entity->name(), .rows = rows});
  }
  return stats;
}

std::string StoreStats::json() const {
  return jsonOf(*this);
}

std::string StoreStats::text() const {
  const auto line = [](const std::string& name, std::uint64_t number) {
    return stringWithFormat("%-26s %10llu\n", name.c_str(),
                            static_cast<unsigned long long>(number));
  };
  std::string text = terminalText(file) + "\n\n";
  for (const Entity& entity : entities) text += line(entity.name, entity.rows);
  text += "\n" + line("bytes", bytes) + line("saves", saves);
  if (newest) text += stringWithFormat("%-26s %s\n", "newest", newest->iso8601().c_str());
  return text;
}

StoreSave::List StoreSave::after(Date instant, NSManagedObjectContext& context) {
  const auto history = historyAfter(instant, context);
  List list{.saves = {}, .damage = history.damage};
  for (const auto& transaction : history.transactions) {
    list.saves.push_back({.number = transaction.transactionNumber,
                          .timestamp = transaction.timestamp,
                          .author = transaction.author,
                          .contextName = transaction.contextName,
                          .inserted = rowsOf(transaction.inserted),
                          .updated = rowsOf(transaction.updated),
                          .deleted = rowsOf(transaction.deleted)});
  }
  return list;
}

std::string StoreSave::json(const std::vector<StoreSave>& saves) {
  return jsonOf(saves);
}

std::string StoreSave::text() const {
  std::string text =
      stringWithFormat("%6lld  %s", static_cast<long long>(number), timestamp.iso8601().c_str());
  text += "  " + terminalText(author.value_or("-")) + " (" +
          terminalText(contextName.value_or("-")) + ")";
  return text + rowsText('+', inserted) + rowsText('~', updated) + rowsText('-', deleted) + "\n";
}

}  // namespace velloro
