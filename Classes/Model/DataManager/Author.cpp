#include "DataManager/Author.h"

#include <algorithm>
#include <iterator>

namespace velloro {
namespace {

struct TargetRow {
  RunTarget target;
  Author author;
  bool mayMirror;
};

constexpr TargetRow targets[] = {
    {RunTarget::app, Author::app, true},
    {RunTarget::today, Author::today, true},
    {RunTarget::widgets, Author::widget, false},
    {RunTarget::siri, Author::siri, true},
    {RunTarget::siriUI, Author::siriUI, false},
    {RunTarget::notification, Author::notification, false},
    {RunTarget::deviceActivity, Author::deviceActivity, false},
    {RunTarget::macApp, Author::app, true},
    {RunTarget::macWidgets, Author::widget, false},
    {RunTarget::macSiri, Author::siri, true},
    {RunTarget::macSiriUI, Author::siriUI, false},
    {RunTarget::watchApp, Author::app, true},
    {RunTarget::watchSiri, Author::siri, true},
    {RunTarget::unknown, Author::app, true},
};

const TargetRow& rowOf(RunTarget target) {
  return *std::ranges::find(targets, target, &TargetRow::target);
}
static_assert(std::size(targets) == static_cast<std::size_t>(RunTarget::unknown) + 1);

}  // namespace

Author author(RunTarget target) {
  return rowOf(target).author;
}

bool mayMirror(RunTarget target) {
  return rowOf(target).mayMirror;
}

}  // namespace velloro
