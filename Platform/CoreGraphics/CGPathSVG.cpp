// Path data of SVG: a list of commands, each a letter and numbers; numbers alone repeat the
// command.

#include "CoreGraphics/CGPath.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numbers>

namespace platform {
namespace {

class Numbers {
 public:
  explicit Numbers(std::string_view text) : rest_(text) {}

  bool atEnd() {
    skip(" \t\r\n");
    return rest_.empty();
  }
  /// A letter, if one stands next.
  std::optional<char> letter() {
    if (atEnd() || std::string_view("MmLlHhVvCcSsQqTtAaZz").find(rest_.front()) == rest_.npos) {
      return std::nullopt;
    }
    const char found = rest_.front();
    rest_.remove_prefix(1);
    return found;
  }
  std::optional<double> number() {
    skip(" \t\r\n,");
    const bool plus = rest_.starts_with('+');
    double value = 0;
    const auto [end, error] =
        std::from_chars(rest_.data() + (plus ? 1 : 0), rest_.data() + rest_.size(), value);
    if (error != std::errc{} || !std::isfinite(value)) return std::nullopt;
    rest_.remove_prefix(static_cast<std::size_t>(end - rest_.data()));
    return value;
  }
  /// A flag is one digit, and the next number may follow it at once.
  std::optional<double> flag() {
    skip(" \t\r\n,");
    if (rest_.empty() || (rest_.front() != '0' && rest_.front() != '1')) return std::nullopt;
    const double value = rest_.front() - '0';
    rest_.remove_prefix(1);
    return value;
  }

 private:
  void skip(std::string_view characters) {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(characters), rest_.size()));
  }

  std::string_view rest_;
};

/// How many numbers a command takes.
std::size_t countOf(char upper) {
  switch (upper) {
    case 'Z':
      return 0;
    case 'H':
    case 'V':
      return 1;
    case 'S':
    case 'Q':
      return 4;
    case 'C':
      return 6;
    case 'A':
      return 7;
    default:
      return 2;
  }
}

class Pen {
 public:
  /// \param values The numbers of one command, coordinates absolute; `upper` its capital letter.
  void draw(char upper, const std::array<double, 7>& v) {
    const CGPoint from = path.currentPoint().value_or(CGPoint{});
    const CGPoint first{v[0], v[1]};
    const CGPoint second{v[2], v[3]};
    switch (upper) {
      case 'M':
        path.move(first);
        break;
      case 'H':
        path.addLine({v[0], from.y});
        break;
      case 'V':
        path.addLine({from.x, v[0]});
        break;
      case 'C':
        curve(first, second, {v[4], v[5]});
        break;
      case 'S':
        curve(mirroredAfter("CS", from), first, second);
        break;
      case 'Q':
        quad(first, second);
        break;
      case 'T':
        quad(mirroredAfter("QT", from), first);
        break;
      case 'A':
        arc(from, v);
        break;
      case 'Z':
        path.closeSubpath();
        break;
      default:
        path.addLine(first);
        break;
    }
    previous_ = upper;
  }

  CGPath path;

 private:
  void curve(CGPoint control1, CGPoint control2, CGPoint to) {
    path.addCurve(control1, control2, to);
    control_ = control2;
  }
  void quad(CGPoint control, CGPoint to) {
    path.addQuadCurve(control, to);
    control_ = control;
  }
  /// The last control point seen from the other side of the current point, after such a command.
  CGPoint mirroredAfter(std::string_view commands, CGPoint from) const {
    if (commands.find(previous_) == commands.npos) return from;
    return {.x = 2 * from.x - control_.x, .y = 2 * from.y - control_.y};
  }

  /// From two ends to a centre:
  /// https://www.w3.org/TR/SVG11/implnote.html#ArcConversionEndpointToCenter
  void arc(CGPoint from, const std::array<double, 7>& v) {
    const CGPoint to{v[5], v[6]};
    double rx = std::abs(v[0]);
    double ry = std::abs(v[1]);
    if (from == to) return;
    if (rx == 0 || ry == 0) return path.addLine(to);
    const bool large = v[3] != 0;
    const bool growing = v[4] != 0;
    const auto turn = CGAffineTransform::rotation(v[2]);
    const auto back = CGAffineTransform::rotation(-v[2]);
    const CGPoint half = back.apply({(from.x - to.x) / 2, (from.y - to.y) / 2});
    const double stretch = half.x * half.x / (rx * rx) + half.y * half.y / (ry * ry);
    if (stretch > 1) {
      rx *= std::sqrt(stretch);
      ry *= std::sqrt(stretch);
    }
    const double distance = std::sqrt(std::max(0.0, 1 / std::min(stretch, 1.0) - 1));
    const double side = large == growing ? -distance : distance;
    const CGPoint middle{side * rx * half.y / ry, -side * ry * half.x / rx};
    const auto angle = [&](CGPoint p) {
      return std::atan2((p.y - middle.y) / ry, (p.x - middle.x) / rx) * 180 / std::numbers::pi;
    };
    const CGPoint center = turn.apply(middle);
    CGPath unit;
    unit.addArc({}, 1, angle(half), angle({-half.x, -half.y}), !growing);
    const auto place = CGAffineTransform::scale(rx, ry).concatenating(turn).concatenating(
        CGAffineTransform::translation(center.x + (from.x + to.x) / 2,
                                       center.y + (from.y + to.y) / 2));
    const CGPath placed = unit.applying(place);
    for (const CGPath::Element& element : placed.elements()) {
      if (element.verb == CGPath::Verb::curve) {
        path.addCurve(element.points[0], element.points[1], element.points[2]);
      }
    }
    // The arc ends where the data say, not a rounding beside it.
    path.addLine(to);
  }

  char previous_ = 0;
  CGPoint control_;
};

bool readValues(Numbers& numbers, char upper, std::array<double, 7>& values) {
  for (std::size_t i = 0; i < countOf(upper); ++i) {
    const auto value = upper == 'A' && (i == 3 || i == 4) ? numbers.flag() : numbers.number();
    if (!value) return false;
    values[i] = *value;
  }
  return true;
}

void makeAbsolute(char upper, CGPoint from, std::array<double, 7>& values) {
  if (upper == 'V') values[0] += from.y;
  if (upper == 'H') values[0] += from.x;
  if (upper == 'V' || upper == 'H') return;
  const std::size_t count = countOf(upper);
  for (std::size_t i = upper == 'A' ? 5 : 0; i + 1 < count; i += 2) {
    values[i] += from.x;
    values[i + 1] += from.y;
  }
}

}  // namespace

std::optional<CGPath> CGPath::fromSVG(std::string_view data) {
  Numbers numbers(data);
  Pen pen;
  char command = 0;
  while (!numbers.atEnd()) {
    if (const auto letter = numbers.letter()) {
      command = *letter;
    } else if (command == 'M' || command == 'm') {
      command = command == 'M' ? 'L' : 'l';  // further pairs of a move are lines
    } else if (command == 0 || command == 'Z' || command == 'z') {
      return std::nullopt;
    }
    const bool relative = command >= 'a';
    const char upper = static_cast<char>(relative ? command - ('a' - 'A') : command);
    if (pen.path.isEmpty() && upper != 'M') return std::nullopt;
    std::array<double, 7> values = {};
    if (!readValues(numbers, upper, values)) return std::nullopt;
    if (relative) makeAbsolute(upper, pen.path.currentPoint().value_or(CGPoint{}), values);
    pen.draw(upper, values);
  }
  return std::move(pen.path);
}

}  // namespace platform
