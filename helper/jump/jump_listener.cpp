#include "helper/jump/jump_listener.h"

#include <atspi/atspi.h>
#include <glib-unix.h>
#include <sys/socket.h>

#include "helper/jump/atspi_part.h"
#include "helper/jump/x11_pointer.h"

namespace veltrix {

namespace {

// A program that answers at all answers a question in a millisecond; one that hangs must not hold up the
// dialogs of the others for long.
constexpr int kAnswerMilliseconds = 200;

// A program that has just started may show a dialog before it knows that somebody listens for it. The window
// manager tells of the window all the same, and so often, so long apart, the dialog is then looked for.
constexpr int kMostLooks = 10;
constexpr guint kLookMilliseconds = 100;

struct LoopReleaser {
  void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
};

class Listener {
 public:
  Listener(int helper, std::unique_ptr<X11Pointer> pointer)
      : fHelper(helper),
        fPointer(std::move(pointer)),
        fJumper(*fPointer, DialogJumper::Clock::now, [this](JumpOutcome outcome) {
          tell({kJumpMessageDialog, static_cast<std::uint32_t>(outcome)});
        }) {}

  std::string run();

  void windowActivated(AtspiAccessible* window);
  void lookAtWindow();
  void attempt();
  void takeXEvents();
  void lookForUntold();
  void stop(std::string problem);

 private:
  void tell(const JumpMessage& message) const;

  int fHelper;
  std::unique_ptr<X11Pointer> fPointer;
  DialogJumper fJumper;
  std::unique_ptr<GMainLoop, LoopReleaser> fLoop{g_main_loop_new(nullptr, FALSE)};
  AccessibleHandle fWindow;  // came to the front and has not been looked at
  guint fRetry = 0;
  guint fLook = 0;
  int fLooksLeft = 0;
  std::string fProblem;
};

void onEvent(AtspiEvent* event, void* listener) {
  if (event->source != nullptr)
    static_cast<Listener*>(listener)->windowActivated(event->source);
  g_boxed_free(ATSPI_TYPE_EVENT, event);
}

gboolean onIdle(void* listener) {
  static_cast<Listener*>(listener)->lookAtWindow();
  return G_SOURCE_REMOVE;
}

gboolean onRetry(void* listener) {
  static_cast<Listener*>(listener)->attempt();
  return G_SOURCE_REMOVE;
}

gboolean onLook(void* listener) {
  static_cast<Listener*>(listener)->lookForUntold();
  return G_SOURCE_REMOVE;
}

gboolean onXEvents(int /*descriptor*/, GIOCondition /*condition*/, void* listener) {
  static_cast<Listener*>(listener)->takeXEvents();
  return G_SOURCE_CONTINUE;
}

// The helper never writes: it has closed its end or has itself ended.
gboolean onHelper(int /*descriptor*/, GIOCondition /*condition*/, void* listener) {
  static_cast<Listener*>(listener)->stop("");
  return G_SOURCE_REMOVE;
}

std::string Listener::run() {
  AtspiEventListener* const windows = atspi_event_listener_new(onEvent, this, nullptr);
  GError* error = nullptr;
  const bool listening = atspi_event_listener_register(windows, "window:activate", &error) != FALSE;
  if (listening) {
    g_unix_fd_add(fHelper, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP), onHelper, this);
    g_unix_fd_add(fPointer->descriptor(), static_cast<GIOCondition>(G_IO_IN | G_IO_HUP), onXEvents, this);
    tell({kJumpMessageReady, 0});
    g_main_loop_run(fLoop.get());
  } else {
    fProblem = std::string("cannot listen on the accessibility bus: ") +
               (error != nullptr ? error->message : "no reason given");
  }
  g_clear_error(&error);
  g_object_unref(windows);
  return fProblem;
}

// An event may arrive while a question to a program is waiting for its answer: everything that asks questions
// therefore starts from the loop.
void Listener::windowActivated(AtspiAccessible* window) {
  const bool isScheduled = fWindow != nullptr;
  g_object_ref(window);
  fWindow.reset(window);
  fLooksLeft = 0;
  if (!isScheduled)
    g_idle_add(onIdle, this);
}

void Listener::lookAtWindow() {
  AccessibleHandle window = std::move(fWindow);
  if (!isDialog(window.get()))
    return;
  std::string id = accessibleId(window.get());
  fJumper.activated(std::move(id), std::make_unique<AtspiPart>(std::move(window)));
  if (fRetry != 0)
    g_source_remove(std::exchange(fRetry, 0));
  attempt();
}

void Listener::attempt() {
  const auto wait = fJumper.attempt();
  fRetry = wait ? g_timeout_add(static_cast<guint>(wait->count()), onRetry, this) : 0;
  // While the X server was asked, its events may have come along, and then nothing wakes the loop for them.
  takeXEvents();
}

void Listener::takeXEvents() {
  fJumper.forgetClosed();
  if (fPointer->isLost())
    stop("the X server has gone");
  if (!fPointer->takeFrontChanged())
    return;
  fLooksLeft = kMostLooks;
  if (fLook == 0)
    fLook = g_timeout_add(kLookMilliseconds, onLook, this);
}

void Listener::lookForUntold() {
  fLook = 0;
  if (fLooksLeft == 0)
    return;
  --fLooksLeft;
  const FrontWindow front = fPointer->frontWindow();
  if (!front.isDialog || front.processId == 0)
    return;
  if (const AccessibleHandle dialog = findActiveDialog(front.processId))
    windowActivated(dialog.get());
  else
    fLook = g_timeout_add(kLookMilliseconds, onLook, this);
}

void Listener::stop(std::string problem) {
  fProblem = std::move(problem);
  g_main_loop_quit(fLoop.get());
}

// A helper that does not read has ended or is about to; its end of the socket says so.
void Listener::tell(const JumpMessage& message) const {
  [[maybe_unused]] const ssize_t sent = send(fHelper, &message, sizeof message, MSG_DONTWAIT | MSG_NOSIGNAL);
}

}  // namespace

std::string listenForDialogs(int helper) {
  auto pointer = X11Pointer::open();
  if (pointer == nullptr)
    return "cannot connect to the X server";
  atspi_set_timeout(kAnswerMilliseconds, kAnswerMilliseconds);
  if (atspi_init() > 1 || atspi_get_a11y_bus() == nullptr)
    return "cannot connect to the accessibility bus";
  return Listener(helper, std::move(pointer)).run();
}

}  // namespace veltrix
