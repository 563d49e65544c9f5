#pragma once

#include "HealthImport/ExportReader.h"
#include "HealthImport/ImportSink.h"

#include <filesystem>
#include <functional>

namespace velloro {

/// Reads lines of type,start,end,value,unit,source. The first may be this heading. Types are names
/// of cases or identifiers; an empty end means a moment, and an empty source "CSV". States and
/// activities of workouts stand as values.
[[nodiscard]] Result<void> readCSV(const ByteSource& source, ImportSink& sink);

/// Reads the database of the program Gadgetbridge: steps and heart rates of each minute, and
/// workouts.
[[nodiscard]] Result<void> readGadgetbridge(const std::filesystem::path& file, ImportSink& sink,
                                            const std::function<void(double)>& progress);

}  // namespace velloro
