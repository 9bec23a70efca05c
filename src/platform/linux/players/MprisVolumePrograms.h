// The volume of particular players, for putting it back when nobody else can any more.
#pragma once

#include "volume/VolumePrograms.h"

#include <QDBusConnection>
#include <QDBusMessage>

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace sonvara {

class MprisPlayers;

/// A program is a player's name on the bus. Calls go over a connection of their own, made when it is first
/// needed, and wait for the player: they work while the event loop does not run yet or any more. Any thread.
class MprisVolumePrograms : public VolumePrograms {
public:
    /// Makes a connection for this object alone, which ends with it. Called at most once.
    using Connect = std::function<QDBusConnection()>;

    /// `players` must outlive this object.
    MprisVolumePrograms(const MprisPlayers& players, Connect connect)
        : players_(players),
          connect_(std::move(connect))
    {}
    ~MprisVolumePrograms() override;
    MprisVolumePrograms(const MprisVolumePrograms&) = delete;
    MprisVolumePrograms& operator=(const MprisVolumePrograms&) = delete;

    [[nodiscard]] std::optional<std::string> programOf(const std::string& player) override;
    [[nodiscard]] std::optional<int> volume(const std::string& program) override;
    bool setVolume(const std::string& program, int volume) override;

private:
    [[nodiscard]] QDBusMessage ask(const std::string& program, const QString& method,
                                   const QVariantList& more);

    const MprisPlayers& players_;
    Connect connect_;
    std::mutex mutex_;  // one question at a time; guards the connection
    std::optional<QDBusConnection> bus_;
};

}  // namespace sonvara
