#include "DataManager/Author.h"

namespace velloro {

Author author(RunTarget target) {
  switch (target) {
    using enum RunTarget;
    case today:
      return Author::today;
    case widgets:
    case macWidgets:
      return Author::widget;
    case siri:
    case macSiri:
    case watchSiri:
      return Author::siri;
    case siriUI:
    case macSiriUI:
      return Author::siriUI;
    case notification:
      return Author::notification;
    case deviceActivity:
      return Author::deviceActivity;
    case app:
    case macApp:
    case watchApp:
    case unknown:
      break;
  }
  return Author::app;
}

bool mayMirror(RunTarget target) {
  constexpr unsigned mirroring = 0x3A8B;  // a bit for each target
  return (mirroring >> static_cast<unsigned>(target) & 1) != 0;
}

}  // namespace velloro
