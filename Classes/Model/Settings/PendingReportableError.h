#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "Foundation/Time/Date.h"
#include "Foundation/Values/Error.h"
#include "OxKit/Platform.h"

#include <string>
#include <string_view>

namespace velloro {

/// A failure that was not shown to the user, stored until the host program can report it.
struct PendingReportableError {
  Date date;
  std::string errorDescription;
  std::string underlyingError;  ///< All that is known: "velloro.store 2: The file is no database."

  /// Where the suite of the application's group keeps it, as the bytes of its JSON; the newest
  /// takes the place of the one before.
  static constexpr std::string_view storageKey = "PendingReportableError";

  /// As of now.
  [[nodiscard]] static PendingReportableError of(const Error& error);
  /// Keeps it. Where that can't be done, a line in the log is all that is left of it.
  void save() const;

  bool operator==(const PendingReportableError&) const = default;
  static constexpr auto codingKeys =
      keys(key("date", &PendingReportableError::date),
           key("errorDescription", &PendingReportableError::errorDescription),
           key("underlyingError", &PendingReportableError::underlyingError));
};

}  // namespace velloro
