#include "Notifications/NotificationData.h"

#include "Foundation/Text/String.h"
#include "HelperClasses/DictionaryCoder.h"
#include "OxLog/LeftOut.h"

namespace velloro {
namespace {

constexpr std::string_view userInfoKey = "velloro";
constexpr DictionaryEncoder encoder{.dateForm = DateForm::iso8601};

/// For the log, which takes a damaged one as well.
std::string described(const PropertyList& userInfo) {
  try {
    return userInfo.json();
  } catch (const EncodingError& error) {
    return error.localizedDescription();
  }
}

}  // namespace

NotificationData::Error::Error(Reason reason)
    : platform::Error("velloro.NotificationData", static_cast<int>(reason),
                      "The notification carries no record of its task.") {}

NotificationData NotificationData::fromUserInfo(const PropertyList& userInfo) {
  const PropertyList& record = userInfo[userInfoKey];
  if (record.dictionary() == nullptr) {
    Log::notifications.error(
        [&] { return "Unable to cast to [String: Any]: " + excerpt(described(userInfo)); });
    throw Error(Error::Reason::invalidUserInfoData);
  }
  const auto leftOut = logLeftOut(Log::notifications, "NotificationData");
  const DictionaryDecoder decoder{.dateForm = DateForm::iso8601, .didLeaveOut = &leftOut};
  return decoder.decode<NotificationData>(*record.dictionary());
}

PropertyList NotificationData::userInfo() const {
  try {
    return PropertyList::Dictionary{{std::string(userInfoKey), encoder.encode(*this)}};
  } catch (const EncodingError& error) {
    Log::notifications.error(error);
    return PropertyList::Dictionary{};
  }
}

}  // namespace velloro
