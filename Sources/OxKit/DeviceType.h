#pragma once

#include <optional>
#include <string_view>
#include <variant>

namespace velloro {

/// The kind of device: a family, and within it a model. Logic asks the family; a model that came
/// out after this list is `other` in its family.
///
///     DeviceType::fromModelIdentifier("iPhone14,5")->family();   // DeviceType::Family::iPhone
///     DeviceType::fromModelIdentifier("Mac16,1")->family();      // DeviceType::Family::mac
struct DeviceType {
  enum class Family { iPhone, iPad, tv, watch, mac, carPlay };

  enum class IPhone {
    other,
    iPhone11,
    iPhone11Pro,
    iPhone11ProMax,
    iPhoneSE2,
    iPhone12Mini,
    iPhone12,
    iPhone12Pro,
    iPhone12ProMax,
    iPhone13Mini,
    iPhone13,
    iPhone13Pro,
    iPhone13ProMax,
    iPhoneSE3,
    iPhone14,
    iPhone14Plus,
    iPhone14Pro,
    iPhone14ProMax
  };
  enum class IPad { other, iPad9, iPad10, iPadMini6, iPadAir5, iPadPro11, iPadPro13 };
  enum class TV { other, hd, tv4K };
  /// By the size of the case, as faces differ by it.
  enum class Watch { other, mm40, mm41, mm44, mm45, mm49 };
  enum class Mac { other, macBookAir, macBookPro, iMac, macMini, macPro };
  enum class CarPlay { other };
  /// In the order of `Family`.
  using Model = std::variant<IPhone, IPad, TV, Watch, Mac, CarPlay>;

  Model model;

  bool operator==(const DeviceType&) const = default;

  [[nodiscard]] Family family() const { return static_cast<Family>(model.index()); }

  /// The type of the device with a hardware name such as "iPhone14,5", "iPad13,16", "AppleTV14,1",
  /// "Watch6,1", "MacBookPro18,1" or "CarPlay". Absent for a name of no known family.
  [[nodiscard]] static std::optional<DeviceType> fromModelIdentifier(std::string_view identifier);
  /// The running device, as the installed `Environment` has it; a phone when its name says nothing.
  [[nodiscard]] static DeviceType current();
  /// Whether the process environment holds the variable SIMULATOR_MODEL_IDENTIFIER; an empty
  /// one counts as none.
  [[nodiscard]] static bool isInSimulator();
};

}  // namespace velloro
