#include "Foundation/Process/VirtualEnvironment.h"
#include "VelloroCore/Appearance/CheckableTaskMeasures.h"

#include <tuple>

#include <gtest/gtest.h>

namespace velloro {
namespace {

TEST(CheckableTaskMeasures, AreWholePoints) {
  using namespace CheckableTaskConstants;
  platform::VirtualEnvironment environment;
  for (const auto& [model, font, width] :
       {std::tuple("iPhone14,5", 7, 60), std::tuple("Mac16,1", 8, 65)}) {
    environment.setDeviceModel(model);
    EXPECT_EQ(titleFontSizeForTaskDiameter(50), font) << model;
    EXPECT_EQ(titleLabelWidthForDiameter(50), width) << model;
  }
  // 31.5 and 115.5, which binary products of 0.35 miss
  for (const auto& [ring, button] : {std::tuple(90, 50), std::tuple(330, 116)}) {
    EXPECT_EQ(actionButtonDiameter(ring), button);
  }
}

}  // namespace
}  // namespace velloro
