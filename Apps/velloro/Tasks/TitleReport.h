#pragma once

#include "Foundation/Coding/CodingKeys.h"
#include "VelloroCore/Titles/TaskDisplayTitle.h"

#include <optional>
#include <string>
#include <vector>

namespace velloro {

/// A task's title and what each surface shows of it, as `velloro title` prints it.
struct TitleReport {
  struct Text {
    TaskDisplayTitle::Context context = TaskDisplayTitle::Context::voiceOver;
    std::optional<std::string> text;

    static constexpr auto codingKeys =
        keys(key("context", &Text::context), key("text", &Text::text));
  };

  TaskDisplayTitle title;
  std::vector<Text> texts;

  static constexpr auto codingKeys =
      keys(key("title", &TitleReport::title), key("texts", &TitleReport::texts));

  /// In one context, or in all.
  [[nodiscard]] static TitleReport of(const TaskDisplayTitle& title,
                                      std::optional<TaskDisplayTitle::Context> context);

  [[nodiscard]] std::string json() const;
  /// One line per context with its name, and "-" where nothing shows; the text alone when there is
  /// but one.
  [[nodiscard]] std::string text() const;
};

}  // namespace velloro
