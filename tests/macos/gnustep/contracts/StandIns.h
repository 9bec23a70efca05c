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

/// The applications on this Mac; by default both players. A script that names another one breaks a rule, for
/// the user would be asked where it is.
void setInstalled(std::vector<std::string> applications);
/// From now on the user is being asked whether `application` may be controlled, until they have answered. A script to
/// it waits for that, and breaks a rule, for it keeps every other script waiting.
void openConsentQuestion(const std::string& application);
void answerConsentQuestion();

/// Called for each script on the thread that runs it; may block.
void setScripts(std::function<ScriptAnswer(const std::string& source)> answer);
/// Autoreleased objects of script runs that are still alive.
int scriptLeftovers();

// --- Speech ----------------------------------------------------------------------------------------

struct SpokenLine {
    std::string line;
    std::string voice;  ///< empty: the default voice
    float rate = 0;
};

/// What the voice reports of a line that is cut.
enum class CutReport { cancelled, finished, none };

struct Voices {
    std::string currentLanguage = "en-GB";
    std::vector<std::string> languages = {"en-GB", "de-DE"};  ///< a voice is called "voice." + language
    bool finishesAtOnce = true;                               ///< else a line is spoken until it is ended
    CutReport cutReport = CutReport::cancelled;
    /// A line that is given before the end of the last one was reported is never spoken, and nothing is reported of it.
    bool swallowsAfterCut = false;
};

/// Main thread: sets the voices and forgets the lines.
void setVoices(Voices voices);
std::vector<SpokenLine> spokenLines();
/// The lines that were heard: those that the voice has not swallowed.
std::vector<std::string> heardLines();
/// Ends the line that is being spoken; its report comes on a thread of its own.
void finishLine();

// --- Workers ---------------------------------------------------------------------------------------

/// How many workers the global queues have: so many tasks run at once, and further ones wait.
inline constexpr int mostWorkers = 64;

// --- Sleep -----------------------------------------------------------------------------------------

/// Whether an activity is under way, so that the system does not nap the program.
bool isKeptAwake();
/// Main thread: the Mac wakes up.
void wakeFromSleep();

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
