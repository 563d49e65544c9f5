#pragma once

#include <exception>
#include <expected>
#include <functional>
#include <memory>
#include <string>

namespace platform {

/// A failure that a caller can tell apart (`domain`, `code`) and a person can read
/// (`localizedDescription`). What fails by throwing throws a type derived from it; what fails by
/// answer hands out an `ErrorPtr`.
///
///     Error("velloro.store", 2, "The file \"a.sqlite\" is not a database.").code();    // 2
class Error : public std::exception {
 public:
  Error(std::string domain, int code, std::string localizedDescription);

  [[nodiscard]] const std::string& domain() const { return domain_; }
  [[nodiscard]] int code() const { return code_; }
  [[nodiscard]] const std::string& localizedDescription() const { return description_; }
  [[nodiscard]] const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::string domain_;
  int code_;
  std::string description_;
};

/// A shared, immutable error, as answers carry it.
using ErrorPtr = std::shared_ptr<const Error>;

/// A value, or the error that is the reason why there is none.
template <typename T>
using Result = std::expected<T, ErrorPtr>;

/// A callback for an asynchronous answer, called exactly once.
template <typename T>
using Completion = std::move_only_function<void(Result<T>)>;

/// The failing side of a `Result`:
///
///     const Result<int> none = failure<Error>("velloro.store", 2, "There is no store.");
///     none.error()->localizedDescription();    // "There is no store."
template <typename E, typename... Arguments>
[[nodiscard]] std::unexpected<ErrorPtr> failure(Arguments&&... arguments) {
  return std::unexpected<ErrorPtr>(
      std::make_shared<const E>(std::forward<Arguments>(arguments)...));
}

/// A file system or system call failure: domain "POSIX", `code` the error number, and a text that
/// names what was tried, on which file, and the system's reason.
class PosixError : public Error {
 public:
  /// \param attempt What was tried and on what, such as `cannot open "a.log"`.
  PosixError(const std::string& attempt, int errorNumber);
};

}  // namespace platform
