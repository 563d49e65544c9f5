#include "velloro/Tasks/TitleReport.h"

#include "Foundation/Coding/JSON.h"
#include "Foundation/Process/Terminal.h"
#include "Foundation/Text/Locale.h"
#include "velloro/Output/Output.h"

namespace velloro {

TitleReport TitleReport::of(const TaskDisplayTitle& title,
                            std::optional<TaskDisplayTitle::Context> context) {
  TitleReport report{.title = title, .texts = {}};
  for (const auto each : allCases<TaskDisplayTitle::Context>()) {
    if (!context || each == *context)
      report.texts.push_back({each, title.localizedTitle(each, Locale::current())});
  }
  return report;
}

std::string TitleReport::json() const {
  return JSONEncoder{}.encode(*this) + "\n";
}

std::string TitleReport::text() const {
  if (texts.size() == 1) return terminalText(texts.front().text.value_or("")) + "\n";
  std::string lines;
  for (const Text& each : texts) {
    const bool isShown = each.text && !each.text->empty();
    lines += padded(velloro::debugDescription(each.context), 37) + "  " +
             (isShown ? terminalText(*each.text) : "-") + "\n";
  }
  return lines;
}

}  // namespace velloro
