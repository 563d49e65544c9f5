#pragma once

/// Stands between SQLite and the disk while it lives: the operation number `failAt` fails, of the
/// writes and syncs or of the reads.
class FailingDisk {
 public:
  enum class Mode {
    full,            ///< The disk has no room for it; later there is room again.
    overQuota,       ///< The same, of a person's share of the disk.
    noRoomForIndex,  ///< There is none for the shared index of the log, however often it is tried.
    powerCut,        ///< Half of it is written, and then nothing works any more.
    unreadable,      ///< It can't be read; later it can again.
  };

  FailingDisk(Mode mode, int failAt);
  FailingDisk(const FailingDisk&) = delete;
  FailingDisk& operator=(const FailingDisk&) = delete;
  ~FailingDisk();

  [[nodiscard]] bool hasFailed() const;
};
