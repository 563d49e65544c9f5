#include "VelloroPictures/ReportPage.h"

#include "Foundation/Text/String.h"
#include "OxCheckableTasks/Ring/CheckableTaskTextKeys.h"
#include "OxKit/Localization.h"
#include "VelloroCore/Titles/FormatManager.h"
#include "VelloroPictures/PictureTextKeys.h"

#include <algorithm>

namespace velloro {
namespace {

using Status = TaskCalendarPeriodStatus;

constexpr std::string_view layout = R"(
*{box-sizing:border-box}
body{margin:0;background:var(--ground);color:var(--text);font:16px/1.4 system-ui,sans-serif}
main{max-width:60rem;margin:0 auto;padding:1.25rem}
h1{font-size:1.7rem;margin:.5rem 0 1rem}
section{border-top:1px solid var(--faint);padding:1.5rem 0;break-inside:avoid}
header{display:flex;align-items:center;gap:1rem}
h2{font-size:1.25rem;margin:0;overflow-wrap:anywhere}
header svg{width:3.5rem;flex:none}
dl{display:grid;grid-template-columns:repeat(4,1fr);gap:.5rem;margin:1rem 0}
dt{color:var(--label);font-size:.8rem}
dd{margin:0;font-size:1.35rem;font-weight:600}
dl div{display:flex;flex-direction:column-reverse;justify-content:flex-end}
svg{display:block;width:100%;height:auto}
figure{margin:1rem 0 0}
figcaption{color:var(--label);font-size:.8rem;margin-bottom:.35rem}
.pair{display:grid;grid-template-columns:1fr 1fr;gap:1.5rem}
.track{stroke:var(--accent);stroke-opacity:.22;fill:none}
.line{stroke:var(--accent);fill:none;stroke-linecap:round}
.done{fill:var(--accent)}
.missed,.area{fill:var(--accent);fill-opacity:.2}
.empty{fill:var(--faint)}
.open{fill:var(--faint);stroke:var(--accent)}
text{fill:var(--label);font-size:8px;text-anchor:middle}
@media screen and (max-width:40rem){.pair{grid-template-columns:1fr;gap:0}}
@media print{main{max-width:none;padding:0}body{print-color-adjust:exact;-webkit-print-color-adjust:exact}}
)";

std::string escaped(std::string_view text) {
  std::string safe;
  for (const char c : text) {
    switch (c) {
      case '&':
        safe += "&amp;";
        break;
      case '<':
        safe += "&lt;";
        break;
      case '>':
        safe += "&gt;";
        break;
      case '"':
        safe += "&quot;";
        break;
      default:
        safe += c;
    }
  }
  return safe;
}

std::string cssColor(const OxCodableColor& color) {
  return "#" + color.toHex();
}

std::string variables(const PictureStyle& style) {
  return "--ground:" + cssColor(style.background) + ";--text:" + cssColor(style.text) +
         ";--label:" + cssColor(style.secondary) + ";--faint:" + cssColor(style.faint);
}

std::string drawing(double width, double height, std::string_view words,
                    const std::string& content) {
  return stringWithFormat("<svg viewBox=\"0 0 %g %g\" role=\"img\" aria-label=\"", width, height) +
         escaped(words) + "\">" + content + "</svg>";
}

std::string pathOf(const char* style, const std::string& data) {
  return data.empty() ? "" : std::string("<path class=\"") + style + "\" d=\"" + data + "\"/>";
}

std::string dataOf(const CGPath& path) {
  std::string data;
  const auto add = [&](char letter, std::initializer_list<CGPoint> points) {
    data += letter;
    for (const CGPoint& at : points) data += stringWithFormat("%.2f %.2f ", at.x, at.y);
  };
  for (const auto& [verb, points] : path.elements()) {
    const auto& [a, b, c] = points;
    if (verb == CGPath::Verb::move) add('M', {a});
    if (verb == CGPath::Verb::line) add('L', {a});
    if (verb == CGPath::Verb::curve) add('C', {a, b, c});
    if (verb == CGPath::Verb::close) data += 'Z';
  }
  return data;
}

std::string rectangle(double x, double y, double width, double height) {
  return stringWithFormat("M%.2f %.2fh%.2fv%.2fh%.2fz", x, y, width, height, -width);
}

std::string ring(double share, std::string_view words) {
  const double done = std::clamp(share, 0.0, 1.0) * 100;
  const char* circle =
      "<circle class=\"%s\" cx=\"30\" cy=\"30\" r=\"26\" stroke-width=\"8\" pathLength=\"100\" "
      "stroke-dasharray=\"%.1f 200\" transform=\"rotate(-90 30 30)\"/>";
  std::string content = stringWithFormat(circle, "track", 100.0);
  if (done > 0) content += stringWithFormat(circle, "line", done);
  if (done == 100) {
    content += "<path class=\"line\" stroke-width=\"5\" d=\"M21 31l6 7 12-15\"/>";
  }
  return drawing(60, 60, words, content);
}

std::string figure(std::string_view caption, const std::string& content) {
  return "<figure><figcaption>" + escaped(caption) + "</figcaption>" + content + "</figure>\n";
}

/// Draws one task.
class Section {
 public:
  Section(const ReportPage::Task& task, const PictureStyle& style)
      : card_(task.card),
        year_(task.year),
        locale_(style.locale),
        isMirrored_(style.isRightToLeft()) {}

