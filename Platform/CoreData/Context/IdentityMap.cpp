#include "CoreData/Context/IdentityMap.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace platform {

std::shared_ptr<NSManagedObject> IdentityMap::find(NSManagedObjectID id) const {
  return entries_.empty() ? nullptr : entries_[placeOf(id)].object.lock();
}

std::weak_ptr<NSManagedObject>& IdentityMap::operator[](NSManagedObjectID id) {
  if (taken_ * 4 >= entries_.size() * 3) makeRoom();
  Entry& entry = entries_[placeOf(id)];
  if (entry.id.entity == nullptr) {
    entry.id = id;
    ++taken_;
  }
  return entry.object;
}

/// The ID keeps its place: those behind it are found by way of it.
void IdentityMap::remove(NSManagedObjectID id) {
  if (!entries_.empty()) entries_[placeOf(id)].object.reset();
}

/// Where the ID is, or the free place that it would take.
std::size_t IdentityMap::placeOf(NSManagedObjectID id) const {
  // The high bits of the product: keys that follow each other would fill whole stretches.
  constexpr std::size_t goldenRatio = 0x9e3779b97f4a7c15U;
  const int bits = std::countr_zero(entries_.size());
  std::size_t place = std::hash<NSManagedObjectID>{}(id)*goldenRatio >> (64 - bits);
  while (entries_[place].id != id && entries_[place].id.entity != nullptr) {
    place = (place + 1) & (entries_.size() - 1);
  }
  return place;
}

void IdentityMap::makeRoom() {
  const auto isInUse = [](const Entry& entry) { return !entry.object.expired(); };
  const auto used = static_cast<std::size_t>(std::ranges::count_if(entries_, isInUse));
  auto former = std::exchange(
      entries_, std::vector<Entry>(std::max<std::size_t>(16, std::bit_ceil(used * 2 + 1))));
  taken_ = 0;
  for (Entry& entry : former) {
    if (isInUse(entry)) (*this)[entry.id] = std::move(entry.object);
  }
}

}  // namespace platform
