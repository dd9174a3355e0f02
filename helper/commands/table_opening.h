#pragma once

#include "helper/commands/table_rows.h"

// What is opened and started, by choice or by rule; the same on every desktop, whose default applications
// differ.
namespace veltrix::table {

inline constexpr CommandRow kOpeningRows[] = {
    on(70, kOnEvery, ChosenAttempt{ChosenThing::kItem}),
    on(71, kOnEvery, ChosenAttempt{ChosenThing::kApplication}),
    on(72, kOnEvery, ChosenAttempt{ChosenThing::kUrl}),
    on(73, kOnEvery, ChosenAttempt{ChosenThing::kScript}),
    on(190, kOnEvery, PlaceAttempt{Place::kBrowser}),
    on(191, kOnEvery, PlaceAttempt{Place::kMail}),
    on(192, kOnEvery, PlaceAttempt{Place::kFileManager}),
    on(193, kOnEvery, PlaceAttempt{Place::kTerminal}),
    on(194, kOnEvery, PlaceAttempt{Place::kCalculator}),
    on(194, kOnEvery, key(XKB_KEY_XF86Calculator)),
    on(195, kOnEvery, PlaceAttempt{Place::kSystemSettings}),
    on(196, kOnEvery, PlaceAttempt{Place::kHome}),
    on(197, kOnEvery, PlaceAttempt{Place::kDocuments}),
    on(198, kOnEvery, PlaceAttempt{Place::kDownloads}),
    on(199, kOnEvery, PlaceAttempt{Place::kTrackballSettings}),
};

}  // namespace veltrix::table
