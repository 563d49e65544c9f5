#pragma once

#include "CoreData/Context/NSManagedObjectContext.h"
#include "Foundation/Coding/Coding.h"
#include "OxKit/Platform.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// What is wrong with a store, as `velloro store check` prints it.
struct StoreCheckReport {
  std::string file;
  std::vector<std::string> findings;  ///< Empty for a sound store.

  static constexpr auto codingKeys =
      keys(key("file", &StoreCheckReport::file), key("findings", &StoreCheckReport::findings));

  /// \throws Error when the store can't be read at all.
  [[nodiscard]] static StoreCheckReport of(NSManagedObjectContext& context);
  [[nodiscard]] std::string json() const;
  [[nodiscard]] std::string text() const;
};

/// How much a store holds, as `velloro store stats` prints it.
struct StoreStats {
  struct Entity {
    std::string name;
    std::size_t rows = 0;

    static constexpr auto codingKeys = keys(key("name", &Entity::name), key("rows", &Entity::rows));
  };

  std::string file;
  std::uint64_t bytes = 0;                    ///< With what is not yet in the main file.
  std::size_t saves = 0;                      ///< In the history.
  std::optional<Date> newest = std::nullopt;  ///< When the last of them was.
  std::vector<Entity> entities = {};

  static constexpr auto codingKeys =
      keys(key("file", &StoreStats::file), key("bytes", &StoreStats::bytes),
           key("saves", &StoreStats::saves), key("newest", &StoreStats::newest),
           key("entities", &StoreStats::entities));

  /// \throws Error
  [[nodiscard]] static StoreStats of(NSManagedObjectContext& context);
  [[nodiscard]] std::string json() const;
  [[nodiscard]] std::string text() const;
};

/// A save, as `velloro store history` prints it.
struct StoreSave {
  struct Rows {
    std::string entity;
    std::vector<std::int64_t> keys = {};

    static constexpr auto codingKeys =
        platform::keys(key("entity", &Rows::entity), key("keys", &Rows::keys));
  };

  std::int64_t number = 0;
  Date timestamp;
  std::optional<std::string> author;
  std::optional<std::string> contextName;
  std::vector<Rows> inserted;
  std::vector<Rows> updated;
  std::vector<Rows> deleted;

  static constexpr auto codingKeys =
      keys(key("number", &StoreSave::number), key("timestamp", &StoreSave::timestamp),
           key("author", &StoreSave::author), key("contextName", &StoreSave::contextName),
           key("inserted", &StoreSave::inserted), key("updated", &StoreSave::updated),
           key("deleted", &StoreSave::deleted));

  struct List {
    std::vector<StoreSave> saves;
    ErrorPtr damage;  ///< Where a part of one can't be read, and is left out.
  };
  /// Those later than an instant, oldest first. \throws Error
  [[nodiscard]] static List after(Date instant, NSManagedObjectContext& context);
  [[nodiscard]] static std::string json(const std::vector<StoreSave>& saves);
  /// One line.
  [[nodiscard]] std::string text() const;
};

}  // namespace velloro
