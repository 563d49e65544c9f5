#include "velloro/Health/HealthReport.h"

#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/String.h"
#include "OxHealthKit/HKObjects.h"
#include "velloro/Output/Output.h"

namespace velloro {
namespace {

std::string number(double value) {
  return stringWithFormat("%.10g", value);
}

}  // namespace

SampleReport SampleReport::of(const HKSample& sample) {
  const auto type = sampleTypeOfIdentifier(sample.sampleType.identifier);
  SampleReport report{
      .id = sample.uuid.uuidString(),
      .type = type ? std::string(sampleTypeName(*type)) : sample.sampleType.identifier,
      .start = sample.start,
      .end = sample.end,
      .source = sample.source.bundleIdentifier};
  if (const auto* quantity = sample.quantity()) {
    report.value = quantity->value;
    report.unit = quantity->unit.unitString();
  } else if (const auto* workout = sample.workout()) {
    report.value = workout->duration;
    report.unit = "s";
    report.activity = workout->activityType;
  } else if (const auto state = sample.category()) {
    report.value = static_cast<double>(*state);
  }
  return report;
}

std::string table(const std::vector<SampleReport>& samples) {
  std::vector<std::vector<std::string>> rows;
  for (const SampleReport& one : samples) {
    rows.push_back({instantText(one.start), instantText(one.end), one.type,
                    (one.value ? number(*one.value) : "") + (one.unit ? " " + *one.unit : "") +
                        (one.activity ? " " + terminalText(*one.activity) : ""),
                    terminalText(one.source)});
  }
  return aligned(rows);
}

std::string table(const std::vector<SourceReport>& sources) {
  std::vector<std::vector<std::string>> rows;
  for (const SourceReport& one : sources) {
    rows.push_back({terminalText(one.name), one.device,
                    std::to_string(one.samples) + (one.samples == 1 ? " sample" : " samples")});
  }
  return aligned(rows);
}

std::string text(const HealthImportReport& report) {
  std::string lines = std::to_string(report.added) + " added, " + std::to_string(report.known) +
                      " known, " + std::to_string(report.skipped) + " skipped, " +
                      std::to_string(report.ignored) + " of other types, " +
                      std::to_string(report.summaries) + " days of activity\n";
  for (const auto& skip : report.skips) {
    lines += "line " + std::to_string(skip.line) + ": " + terminalText(skip.why) + "\n";
  }
  return lines;
}

std::string text(const QualifyInfo& info, Date now) {
  const TaskProgress& progress = info.progress.base;
  constexpr double percent = 100;
  std::string lines = stringWithFormat("%.0f %%: ", percent * progress.progressPct(now)) +
                      number(progress.currentValue(now)) + " of " + number(progress.targetValue()) +
                      (info.readingType == QualifyInfo::ReadingType::fromLogEntries
                           ? " by the log, since there are no health data\n"
                           : "\n");
  for (const auto& record : info.healthRecords) {
    lines += instantText(record.start) + "  " + number(record.quantity) + " " +
             std::string(rawValue(record.unit)) + (record.isExternal ? "" : "  by velloro") + "\n";
  }
  return lines;
}

}  // namespace velloro
