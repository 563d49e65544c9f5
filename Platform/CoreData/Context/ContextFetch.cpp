// The reading side of NSManagedObjectContext: rows from the file, and the unsaved changes over
// them.

#include "CoreData/Context/NSManagedObjectContext.h"
#include "CoreData/Context/NSManagedRow.h"
#include "CoreData/Context/NSPersistentStoreCoordinator.h"
#include "CoreData/Fetch/FetchPlan.h"
#include "CoreData/Store/SqliteStore.h"
#include "CoreData/Store/SqliteValues.h"
#include "CoreData/Store/StoreHistory.h"
#include "Foundation/Values/Try.h"

#include <algorithm>
#include <cassert>
#include <limits>

namespace platform {
namespace {

std::unexpected<ErrorPtr> notOpen() {
  return failure<StoreError>(StoreError::Kind::notOpen, "no store is open");
}

/// Room for rows, in blocks that grow with their number: an allocation for each would cost more
/// than reading it.
class RowBlocks {
 public:
  explicit RowBlocks(std::size_t slots) : slots_(slots) {}

  RowValues next() {
    if (left_ == 0) {
      rows_ = std::min(rows_ * 2, mostRows);
      left_ = rows_;
      block_ = std::make_shared<PropertyValue[]>(rows_ * slots_);
    }
    return {block_, block_.get() + slots_ * --left_};
  }

 private:
  static constexpr std::size_t mostRows = 32;

