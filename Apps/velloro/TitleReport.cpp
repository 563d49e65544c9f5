#include "velloro/TitleReport.h"

#include "Foundation/JSON.h"
#include "Foundation/String.h"

namespace velloro {

TitleReport TitleReport::of(const TaskDisplayTitle& title,
                            std::optional<TaskDisplayTitle::Context> context) {
  TitleReport report{.title = title, .texts = {}};
  for (const auto each : allCases<TaskDisplayTitle::Context>()) {
    if (!context || each == *context) report.texts.push_back({each, title.localizedTitle(each)});
  }
  return report;
}

std::string TitleReport::json() const {
  return JSONEncoder{}.encode(*this) + "\n";
}

std::string TitleReport::text() const {
  if (texts.size() == 1) return texts.front().text.value_or("") + "\n";
  std::string lines;
  for (const Text& each : texts) {
    const bool isShown = each.text && !each.text->empty();
    lines += stringWithFormat("%-37s  %s\n", velloro::debugDescription(each.context).c_str(),
                              isShown ? each.text->c_str() : "-");
  }
  return lines;
}

}  // namespace velloro
