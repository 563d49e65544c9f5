#include "DataManager/PersistentHistoryFetcher.h"

namespace velloro {
namespace {

NSFetchRequest byOthers(const NSManagedObjectContext& context) {
  std::vector<NSPredicate> parts;
  if (const std::string& author = context.transactionAuthor(); !author.empty()) {
    parts.push_back(NSPredicate::format("%K != %@", {"author", author}));
  }
  if (const std::string& name = context.name(); !name.empty()) {
    parts.push_back(NSPredicate::format("%K != %@", {"contextName", name}));
  }
  auto request = NSPersistentHistoryTransaction::fetchRequest();
  request.setPredicate(NSCompoundPredicate::andPredicateWithSubpredicates(std::move(parts)));
  return request;
}

}  // namespace

Result<NSPersistentHistoryResult> PersistentHistoryFetcher::fetch() const {
  auto request = NSPersistentHistoryChangeRequest::fetchHistoryAfterDate(fromDate);
  request.setFetchRequest(byOthers(*context));
  return context->execute(request);
}

}  // namespace velloro
