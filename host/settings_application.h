#pragma once

namespace veltrix {

class ApplicationService;
struct Activation;

// Shows the settings window until it is closed, or a signal asks for the end, and leaves the pane properly.
// Later starts that `service` hears of bring the window to the front. Returns the process's exit status.
int runSettingsApplication(int argc, char** argv, ApplicationService* service, const Activation& activation);

}  // namespace veltrix
