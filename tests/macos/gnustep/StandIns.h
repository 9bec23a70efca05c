// The tests' side of the stand-ins: what they shall do, what they were asked to do, and which rules of
// Apple's documentation the adapters broke meanwhile. Any thread, unless told otherwise.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace sonvara::test::standins {

/// Notes that a documented rule was broken.
void violated(const std::string& rule);
/// The broken rules since the last call.
std::vector<std::string> takeViolations();

// --- Scripts ---------------------------------------------------------------------------------------

struct ScriptAnswer {
    std::optional<std::string> text = {};
    std::int32_t integer = 0;
    std::optional<int> errorNumber = {};
};

/// Called for each script on the thread that runs it; may block.
void setScripts(std::function<ScriptAnswer(const std::string& source)> answer);
/// The program is about to end: from now on scripts may be run on the main thread.
void allowScriptsOnMainThread();
/// Autoreleased objects of script runs that are still alive.
int scriptLeftovers();

// --- Speech ----------------------------------------------------------------------------------------

struct SpokenLine {
    std::string line;
    std::string voice;  ///< empty: the default voice
    float rate = 0;
};

enum class CancelReports { all, currentOnly, none };

struct Voices {
    std::string currentLanguage = "en-GB";
    std::vector<std::string> languages = {"en-GB", "de-DE"};  ///< a voice is called "voice." + language
    bool finishesAtOnce = true;                               ///< else a line is spoken until it is ended
    CancelReports cancelReports = CancelReports::all;
};

/// Main thread: sets the voices and forgets the lines.
void setVoices(Voices voices);
std::vector<SpokenLine> spokenLines();
/// Ends the line that is being spoken; its report comes on a thread of its own.
void finishLine();

// --- Login item ------------------------------------------------------------------------------------

enum class LoginState { notRegistered, enabled, requiresApproval, notFound };
void setLoginItem(LoginState state, std::optional<std::string> failure);
LoginState loginItem();

// --- Log -------------------------------------------------------------------------------------------

struct LogRecord {
    bool isError = false;
    std::string subsystem;
    std::string category;
    std::string kept;  ///< as kept logs show it: unmarked texts are hidden
    std::string full;
};
void setLogEnabled(bool isEnabled);
std::vector<LogRecord> takeLog();

}  // namespace sonvara::test::standins
