#pragma once

#include "helper/commands/table_rows.h"

// Sound and media. Plasma, GNOME and Xfce listen to the media keys. On other desktops it is often the user's
// own configuration that does, or nothing, so a program comes before the key; none of them goes beyond the
// full volume.
namespace veltrix::table {

constexpr ProgramAttempt speaker(const char* change) {
  return {{"wpctl", "set-volume", "-l", "1.0", "@DEFAULT_AUDIO_SINK@", change}};
}

inline constexpr std::int64_t kSkip = 10'000'000;

inline constexpr CommandRow kSoundRows[] = {
    // Play or Pause
    on(140, kOnEvery, PlayerAttempt{"PlayPause"}),
    on(140, kOnEvery, key(XKB_KEY_XF86AudioPlay)),
    // Stop Playing
    on(141, kOnEvery, PlayerAttempt{"Stop"}),
    on(141, kOnEvery, key(XKB_KEY_XF86AudioStop)),
    // Next Track
    on(142, kOnEvery, PlayerAttempt{"Next"}),
    on(142, kOnEvery, key(XKB_KEY_XF86AudioNext)),
    // Previous Track
    on(143, kOnEvery, PlayerAttempt{"Previous"}),
    on(143, kOnEvery, key(XKB_KEY_XF86AudioPrev)),
    // Skip Forward
    on(144, kOnEvery, PlayerAttempt{"Seek", kSkip}),
    // Skip Back
    on(145, kOnEvery, PlayerAttempt{"Seek", -kSkip}),
    // Volume Up
    on(146, kOnSwayAndOther, speaker("5%+")),
    on(146, kOnSwayAndOther, ProgramAttempt{{"amixer", "-q", "set", "Master", "5%+"}}),
    on(146, kOnEvery, key(XKB_KEY_XF86AudioRaiseVolume)),
    // Volume Down
    on(147, kOnSwayAndOther, speaker("5%-")),
    on(147, kOnSwayAndOther, ProgramAttempt{{"amixer", "-q", "set", "Master", "5%-"}}),
    on(147, kOnEvery, key(XKB_KEY_XF86AudioLowerVolume)),
    // Mute
    on(148, kOnSwayAndOther, ProgramAttempt{{"wpctl", "set-mute", "@DEFAULT_AUDIO_SINK@", "toggle"}}),
    on(148, kOnSwayAndOther, ProgramAttempt{{"amixer", "-q", "set", "Master", "toggle"}}),
    on(148, kOnEvery, key(XKB_KEY_XF86AudioMute)),
    // Mute Microphone
    on(149, kOnSwayAndOther, ProgramAttempt{{"wpctl", "set-mute", "@DEFAULT_AUDIO_SOURCE@", "toggle"}}),
    on(149, kOnSwayAndOther, ProgramAttempt{{"amixer", "-q", "set", "Capture", "toggle"}}),
    on(149, kOnEvery, key(XKB_KEY_XF86AudioMicMute)),
    // Eject; GNOME alone listens to the key
    on(150, kOnEvery & ~kOnGnome, ProgramAttempt{{"eject"}}),
    on(150, kOnEvery, key(XKB_KEY_XF86Eject)),
};

}  // namespace veltrix::table
