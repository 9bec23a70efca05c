#include "platform/linux/players/PlayerWatch.h"

#include "platform/linux/players/MprisDecoder.h"

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
StateChange decodeSnapshot(const QVariantMap& properties)
{
    auto change = decodeState(properties);
    if (!change.status) change.status = PlaybackStatus::stopped;
    if (!change.track) change.track = Track{};
    return change;
}

// Whether a signal tells of changes whose new values it does not hold, or not in a form to read.
bool leavesOpen(const QVariantMap& changed, const QStringList& invalidated, const StateChange& change)
{
    if (invalidated.contains(statusProperty) || invalidated.contains(metadataProperty)) return true;
    return (changed.contains(statusProperty) && !change.status) ||
           (changed.contains(metadataProperty) && !change.track);
}

// Whether a player tells of another track than the one that it was known to play.
bool isNewTrack(const Player& player, const StateChange& change)
{
    const auto& told = player.settler.picture().title;
    return change.track && !change.track->title.empty() && !told.empty() && change.track->title != told;
}

}  // namespace

PlayerWatch::PlayerWatch(MprisBus& bus, Post post, SystemLog& log)
    : bus_(bus),
      post_(std::move(post)),
      logger_(log, "Players")
{
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] {
        directory_.expire(now());
        update();
    });
    start();
}

void PlayerWatch::poll(PlayerKind kind, const Answer& answer)
{
    if (!begun_ || !directory_.isKnown(kind)) {
        waiting_.push_back({kind, answer});
        return;
    }
    const auto* player = directory_.chosen(kind);
    if (player == nullptr) {
        answer(notRunningAnswer());
        return;
    }
    refresh(player->owner, [this, kind, answer](bool heard) {
        answer(heard ? pollAnswer(kind, directory_.picture(kind)) : pollFailure());
    });
}

void PlayerWatch::start()
{
    if (!bus_.isConnected()) {
        begun_ = true;
        publish();
        logger_.error({{"There is no session bus: no music player can be heard or controlled"}});
        return;
    }
    connect(&bus_, &MprisBus::ownerChanged, this, &PlayerWatch::takeOwnerChange);
    connect(&bus_, &MprisBus::stateSignalled, this, &PlayerWatch::takeSignal);
    connect(&bus_, &MprisBus::lost, this, &PlayerWatch::takeLoss);
    bus_.listen();
    ++unownedNames_;  // the list itself
    bus_.askNames([this](const QVariantList& answer) { takeNames(answer); });
}

void PlayerWatch::takeNames(const QVariantList& answer)
{
    --unownedNames_;
    for (const auto& each : answer.value(0).toStringList()) {
        const auto name = each.toStdString();
        if (kindOfName(name) == NameKind::ignored) continue;
        ++unownedNames_;
        bus_.askOwner(name, [this, name](const QVariantList& owner) {
            --unownedNames_;
            takeOwner(name, decodeText(owner.value(0)));
            update();
        });
    }
    update();
}

void PlayerWatch::takeOwner(const std::string& name, const std::string& owner)
{
    if (owner.empty()) return;
    if (auto* player = directory_.add(name, owner)) introduce(*player);
}

void PlayerWatch::takeOwnerChange(const std::string& name, const std::string& before, const std::string& now)
{
    if (!before.empty()) directory_.remove(name, before);
    takeOwner(name, now);
    update();
}

void PlayerWatch::introduce(Player& player)
{
    const Asked asked{player.owner, player.serial};
    player.unanswered = 3;
    bus_.askProcess(asked.owner, [this, asked](const QVariantList& answer) {
        takeAnswer(asked, [&](Introduction& introduction) {
            if (!answer.isEmpty()) introduction.process = answer.first().toUInt();
        });
    });
    bus_.askIntroduction(asked.owner, [this, asked](const QVariantList& answer) {
        takeAnswer(asked, [&](Introduction& introduction) {
            const auto properties = decodeMap(answer.value(0)).value_or(QVariantMap());
            introduction.identity = decodeText(properties.value(QStringLiteral("Identity")));
            introduction.desktopEntry = decodeText(properties.value(QStringLiteral("DesktopEntry")));
        });
    });
    refresh(asked.owner, [this, asked](bool) { takeAnswer(asked, [](Introduction&) {}); });
}

