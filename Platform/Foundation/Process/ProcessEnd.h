#pragma once

namespace platform {

/// Ends the process at once: what the standard streams hold is written, and nothing is destroyed.
/// Background queues have no end of their own, and a block may be running to the last moment; what
/// it uses, be it of this program or of a library, must not go before it. Whatever else has to be
/// written (a log, a store) is written before this is called, and what the caller's scopes hold has
/// gone.
///
///     int main() { endProcess(EXIT_SUCCESS); }    // whatever the queues are doing
///
/// Under a sanitizer, leaks are looked for as at any other end.
[[noreturn]] void endProcess(int exitCode);

}  // namespace platform