  std::size_t slots_;
  std::size_t rows_ = 1;
  std::size_t left_ = 0;
  RowValues block_;
};

std::string columnsOf(const NSEntityDescription& entity, std::initializer_list<std::size_t> slots) {
  std::string columns = "pk";
  for (const std::size_t slot : slots) columns += ", " + sqlName(entity.slots()[slot].name);
  return columns;
}

void bindAll(SqliteStatement& query, const PropertyValues& values) {
  int parameter = 0;
  for (const PropertyValue& value : values) bindValue(query, ++parameter, value);
}

}  // namespace

Result<FetchPlan> NSManagedObjectContext::plan(const NSFetchRequest& request) const {
  const auto* entity = coordinator_->managedObjectModel().entity(request.entityName());
  if (entity == nullptr) {
    return failure<StoreError>(StoreError::Kind::invalidRequest,
                               "the model has no entity \"" + request.entityName() + "\"");
  }
  return FetchPlan::make(request, *entity);
}

bool NSManagedObjectContext::hasEntity(const Pending& pending, const NSEntityDescription& entity) {
  const auto first = pending.lower_bound({&entity, std::numeric_limits<std::int64_t>::min()});
  return first != pending.end() && first->first.entity == &entity;
}

bool NSManagedObjectContext::hasPending(const NSEntityDescription& entity) const {
  return hasEntity(inserted_, entity) || hasEntity(updated_, entity) || hasEntity(deleted_, entity);
}

bool NSManagedObjectContext::mustEvaluate(const FetchPlan& plan) const {
  const auto isPending = [this](const auto* entity) { return hasPending(*entity); };
  return std::ranges::any_of(plan.otherEntities(), isPending) ||
         (plan.readsLinks() && !links_.empty());
}

FetchResult<NSManagedObject> NSManagedObjectContext::fetch(const NSFetchRequest& request) {
  assert(isOnQueue() && "a context is used off its queue");
  auto objects = fetchObjects(request);
  if (!objects) noteFailedRead(objects.error());
  return objects;
}

FetchResult<NSManagedObject> NSManagedObjectContext::fetchObjects(const NSFetchRequest& request) {
  if (store() == nullptr) return notOpen();
  const auto plan = this->plan(request);
  if (!plan) return std::unexpected(plan.error());
  const NSEntityDescription& entity = plan->entity();
  const EntityTable& table = store()->table(entity);
  const bool asFaults = request.returnsObjectsAsFaults();
  const std::string_view columns = asFaults ? "pk" : std::string_view(table.columns);
  const std::size_t limit = request.fetchLimit();
  const bool evaluates = mustEvaluate(*plan);
  if (!evaluates && !hasPending(entity)) {
    auto objects = readObjects(entity, plan->select(columns, limit), asFaults);
    if (objects) group(entity, *objects);
    return objects;
  }
  // Rows that have unsaved changes may drop out, so that further ones move up.
  const std::size_t spare = updated_.size() + deleted_.size();
  auto objects = readObjects(
      entity,
      evaluates ? plan->selectAll(columns) : plan->select(columns, limit > 0 ? limit + spare : 0),
      asFaults);
  if (!objects) return objects;
  std::erase_if(*objects, [&](const auto& object) {
    return object->isUpdated() || object->isDeleted() || (evaluates && !plan->matches(*object));
  });
  addPending(entity, *plan, *objects);
  plan->sort(*objects);
  if (limit > 0 && objects->size() > limit) objects->resize(limit);
  group(entity, *objects);
  return objects;
}

void NSManagedObjectContext::addPending(const NSEntityDescription& entity, const FetchPlan& plan,
                                        Objects& objects) const {
  for (const Pending* pending : {&updated_, &inserted_}) {
    const auto first = pending->lower_bound({&entity, std::numeric_limits<std::int64_t>::min()});
    for (auto at = first; at != pending->end() && at->first.entity == &entity; ++at) {
      if (plan.matches(*at->second)) objects.push_back(at->second);
    }
  }
}

FetchResult<NSManagedObject> NSManagedObjectContext::readObjects(const NSEntityDescription& entity,
                                                                 const SqlText& sql,
                                                                 bool asFaults) {
  const auto open = store();
  const auto connection = TRY(open->lease(transaction_.get()));
  auto query = TRY(connection->prepare(sql.text));
  bindAll(query, sql.values);
  Objects objects;
  RowBlocks blocks(entity.slots().size());
  for (;;) {
    const auto row = TRY(query.step());
    if (!row) return objects;
    auto& object = objects.emplace_back(objectWithID({&entity, query.integer(0)}));
    if (asFaults || object->state_ != State::saved) continue;
    const std::int64_t version = query.integer(1);
    if (!object->isFault_ && object->version_ == version) continue;
    RowValues values = blocks.next();
    readValues(query, entity, 2, values.get());
    object->takeValues(version, std::move(values));
  }
}

Result<void> NSManagedObjectContext::readRows(
    const NSFetchRequest& request, std::initializer_list<std::size_t> slots,
    const std::function<void(const NSManagedRow&)>& visit) {
  assert(isOnQueue() && "a context is used off its queue");
  auto read = visitRows(request, slots, visit);
  if (!read) noteFailedRead(read.error());
  return read;
}

Result<void> NSManagedObjectContext::visitRows(
    const NSFetchRequest& request, std::initializer_list<std::size_t> slots,
    const std::function<void(const NSManagedRow&)>& visit) {
  const auto open = store();
  if (open == nullptr) return notOpen();
  const auto plan = TRY(this->plan(request));
  const NSEntityDescription& entity = plan.entity();
  if (mustEvaluate(plan) || hasPending(entity)) {
    for (const auto& object : TRY(fetchObjects(request))) {
      visit({object->objectID(), &object->slotValue(0)});
    }
    return {};
  }
  const SqlText sql = plan.select(columnsOf(entity, slots), request.fetchLimit());
  const auto connection = TRY(open->lease(transaction_.get()));
  auto query = TRY(connection->prepare(sql.text));
  bindAll(query, sql.values);
  PropertyValues values(entity.slots().size());
  while (TRY(query.step())) {
    int column = 0;
    const NSManagedObjectID id{&entity, query.integer(column)};
    for (const std::size_t slot : slots) {
      values[slot] = PropertyValue();
      readValue(query, entity.slots()[slot], ++column, values[slot]);
    }
    visit({id, values.data()});
  }
  return {};
}

Result<std::size_t> NSManagedObjectContext::count(const NSFetchRequest& request) {
  assert(isOnQueue() && "a context is used off its queue");
  auto number = countObjects(request);
  if (!number) noteFailedRead(number.error());
  return number;
}

Result<std::size_t> NSManagedObjectContext::countObjects(const NSFetchRequest& request) {
  if (store() == nullptr) return notOpen();
  const auto plan = TRY(this->plan(request));
  if (mustEvaluate(plan) || hasPending(plan.entity())) {
    const auto objects = TRY(fetch(request));
    return objects.size();
  }
  const SqlText sql = plan.select("1", request.fetchLimit());
  const auto connection = TRY(store()->lease(transaction_.get()));
  auto query = TRY(connection->prepare("SELECT count(*) FROM (" + sql.text + ")"));
  bindAll(query, sql.values);
  (void)TRY(query.step());
  return static_cast<std::size_t>(query.integer(0));
}

Result<NSPersistentHistoryResult> NSManagedObjectContext::execute(
    const NSPersistentHistoryChangeRequest& request) {
  const auto open = store();
  if (open == nullptr) return notOpen();
  const auto connection = TRY(open->lease(transaction_.get()));
  auto history = readHistory(*connection, open->model(), request);
  if (!history) noteFailedRead(history.error());
  return history;
}

}  // namespace platform
