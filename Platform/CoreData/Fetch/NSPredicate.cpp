#include "CoreData/Fetch/NSPredicate.h"

#include "CoreData/Model/NSEntityDescription.h"

#include <charconv>
#include <utility>

namespace platform {
namespace {

using Operator = NSPredicate::Operator;
using enum NSPredicate::LogicalType;

NSPredicate compound(NSPredicate::LogicalType type, std::vector<NSPredicate> parts) {
  return NSPredicate(NSPredicate::Compound{.type = type, .parts = std::move(parts)});
}

const char* textOf(Operator comparison) {
  switch (comparison) {
    case Operator::equal:
      return "=";
    case Operator::notEqual:
      return "!=";
    case Operator::less:
      return "<";
    case Operator::lessOrEqual:
      return "<=";
    case Operator::greater:
      return ">";
    case Operator::greaterOrEqual:
      return ">=";
    case Operator::in:
      return "IN";
    case Operator::beginsWith:
      break;
  }
  return "BEGINSWITH";
}

struct Printed {
  std::string operator()(std::monostate) const { return "nil"; }
  std::string operator()(std::int64_t number) const { return std::to_string(number); }
  std::string operator()(double number) const {
    char text[32];
    return {text, std::to_chars(text, std::end(text), number).ptr};
  }
  std::string operator()(const std::string& text) const { return '"' + text + '"'; }
  std::string operator()(const Data& data) const {
    return "<" + std::to_string(data.text().size()) + " bytes>";
  }
  std::string operator()(NSManagedObjectID id) const {
    return id.entity->name() + " " + std::to_string(id.key);
  }
};

std::string printed(const PropertyValue& value) {
  return std::visit(Printed{}, value);
}

std::string printed(const PropertyValues& list) {
  std::string text = "{";
  const char* separator = "";
  for (const PropertyValue& value : list) {
    text += std::exchange(separator, ", ") + printed(value);
  }
  return text + "}";
}

void print(const NSPredicate::Comparison& comparison, NSPredicate::Format& out) {
  out.text += comparison.isAny ? "ANY %K " : "%K ";
  out.text += textOf(comparison.comparison);
  out.arguments.push_back(comparison.keyPath);
  const bool isList = comparison.comparison == Operator::in;
  if (!isList && (comparison.isConstant || isNull(comparison.values.front()))) {
    out.text += " " + printed(comparison.values.front());
    return;
  }
  out.text += " %@";
  out.arguments.push_back(isList ? printed(comparison.values) : printed(comparison.values.front()));
}

/// \param isPart Whether it stands in another one, in parentheses if it has parts of its own.
void print(const NSPredicate& predicate, NSPredicate::Format& out, bool isPart = false) {
  if (const auto* comparison = std::get_if<NSPredicate::Comparison>(&predicate.node())) {
    return print(*comparison, out);
  }
  const auto& [type, parts] = std::get<NSPredicate::Compound>(predicate.node());
  if (parts.empty()) {
    out.text += type == and_ ? "TRUEPREDICATE" : "FALSEPREDICATE";
    return;
  }
  if (type != not_ && parts.size() == 1) return print(parts.front(), out, isPart);
  const bool hasParentheses = isPart || type == not_;
  if (type == not_) out.text += "NOT ";
  if (hasParentheses) out.text += "(";
  const char* separator = "";
  for (const NSPredicate& part : parts) {
    out.text += std::exchange(separator, type == and_ ? " AND " : " OR ");
    print(part, out, type != not_);
  }
  if (hasParentheses) out.text += ")";
}

}  // namespace

NSPredicate::Format NSPredicate::format() const {
  Format result;
  print(*this, result);
  return result;
}

NSPredicate NSCompoundPredicate::andPredicateWithSubpredicates(std::vector<NSPredicate> parts) {
  return compound(and_, std::move(parts));
}

NSPredicate NSCompoundPredicate::orPredicateWithSubpredicates(std::vector<NSPredicate> parts) {
  return compound(or_, std::move(parts));
}

NSPredicate NSCompoundPredicate::notPredicateWithSubpredicate(NSPredicate part) {
  return compound(not_, {std::move(part)});
}

}  // namespace platform
