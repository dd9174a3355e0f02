#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "helper/jump/default_button.h"

namespace veltrix::testing {

// A part of a window that a test describes. Counts the questions to it and everything in it.
struct FakePart {
  AccessiblePart::Kind kind = AccessiblePart::Kind::kGroup;
  bool isDefault = false;
  ScreenArea area;
  std::vector<FakePart> parts;
  bool hasGone = false;
};

inline FakePart defaultButtonAt(ScreenArea area) {
  return {AccessiblePart::Kind::kButton, true, area, {}, false};
}
inline FakePart plainButton() {
  return {AccessiblePart::Kind::kButton, false, {}, {}, false};
}
inline FakePart groupOf(std::vector<FakePart> parts) {
  return {AccessiblePart::Kind::kGroup, false, {}, std::move(parts), false};
}

class FakeAccessible final : public AccessiblePart {
 public:
  // The part and the count must outlive the object.
  FakeAccessible(const FakePart& part, int* questions) : fPart(part), fQuestions(questions) {}

  Kind kind() override {
    ++*fQuestions;
    return fPart.kind;
  }
  bool isUsableDefault() override {
    ++*fQuestions;
    return fPart.isDefault;
  }
  int partCount() override {
    ++*fQuestions;
    return static_cast<int>(fPart.parts.size());
  }
  std::unique_ptr<AccessiblePart> part(int index) override {
    ++*fQuestions;
    const FakePart& part = fPart.parts.at(static_cast<std::size_t>(index));
    return part.hasGone ? nullptr : std::make_unique<FakeAccessible>(part, fQuestions);
  }
  std::optional<ScreenArea> place() override {
    ++*fQuestions;
    return fPart.hasGone ? std::nullopt : std::optional(fPart.area);
  }

 private:
  const FakePart& fPart;
  int* fQuestions;
};

}  // namespace veltrix::testing
