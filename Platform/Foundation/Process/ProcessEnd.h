#pragma once

namespace platform {

/// Ends the process immediately: the standard streams are flushed, and no static object is
/// destroyed. Background queues never end, so a block may run to the last moment, and the objects
/// of the program and of libraries that it uses must outlive it. Everything else that must be
/// written (a log, a store) is written before this call, and the caller's local objects are
/// destroyed before it.
///
///     int main() { endProcess(EXIT_SUCCESS); }    // whatever the queues are doing
///
/// Under a sanitizer, leaks are checked as at any other exit.
[[noreturn]] void endProcess(int exitCode);

}  // namespace platform
