#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Values/Error.h"
#include "HealthKit/HKHealthStore.h"
#include "OxHealthKit/OxHKSampleType.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velloro {

/// Where health data come from.
enum class HealthImportForm {
  export_,  ///< The archive that a phone exports, or the "export.xml" in it.
  csv,      ///< type,start,end,value,unit,source
  gadgetbridge,
};

/// What became of the records of a file.
struct HealthImportReport {
  /// A record that was left out, since it is damaged.
  struct Skip {
    std::int64_t line = 0;
    std::string why;

    static constexpr auto codingKeys = keys(key("line", &Skip::line), key("why", &Skip::why));
  };

  std::int64_t added = 0;        ///< Samples.
  std::int64_t known = 0;        ///< Samples that were there.
  std::int64_t skipped = 0;      ///< Damaged ones.
  std::int64_t ignored = 0;      ///< Those of a type that the program does not know.
  std::int64_t summaries = 0;    ///< Days of activity that are new or changed.
  std::vector<Skip> skips = {};  ///< The first hundred.

  static constexpr auto codingKeys = keys(
      key("added", &HealthImportReport::added), key("known", &HealthImportReport::known),
      key("skipped", &HealthImportReport::skipped), key("ignored", &HealthImportReport::ignored),
      key("summaries", &HealthImportReport::summaries), key("skips", &HealthImportReport::skips));
};

/// Reads a file into a health store, in batches of one transaction each. Samples that are there are
/// not written again, so that an import can be repeated, and taken up after it was interrupted.
///
/// ```
/// const auto imported = importHealthData(*store, "export.zip", {}, {});
/// imported.report.added;
/// imported.error;    // null
/// ```
struct HealthImport {
  HealthImportReport report;
  ErrorPtr error;  ///< Why the file could not be read to its end. What was read before stands.
};

/// \param form Absent to tell by the content.
/// \param progress Called from time to time with the share that is read, 0 to 1.
[[nodiscard]] HealthImport importHealthData(const HKHealthStore& store,
                                            const std::filesystem::path& file,
                                            std::optional<HealthImportForm> form,
                                            const std::function<void(double)>& progress);

}  // namespace velloro
