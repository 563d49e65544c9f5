#pragma once

/// Stands between SQLite and the disk while it lives: the write or sync number `failAt` fails.
class FailingDisk {
 public:
  enum class Mode {
    full,      ///< The disk has no room for it; later there is room again.
    powerCut,  ///< Half of it is written, and then nothing works any more.
  };

  FailingDisk(Mode mode, int failAt);
  FailingDisk(const FailingDisk&) = delete;
  FailingDisk& operator=(const FailingDisk&) = delete;
  ~FailingDisk();

  [[nodiscard]] bool hasFailed() const;
};
