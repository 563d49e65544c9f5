#pragma once

#include "VelloroCharts/LineGraph.h"
#include "VelloroPictures/PicturePainter.h"

#include <utility>

namespace velloro {

/// A line graph and nothing else, in its own frame.
class GraphPicture final : public Picture {
 public:
  explicit GraphPicture(LineGraph graph) : graph_(std::move(graph)) {}

  [[nodiscard]] CGSize size() const override { return graph_.frame.size; }
  void draw(CGContext& context, const PictureStyle& style) const override;

 private:
  LineGraph graph_;
};

}  // namespace velloro
