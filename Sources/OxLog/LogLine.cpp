#include "OxLog/LogLine.h"

#include "Foundation/Text/String.h"
#include "Foundation/Time/CivilDay.h"

#include <filesystem>

namespace velloro {
namespace {

constexpr std::string_view lineLabel(LogLevel level) {
  constexpr std::string_view labels[] = {"DEBUG", "INFO", "ERROR"};
  return labels[static_cast<std::size_t>(level)];
}

/// The date in the form "y-MM-dd H:mm:ss.SSS", by plain arithmetic: a formatter made for any
/// locale would cost more than all the rest of a line.
std::string dateFormatter(Date date, const TimeZone& zone) {
  // An instant's binary fraction may lie just below the thousandth that was meant; what is beyond
  // a microsecond of it is cut off, as date formatters do.
  const Date rounded = date + 0.000'000'5;
  const std::int64_t seconds = rounded.secondsSince1970();
  const double fraction = rounded.timeIntervalSince1970() - static_cast<double>(seconds);
  const int thousandths = fraction > 0 && fraction < 1 ? static_cast<int>(fraction * 1000) : 0;
  const std::int64_t local = seconds + zone.offsetAt(seconds);
  const CivilDay day = civilFromDays(floorDivide(local, 86400));
  const auto ofDay = static_cast<int>(floorModulo(local, 86400));
  return stringWithFormat("%lld-%02lld-%02lld %d:%02d:%02d.%03d", static_cast<long long>(day.y),
                          static_cast<long long>(day.m), static_cast<long long>(day.d),
                          ofDay / 3600, ofDay / 60 % 60, ofDay % 60, thousandths);
}

bool isNamePart(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
         c == '~';
}

/// The end of an operator's name: the "(" of its parameters, not the one in "operator()".
std::size_t operatorEnd(std::string_view signature, std::size_t afterKeyword) {
  const std::size_t first = signature.find('(', afterKeyword);
  return first == afterKeyword ? signature.find('(', first + 1) : first;
}

}  // namespace

std::string logLineText(const LogManager::WatchDebugPacket& line, std::string_view prefix,
                        const TimeZone& zone) {
  std::string text(line.category.emoji());
  if (!text.empty()) text += ' ';
  text += '[';
  if (!prefix.empty()) text.append(prefix) += ", ";
  text.append(line.category.categoryName()) += ", ";
  text.append(lineLabel(line.level)) += "] ";
  text += dateFormatter(line.date, zone);
  text += " [" + std::filesystem::path(line.filename).stem().string() + ":";
  text += std::to_string(line.line) + "] " + line.function + " " + line.message;
  return text + '\n';
}

std::string functionName(std::string_view signature) {
  std::size_t start = 0;  // of the last name seen
  std::size_t end = 0;
  int depth = 0;  // of template arguments, and of the braces around an unnamed namespace
  for (std::size_t i = 0; i < signature.size(); ++i) {
    const char c = signature[i];
    const std::string_view name = signature.substr(start, end - start);
    if (i == end && name == "operator") {
      return std::string(signature.substr(start, operatorEnd(signature, i) - start)) + "()";
    }
    if (c == '<' || c == '{') ++depth;
    if (c == '>' || c == '}') --depth;
    if (depth > 0) continue;
    if (isNamePart(c)) {
      if (i != end) start = i;
      end = i + 1;
    } else if (c == '(' && !name.empty() && name != "decltype" &&
               (i == end || signature[i - 1] == '>')) {
      return std::string(name) + "()";
    }
  }
  return std::string(signature);
}

}  // namespace velloro