void PlayerWatch::takeAnswer(const Asked& asked, const std::function<void(Introduction&)>& learn)
{
    auto* player = directory_.find(asked.owner);
    if (player == nullptr || player->serial != asked.serial) return;
    --player->unanswered;
    learn(player->introduction);
    update();
}

void PlayerWatch::takeSignal(const std::string& owner, const QVariantList& arguments)
{
    auto* player = directory_.find(owner);
    if (player == nullptr) return;
    const auto changed = decodeMap(arguments.value(1));
    if (!changed) {
        refresh(owner, nullptr);
        return;
    }
    const auto change = decodeState(*changed);
    if (isNewTrack(*player, change)) player->tellsTracks = true;
    if (change.status || change.track) directory_.observe(*player, change, now());
    const bool lacksTrack = change.status == PlaybackStatus::playing && player->said.track.title.empty();
    if (lacksTrack || leavesOpen(*changed, arguments.value(2).toStringList(), change))
        refresh(owner, nullptr);
    update();
}

void PlayerWatch::takeLoss()
{
    logger_.error({{"The session bus has gone: no music player can be heard or controlled any more"}});
    directory_.clear();
    begun_ = true;
    update();
}

// Whoever asks while a question is under way shares its answer: it is sent after everything that
// has been heard of the player until now.
void PlayerWatch::refresh(const std::string& owner, Refreshed refreshed)
{
    const auto [entry, isFirst] = refreshing_.try_emplace(owner);
    if (refreshed) entry->second.push_back(std::move(refreshed));
    if (!isFirst) return;
    bus_.askState(owner, [this, owner](const QVariantList& answer) { takeState(owner, answer); });
}

void PlayerWatch::takeState(const std::string& owner, const QVariantList& answer)
{
    const auto asked = refreshing_.extract(owner);
    auto* player = directory_.find(owner);
    const auto properties = decodeMap(answer.value(0)).value_or(QVariantMap());
    const bool heard = player != nullptr && !properties.isEmpty();
    if (heard) {
        auto state = decodeSnapshot(properties);
        // What it tells only when it is asked would be missed if nobody asked.
        if (state.status != player->said.status || isNewTrack(*player, state)) player->tellsTracks = false;
        player->answered = now();
        directory_.observe(*player, std::move(state), player->answered);
        update();
    }
    for (const auto& refreshed : asked.mapped()) refreshed(heard);
}

void PlayerWatch::update()
{
    if (!begun_) begin();
    publish();  // before any notification: whoever hears it polls at once, on another thread
    if (begun_) {
        for (auto& feed : feeds_)
            if (const auto notification = feed.follow(directory_.picture(feed.kind()), now()))
                post_(*notification);
    }
    setTimer();
    answerWaiting();
}

void PlayerWatch::begin()
{
    begun_ = unownedNames_ == 0 &&
             std::ranges::all_of(allPlayerKinds, [this](auto kind) { return directory_.isKnown(kind); });
    if (!begun_) return;
    if (std::ranges::none_of(allPlayerKinds, [this](auto kind) { return directory_.chosen(kind); }))
        logger_.error({{"No music player runs yet: the DJ waits for one that speaks MPRIS"}});
    for (auto& feed : feeds_) feed.begin(directory_.picture(feed.kind()));
}

void PlayerWatch::setTimer()
{
    auto next = directory_.deadline();
    for (const auto& feed : feeds_)
        if (feed.deadline() && (!next || *feed.deadline() < *next)) next = feed.deadline();
    if (!next) {
        timer_.stop();
        return;
    }
    timer_.start(
        std::max(std::chrono::ceil<std::chrono::milliseconds>(*next - now()), std::chrono::milliseconds(0)));
}

void PlayerWatch::answerWaiting()
{
    if (!begun_ || waiting_.empty()) return;
    const auto waiting = std::exchange(waiting_, {});
    for (const auto& each : waiting) poll(each.kind, each.answer);
}

void PlayerWatch::publish()
{
    for (const auto kind : allPlayerKinds) board_.put(kind, known(kind));
}

std::optional<PollBoard::Known> PlayerWatch::known(PlayerKind kind) const
{
    if (!begun_ || !directory_.isKnown(kind)) return std::nullopt;
    const auto* player = directory_.chosen(kind);
    if (player == nullptr) return PollBoard::Known{std::nullopt, Time::max()};
    if (!player->tellsTracks) return std::nullopt;
    return PollBoard::Known{player->settler.picture(), player->answered + trust};
}

}  // namespace sonvara
