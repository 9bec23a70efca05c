#include "monitor/PlayerScripts.h"

namespace sonvara {

const std::string& musicPollScript()
{
    static const std::string script = R"(try
    tell application "Music"
        if it is running then
            set trackName to name of current track
            set artistName to artist of current track
            set albumName to album of current track
            set isPlaying to player state is playing
            set isFavorited to loved of current track
            return trackName & "||" & artistName & "||" & albumName & "||" & isPlaying & "||" & isFavorited
        else
            return "notrunning"
        end if
    end tell
on error
    return "error"
end try)";
    return script;
}

const std::string& spotifyPollScript()
{
    static const std::string script = R"(try
    tell application "Spotify"
        if it is running then
            set trackName to name of current track
            set artistName to artist of current track
            set albumName to album of current track
            set isPlaying to player state is playing
            return trackName & "||" & artistName & "||" & albumName & "||" & isPlaying
        else
            return "notrunning"
        end if
    end tell
on error
    return "error"
end try)";
    return script;
}

}  // namespace sonvara
