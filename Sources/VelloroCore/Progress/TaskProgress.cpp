#include "VelloroCore/Progress/TaskProgress.h"

#include "Foundation/Text/String.h"

#include <functional>

namespace velloro {
namespace {

template <typename Record>
double progressPctOf(const Record& record, Date now) {
  if constexpr (requires { record.progressPct(now); }) {
    return record.progressPct(now);
  } else if constexpr (requires { record.progressPct(); }) {
    return record.progressPct();
  } else {
    return record.progressPct;
  }
}

template <typename Record>
double remainingValueOf(const Record& record, Date now) {
  if constexpr (requires { record.remainingValue(now); }) {
    return record.remainingValue(now);
  } else {
    return record.remainingValue();
  }
}

}  // namespace

void TaskProgress::hash(Hasher& hasher) const {
  std::visit([&]<typename R>(const R& it) { hasher.combine(R::type, it); }, record);
}

std::string TaskProgress::debugDescription(Date now) const {
  return stringWithFormat(
      "TaskProgress[%s, %lld of %lld completions, %g of %g]",
      platform::debugDescription(type()).c_str(), static_cast<long long>(numCompletions(now)),
      static_cast<long long>(expectedCompletions()), currentValue(now), targetValue());
}

TaskProgressType TaskProgress::type() const {
  return std::visit([]<typename R>(const R&) { return R::type; }, record);
}

const DatedPeriod& TaskProgress::period() const {
  return std::visit([](const auto& it) -> const DatedPeriod& { return it.period; }, record);
}

void TaskProgress::setPeriod(const DatedPeriod& period) {
  std::visit([&](auto& it) { it.period = period; }, record);
}

// A record's member may be a field or a function: std::invoke reads either.

std::int64_t TaskProgress::expectedCompletions() const {
  return std::visit(
      []<typename R>(const R& it) -> std::int64_t {
        if constexpr (requires { &R::expectedCompletions; }) {
          return it.expectedCompletions;
        } else {
          return 1;
        }
      },
      record);
}

std::int64_t TaskProgress::numCompletions(Date now) const {
  return std::visit(
      [&]<typename R>(const R& it) -> std::int64_t {
        if constexpr (requires { &R::numCompletions; }) {
          return std::invoke(&R::numCompletions, it);
        } else {
          return progressPctOf(it, now) >= 1 ? 1 : 0;
        }
      },
      record);
}

double TaskProgress::targetValue() const {
  return std::visit(
      []<typename R>(const R& it) -> double {
        if constexpr (requires { &R::targetValue; }) {
          return std::invoke(&R::targetValue, it);
        } else {
          return 1;
        }
      },
      record);
}

double TaskProgress::currentValue(Date now) const {
  return std::visit(
      [&]<typename R>(const R& it) -> double {
        if constexpr (requires { &R::currentValue; }) {
          return std::invoke(&R::currentValue, it);
        } else {
          return progressPctOf(it, now);
        }
      },
      record);
}

double TaskProgress::valuePerCompletion() const {
  return std::visit(
      []<typename R>(const R& it) -> double {
        if constexpr (requires { it.valuePerCompletion(); }) {
          return it.valuePerCompletion();
        } else {
          return 1;
        }
      },
      record);
}

double TaskProgress::remainingValue(Date now) const {
  return std::visit([&](const auto& it) { return remainingValueOf(it, now); }, record);
}

double TaskProgress::remainingValueForCurrentCompletion(Date now) const {
  return std::visit(
      [&]<typename R>(const R& it) -> double {
        if constexpr (requires { it.remainingValueForCurrentCompletion(); }) {
          return it.remainingValueForCurrentCompletion();
        } else {
          return remainingValueOf(it, now);
        }
      },
      record);
}

double TaskProgress::progressPct(Date now) const {
  return std::visit([&](const auto& it) { return progressPctOf(it, now); }, record);
}

double TaskProgress::currentCompletionProgressPct() const {
  return std::visit(
      []<typename R>(const R& it) -> double {
        if constexpr (requires { &R::currentCompletionProgressPct; }) {
          return std::invoke(&R::currentCompletionProgressPct, it);
        } else {
          return 0;
        }
      },
      record);
}

TaskProgress TaskProgress::zeroProgress() const {
  return std::visit([](const auto& it) -> TaskProgress { return it.zeroProgress(); }, record);
}

TaskProgress TaskProgress::nextProgress() const {
  return std::visit([](const auto& it) -> TaskProgress { return it.nextProgress(); }, record);
}

TaskProgress TaskProgress::completeProgress() const {
  return std::visit([](const auto& it) -> TaskProgress { return it.completeProgress(); }, record);
}

}  // namespace velloro
