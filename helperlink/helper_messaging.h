#pragma once

#include <cstdint>

#include "helperlink/device_list.h"
#include "platform/process_table.h"

// The channel to the helper. Every status is 0 for success, negative otherwise; nothing is shown or logged.

// Finds the first running process whose name equals `name` (a length byte and that many characters) when the
// letters A to Z are folded. Writes `psn` only on success; it may be null. -600 when there is none.
std::int16_t VeltrixFindNamedProcess(const unsigned char* name, veltrix::ProcessSerialNumber* psn);

// Asks the helper for the connected trackballs and waits at most 250 ms. -50 without a list; on any failure
// `list` keeps what it held. A reply shorter than the record overwrites only its own bytes.
std::int32_t VeltrixGetConnectedDevices(VeltrixDeviceList* list);

// Sends one of the messages of helper_protocol.h without waiting for the helper; dropped when it does not
// run.
std::int32_t VeltrixSendMessageToHelper(std::uint32_t message);
