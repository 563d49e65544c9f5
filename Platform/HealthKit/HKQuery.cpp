#include "HealthKit/HKQuery.h"

#include <algorithm>

namespace platform {

HKPredicate HKPredicate::samples(Date start, Date end) {
  HKPredicate made;
  made.kind_ = Kind::window;
  made.window_ = {start, end};
  return made;
}

HKPredicate HKPredicate::ownSource(std::string bundleIdentifier) {
  HKPredicate made = source(std::move(bundleIdentifier));
  made.kind_ = Kind::ownSource;
  return made;
}

HKPredicate HKPredicate::source(std::string bundleIdentifier) {
  HKPredicate made;
  made.kind_ = Kind::source;
  made.value_ = std::move(bundleIdentifier);
  return made;
}

HKPredicate HKPredicate::metadata(std::string key, Comparison comparison, std::string value) {
  HKPredicate made;
  made.kind_ = Kind::metadata;
  made.key_ = std::move(key);
  made.value_ = std::move(value);
  made.comparison_ = comparison;
  return made;
}

HKPredicate HKPredicate::workouts(std::string activityType) {
  HKPredicate made;
  made.kind_ = Kind::workouts;
  made.value_ = std::move(activityType);
  return made;
}

HKPredicate HKPredicate::all(std::vector<HKPredicate> parts) {
  HKPredicate made;
  made.kind_ = Kind::all;
  made.parts_ = std::move(parts);
  return made;
}

HKPredicate HKPredicate::any(std::vector<HKPredicate> parts) {
  HKPredicate made = all(std::move(parts));
  made.kind_ = Kind::any;
  return made;
}

namespace {

bool overlaps(const HKSample& sample, const HKPredicate::Window& window) {
  if (sample.start == sample.end) {
    return window.first <= sample.start && sample.start < window.second;
  }
  return sample.start < window.second && window.first < sample.end;
}

}  // namespace

bool HKPredicate::matches(const HKSample& sample) const {
  const auto holds = [&](const HKPredicate& part) { return part.matches(sample); };
  switch (kind_) {
    case Kind::none:
      return true;
    case Kind::window:
      return overlaps(sample, window_);
    case Kind::ownSource:
      return !sample.source.isImported && sample.source.bundleIdentifier == value_;
    case Kind::source:
      return sample.source.bundleIdentifier == value_;
    case Kind::metadata: {
      const auto found = sample.metadata.find(key_);
      const auto* text = found != sample.metadata.end() ? found->second.text() : nullptr;
      return (text != nullptr && *text == value_) == (comparison_ == Comparison::equal);
    }
    case Kind::workouts:
      return sample.workout() != nullptr && sample.workout()->activityType == value_;
    case Kind::all:
      return std::ranges::all_of(parts_, holds);
    case Kind::any:
      return std::ranges::any_of(parts_, holds);
  }
  return false;
}

std::optional<HKPredicate::Window> HKPredicate::window() const {
  if (kind_ == Kind::window) return window_;
  if (kind_ != Kind::all) return std::nullopt;
  std::optional<Window> common;
  for (const HKPredicate& part : parts_) {
    const auto own = part.window();
    if (!own) continue;
    common =
        common ? Window(std::max(common->first, own->first), std::min(common->second, own->second))
               : *own;
  }
  return common;
}

}  // namespace platform
