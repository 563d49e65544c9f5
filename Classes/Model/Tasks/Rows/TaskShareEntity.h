#pragma once

#include "CoreData/Model/EntityClass.h"
#include "Foundation/Coding/RawValue.h"
#include "Tasks/Columns/StoredForms.h"
#include "VelloroTaskShare/SharedTaskParticipant.h"
#include "VelloroTaskShare/TaskCloudSummary.h"

#include <vector>

namespace velloro {

class TaskEntity;
class TaskShareOwnerEntity;

/// `TaskShareEntity::ShareStatus`.
enum class TaskShareRowStatus : std::uint8_t {
  localTask,                   ///< One's own, shared with others.
  externalTask,                ///< Another's, shared with this user.
  externalTaskNoLongerShared,  ///< The same, after the other has withdrawn it.
};

constexpr auto rawValues(std::type_identity<TaskShareRowStatus>) {
  using enum TaskShareRowStatus;
  return rawTexts<TaskShareRowStatus>(
      {{localTask, "L"}, {externalTask, "E"}, {externalTaskNoLongerShared, "X"}});
}

/// What is known of a task's sharing. One row a shared task.
class TaskShareEntity : public EntityClass<TaskShareEntity> {
 public:
  using Text = std::optional<std::string>;
  using ShareStatus = TaskShareRowStatus;
  using Participants = std::vector<SharedTaskParticipant>;

  inline static auto description = NSEntityDescription::of<TaskShareEntity>();
  inline static const Attribute<std::optional<ShareStatus>> status{description, "status"};
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
  inline static const Attribute<std::optional<Participants>> participantsJson{description,
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
};

}  // namespace velloro
