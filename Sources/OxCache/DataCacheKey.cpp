#include "OxCache/DataCacheKey.h"

#include "Foundation/Text/String.h"

#include <cmath>

namespace velloro {
namespace {

std::string sizeText(CGSize size) {
  return stringWithFormat("%01.0fx%01.0f", size.width, size.height);
}

bool isWhole(double value) {
  return value == std::round(value);
}

bool isWhole(CGSize size) {
  return isWhole(size.width) && isWhole(size.height);
}

std::string partsText(const std::vector<DataCacheKey::Part>& parts) {
  std::string text;
  for (const auto& [key, value] : parts) text.append(",").append(key).append("=").append(value);
  return text;
}

}  // namespace

void DataCacheKey::add(std::string_view value, std::string_view key) {
  parts_.emplace_back(key, value);
}

void DataCacheKey::add(CGSize value, std::string_view key) {
  add(sizeText(value), key);
  if (isWhole(value)) return;
  add(stringWithFormat("%.17gx%.17g", value.width, value.height), "exact");
}

void DataCacheKey::add(const DataCacheKey& value, std::string_view key) {
  add(value.text(), key);
}

std::string DataCacheKey::text() const {
  return identifier_ + partsText(parts_);
}

std::uint64_t DataCacheKey::nsCacheKey() const {
  constexpr std::uint64_t withoutTopByte = 0x00ff'ffff'ffff'ffff;
  std::uint64_t hash = 5381;
  for (const char byte : text()) {
    hash = (hash & withoutTopByte) * 127 + static_cast<unsigned char>(byte);
  }
  return hash;
}

std::string DataCacheKey::debugDescription() const {
  return "DataCacheKey[ id=" + text() + " ]";
}

std::string ImageCacheKey::text() const {
  const std::string scale = stringWithFormat("%01.0fx,", scale_);
  const CGSize size = size_.value_or(CGSize{});
  const std::string text = (size_ ? sizeText(size) + "@" : "") + scale + DataCacheKey::text();
  if (isWhole(size) && isWhole(scale_)) return text;
  return text + stringWithFormat(",exact=%.17gx%.17g@%.17g", size.width, size.height, scale_);
}

std::string ImageCacheKey::debugDescription() const {
  return "ImageCacheKey[ id=" + identifier() + " parts=" + partsText(parts()) +
         ", size=" + (size_ ? sizeText(*size_) : "none") +
         stringWithFormat(" scale=%01.0f ]", scale_);
}

}  // namespace velloro
