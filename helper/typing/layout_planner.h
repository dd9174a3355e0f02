#pragma once

#include <memory>
#include <utility>

#include "helper/typing/layout_watch.h"
#include "helper/typing/typist.h"

namespace veltrix {

// Plans by the layout of the moment.
class LayoutPlanner final : public KeyPlanner {
 public:
  // The loop must outlive it.
  LayoutPlanner(sd_event* loop, UnicodeInput unicode, std::unique_ptr<GroupSource> groups)
      : fLayout(loop, KeyboardSources::ofSystem(), std::move(groups)), fUnicode(unicode) {}

  // Of the driver's keyboard, from the next plan on; k...Lamp bits of driverlink/packets.h.
  void setLamps(std::uint16_t lit) { fLayout.setLamps(lit); }

  std::optional<KeyPress> keysFor(const KeyStroke& stroke) override {
    const KeyboardModel* keyboard = fLayout.current();
    return keyboard == nullptr ? std::nullopt : keyboard->keysFor(stroke);
  }
  std::optional<TypingPlan> plan(const std::string& text) override {
    const KeyboardModel* keyboard = fLayout.current();
    return keyboard == nullptr ? std::nullopt
                               : std::optional<TypingPlan>(planTyping(*keyboard, text, fUnicode));
  }

 private:
  LayoutWatch fLayout;
  UnicodeInput fUnicode;
};

}  // namespace veltrix
