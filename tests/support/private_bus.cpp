#include "tests/support/private_bus.h"

#include <gtest/gtest.h>

#include <csignal>

#include "tests/support/wait_until.h"

namespace veltrix::testing {

PrivateBus::PrivateBus() : fAddress("unix:path=" + fFolder.path() + "/bus") {
  writeFile(fFolder / "bus.conf",
            "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
            " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
            "<busconfig><type>session</type><listen>" +
                fAddress +
                "</listen><auth>EXTERNAL</auth><policy context=\"default\"><allow send_destination=\"*\" "
                "eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
                "<allow own=\"*\"/></policy></busconfig>\n");
  start();
}

void PrivateBus::start() {
  fDaemon = std::make_unique<ChildProcess>(
      std::vector<std::string>{"dbus-daemon", "--nofork", "--nopidfile", "--print-address",
                               "--config-file=" + (fFolder / "bus.conf")});
  // The address is printed once the socket listens.
  EXPECT_TRUE(waitUntil([this] { return fDaemon->output().find('\n') != std::string::npos; }))
      << fDaemon->output();
}

}  // namespace veltrix::testing
