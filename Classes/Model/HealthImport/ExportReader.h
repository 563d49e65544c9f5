#pragma once

#include "HealthImport/ImportSink.h"
#include "XML/XMLStream.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace velloro {

/// Gives the next bytes of a file; none at its end.
using ByteSource = std::function<Result<std::size_t>(std::span<char>)>;

/// Reads the "export.xml" of a phone's export, piece by piece. Its list of declarations is passed
/// over, since some are not well-formed, and what XML can't hold is replaced.
class ExportReader : public XMLHandler {
 public:
  explicit ExportReader(ImportSink& sink) : sink_(sink), stream_(*this) {}

  /// Fails where the text breaks off or is not well-formed, and where it is no export.
  [[nodiscard]] Result<void> read(const ByteSource& source);

  void start(std::string_view name, const XMLAttributes& attributes) override;
  void end(std::string_view name) override;

 private:
  struct Pending {
    std::optional<OxHKSampleType> type;
    std::string identifier, source, device, unit, details, mark, syncIdentifier;
    std::int64_t syncVersion = 0;
    Date start, end;
    double value = 0;
    std::int64_t line = 0;
    std::optional<HKWorkout> workout;
    PropertyList::Dictionary metadata;
    bool isStatisticsDistance = false, isStatisticsEnergy = false;
  };

  [[nodiscard]] Result<bool> fillHead(const ByteSource& source, std::string& head);
  void startRecord(const XMLAttributes& attributes);
  void startWorkout(const XMLAttributes& attributes);
  void addMetadata(const XMLAttributes& attributes);
  void addStatistics(const XMLAttributes& attributes);
  void addEvent(const XMLAttributes& attributes);
  void addSummary(const XMLAttributes& attributes);
  bool takeTimes(const XMLAttributes& attributes);
  void finish();

  ImportSink& sink_;
  XMLStream stream_;
  Pending pending_;
  bool isPending_ = false;
  int correlations_ = 0;
  int depth_ = 0;
  bool isExport_ = false;
};

}  // namespace velloro
