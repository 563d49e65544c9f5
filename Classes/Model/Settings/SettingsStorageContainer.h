#pragma once

#include "Foundation/Coding/JSON.h"
#include "Foundation/Values/Data.h"
#include "OxKit/Platform.h"
#include "Settings/SettingTable.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace velloro {

/// A value of one of the kinds that are kept, or of none. A record is kept as the bytes of its
/// JSON.
using SettingContent = std::variant<std::monostate, std::int64_t, bool, double, std::string, Data>;

template <typename T>
[[nodiscard]] SettingContent settingContent(std::optional<T> value) {
  return value ? SettingContent(std::move(*value)) : SettingContent();
}

/// One tier of the settings: values by key, wherever they are kept. A key without a value reads as
/// 0, false or absent, and so does one whose value is of a kind that can't be converted. A write is
/// seen by the next read; nothing fails outward.
class SettingsStorageContainer {
 public:
  SettingsStorageContainer() = default;
  virtual ~SettingsStorageContainer() = default;
  SettingsStorageContainer(const SettingsStorageContainer&) = delete;
  SettingsStorageContainer& operator=(const SettingsStorageContainer&) = delete;

  /// What is kept under a key, as a value of that kind: of no kind where that is nothing, or can't
  /// be converted, but 0 and false for numbers and flags.
  [[nodiscard]] virtual SettingContent read(std::string_view key, SettingKind kind) const = 0;
  /// A value of no kind removes the key.
  virtual void write(SettingContent value, std::string_view key) = 0;

  [[nodiscard]] std::int64_t integerForKey(std::string_view key) const {
    return valueForKey<std::int64_t>(key, SettingKind::int_).value_or(0);
  }
  void setInteger(std::int64_t value, std::string_view key) { write(value, key); }
  [[nodiscard]] bool boolForKey(std::string_view key) const {
    return valueForKey<bool>(key, SettingKind::bool_).value_or(false);
  }
  void setBool(bool value, std::string_view key) { write(value, key); }
  [[nodiscard]] std::optional<std::string> stringForKey(std::string_view key) const {
    return valueForKey<std::string>(key, SettingKind::string);
  }
  /// Absent removes the key; so it does in `setData` and `setCodable`.
  void setString(std::optional<std::string> value, std::string_view key) {
    write(settingContent(std::move(value)), key);
  }
  [[nodiscard]] std::optional<Data> dataForKey(std::string_view key) const {
    return valueForKey<Data>(key, SettingKind::codable);
  }
  void setData(std::optional<Data> value, std::string_view key) {
    write(settingContent(std::move(value)), key);
  }
  [[nodiscard]] double doubleForKey(std::string_view key) const {
    return valueForKey<double>(key, SettingKind::double_).value_or(0);
  }
  void setDouble(double value, std::string_view key) { write(value, key); }

  /// Whether a value is stored under the key. A tier that can't distinguish this returns false for
  /// a value that reads as absent.
  [[nodiscard]] virtual bool hasValue(std::string_view key) const;
  /// Reads the values again that the tier keeps in memory. If that fails, they stay as they were.
  virtual Result<void> refresh() { return {}; }
  /// Keeps the other threads from writing here. Taken before a transaction of the store in which
  /// this tier is refreshed, since a write here waits for the store.
  [[nodiscard]] virtual std::unique_lock<std::recursive_mutex> holdWrites() const { return {}; }
  /// Does several writes, all of them or none where the tier can. Fails if they are not kept.
  virtual Result<void> writeTogether(const std::function<void()>& writes) {
    writes();
    if (auto error = saveError()) return std::unexpected(std::move(error));
    return {};
  }
  /// Until it goes, no other process that asks for it changes settings. Null where a tier is not
  /// shared, or the lock can't be had.
  [[nodiscard]] virtual std::shared_ptr<void> exclusiveAccess() const { return nullptr; }
  /// Why something written is not kept beyond this process; null when all is.
  [[nodiscard]] virtual ErrorPtr saveError() const { return nullptr; }

  /// A value of any type that has a form in JSON, kept as the bytes of its JSON. Absent as well
  /// when they can't be read as a `T`.
  template <typename T>
  [[nodiscard]] std::optional<T> codableForKey(std::string_view key) const {
    const auto data = dataForKey(key);
    if (!data) return std::nullopt;
    try {
      return JSONDecoder{}.decode<T>(data->text());
    } catch (const DecodingError& error) {
      decodingFailed(error);
      return std::nullopt;
    }
  }
  /// A value that JSON can't hold changes nothing, and is logged.
  template <typename T>
  void setCodable(const std::optional<T>& value, std::string_view key) {
    if (!value) return setData(std::nullopt, key);
    if (auto data = encoded(*value)) setData(std::move(data), key);
  }

  /// The bytes that `setCodable` keeps; absent for a value that JSON can't hold, which is logged.
  template <typename T>
  [[nodiscard]] std::optional<Data> encoded(const T& value) const {
    try {
      return Data(JSONEncoder{}.encode(value));
    } catch (const EncodingError& error) {
      encodingFailed(error);
      return std::nullopt;
    }
  }

 private:
  template <typename T>
  [[nodiscard]] std::optional<T> valueForKey(std::string_view key, SettingKind kind) const {
    SettingContent content = read(key, kind);
    T* const value = std::get_if<T>(&content);
    return value != nullptr ? std::optional<T>(std::move(*value)) : std::nullopt;
  }
  /// What a tier does about bytes that make no sense; most are silent.
  virtual void decodingFailed(const DecodingError&) const {}
  /// What it does about a value that JSON can't hold; most log it.
  virtual void encodingFailed(const EncodingError& error) const;
};

}  // namespace velloro
