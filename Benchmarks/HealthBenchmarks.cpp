#include "Foundation/Process/VirtualEnvironment.h"
#include "HealthImport/HealthImport.h"
#include "OxHealthKit/HKObjects.h"
#include "XML/XMLStream.h"

#include <fstream>
#include <string>

#include <benchmark/benchmark.h>

namespace velloro {
namespace {

/// The elements of 200,000 minutes of steps, of a watch and a phone.
std::string exportText() {
  std::string text = "<HealthData locale=\"en_DE\">\n";
  for (const char* model : {"Watch", "iPhone"}) {
    Date start = Date::since1970(1700000000);
    for (int i = 0; i < 100000; ++i) {
      start = start + 60;
      std::string at = start.iso8601();
      at.replace(10, 1, " ");
      at.replace(19, 1, " +0000");
      text +=
          " <Record type=\"HKQuantityTypeIdentifierStepCount\" sourceName=\"" + std::string(model) +
          "\" sourceVersion=\"10.3\" device=\"&lt;&lt;HKDevice: 0x1a&gt;, name:N, model:" + model +
          ", hardware:H, software:10.3&gt;\" unit=\"count\" creationDate=\"" + at +
          "\" startDate=\"" + at + "\" endDate=\"" + at + "\" value=\"40\"/>\n";
    }
  }
  return text + "</HealthData>\n";
}

class Bench {
 public:
  Bench() { std::ofstream(file_, std::ios::binary) << text_; }

  [[nodiscard]] const std::string& text() const { return text_; }
  [[nodiscard]] HealthImport import(int number) const {
    const HKHealthStore store(folder_ / (std::to_string(number) + ".sqlite"), "velloro.app");
    return importHealthData(store, file_, {}, {});
  }

 private:
  VirtualEnvironment environment_;
  std::filesystem::path folder_ = environment_.directories().temporary;
  std::filesystem::path file_ = folder_ / "export.xml";
  std::string text_ = exportText();
};

void import(benchmark::State& state) {
  const Bench bench;
  int number = 0;
  for (auto _ : state) benchmark::DoNotOptimize(bench.import(number++).report.added);
}
BENCHMARK(import)->Name("health_import/velloro")->Unit(benchmark::kMillisecond);

void parse(benchmark::State& state) {
  struct Nothing : XMLHandler {
    void start(std::string_view, const XMLAttributes&) override {}
    void end(std::string_view) override {}
  };
  const std::string text = exportText();
  for (auto _ : state) {
    Nothing nothing;
    XMLStream stream(nothing);
    constexpr std::size_t piece = 65536;
    for (std::size_t at = 0; at < text.size(); at += piece) {
      (void)stream.feed(std::string_view(text).substr(at, piece), false);
    }
    benchmark::DoNotOptimize(stream.feed("", true).has_value());
  }
}
BENCHMARK(parse)->Name("health_import/expat")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace velloro
