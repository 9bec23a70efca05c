#include "platform/linux/players/PlayerWatch.h"

#include "platform/linux/players/MprisDecoder.h"
#include "platform/linux/players/PlayerReports.h"
#include "support/PlayerScripts.h"

#include <algorithm>
#include <utility>

namespace sonvara {
namespace {

Time now()
{
    return std::chrono::steady_clock::now();
}

const QString statusProperty = QStringLiteral("PlaybackStatus");
const QString metadataProperty = QStringLiteral("Metadata");

// What a full answer leaves out is not so.
StateChange fullState(StateChange change)
{
    if (!change.status) change.status = PlaybackStatus::stopped;
    if (!change.track) change.track = Track{};
    return change;
}

// Whether a signal tells of changes whose new values it does not hold, or not in a form to read, or not whole.
bool leavesOpen(const StateMessage& signalled, const QStringList& invalidated)
{
    const auto& [changed, change] = signalled;
    if (invalidated.contains(statusProperty) || invalidated.contains(metadataProperty)) return true;
    if (changed.contains(statusProperty) && !change.status) return true;
    return changed.contains(metadataProperty) && !(change.track && isComplete(*change.track));
}

}  // namespace

PlayerWatch::PlayerWatch(MprisBus& bus, Know know, Post post, SystemLog& log)
    : bus_(bus),
      know_(std::move(know)),
      post_(std::move(post)),
      logger_(log, "Players")
{
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, &PlayerWatch::takeTimeout);
    connect(&bus_, &MprisBus::ownerChanged, this, &PlayerWatch::takeOwnerChange);
    connect(&bus_, &MprisBus::stateSignalled, this, &PlayerWatch::takeSignal);
    connect(&bus_, &MprisBus::lost, this, &PlayerWatch::takeLoss);
}

void PlayerWatch::poll(PlayerKind kind)
{
    if (!std::exchange(isStarted_, true)) start();
    for (auto& player : directory_.players())
        if (player.kind() == kind && (player.counts() || !player.isIntroduced())) ask(player);
}

void PlayerWatch::start()
{
    if (!bus_.isConnected()) {
        logger_.error({{"There is no session bus: no music player can be heard or controlled"}});
        return;
    }
    bus_.listen();
    bus_.askNames([this](const MprisBus::Reply& reply) {
        for (const auto& name : reply.value_or(QVariantList()).value(0).toStringList())
            if (kindOfName(name.toStdString()) != NameKind::ignored)
                unownedNames_.push_back(name.toStdString());
        askNextOwner();
    });
}

// One after the other: however many names there are, nothing else has to wait for them.
void PlayerWatch::askNextOwner()
{
    if (unownedNames_.empty()) {
        const auto isBrowser = [](const Player& player) { return player.nameKind == NameKind::browserLike; };
        if (std::ranges::all_of(directory_.players(), isBrowser))
            logger_.error({{"No music player runs yet: the DJ waits for one that speaks MPRIS"}});
        return;
    }
    bus_.askOwner(unownedNames_.front(), [this](const MprisBus::Reply& reply) {
        add(unownedNames_.front(), decodeText(reply.value_or(QVariantList()).value(0)));
        unownedNames_.pop_front();
        askNextOwner();
    });
}

void PlayerWatch::add(const std::string& name, const std::string& owner)
{
    if (owner.empty()) return;
    if (auto* player = directory_.add(name, owner)) ask(*player);
}

void PlayerWatch::takeOwnerChange(const std::string& name, const std::string& before, const std::string& now)
{
    if (!before.empty()) directory_.remove(name, before);
    add(name, now);
    update();
}

void PlayerWatch::takeSignal(const std::string& owner, const std::optional<StateMessage>& changed,
                             const QStringList& invalidated)
{
    auto* player = directory_.find(owner);
    if (player == nullptr) return;
    if (!changed) {
        ask(*player);
        return;
    }
    auto change = changed->change;
    bool isOpen = leavesOpen(*changed, invalidated);
    // Some players signal a part of a track's description. That it has no title only an answer can say.
    if (change.track && change.track->title.empty()) change.track.reset();
    if (change.status || change.track) {
        player->isHeard = true;
        player->isOvertaken = true;
        directory_.observe(*player, std::move(change), now());
    }
    // Some signal that they play again, and not what. Others signal what they play, and not that.
    const bool namesTrack = !player->said.track.title.empty();
    if (namesTrack == (player->said.status == PlaybackStatus::stopped)) isOpen = true;
    if (isOpen) ask(*player);
    update();
}

