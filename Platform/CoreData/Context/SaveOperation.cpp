#include "CoreData/Context/SaveOperation.h"

#include "CoreData/Store/SqliteValues.h"
#include "Foundation/Values/Try.h"

#include <algorithm>

namespace platform {

Result<void> SaveOperation::write() {
  for (const auto& [id, object] : context_.deleted_) toDelete_.push_back(id);
  using Step = Result<void> (SaveOperation::*)();
  for (const Step step :
       {&SaveOperation::deleteRows, &SaveOperation::settleOrphans, &SaveOperation::insertRows,
        &SaveOperation::updateRows, &SaveOperation::writeLinks}) {
    TRY((this->*step)());
  }
  // What was changed and then went with its owner is deleted, and nothing else.
  std::erase_if(changes_.updated, [this](NSManagedObjectID id) {
    return changes_.deleted.contains(id) || changes_.inserted.contains(id);
  });
  return {};
}

Result<void> SaveOperation::deleteRows() {
  while (!toDelete_.empty()) {
    const NSManagedObjectID id = toDelete_.back();
    toDelete_.pop_back();
    if (!gone_.insert(id).second) continue;
    TRY(deleteRow(id));
  }
  return {};
}

Result<void> SaveOperation::deleteRow(NSManagedObjectID id) {
  for (const NSRelationshipDescription& relationship : id.entity->relationships()) {
    if (relationship.storage == Storage::own) continue;
    TRY(releaseMembers(id, relationship));
  }
  TRY(connection_.run(store_.table(*id.entity).deleteRow, id.key));
  if (connection_.changes() > 0) changes_.deleted.insert(id);
  hasRow_[id] = false;
  return {};
}

/// The file may know members that the context doesn't.
Result<void> SaveOperation::releaseMembers(NSManagedObjectID id,
                                           const NSRelationshipDescription& relationship) {
  const NSEntityDescription& destination = *relationship.destination;
  const bool areLinks = relationship.storage == Storage::links;
  const std::string condition = " WHERE " +
                                (areLinks ? relationship.isFirstInLinks ? "first" : "second"
                                          : sqlName(relationship.inverseName)) +
                                " = ?";
  const std::string table = sqlName(areLinks ? relationship.linkTable : destination.name());
  const char* column = !areLinks ? "pk" : relationship.isFirstInLinks ? "second" : "first";
  const auto members =
      TRY(keys(std::string("SELECT ") + column + " FROM " + table + condition, id.key));
  if (members.empty()) return {};
  const bool owns = relationship.deleteRule == NSDeleteRule::cascade;
  for (const std::int64_t key : members) {
    if (owns) {
      toDelete_.push_back(NSManagedObjectID{&destination, key});
    } else {
      changes_.updated.insert(NSManagedObjectID{&destination, key});
      if (!areLinks) ++ownWrites_[NSManagedObjectID{&destination, key}];
    }
  }
  if (areLinks) return connection_.run("DELETE FROM " + table + condition, id.key);
  if (owns) return {};
  return connection_.run("UPDATE " + table + " SET " + sqlName(relationship.inverseName) +
                             " = NULL, version = version + 1" + condition,
                         id.key);
}

Result<SaveOperation::Keys> SaveOperation::keys(const std::string& sql, std::int64_t key) {
  auto query = TRY(connection_.prepare(sql));
  query.bind(1, key);
  Keys result;
  for (;;) {
    const auto row = TRY(query.step());
    if (!row) return result;
    result.push_back(query.integer(0));
  }
}

Result<bool> SaveOperation::hasRow(NSManagedObjectID id) {
  if (const auto known = hasRow_.find(id); known != hasRow_.end()) return known->second;
  const auto version = TRY(connection_.integer(store_.table(*id.entity).rowVersion, id.key));
  return hasRow_[id] = version.has_value();
}

/// Again and again, for what goes may own what stays so far.
Result<void> SaveOperation::settleOrphans() {
  for (bool again = true; again;) {
    again = false;
    for (const auto* pending : {&context_.inserted_, &context_.updated_}) {
      for (const auto& [id, object] : *pending) {
        if (gone_.contains(id) || dropped_.contains(id)) continue;
        const auto wentToo = TRY(settleOrphan(*object));
        again = again || wentToo;
      }
    }
    TRY(deleteRows());
  }
  return {};
}

/// Whether the object goes because its owner has.
Result<bool> SaveOperation::settleOrphan(const NSManagedObject& object) {
  for (const NSRelationshipDescription& relationship : object.entity().relationships()) {
    if (relationship.storage != Storage::own) continue;
    const bool isNew = object.isInserted() ||
                       std::ranges::find(object.changes_, relationship.slot,
                                         &NSManagedObject::Change::slot) != object.changes_.end();
    if (!isNew) continue;
    const auto* to = std::get_if<NSManagedObjectID>(&object.values_[relationship.slot]);
    if (to == nullptr) continue;
    const auto gone = hasGone(*to);
    if (!gone) return gone;
    if (!*gone) continue;
    const auto* inverse = relationship.inverse;
    if (inverse == nullptr || inverse->deleteRule != NSDeleteRule::cascade) {
      emptied_.insert({object.id_, relationship.slot});
      continue;
    }
    if (object.isInserted()) {
      dropped_.insert(object.id_);
    } else {
      toDelete_.push_back(object.id_);
    }
    return true;
  }
  return false;
}

Result<bool> SaveOperation::hasGone(NSManagedObjectID id) {
  if (id.isTemporaryID()) return dropped_.contains(id) || !context_.inserted_.contains(id);
  const auto isThere = hasRow(id);
  if (!isThere) return isThere;
  return !*isThere;
}

Result<void> SaveOperation::reserveKeys() {
  std::map<const NSEntityDescription*, std::int64_t> counts;
  for (const auto& [id, object] : context_.inserted_) counts[id.entity] += !dropped_.contains(id);
  std::map<const NSEntityDescription*, std::int64_t> next;
  for (const auto& [entity, count] : counts) {
    const auto last = TRY(connection_.integer(store_.table(*entity).reserveKeys, count));
    next[entity] = last.value_or(0) - count;
  }
  for (const auto& [id, object] : context_.inserted_) {
    if (!dropped_.contains(id)) permanent_[id] = {id.entity, ++next[id.entity]};
  }
  return {};
}

Result<void> SaveOperation::insertRows() {
  if (context_.inserted_.empty()) return {};
  TRY(reserveKeys());
  std::optional<SqliteStatement> insert;
  const NSEntityDescription* entity = nullptr;
  for (const auto& [id, object] : context_.inserted_) {
    if (dropped_.contains(id)) continue;
    if (std::exchange(entity, id.entity) != id.entity) {
      insert.reset();
      auto prepared = TRY(connection_.prepare(store_.table(*entity).insertRow));
      insert.emplace(std::move(prepared));
    }
    const NSManagedObjectID saved = permanent(id);
    insert->bind(1, saved.key);
    for (std::size_t slot = 0; slot < entity->slots().size(); ++slot) {
      bind(*insert, static_cast<int>(slot) + 2, *object, slot);
    }
    TRY(insert->run());
    changes_.inserted.insert(changes_.inserted.end(), saved);
  }
  return {};
}

void SaveOperation::bind(SqliteStatement& statement, int parameter, const NSManagedObject& object,
                         std::size_t slot) const {
  static const PropertyValue none;
  const PropertyValue& value = object.values_[slot];
  const auto* id = std::get_if<NSManagedObjectID>(&value);
  if (id == nullptr) return bindValue(statement, parameter, value);
  if (emptied_.contains({object.id_, slot})) return bindValue(statement, parameter, none);
  statement.bind(parameter, permanent(*id).key);
}

NSManagedObjectID SaveOperation::permanent(NSManagedObjectID id) const {
  const auto known = permanent_.find(id);
  return known != permanent_.end() ? known->second : id;
}

Result<void> SaveOperation::updateRows() {
  for (const auto& [id, object] : context_.updated_) {
    if (gone_.contains(id)) continue;
    TRY(updateRow(*object));
  }
  return {};
}

Result<void> SaveOperation::updateRow(NSManagedObject& object) {
  const EntityTable& table = store_.table(object.entity());
  std::string sql = "UPDATE " + table.name + " SET ";
  for (const auto& change : object.changes_) {
    sql += sqlName(object.entity().slots()[change.slot].name) + " = ?, ";
  }
  sql += "version = version + 1 WHERE pk = ? RETURNING version";
  auto update = TRY(connection_.prepare(sql));
  int parameter = 0;
  for (const auto& change : object.changes_) bind(update, ++parameter, object, change.slot);
  update.bind(++parameter, object.id_.key);
  const auto row = TRY(update.step());
  if (!row) {
    gone_.insert(object.id_);
    return {};
  }
  const bool othersChangedIt = update.integer(0) != object.version_ + ownWrites_[object.id_] + 1;
  if (othersChangedIt && context_.mergePolicy_ == NSMergePolicy::error) {
    return failure<StoreError>(StoreError::Kind::conflict,
                               "another has saved the same " + object.entity().name());
  }
  versions_[object.id_] = othersChangedIt ? 0 : update.integer(0);
  changes_.updated.insert(object.id_);
  return update.run();
}

Result<void> SaveOperation::writeLinks() {
  for (const auto& [link, isThere] : context_.links_) {
    const auto firstGone = TRY(hasGone(link.first));
    const auto secondGone = TRY(hasGone(link.second));
    if (firstGone || secondGone) continue;
    const NSManagedObjectID first = permanent(link.first);
    const NSManagedObjectID second = permanent(link.second);
    const std::string table = sqlName(link.relationship->linkTable);
    const auto done = connection_.run(
        isThere ? "INSERT OR IGNORE INTO " + table + " (first, second) VALUES (?, ?)"
                : "DELETE FROM " + table + " WHERE first = ? AND second = ?",
        first.key, second.key);
    if (!done) return done;
    if (connection_.changes() > 0) changes_.updated.insert({first, second});
  }
  return {};
}

void SaveOperation::apply() {
  applyInserted();
  applyUpdated();
  for (const auto& [id, object] : std::exchange(context_.deleted_, {})) context_.detach(*object);
  context_.links_.clear();
  for (const NSManagedObjectID id : changes_.deleted) {
    if (const auto object = context_.registered(id)) context_.detach(*object);
  }
  for (const NSManagedObjectID id : changes_.updated) {
    const auto object = context_.registered(id);
    if (object != nullptr && !versions_.contains(id)) object->becomeFault();
  }
}

void SaveOperation::applyInserted() {
  for (const auto& [id, object] : std::exchange(context_.inserted_, {})) {
    if (dropped_.contains(id)) {
      context_.detach(*object);
      continue;
    }
    context_.objects_.remove(id);
    makeSaved(*object, 1);
    object->id_ = permanent(id);
    context_.objects_[object->id_] = object;
  }
}

void SaveOperation::applyUpdated() {
  for (const auto& [id, object] : std::exchange(context_.updated_, {})) {
    if (gone_.contains(id)) {
      context_.detach(*object);
      continue;
    }
    const std::int64_t version = versions_.at(id);
    makeSaved(*object, version);
    if (version == 0) object->becomeFault();
  }
}

void SaveOperation::makeSaved(NSManagedObject& object, std::int64_t version) {
  const NSEntityDescription& entity = object.entity();
  for (std::size_t slot = entity.attributes().size(); slot < entity.slots().size(); ++slot) {
    if (auto* id = std::get_if<NSManagedObjectID>(&object.values_[slot])) {
      if (emptied_.contains({object.id_, slot})) {
        object.values_[slot] = {};
      } else {
        *id = permanent(*id);
      }
    }
  }
  object.version_ = version;
  object.changes_.clear();
  object.state_ = NSManagedObject::State::saved;
}

}  // namespace platform
