#pragma once

#include "VelloroCore/Progress/TaskProgress.h"

namespace velloro {

/// A progress as it is stored and sent, with the tag that says which record it is:
///
/// `{"type": "discrete", "base": {"period": …, "expectedCompletions": 2, "numCompletions": 1}}`
struct TaskProgressCodable {
  TaskProgress base;

  /// By the hash, which takes in the record's type and all its members; so a progress equals itself
  /// even where a value in it is no number.
  bool operator==(const TaskProgressCodable& other) const;
  void hash(Hasher& hasher) const { hasher.combine(base); }

  void encode(Encoder& to) const;
  /// \throws DecodingError, also for a type that is none of the six.
  [[nodiscard]] static TaskProgressCodable decode(const Decoder& from);
};

}  // namespace velloro
