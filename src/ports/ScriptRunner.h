// Port: scripts sent to the music players.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace sonvara {

/// What running a script gave.
struct ScriptResult {
    bool created = true;               ///< false: the text is no script; the other fields are empty
    std::optional<std::string> error;  ///< why the execution failed
    std::optional<std::string> text;   ///< the result as a text, if it has such a form
    std::int32_t integer = 0;          ///< the result as a number; 0 if it is none

    static ScriptResult ofText(std::string text)
    {
        ScriptResult result;
        result.text = std::move(text);
        return result;
    }
    static ScriptResult ofError(std::string error)
    {
        ScriptResult result;
        result.error = std::move(error);
        return result;
    }
};

/// Runs the script texts with which the system asks the players what they play and reads and sets
/// their volume.
class ScriptRunner {
public:
    virtual ~ScriptRunner() = default;

    /// Worker threads only, several at a time: runs `source` and blocks until it has ended. Every
    /// failure is in the result.
    [[nodiscard]] virtual ScriptResult run(const std::string& source) = 0;
};

}  // namespace sonvara
