#include "helper/desktop/item_opener.h"

#include <cerrno>
#include <memory>
#include <utility>
#include <vector>

#include "helper/desktop/one_line.h"
#include "platform/detached_program.h"
#include "util/phrase.h"

namespace veltrix {

namespace {

// The openers that are left to be tried with one item.
struct Opening {
  ProgramStarter& starter;
  std::chrono::microseconds grace;
  std::vector<std::vector<std::string>> programs;  // the next one last
  std::string item;
  ProgramStarter::Exit ended;
};

void tryNext(const std::shared_ptr<Opening>& opening, const Error& reason) {
  if (opening->programs.empty()) {
    opening->ended(
        phrasedError(0, {"cannot open %1: %2", {given(oneLine(opening->item)), phraseOf(reason)}}));
    return;
  }
  Program program;
  program.arguments = std::move(opening->programs.back());
  opening->programs.pop_back();
  opening->starter.startAndWatch(program, opening->grace, [opening](const Status& status) {
    if (status) {
      opening->ended(status);
    } else {
      tryNext(opening, status.error());
    }
  });
}

}  // namespace

void ItemOpener::open(const std::string& item, ProgramStarter::Exit ended) const {
  const auto opening = std::make_shared<Opening>(Opening{fStarter, fGrace, {}, item, std::move(ended)});
  // The first one goes without a shell all the way; the other one is a script, for desktops without it.
  if (const std::string script = programInPath("xdg-open"); !script.empty()) {
    opening->programs.push_back({script, item});
  }
  if (const std::string program = programInPath("gio"); !program.empty()) {
    opening->programs.push_back({program, "open", item});
  }
  tryNext(opening, Error{0, "neither gio nor xdg-open is installed", {}});
}

}  // namespace veltrix
