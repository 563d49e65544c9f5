#pragma once

#include "Foundation/Values/Data.h"

#include <any>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// Turns the values of a transformable attribute into bytes for the store and back. Registered by
/// name before a container is made, for example by
/// `setValueTransformer(std::make_shared<SummaryTransformer>(), "SummaryTransformer")`.
///
///     NSValueTransformer::valueTransformerForName("SummaryTransformer");    // absent until then
class NSValueTransformer {
 public:
  virtual ~NSValueTransformer() = default;

  /// Absent for a value that it doesn't know, or that has no bytes.
  [[nodiscard]] virtual std::optional<Data> transformedValue(const std::any& value) const = 0;
  /// Empty for bytes that are no value.
  [[nodiscard]] virtual std::any reverseTransformedValue(const Data& data) const = 0;
  /// Whether nothing is left out when these bytes are read.
  [[nodiscard]] virtual bool isWhole(const Data& data) const {
    return reverseTransformedValue(data).has_value();
  }

  /// Registers a transformer, in place of an earlier one of that name. From any thread, as is the
  /// look-up.
  static void setValueTransformer(std::shared_ptr<const NSValueTransformer> transformer,
                                  std::string name);
  /// Null when there is none.
  [[nodiscard]] static std::shared_ptr<const NSValueTransformer> valueTransformerForName(
      std::string_view name);
};

}  // namespace platform
