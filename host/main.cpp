#include "host/settings_application.h"
#include "platform/application_service.h"

int main(int argc, char** argv) {
  // Before the toolkit wakes up, so that a second start is over at once.
  const veltrix::Activation activation = veltrix::takeActivation();
  veltrix::ApplicationService service("com.aldmoor.VeltrixPane");
  if (service.start(activation) == veltrix::ApplicationInstance::kHandedOver) {
    return 0;
  }
  return veltrix::runSettingsApplication(argc, argv, &service, activation);
}
