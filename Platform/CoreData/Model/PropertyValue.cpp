#include "CoreData/Model/PropertyValue.h"

#include "CoreData/Model/NSEntityDescription.h"

#include <algorithm>

namespace platform {
namespace {

std::optional<double> real(const PropertyValue& value) {
  if (const auto* number = std::get_if<double>(&value)) return *number;
  if (const auto* number = std::get_if<std::int64_t>(&value)) return static_cast<double>(*number);
  return std::nullopt;
}

/// Numbers of both kinds share a rank.
std::size_t rank(const PropertyValue& value) {
  return std::holds_alternative<double>(value) ? 1 : value.index();
}

}  // namespace

std::strong_ordering NSManagedObjectID::operator<=>(const NSManagedObjectID& other) const {
  if (entity == other.entity) return key <=> other.key;
  const auto place = [](const NSEntityDescription* description) {
    return description != nullptr ? static_cast<std::int64_t>(description->index()) : -1;
  };
  return place(entity) <=> place(other.entity);
}

std::weak_ordering order(const PropertyValue& one, const PropertyValue& other) {
  if (one.index() != other.index()) {
    if (rank(one) != rank(other)) return rank(one) <=> rank(other);
    return std::weak_order(*real(one), *real(other));
  }
  if (const auto* number = std::get_if<double>(&one)) {
    return std::weak_order(*number, std::get<double>(other));
  }
  if (const auto* number = std::get_if<std::int64_t>(&one)) {
    return *number <=> std::get<std::int64_t>(other);
  }
  if (const auto* text = std::get_if<std::string>(&one)) {
    return *text <=> std::get<std::string>(other);
  }
  if (const auto* data = std::get_if<Data>(&one)) return *data <=> std::get<Data>(other);
  if (const auto* id = std::get_if<NSManagedObjectID>(&one)) {
    return *id <=> std::get<NSManagedObjectID>(other);
  }
  return std::weak_ordering::equivalent;
}

UUID AttributeForm<UUID>::from(const PropertyValue& value) {
  UUID::Bytes bytes{};
  const auto* data = std::get_if<Data>(&value);
  if (data != nullptr && data->size() == bytes.size()) {
    std::ranges::transform(data->bytes(), bytes.begin(),
                           [](std::byte byte) { return static_cast<std::uint8_t>(byte); });
  }
  return UUID(bytes);
}

PropertyValue AttributeForm<UUID>::to(const UUID& value) {
  return Data(std::as_bytes(std::span(value.bytes())));
}

}  // namespace platform
