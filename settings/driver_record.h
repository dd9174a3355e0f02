#pragma once

#include "driverlink/record.h"
#include "platform/property_list.h"

// Converts one device entry into the driver's record. `fallback` serves buttons whose command is 200, and
// stands in for a missing `entry`. False without anything to convert or without a record (left untouched
// then), and for an entry of another layout version (the record then says that nothing is set).
bool VeltrixAppPrefsDictToStruct(const veltrix::plist::Dictionary& entry,
                                 const veltrix::plist::Dictionary& fallback, veltrix::DriverRecord* record);
