#include "DataManager/PersistentHistoryFetcher.h"

namespace velloro {

Result<NSPersistentHistoryResult> PersistentHistoryFetcher::fetch() const {
  auto request = NSPersistentHistoryChangeRequest::fetchHistoryAfterDate(fromDate);
  request.setFetchRequest(fetchRequest());
  return context->execute(request);
}

NSFetchRequest PersistentHistoryFetcher::fetchRequest() const {
  using Transaction = NSPersistentHistoryTransaction;
  std::vector<Predicate<Transaction>> parts;
  if (const std::string& author = context->transactionAuthor(); !author.empty()) {
    parts.push_back(Transaction::Attributes::author != author);
  }
  if (const std::string& name = context->name(); !name.empty()) {
    parts.push_back(Transaction::Attributes::contextName != name);
  }
  auto request = Transaction::fetchRequest();
  request.setPredicate(allOf(parts));
  return request;
}

}  // namespace velloro
