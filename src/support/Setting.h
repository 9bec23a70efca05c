// The user's settings: keys, types and defaults.
#pragma once

namespace sonvara {

/// A key of the settings store and the value that every reader takes when nothing is stored there.
/// Defaults are never written to the store.
template <typename T>
struct Setting {
    const char* key;
    T whenAbsent;
};

namespace settings {

/// Tracks are announced at all.
inline constexpr Setting<bool> announcementsEnabled{"announcementsEnabled", true};
/// The player is lowered while the DJ speaks.
inline constexpr Setting<bool> duckMusic{"duckMusic", true};
/// Intros are written by a command-line AI tool.
inline constexpr Setting<bool> aiIntros{"aiIntros", false};
/// Which tool: the raw value of an `AIProvider`.
inline constexpr Setting<const char*> aiProvider{"aiProvider", "claudeCLI"};

}  // namespace settings
}  // namespace sonvara
