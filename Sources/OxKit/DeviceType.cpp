#include "OxKit/DeviceType.h"

#include "Foundation/Process/Environment.h"
#include "OxKit/Platform.h"

namespace velloro {
namespace {

using IPhone = DeviceType::IPhone;
using IPad = DeviceType::IPad;
using TV = DeviceType::TV;
using Watch = DeviceType::Watch;
using Mac = DeviceType::Mac;
using CarPlay = DeviceType::CarPlay;

struct Row {
  std::string_view identifier;
  DeviceType::Model model;
};

constexpr Row models[] = {
    {"iPhone12,1", IPhone::iPhone11},
    {"iPhone12,3", IPhone::iPhone11Pro},
    {"iPhone12,5", IPhone::iPhone11ProMax},
    {"iPhone12,8", IPhone::iPhoneSE2},
    {"iPhone13,1", IPhone::iPhone12Mini},
    {"iPhone13,2", IPhone::iPhone12},
    {"iPhone13,3", IPhone::iPhone12Pro},
    {"iPhone13,4", IPhone::iPhone12ProMax},
    {"iPhone14,2", IPhone::iPhone13Pro},
    {"iPhone14,3", IPhone::iPhone13ProMax},
    {"iPhone14,4", IPhone::iPhone13Mini},
    {"iPhone14,5", IPhone::iPhone13},
    {"iPhone14,6", IPhone::iPhoneSE3},
    {"iPhone14,7", IPhone::iPhone14},
    {"iPhone14,8", IPhone::iPhone14Plus},
    {"iPhone15,2", IPhone::iPhone14Pro},
    {"iPhone15,3", IPhone::iPhone14ProMax},
    {"iPad12,1", IPad::iPad9},
    {"iPad12,2", IPad::iPad9},
    {"iPad13,4", IPad::iPadPro11},
    {"iPad13,5", IPad::iPadPro11},
    {"iPad13,6", IPad::iPadPro11},
    {"iPad13,7", IPad::iPadPro11},
    {"iPad13,8", IPad::iPadPro13},
    {"iPad13,9", IPad::iPadPro13},
    {"iPad13,10", IPad::iPadPro13},
    {"iPad13,11", IPad::iPadPro13},
    {"iPad13,16", IPad::iPadAir5},
    {"iPad13,17", IPad::iPadAir5},
    {"iPad13,18", IPad::iPad10},
    {"iPad13,19", IPad::iPad10},
    {"iPad14,1", IPad::iPadMini6},
    {"iPad14,2", IPad::iPadMini6},
    {"AppleTV5,3", TV::hd},
    {"AppleTV6,2", TV::tv4K},
    {"AppleTV11,1", TV::tv4K},
    {"AppleTV14,1", TV::tv4K},
    {"Watch5,9", Watch::mm40},
    {"Watch5,10", Watch::mm44},
    {"Watch5,11", Watch::mm40},
    {"Watch5,12", Watch::mm44},
    {"Watch6,1", Watch::mm40},
    {"Watch6,2", Watch::mm44},
    {"Watch6,3", Watch::mm40},
    {"Watch6,4", Watch::mm44},
    {"Watch6,6", Watch::mm41},
    {"Watch6,7", Watch::mm45},
    {"Watch6,8", Watch::mm41},
    {"Watch6,9", Watch::mm45},
    {"Watch6,10", Watch::mm40},
    {"Watch6,11", Watch::mm44},
    {"Watch6,12", Watch::mm40},
    {"Watch6,13", Watch::mm44},
    {"Watch6,14", Watch::mm41},
    {"Watch6,15", Watch::mm45},
    {"Watch6,16", Watch::mm41},
    {"Watch6,17", Watch::mm45},
    {"Watch6,18", Watch::mm49},
};

/// Beginnings of identifiers, the more special ones first.
constexpr Row beginnings[] = {
    {"iPhone", IPhone::other}, {"iPad", IPad::other},           {"AppleTV", TV::other},
    {"Watch", Watch::other},   {"MacBookAir", Mac::macBookAir}, {"MacBookPro", Mac::macBookPro},
    {"iMac", Mac::iMac},       {"Macmini", Mac::macMini},       {"MacPro", Mac::macPro},
    {"Mac", Mac::other},       {"CarPlay", CarPlay::other},
};

}  // namespace

std::optional<DeviceType> DeviceType::fromModelIdentifier(std::string_view identifier) {
  for (const Row& row : models) {
    if (identifier == row.identifier) return DeviceType{row.model};
  }
  for (const Row& row : beginnings) {
    if (identifier.starts_with(row.identifier)) return DeviceType{row.model};
  }
  return std::nullopt;
}

DeviceType DeviceType::current() {
  return fromModelIdentifier(Environment::current().deviceModel())
      .value_or(DeviceType{IPhone::other});
}

bool DeviceType::isInSimulator() {
  return !Environment::current().variable("SIMULATOR_MODEL_IDENTIFIER").empty();
}

}  // namespace velloro
