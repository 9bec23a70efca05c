// The promises about the volume, in any order of events: lines, ducks, ways back, users, players and deaths.
#include "ModelCore.h"
#include "RandomQuirks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <deque>
#include <iostream>
#include <random>
#include <string>
#include <vector>

namespace sonvara::test {
namespace {

constexpr unsigned sessions = 2500;
constexpr int stepsOfSession = 400;

bool isClose(double volume, double other)
{
    return std::abs(volume - other) < 0.0011;
}

class Session {
public:
    explicit Session(unsigned seed)
        : dice_(seed),
          quirks_(chooseQuirks(dice_)),
          core_(desktop_, dice_),
          player_(desktop_.schedule, quirks_)
    {
        desktop_.readsSilenceAgain = true;
        desktop_.start();
        run_ = desktop_.add(player_, name);
        player_.play();
        userSets(dice_.percent(15, 100));
        desktop_.schedule.pass(5s);
    }

    void step()
    {
        using Action = void (Session::*)();
        struct Named {
            const char* what;
            Action action;
        };
        static constexpr std::array<Named, 12> actions{{
            {"a line begins", &Session::say},
            {"a line begins", &Session::say},
            {"a line ends", &Session::fallSilent},
            {"a line ends", &Session::fallSilent},
            {"next track", &Session::next},
            {"play", &Session::play},
            {"pause", &Session::pause},
            {"stop", &Session::stop},
            {"the user moves the volume", &Session::beMovedByUser},
            {"a poll", &Session::poll},
            {"the player is started anew", &Session::startPlayerAnew},
            {"we are started anew", &Session::dieAndStartAnew},
        }};
        const auto& chosen =
            actions.at(static_cast<std::size_t>(dice_.number(0, static_cast<int>(actions.size()) - 1)));
        trace(chosen.what);
        (this->*chosen.action)();
        const auto pause = dice_.number(0, 3);
        pass(pause == 0   ? 0ms
             : pause == 1 ? Milliseconds(dice_.number(1, 30))
                          : Milliseconds(dice_.number(30, 900)));
        if (dice_.number(0, 40) == 0) comeToRest();
    }
    [[nodiscard]] const std::string& failure() const { return failure_; }
    /// The last things that happened.
    [[nodiscard]] std::string course() const
    {
        auto text = describe(quirks_) + "\n";
        for (const auto& line : trace_) text.append(line).append("\n");
        return text;
    }

private:
    static constexpr auto* name = "org.mpris.MediaPlayer2.model";

    /// As the core does: only of a player that plays. What a player tells that goes on in the middle of its track
    /// is believed if nothing is owed to it, so it is left alone until it tells the truth.
    void say()
    {
        const bool isBelieved = player_.resumes() && desktop_.notes.empty();
        if (player_.isPlaying && (player_.tellsTruth() || !isBelieved)) core_.say();
    }
    void fallSilent() { core_.fallSilent(); }
    void next() { player_.next(); }
    void play() { player_.play(); }
    void pause() { player_.pause(); }
    void stop() { player_.stop(); }
    void poll() { desktop_.poll(); }

    void trace(const std::string& what)
    {
        const auto time =
            std::chrono::duration_cast<Milliseconds>(desktop_.schedule.now().time_since_epoch());
        trace_.push_back(std::to_string(time.count()) + ' ' + what + ": sounds " +
                         std::to_string(player_.sound()) + (player_.isPlaying ? " plays" : "") +
                         (player_.hasStream() ? " has stream" : "") + " lines " +
                         std::to_string(core_.lines));
        if (trace_.size() > 80) trace_.pop_front();
    }

    void pass(Milliseconds time)
    {
        for (; time > 40ms; time -= 40ms) {
            desktop_.schedule.pass(40ms);
            check();
        }
        desktop_.schedule.pass(time);
        check();
    }

    void userSets(double volume)
    {
        player_.userSets(volume);
        chosen_.push_back(volume);
    }

