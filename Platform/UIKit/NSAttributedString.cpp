#include "UIKit/NSAttributedString.h"

namespace platform {
namespace {

bool showTheSame(const NSTextAttachment* left, const NSTextAttachment* right) {
  if (left == nullptr || right == nullptr) return left == right;
  return left->name() == right->name() && left->size() == right->size();
}

}  // namespace

bool NSAttributedString::Run::operator==(const Run& other) const {
  return text == other.text && attributes == other.attributes &&
         showTheSame(attachment.get(), other.attachment.get());
}

void NSAttributedString::append(std::string_view text, const Attributes& attributes) {
  if (!text.empty()) append(Run{.text = std::string(text), .attributes = attributes});
}

void NSAttributedString::append(std::shared_ptr<const NSTextAttachment> attachment,
                                const Attributes& attributes) {
  append(Run{.text = "", .attributes = attributes, .attachment = std::move(attachment)});
}

void NSAttributedString::append(const NSAttributedString& other) {
  const std::vector<Run> added = other.runs_;
  for (const Run& run : added) append(run);
}

std::string NSAttributedString::string() const {
  std::string text;
  for (const Run& run : runs_) text += run.attachment ? "\uFFFC" : run.text;
  return text;
}

void NSAttributedString::append(const Run& run) {
  const bool joins = !runs_.empty() && !run.attachment && !runs_.back().attachment &&
                     runs_.back().attributes == run.attributes;
  if (joins) {
    runs_.back().text += run.text;
  } else {
    runs_.push_back(run);
  }
}

}  // namespace platform
