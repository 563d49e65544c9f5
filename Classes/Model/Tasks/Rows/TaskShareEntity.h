#pragma once

#include "CoreData/Model/EntityClass.h"
#include "Foundation/Coding/RawValue.h"
#include "VelloroTaskShare/SharedTaskParticipant.h"
#include "VelloroTaskShare/TaskCloudSummary.h"

#include <vector>

namespace velloro {

class TaskEntity;
class TaskShareOwnerEntity;

/// What is known of a task's sharing. One row a shared task.
class TaskShareEntity : public EntityClass<TaskShareEntity> {
 public:
  using Text = std::optional<std::string>;

  enum class ShareStatus : std::uint8_t {
    localTask,                   ///< One's own, shared with others.
    externalTask,                ///< Another's, shared with this user.
    externalTaskNoLongerShared,  ///< The same, after the other has withdrawn it.
  };

  inline static auto description = NSEntityDescription::of<TaskShareEntity>();
  inline static const Attribute<Text> status{description, "status"};  ///< Of `ShareStatus`.
  /// When `status` last changed.
  inline static const Attribute<std::optional<Date>> statusUpdated{description, "statusUpdated"};
  // The cloud record of the task, and its share.
  inline static const Attribute<Text> ckRecordIdRecordName{description, "ckRecordIdRecordName"};
  inline static const Attribute<Text> ckRecordIdZoneName{description, "ckRecordIdZoneName"};
  inline static const Attribute<Text> ckRecordIdZoneOwnerName{description,
                                                              "ckRecordIdZoneOwnerName"};
  inline static const Attribute<Text> ckShareIdRecordName{description, "ckShareIdRecordName"};
  inline static const Attribute<Text> ckShareIdZoneName{description, "ckShareIdZoneName"};
  inline static const Attribute<Text> ckShareIdZoneOwnerName{description, "ckShareIdZoneOwnerName"};
  // The cloud's last error.
  inline static const Attribute<Text> ckError{description, "ckError"};
  inline static const Attribute<std::optional<Date>> ckErrorUpdated{description, "ckErrorUpdated"};
  /// JSON of a list of `SharedTaskParticipant`.
  inline static const Attribute<std::optional<Data>> participantsJson{description,
                                                                      "participantsJson"};
  inline static const TransformableAttribute<TaskCloudSummaryCoreDataContainer> summaryJson{
      description, "summaryJson", "TaskCloudSummaryValueTransformer"};
  /// The summary's `summaryHash`.
  inline static const Attribute<std::int64_t> summaryJsonHashValue{description,
                                                                   "summaryJsonHashValue"};
  /// When the summary last changed.
  inline static const Attribute<std::optional<Date>> summaryJsonUpdated{description,
                                                                        "summaryJsonUpdated"};
  inline static const ToOne<TaskShareOwnerEntity> owner{description, "owner", "taskShare"};
  inline static const ToOne<TaskEntity> task{description, "task", "taskShare"};

  [[nodiscard]] std::optional<ShareStatus> shareStatus() const;
  /// Empty when the list can't be read.
  [[nodiscard]] std::vector<SharedTaskParticipant> participants() const;
  /// Absent when there is none, or it can't be read.
  [[nodiscard]] std::optional<TaskCloudSummary> summary() const;
};

constexpr auto rawValues(std::type_identity<TaskShareEntity::ShareStatus>) {
  using enum TaskShareEntity::ShareStatus;
  return rawTexts<TaskShareEntity::ShareStatus>(
      {{localTask, "L"}, {externalTask, "E"}, {externalTaskNoLongerShared, "X"}});
}

}  // namespace velloro