// A player that was asked in the middle of a change of tracks may have told a stop that it never signals the end
// of. So what has been held back counts, and is asked about once more.
void PlayerWatch::takeTimeout()
{
    const auto time = now();
    for (auto& player : directory_.players())
        if (player.debounce.deadline() && *player.debounce.deadline() <= time) ask(player);
    directory_.expire(time);
    update();
}

void PlayerWatch::takeLoss()
{
    logger_.error({{"The session bus has gone: no music player can be heard or controlled any more"}});
    directory_.clear();
    update();
}

// Another player may own the connection when the answer comes, or nobody.
template <typename Message>
std::function<void(const Message&)> PlayerWatch::answerOf(const Player& player, Take<Message> take)
{
    return [this, take, owner = player.owner, serial = player.serial](const Message& message) {
        auto* found = directory_.find(owner);
        if (found != nullptr && found->serial == serial) (this->*take)(*found, message);
    };
}

// What is signalled while a question is under way is asked about when its answer comes.
void PlayerWatch::ask(Player& player)
{
    if (std::exchange(player.isAsked, true)) return;
    if (player.isIntroduced()) {
        askState(player);
        return;
    }
    bus_.askProcess(player.owner, answerOf(player, &PlayerWatch::takeProcess));
    bus_.askIntroduction(player.owner, answerOf(player, &PlayerWatch::takeIntroduction));
}

void PlayerWatch::askState(Player& player)
{
    player.isOvertaken = false;
    bus_.askState(player.owner, answerOf(player, &PlayerWatch::takeState));
}

void PlayerWatch::takeProcess(Player& player, const MprisBus::Reply& reply)
{
    if (!reply || reply->isEmpty()) return;
    player.process = reply->first().toUInt();
    update();
}

// A player that answers with an error or with nothing counts by its name, and is asked again by the next poll.
void PlayerWatch::takeIntroduction(Player& player, const MprisBus::Reply& reply)
{
    if (!reply) {
        player.isAsked = false;
        return;
    }
    const auto properties = decodeMap(reply->value(0)).value_or(QVariantMap());
    player.introduction = Introduction{decodeText(properties.value(QStringLiteral("Identity"))),
                                       decodeText(properties.value(QStringLiteral("DesktopEntry")))};
    askState(player);
    update();
}

// Some players answer late with what was so when they were asked, and an answer that comes at once may be handed over a
// turn of the event loop late. So what has been signalled meanwhile may be newer.
void PlayerWatch::takeState(Player& player, const StateMessage& answer)
{
    if (player.isOvertaken && !answer.properties.isEmpty()) {
        askState(player);
        return;
    }
    player.isAsked = false;
    const auto before = player.said;
    const bool wasHeard = std::exchange(player.isHeard, !answer.properties.isEmpty());
    if (player.isHeard) directory_.observe(player, fullState(answer.change), now());
    // Most answers change nothing; all players would be looked at for each.
    if (player.isHeard != wasHeard || player.said != before) update();
}

void PlayerWatch::update()
{
    for (auto& [kind, throttle] : throttles_) {
        know_(kind, answer(kind));
        const auto snapshot = directory_.snapshot(kind);
        if (throttle.admits(snapshot, now())) post_(notificationOf(kind, snapshot));
    }
    setTimer();
}

std::string PlayerWatch::answer(PlayerKind kind) const
{
    const auto* chosen = directory_.chosen(kind);
    if (chosen == nullptr) return poll::notRunning;
    return chosen->isHeard ? pollAnswer(kind, chosen->debounce.snapshot()) : poll::failed;
}

void PlayerWatch::setTimer()
{
    auto next = directory_.deadline();
    for (const auto& [kind, throttle] : throttles_)
        if (throttle.deadline() && (!next || *throttle.deadline() < *next)) next = throttle.deadline();
    if (!next) {
        timer_.stop();
        return;
    }
    timer_.start(
        std::max(std::chrono::ceil<std::chrono::milliseconds>(*next - now()), std::chrono::milliseconds(0)));
}

}  // namespace sonvara
