#pragma once

#include "fuzz/byte_source.h"
#include "platform/property_list.h"

// Property lists that no program of ours would write.

// A value of any type: numbers at every limit, text that is long or full of markup, containers in the
// place of scalars, deep nesting.
veltrix::plist::Value hostileValue(ByteSource* bytes);

// Changes one place below `root`, which has to be a container: sets, removes, doubles or replaces something.
// The keys are those that are there and those that programs read.
void spoil(const veltrix::plist::Value& root, ByteSource* bytes);
