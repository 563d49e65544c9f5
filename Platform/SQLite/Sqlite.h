#pragma once

#include "SQLite/StoreError.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

struct sqlite3;
struct sqlite3_stmt;

namespace platform {

/// A prepared statement while it is used; its connection keeps it for the next time. Parameters
/// count from 1 and columns from 0. What is bound must live until the statement has run: nothing is
/// copied.
class SqliteStatement {
 public:
  /// A statement as a connection keeps it.
  struct Kept {
    sqlite3_stmt* handle = nullptr;
    const std::filesystem::path* path = nullptr;  // for messages
    bool isInUse = false;
    bool isTransient = false;  // a second use of a text at the same time: not kept
  };

  explicit SqliteStatement(Kept& kept) : kept_(&kept) { kept.isInUse = true; }
  SqliteStatement(SqliteStatement&& other) noexcept
      : kept_(std::exchange(other.kept_, nullptr)), bindError_(other.bindError_) {}
  SqliteStatement& operator=(SqliteStatement&&) = delete;
  ~SqliteStatement();

  void bind(int parameter, std::int64_t value);
  void bind(int parameter, double value);
  void bind(int parameter, std::string_view value);
  void bind(int parameter, std::span<const std::byte> value);
  void bindNull(int parameter);
  template <typename... Values>
  void bindAll(const Values&... values) {
    int parameter = 0;
    (bind(++parameter, values), ...);
  }

  /// Goes to the next row; false when there is none left.
  [[nodiscard]] Result<bool> step();
  /// Runs to the end, and is ready for other values.
  [[nodiscard]] Result<void> run();

  [[nodiscard]] bool isNull(int column) const;
  [[nodiscard]] std::int64_t integer(int column) const;
  [[nodiscard]] double real(int column) const;
  /// \name Valid until the next step.
  /// @{
  [[nodiscard]] std::string_view text(int column) const;
  [[nodiscard]] std::span<const std::byte> bytes(int column) const;
  /// @}

 private:
  Kept* kept_;
  int bindError_ = 0;
};

/// How a file is opened.
enum class SqliteAccess {
  readWrite,  ///< The file is made when it is missing.
  readOnly,   ///< With locks, as one of several programs.
  atRest,     ///< Without locks, and without a byte changed in the file's folder.
};

/// Where rows lie, and how they are reached.
struct SqliteLocation {
  std::filesystem::path path;      ///< Empty for rows in memory.
  std::int64_t applicationID = 0;  ///< What SQLite's `application_id` says in a new file.
  double busyTimeout = 5;          ///< How long to wait for other writers, in seconds.
  SqliteAccess access = SqliteAccess::readWrite;
  bool ignoresLog = false;  ///< At rest: as the file was at the last checkpoint.
};

/// How long a connection waits for another's write, and has waited, in seconds.
struct SqlitePatience {
  double timeout = 0;
  double waited = 0;
};

/// An open file, for one thread at a time. Every failure is a `StoreError`.
///
/// Reading goes on when the disk is full: where the file can't be opened for want of space, the
/// connection is a stand-in that reads the file at rest, and every write fails.
class SqliteConnection {
 public:
  [[nodiscard]] static Result<std::unique_ptr<SqliteConnection>> open(const SqliteLocation& from);
  SqliteConnection(const SqliteConnection&) = delete;
  SqliteConnection& operator=(const SqliteConnection&) = delete;
  ~SqliteConnection();

  /// Prepared the first time, found by its text from then on.
  [[nodiscard]] Result<SqliteStatement> prepare(std::string_view sql);
  /// One statement without rows.
  template <typename... Values>
  [[nodiscard]] Result<void> run(std::string_view sql, const Values&... values) {
    auto statement = prepare(sql);
    if (!statement) return std::unexpected(statement.error());
    statement->bindAll(values...);
    return statement->run();
  }
  /// The first column of the first row as a whole number; absent without a row or a value.
  template <typename... Values>
  [[nodiscard]] Result<std::optional<std::int64_t>> integer(std::string_view sql,
                                                            const Values&... values) {
    auto statement = prepare(sql);
    if (!statement) return std::unexpected(statement.error());
    statement->bindAll(values...);
    const auto row = statement->step();
    if (!row) return std::unexpected(row.error());
    if (!*row || statement->isNull(0)) return std::optional<std::int64_t>();
    return std::optional(statement->integer(0));
  }
  /// A copy of the file as it is now, while others go on writing it; complete and on the disk when
  /// this returns. \param to A file that does not exist.
  [[nodiscard]] Result<void> copyTo(const std::filesystem::path& to);
  /// How many rows the last statement changed.
  [[nodiscard]] std::int64_t changes() const;
  /// Why nothing can be written; null where it can.
  [[nodiscard]] const ErrorPtr& writeError() const { return writeError_; }
  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  /// Which of the files that a store has had is open: for the store.
  int file = 0;
  /// For a file that is no longer the one of its name: closing it leaves alone what lies there now.
  void abandon();

 private:
  using Opened = Result<std::unique_ptr<SqliteConnection>>;

  SqliteConnection(std::filesystem::path path, sqlite3* handle)
      : path_(std::move(path)), handle_(handle) {}
  static Opened openFile(const SqliteLocation& from, const std::string& name, int flags,
                         const char* system = nullptr);
  static Opened openToWrite(const SqliteLocation& from);
  static Opened openAtRest(const SqliteLocation& from);
  Result<void> useWriteAheadLog(std::int64_t applicationID);
  [[nodiscard]] Result<std::string> text(std::string_view sql);
  Result<sqlite3_stmt*> compile(std::string_view sql) const;
  void dropIdleStatements();

  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept {
      return std::hash<std::string_view>{}(text);
    }
  };

  std::filesystem::path path_;
  sqlite3* handle_;
  SqlitePatience patience_;
  ErrorPtr writeError_;
  std::unordered_map<std::string, std::unique_ptr<SqliteStatement::Kept>, TextHash, std::equal_to<>>
      statements_;
};

/// A write that is undone unless it is committed. It has the file to itself from the beginning.
class SqliteTransaction {
 public:
  [[nodiscard]] static Result<SqliteTransaction> begin(SqliteConnection& connection);
  SqliteTransaction(SqliteTransaction&& other) noexcept
      : connection_(std::exchange(other.connection_, nullptr)) {}
  SqliteTransaction& operator=(SqliteTransaction&&) = delete;
  ~SqliteTransaction();

  [[nodiscard]] Result<void> commit();

 private:
  explicit SqliteTransaction(SqliteConnection& connection) : connection_(&connection) {}

  SqliteConnection* connection_;
};

/// An identifier in SQL: "Task" with its quotes.
[[nodiscard]] std::string sqlName(std::string_view name);

}  // namespace platform