    bool isQuiet()
    {
        return player_.isPlaying && player_.tellsTruth() && !player_.isObeying() &&
               core_.ducksUnderWay == 0 && desktop_.underWay == 0 && desktop_.loweredPlayers->isSettled();
    }
    /// At a moment that tells whose the volume is: no command is on its way, and no look that could lead to one.
    void beMovedByUser()
    {
        if (!isQuiet()) return;
        desktop_.schedule.pass(400ms);
        check();
        if (!isQuiet()) return;
        const auto volume = dice_.percent(15, 99);
        for (const auto other : chosen_)
            for (const auto ours :
                 {other, lowOf(other) / 100.0, std::pow(other, 3), std::pow(lowOf(other) / 100.0, 3)})
                if (std::abs(volume - ours) < 0.06) return;
        if (chosen_.size() > 8) chosen_.erase(chosen_.begin(), chosen_.end() - 1);
        userSets(volume);
        trace("  to " + std::to_string(volume));
        handAt_ = desktop_.commands.size();
        desktop_.schedule.pass(150ms);  // until it has been seen; the core does nothing meanwhile
        if (core_.ducksUnderWay == 0 && desktop_.commands.size() != handAt_)
            fail("told something after the user's hand");
    }
    void startPlayerAnew()
    {
        // Else a line that was begun over the old one would read what the new one tells, and believe it: see `say`.
        if (player_.resumes() && core_.ducksUnderWay > 0) return;
        desktop_.remove(run_);
        desktop_.schedule.pass(Milliseconds(dice_.number(0, 3000)));
        run_ = desktop_.add(player_, name);
    }
    void dieAndStartAnew()
    {
        core_.die();
        desktop_.start();
    }

    void comeToRest()
    {
        while (core_.lines > 0) core_.fallSilent();
        player_.play();
        for (int poll = 0; poll < 4; ++poll) {
            // Its user may have silenced it: nobody knows until it is heard.
            if (player_.tellsSilence()) player_.next();
            desktop_.poll();
            pass(3s);
        }
        if (!isClose(player_.sound(), player_.user))
            fail("is at " + std::to_string(player_.sound()) + ", but its user wants " +
                 std::to_string(player_.user));
        if (!desktop_.notes.empty()) fail("has a note that is not settled");
        chosen_ = {player_.user};
    }

    void check()
    {
        for (; checked_ < desktop_.commands.size(); ++checked_) {
            const auto told = desktop_.commands[checked_];
            trace("told " + std::to_string(told));
            const bool isKnown = std::ranges::any_of(chosen_, [told](double user) {
                return isClose(told, user) || isClose(told, user + (user < 1 ? 0.004 : -0.004)) ||
                       isClose(told, lowOf(user) / 100.0);
            });
            if (!isKnown) fail("was told " + std::to_string(told));
        }
        const auto low = lowOf(player_.user) / 100.0;
        const bool isLow = player_.hasStream() && std::abs(player_.sound() - low) < 0.0105;
        if (isLow && desktop_.notes.empty() && !isClose(low, player_.user)) fail("is low without a note");
        if (desktop_.notes.size() > 1) fail("has more than one note");
    }
    void fail(const std::string& what)
    {
        if (!failure_.empty()) return;
        trace(what);
        failure_ = what;
    }

    Dice dice_;
    Quirks quirks_;
    std::deque<std::string> trace_;
    ModelDesktop desktop_;
    ModelCore core_;
    ModelPlayer player_;
    PlayerRun run_ = 0;
    std::vector<double> chosen_{1.0};
    std::size_t checked_ = 0;
    std::size_t handAt_ = 0;
    std::string failure_;
};

unsigned wanted(const char* name, unsigned otherwise)
{
    const auto* given = std::getenv(name);
    return given != nullptr ? static_cast<unsigned>(std::stoul(given)) : otherwise;
}

// SEED=N repeats one session, with SESSIONS=N so many from there.
TEST(RandomVolumesTest, AreRightInAnyOrderOfEvents)
{
    const unsigned first = wanted("SEED", std::random_device{}());
    const unsigned count = wanted("SESSIONS", std::getenv("SEED") != nullptr ? 1 : sessions);
    std::cout << "SEED=" << first << " for the first of " << count << " sessions of " << stepsOfSession
              << " steps\n";
    for (unsigned seed = first; seed < first + count; ++seed) {
        Session session(seed);
        for (int step = 0; step < stepsOfSession && session.failure().empty(); ++step) {
            session.step();
            ASSERT_EQ(session.failure(), "") << "SEED=" << seed << ", step " << step << "\n"
                                             << session.course();
        }
    }
}

}  // namespace
}  // namespace sonvara::test
