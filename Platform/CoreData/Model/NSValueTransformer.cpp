#include "CoreData/Model/NSValueTransformer.h"

#include <map>
#include <mutex>

namespace platform {
namespace {

struct Registry {
  std::mutex mutex;
  std::map<std::string, std::shared_ptr<const NSValueTransformer>, std::less<>> transformers;
};

Registry& registry() {
  static auto* instance = new Registry;
  return *instance;
}

}  // namespace

void NSValueTransformer::setValueTransformer(std::shared_ptr<const NSValueTransformer> transformer,
                                             std::string name) {
  const std::scoped_lock lock(registry().mutex);
  registry().transformers.insert_or_assign(std::move(name), std::move(transformer));
}

std::shared_ptr<const NSValueTransformer> NSValueTransformer::valueTransformerForName(
    std::string_view name) {
  const std::scoped_lock lock(registry().mutex);
  const auto found = registry().transformers.find(name);
  return found != registry().transformers.end() ? found->second : nullptr;
}

}  // namespace platform
