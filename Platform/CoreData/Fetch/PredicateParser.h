#pragma once

#include "CoreData/Fetch/NSPredicate.h"

#include <optional>

namespace platform {

/// Reads a predicate's format, by recursive descent:
///
///     either     = both { OR both }
///     both       = opposite { AND opposite }
///     opposite   = NOT opposite | "(" either ")" | TRUEPREDICATE | FALSEPREDICATE | comparison
///     comparison = [ANY] key operator (value | key)
class PredicateParser {
 public:
  PredicateParser(std::string_view format, const std::vector<PredicateArgument>& arguments)
      : format_(format), arguments_(arguments) {
    advance();
  }

  [[nodiscard]] NSPredicate parse();

 private:
  enum class Kind { end, word, number, text, symbol, key, value };  // the last two: %K and %@

  NSPredicate either();
  NSPredicate both();
  NSPredicate opposite();
  NSPredicate comparison();
  NSPredicate::Operator comparisonOperator();
  std::string keyPath();
  PropertyValues values();
  std::optional<PropertyValue> wordValue() const;
  PropertyValue number() const;
  const PredicateArgument& nextArgument();

  void advance();
  void scanText(char quote);
  [[nodiscard]] bool isWord(std::string_view word) const;
  bool take(std::string_view wordOrSymbol);
  [[noreturn]] void refuse(const std::string& reason) const;

  std::string_view format_;
  const std::vector<PredicateArgument>& arguments_;
  std::size_t place_ = 0;
  std::size_t usedArguments_ = 0;
  Kind kind_ = Kind::end;
  std::string token_;
};

}  // namespace platform
