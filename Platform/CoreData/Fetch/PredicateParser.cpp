#include "CoreData/Fetch/PredicateParser.h"

#include "CoreData/Store/StoreError.h"

#include <algorithm>
#include <charconv>

namespace platform {
namespace {

using Operator = NSPredicate::Operator;

struct OperatorText {
  std::string_view text;
  Operator value;
};

constexpr OperatorText operators[] = {{"==", Operator::equal},
                                      {"=", Operator::equal},
                                      {"!=", Operator::notEqual},
                                      {"<>", Operator::notEqual},
                                      {"<=", Operator::lessOrEqual},
                                      {"=<", Operator::lessOrEqual},
                                      {"<", Operator::less},
                                      {">=", Operator::greaterOrEqual},
                                      {"=>", Operator::greaterOrEqual},
                                      {">", Operator::greater},
                                      {"IN", Operator::in},
                                      {"BEGINSWITH", Operator::beginsWith},
                                      {"ENDSWITH", Operator::endsWith},
                                      {"CONTAINS", Operator::contains}};

bool isSpace(char c) {
  return c == ' ' || c == '\t' || c == '\n';
}
bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
bool isWordStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '@';
}
bool isWordPart(char c) {
  return isWordStart(c) || isDigit(c) || c == '.';
}
bool isNumberPart(char c) {
  return isDigit(c) || c == '.' || c == 'e' || c == 'E';
}
char capital(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

NSPredicate PredicateParser::parse() {
  NSPredicate predicate = either();
  if (kind_ != Kind::end) refuse("something follows the end");
  if (usedArguments_ != arguments_.size()) refuse("more arguments than places for them");
  return predicate;
}

NSPredicate PredicateParser::either() {
  std::vector<NSPredicate> parts{both()};
  while (take("OR") || take("||")) parts.push_back(both());
  return parts.size() == 1 ? parts.front()
                           : NSCompoundPredicate::orPredicateWithSubpredicates(std::move(parts));
}

NSPredicate PredicateParser::both() {
  std::vector<NSPredicate> parts{opposite()};
  while (take("AND") || take("&&")) parts.push_back(opposite());
  return parts.size() == 1 ? parts.front()
                           : NSCompoundPredicate::andPredicateWithSubpredicates(std::move(parts));
}

NSPredicate PredicateParser::opposite() {
  if (take("NOT") || take("!")) {
    return NSCompoundPredicate::notPredicateWithSubpredicate(opposite());
  }
  if (take("(")) {
    NSPredicate inner = either();
    if (!take(")")) refuse("a parenthesis is not closed");
    return inner;
  }
  if (take("TRUEPREDICATE")) return NSPredicate::value(true);
  if (take("FALSEPREDICATE")) return NSPredicate::value(false);
  return comparison();
}

NSPredicate PredicateParser::comparison() {
  NSPredicate::Comparison result;
  result.isAny = take("ANY");
  result.keyPath = keyPath();
  result.comparison = comparisonOperator();
  const bool isKeyPath = kind_ == Kind::key || (kind_ == Kind::word && !wordValue());
  if (isKeyPath) {
    result.right = NSPredicate::KeyPath{keyPath()};
  } else {
    PropertyValues list = values();
    if (result.comparison != Operator::in && list.size() != 1) refuse("one value is wanted");
    result.right = std::move(list);
  }
  return NSPredicate(std::move(result));
}

Operator PredicateParser::comparisonOperator() {
  for (const auto& [text, value] : operators) {
    if (take(text)) return value;
  }
  refuse("an operator is wanted");
}

std::string PredicateParser::keyPath() {
  if (kind_ != Kind::key && kind_ != Kind::word) refuse("a key path is wanted");
  std::string path = token_;
  if (kind_ == Kind::key) {
    const PropertyValue argument = nextArgument().value();
    const auto* text = std::get_if<std::string>(&argument);
    if (text == nullptr) refuse("%K wants a text");
    path = *text;
  }
  advance();
  return path;
}

PropertyValues PredicateParser::values() {
  PropertyValues result;
  if (kind_ == Kind::value) {
    result = nextArgument().list();
  } else if (kind_ == Kind::number) {
    result = {number()};
  } else if (kind_ == Kind::text) {
    result = {token_};
  } else if (kind_ == Kind::word) {
    result = {*wordValue()};
  } else if (take("{")) {
    while (kind_ != Kind::symbol || token_ != "}") {
      std::ranges::move(values(), std::back_inserter(result));
      if (!take(",") && token_ != "}") refuse("a list is not closed");
    }
  } else {
    refuse("a value is wanted");
  }
  advance();
  return result;
}

std::optional<PropertyValue> PredicateParser::wordValue() const {
  if (isWord("NIL") || isWord("NULL")) return PropertyValue();
  if (isWord("TRUE") || isWord("YES")) return PropertyValue(std::int64_t{1});
  if (isWord("FALSE") || isWord("NO")) return PropertyValue(std::int64_t{0});
  return std::nullopt;
}

PropertyValue PredicateParser::number() const {
  const char* end = token_.data() + token_.size();
  std::int64_t integer = 0;
  if (std::from_chars(token_.data(), end, integer).ptr == end) return integer;
  double real = 0;
  if (std::from_chars(token_.data(), end, real).ptr == end) return real;
  refuse("\"" + token_ + "\" is no number");
}

const PredicateArgument& PredicateParser::nextArgument() {
  if (usedArguments_ == arguments_.size()) refuse("an argument is missing");
  return arguments_[usedArguments_++];
}

void PredicateParser::advance() {
  while (place_ < format_.size() && isSpace(format_[place_])) ++place_;
  token_.clear();
  kind_ = Kind::end;
  if (place_ == format_.size()) return;
  const char first = format_[place_];
  const char second = place_ + 1 < format_.size() ? format_[place_ + 1] : '\0';
  const auto takeWhile = [this](auto isPart) {
    do {
      token_ += format_[place_++];
    } while (place_ < format_.size() && isPart(format_[place_]));
  };
  if (first == '%' && (second == 'K' || second == '@')) {
    kind_ = second == 'K' ? Kind::key : Kind::value;
    place_ += 2;
  } else if (isWordStart(first)) {
    kind_ = Kind::word;
    takeWhile(isWordPart);
  } else if (isDigit(first) || (first == '-' && isDigit(second))) {
    kind_ = Kind::number;
    takeWhile(isNumberPart);
  } else if (first == '"' || first == '\'') {
    scanText(first);
  } else {
    kind_ = Kind::symbol;
    const std::string_view pair = format_.substr(place_, 2);
    const bool isPair =
        pair == "&&" || pair == "||" ||
        std::ranges::find(operators, pair, &OperatorText::text) != std::end(operators);
    token_ = format_.substr(place_, isPair ? 2 : 1);
    place_ += token_.size();
  }
}

void PredicateParser::scanText(char quote) {
  kind_ = Kind::text;
  for (++place_; place_ < format_.size() && format_[place_] != quote; ++place_) {
    if (format_[place_] == '\\' && place_ + 1 < format_.size()) ++place_;
    token_ += format_[place_];
  }
  if (place_ == format_.size()) refuse("a text is not closed");
  ++place_;
}

bool PredicateParser::isWord(std::string_view word) const {
  return kind_ == Kind::word && std::ranges::equal(token_, word, {}, capital);
}

bool PredicateParser::take(std::string_view wordOrSymbol) {
  if (!isWord(wordOrSymbol) && (kind_ != Kind::symbol || token_ != wordOrSymbol)) return false;
  advance();
  return true;
}

void PredicateParser::refuse(const std::string& reason) const {
  throw StoreError(StoreError::Kind::invalidRequest,
                   "the predicate \"" + std::string(format_) + "\" can't be read: " + reason);
}

}  // namespace platform
