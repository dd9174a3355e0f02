#pragma once

#include <cstdint>
#include <string>

#include "editor/edit_controller.h"
#include "fuzz/byte_source.h"
#include "helperlink/device_list.h"
#include "pane/pane_services.h"
#include "platform/property_list.h"

// What a pane finds around it: files in a folder of this process, trackballs, and services that reach nothing
// else.

// Ends the process when a promise is broken.
void require(bool holds);

std::string paneHome();
std::string paneBundle();
std::string paneSettingsFile();

// Writes the user's file (or leaves it out), the factory settings and the command tree: "settings", "factory"
// and "tree" of the input, or what the product ships, each spoiled as the bytes say.
void writePaneFiles(const veltrix::plist::Dictionary& input, ByteSource* bytes);

// One to three trackballs, also of kinds that nobody knows.
VeltrixDeviceList chooseDevices(ByteSource* bytes);

// `devices` must outlive the services.
veltrix::PaneServices makePaneServices(const VeltrixDeviceList* devices, std::uint32_t systemVersion);

// Choosers that answer at once.
veltrix::EditChoosers makeChoosers(ByteSource* bytes);
