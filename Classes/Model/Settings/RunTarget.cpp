#include "Settings/RunTarget.h"

#include "OxKit/DeviceType.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace velloro {
namespace {

/// Before the identifiers of builds that can only run on a Mac.
constexpr std::string_view macPrefix = "maccatalyst.";

struct TargetRow {
  std::string_view identifier;
  RunTarget target;
  RunTarget onMac = target;
};

constexpr TargetRow targets[] = {
    {"velloro.app", RunTarget::app, RunTarget::macApp},
    {"velloro.app.today", RunTarget::today},
    {"velloro.app.widgets", RunTarget::widgets, RunTarget::macWidgets},
    {"velloro.app.siri", RunTarget::siri, RunTarget::macSiri},
    {"velloro.app.siriui", RunTarget::siriUI, RunTarget::macSiriUI},
    {"velloro.app.notification", RunTarget::notification},
    {"velloro.app.deviceactivity", RunTarget::deviceActivity},
    {"velloro.app.watchkitapp.watchkitextension", RunTarget::watchApp},
    {"velloro.app.watchkitapp.watchkitextension.siri", RunTarget::watchSiri},
};

}  // namespace

RunTarget runTarget(const BundleInfo& bundle) {
  std::string_view identifier = bundle.identifier;
  const bool isMacOnly = identifier.starts_with(macPrefix);
  if (isMacOnly) identifier.remove_prefix(macPrefix.size());
  const auto* found = std::ranges::find(targets, identifier, &TargetRow::identifier);
  if (found == std::end(targets)) return RunTarget::unknown;
  if (isMacOnly) return found->onMac != found->target ? found->onMac : RunTarget::unknown;
  const bool isOnMac = DeviceType::current().family() == DeviceType::Family::mac;
  return isOnMac ? found->onMac : found->target;
}

bool isExtension(const BundleInfo& bundle) {
  switch (runTarget(bundle)) {
    case RunTarget::app:
    case RunTarget::macApp:
    case RunTarget::watchApp:
      return false;
    case RunTarget::unknown:
      return bundle.pathExtension == "appex";
    default:
      return true;
  }
}

bool isExtension() {
  return isExtension(Environment::current().bundle());
}

}  // namespace velloro
