#pragma once

#include "CoreData/Context/NSPersistentContainer.h"
#include "Foundation/Coding/RawValue.h"

namespace platform {

/// Something that a store's mirror does or has done.
struct NSPersistentCloudKitContainerEvent {
  enum class Type { setup, import_, export_ };

  UUID identifier;  ///< The same at the beginning and at the end.
  Type type = Type::setup;
  Date startDate;
  std::optional<Date> endDate = std::nullopt;  ///< Absent while it is under way.
  ErrorPtr error = nullptr;
};

constexpr auto rawValues(std::type_identity<NSPersistentCloudKitContainerEvent::Type>) {
  using enum NSPersistentCloudKitContainerEvent::Type;
  return rawIntegers<NSPersistentCloudKitContainerEvent::Type>(
      {{setup, 0}, {import_, 1}, {export_, 2}});
}

/// Posted where the mirror posts it; the object is the `NSPersistentCloudKitContainer`, and the
/// event stands in the user info under the key.
inline constexpr const char* NSPersistentCloudKitContainerEventChangedNotification =
    "NSPersistentCloudKitContainerEventChangedNotification";
inline constexpr const char* NSPersistentCloudKitContainerEventUserInfoKey = "event";

/// Synchronises a store with a cloud container. It reads the store's history, writes as any other
/// context does, and reports its work by `NSPersistentCloudKitContainer::post`. It is destroyed
/// with its container.
class StoreMirror {
 public:
  virtual ~StoreMirror() = default;
};

/// A container whose store may be mirrored: when its description has cloud options and a mirror is
/// plugged in, one is made once the store is open. Without either it is a plain container, and
/// there are no events.
///
///     NSPersistentCloudKitContainer::setMirrorFactory([](auto& container, const auto& options) {
///       return std::make_unique<StoreMirror>();    // or, of course, of one derived from it
///     });
class NSPersistentCloudKitContainer : public NSPersistentContainer {
 public:
  using MirrorFactory = std::function<std::unique_ptr<StoreMirror>(
      NSPersistentCloudKitContainer&, const NSPersistentCloudKitContainerOptions&)>;

  using NSPersistentContainer::NSPersistentContainer;
  ~NSPersistentCloudKitContainer() override;

  /// For the containers loaded from now on; null for none. Before there are threads.
  static void setMirrorFactory(MirrorFactory factory);

  void loadPersistentStores(const LoadHandler& handler) override;
  [[nodiscard]] bool isMirrored() const { return mirror_ != nullptr; }

  /// For the mirror: posts the event to whoever observes.
  void post(const NSPersistentCloudKitContainerEvent& event);

 private:
  std::unique_ptr<StoreMirror> mirror_;
};

}  // namespace platform
