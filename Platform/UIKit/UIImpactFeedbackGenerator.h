#pragma once

namespace platform {

/// Would tap on the user's finger. The devices that this platform runs on have no engine for it, so
/// it only remembers that it was made ready.
class UIImpactFeedbackGenerator {
 public:
  void prepare() { isPrepared_ = true; }
  [[nodiscard]] bool isPrepared() const { return isPrepared_; }

 private:
  bool isPrepared_ = false;
};

}  // namespace platform