  [[nodiscard]] std::string html() const {
    return "<header>" + ring(card_.progress, percent(card_.progress)) + "<h2>" +
           escaped(card_.title) + "</h2></header>\n" + numbers() + figure(covered(), line()) +
           "<div class=\"pair\">" + figure(localized(picture_text::daysOfWeek), weekdays()) +
           figure(localized(picture_text::timeOfDay), hours()) + "</div>\n" +
           figure(YYYYMM{year_.year, 1}.localizedYear(locale_), year());
  }

 private:
  [[nodiscard]] std::string percent(double share) const {
    return FormatManager::shared(locale_).percentageWholeFormatter.string(share);
  }
  [[nodiscard]] std::string number(std::int64_t n) const {
    return FormatManager::shared(locale_).integerFormatter.string(static_cast<double>(n));
  }
  [[nodiscard]] std::string covered() const {
    const SummaryLabels labels = card_.stats.allTimeChart.labels(locale_, card_.now);
    return labels.centerText.value_or(labels.leadingText.value_or("") + " – " +
                                      labels.trailingText.value_or(""));
  }
  /// From the side where reading begins.
  [[nodiscard]] double placed(double x, double width, double room) const {
    return isMirrored_ ? room - x - width : x;
  }

  [[nodiscard]] std::string numbers() const {
    const auto measured = card_.stats.allTimeChart.measurementDuration;
    const std::pair<std::string, std::string> all[] = {
        {localized(picture_text::currentStreak), number(card_.stats.streak.current)},
        {localized(checkable_task_text::bestStreak), number(card_.stats.streak.best)},
        {titleOf(card_.shortTerm.type, measured), percentageOf(card_.shortTerm, locale_)},
        {titleOf(card_.longTerm.type, measured), percentageOf(card_.longTerm, locale_)}};
    std::string list = "<dl>";
    for (const auto& [name, value] : all) {
      list += "<div><dt>" + escaped(name) + "</dt><dd>" + escaped(value) + "</dd></div>";
    }
    return list + "</dl>\n";
  }

  [[nodiscard]] std::string line() const {
    constexpr CGSize size{600, 110};
    const LineGraph graph(card_.stats.allTimeChart.dataPoints(locale_),
                          {.rightToLeft = isMirrored_,
                           .frame = {{}, size},
                           .maxValue = LineGraph::MaxValue::relativeToConstant(1),
                           .pointDiameter = 6});
    return drawing(size.width, size.height, covered() + ", " + percent(card_.stats.pct),
                   pathOf("area", dataOf(graph.fillPath)) +
                       "<path class=\"line\" stroke-width=\"2.5\" d=\"" + dataOf(graph.linePath) +
                       "\"/>");
  }

  [[nodiscard]] std::string columns(const std::vector<double>& shares, double gap,
                                    double room) const {
    constexpr double height = 60;
    const double step = (room + gap) / static_cast<double>(shares.size());
    std::string empty, done;
    for (std::size_t i = 0; i < shares.size(); ++i) {
      const double x = placed(step * static_cast<double>(i), step - gap, room);
      const double filled = height * std::clamp(shares[i], 0.0, 1.0);
      empty += rectangle(x, 0, step - gap, height - filled);
      if (filled > 0) done += rectangle(x, height - filled, step - gap, filled);
    }
    return pathOf("empty", empty) + pathOf("done", done);
  }

