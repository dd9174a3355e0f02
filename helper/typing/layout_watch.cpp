#include "helper/typing/layout_watch.h"

#include <ctime>
#include <utility>

#include "platform/compose_table.h"

namespace veltrix {

namespace {

// For a change that is just being told of: a press right after it is to follow it, but not to hang on a
// server that has no time.
constexpr std::chrono::milliseconds kPatience{20};

}  // namespace

LayoutWatch::LayoutWatch(sd_event* loop, KeyboardSources sources, std::unique_ptr<GroupSource> groups)
    : fLoop(loop),
      fSources(std::move(sources)),
      fContext(xkb::makeContext()),
      fWayland(fContext.get(), [this] { fIsStale = true; }),
      fX11(fContext.get(), [this] { fIsStale = true; }),
      fGroups(std::move(groups)) {
  connect();
}

const KeyboardModel* LayoutWatch::current() {
  connect();
  fX11.settle(kPatience);
  const auto group = groupOfCompositor();
  if (fIsStale || group != fGroup) {
    fGroup = group;
    fIsStale = false;
    fModel.reset();
    auto model = fContext ? KeyboardModel::of(xkb::Context(xkb_context_ref(fContext.get())), keymapOfNow(),
                                              xkb::composeLocale().c_str())
                          : Result<KeyboardModel>(Error{});
    if (model) {
      fModel.emplace(std::move(model.value()));
    }
  }
  if (fModel) {
    fModel->setLamps(fLamps);
  }
  return fModel ? &*fModel : nullptr;
}

// An X server beside a compositor is started by whoever asks for it and knows the group no better, so it is
// asked only where there is no compositor.
void LayoutWatch::connect() {
  const bool wanted = !fSources.waylandDisplay.empty() || !fSources.xDisplay.empty();
  if (!wanted || !fContext || fWayland.isConnected() || fX11.isConnected() || now() < fNextAttempt) {
    return;
  }
  const bool connected =
      (!fSources.waylandDisplay.empty() && fWayland.connect(fLoop, fSources.waylandDisplay)) ||
      (!fSources.xDisplay.empty() && fX11.connect(fLoop, fSources.xDisplay));
  if (connected) {
    fDelay.reset();
    fIsStale = true;
  }
  fNextAttempt = now() + static_cast<std::uint64_t>(std::chrono::microseconds(fDelay.next()).count());
}

// The group may be told before the keymap that has it, so what is beyond the keymap is no group yet.
xkb_layout_index_t LayoutWatch::groupOfCompositor() const {
  auto* const keymap = fWayland.keymap();
  const xkb_layout_index_t group = keymap != nullptr && fGroups ? fGroups->group().value_or(0) : 0;
  return keymap != nullptr && group < xkb_keymap_num_layouts(keymap) ? group : 0;
}

xkb::FoundKeymap LayoutWatch::keymapOfNow() const {
  if (auto* keymap = fWayland.keymap()) {
    return {xkb::Keymap(xkb_keymap_ref(keymap)), fGroup};
  }
  if (auto* keymap = fX11.found().keymap.get()) {
    return {xkb::Keymap(xkb_keymap_ref(keymap)), fX11.found().group};
  }
  return xkb::keymapOfSystem(fContext.get(), fSources.environment, fSources.defaultsFile);
}

std::uint64_t LayoutWatch::now() const {
  std::uint64_t time = 0;
  sd_event_now(fLoop, CLOCK_MONOTONIC, &time);
  return time;
}

}  // namespace veltrix
