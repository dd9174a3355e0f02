#include "helper/desktop/application_starter.h"

#include <cerrno>
#include <utility>

#include "helper/desktop/one_line.h"
#include "helper/desktop/place_table.h"
#include "util/phrase.h"

namespace veltrix {

void ApplicationStarter::start(const InstalledApplication& application, ProgramStarter::Exit ended) {
  if (!application.busActivatable || application.identifier.empty()) {
    ended(startProgramOf(application));
    return;
  }
  fActivation.activate(application.identifier,
                       [this, application, ended = std::move(ended)](const Status& status) {
                         const bool known = status.ok() || status.error().code == ETIMEDOUT;
                         ended(known || application.arguments.empty() ? status : startProgramOf(application));
                       });
}

Status ApplicationStarter::startProgramOf(const InstalledApplication& application) {
  Program program;
  program.arguments = application.arguments;
  program.folder = application.folder;
  if (application.arguments.empty()) {
    return phrasedError(ENOEXEC, {"%1 names no program", {given(oneLine(application.name))}});
  }
  if (application.terminal) {
    program.arguments = terminalArguments(fDesktop, application.arguments);
    if (program.arguments.empty()) {
      return phrasedError(ENOENT, {"there is no terminal for %1", {given(oneLine(application.name))}});
    }
  }
  return fStarter.start(program);
}

}  // namespace veltrix