  [[nodiscard]] std::string label(double middle, const std::string& text) const {
    return stringWithFormat("<text x=\"%.1f\" y=\"74\">", placed(middle, 0, 240)) + escaped(text) +
           "</text>";
  }

  [[nodiscard]] std::string weekdays() const {
    const DayOfWeek first = year_.firstDayOfWeek;
    std::vector<double> shares;
    std::string names;
    for (const auto& day : card_.stats.daysOfWeekChart.sortedValues(first)) {
      names += label((static_cast<double>(shares.size()) + 0.5) * 248 / 7 - 4,
                     localizedVeryShortTitle(day.dayOfWeek, locale_));
      shares.push_back(day.value);
    }
    return drawing(240, 80, card_.stats.daysOfWeekChart.accessibilityLabel(first, locale_),
                   columns(shares, 8, 240) + names);
  }

  [[nodiscard]] std::string hours() const {
    std::vector<double> shares;
    std::string names, words;
    for (const auto& point : card_.stats.timeOfDayChart.dataPoints(locale_)) {
      const std::size_t hour = shares.size();
      if (hour == 6 || hour == 12 || hour == 18) {
        names += label(static_cast<double>(hour) * 10 + 4, *point.label);
      }
      if (point.value > 0) words += *point.formattedAccessibilityValue + ". ";
      shares.push_back(point.value);
    }
    return drawing(240, 80, words, columns(shares, 2, 240) + names);
  }

  [[nodiscard]] std::string year() const {
    constexpr double step = 12.5, cell = 10;
    const YYYYMMDD first = YYYYMMDD{year_.year, 1, 1}.startOfWeek(year_.firstDayOfWeek, {});
    const double width = step * static_cast<double>(year_.numWeeks());
    std::string done, missed, open, empty;
    std::int64_t numDone = 0, numMissed = 0;
    for (YYYYMMDD day{year_.year, 1, 1}; day.y == year_.year; day = day.nextDay({})) {
      const std::int64_t place = first.distance(day);
      const auto found = year_.days.find(day);
      const Status status = found != year_.days.end() ? found->second : Status::future;
      const bool isMissed = status == Status::missed || status == Status::currentMissed;
      std::string& kind = isCompleted(status)         ? done
                          : isMissed                  ? missed
                          : status == Status::current ? open
                                                      : empty;
      numDone += isCompleted(status);
      numMissed += isMissed;
      kind += rectangle(placed(step * static_cast<double>(place / 7), cell, width),
                        step * static_cast<double>(place % 7) + 1, cell, cell);
    }
    const auto all = static_cast<double>(std::max<std::int64_t>(numDone + numMissed, 1));
    return drawing(width, 7 * step + 1, percent(static_cast<double>(numDone) / all),
                   pathOf("empty", empty) + pathOf("missed", missed) + pathOf("open", open) +
                       pathOf("done", done));
  }

  const TaskCardPicture& card_;
  const YearPicture& year_;
  const Locale& locale_;
  bool isMirrored_;
};

std::string sectionOf(const ReportPage::Task& task, const ReportPage& page) {
  const auto accent = [&](const PictureStyle& style) {
    return cssColor((task.color ? style.withAccent(*task.color) : style).accent);
  };
  return "<section style=\"--light:" + accent(page.light) + ";--dark:" + accent(page.dark) +
         "\">\n" + Section(task, page.light).html() + "</section>\n";
}

}  // namespace

std::string ReportPage::html() const {
  const std::string title = escaped(localized(picture_text::allTasks));
  const std::string language = light.locale.identifier();
  std::string page = "<!DOCTYPE html>\n<html lang=\"" +
                     escaped(language.substr(0, language.find('_'))) + "\" dir=\"" +
                     (light.isRightToLeft() ? "rtl" : "ltr") +
                     "\">\n<head>\n<meta charset=\"utf-8\">\n<meta name=\"viewport\" "
                     "content=\"width=device-width,initial-scale=1\">\n<title>" +
                     title + "</title>\n<style>\n:root{color-scheme:light dark;" +
                     variables(light) + "}\nsection{--accent:var(--light)}\n" +
                     "@media screen and (prefers-color-scheme:dark){:root{" + variables(dark) +
                     "}section{--accent:var(--dark)}}" + std::string(layout) +
                     "</style>\n</head>\n<body>\n<main>\n<h1>" + title + "</h1>\n";
  for (const Task& task : tasks) page += sectionOf(task, *this);
  return page + "</main>\n</body>\n</html>\n";
}

}  // namespace velloro
