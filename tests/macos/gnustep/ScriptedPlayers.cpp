#include "ScriptedPlayers.h"

#include <utility>

namespace sonvara::test {

using standins::ScriptAnswer;

namespace {

constexpr std::string_view setCommand = "to set sound volume to ";

std::string playerIn(const std::string& source)
{
    const std::size_t from = source.find("application \"") + 13;
    return source.substr(from, source.find('"', from) - from);
}

}  // namespace

ScriptedPlayers::ScriptedPlayers()
{
    standins::setScripts([this](const std::string& source) { return answer(source); });
}

ScriptedPlayers::~ScriptedPlayers()
{
    standins::setScripts(nullptr);
}

void ScriptedPlayers::set(const std::string& name, Player player)
{
    const std::lock_guard lock(mutex_);
    players_[name] = std::move(player);
}

void ScriptedPlayers::deny(int errorNumber)
{
    const std::lock_guard lock(mutex_);
    denial_ = errorNumber;
}

void ScriptedPlayers::haveNewMusic()
{
    const std::lock_guard lock(mutex_);
    isMusicNew_ = true;
}

void ScriptedPlayers::hold()
{
    volumeGate_.lock();
}

void ScriptedPlayers::release()
{
    volumeGate_.unlock();
}

int ScriptedPlayers::volume(const std::string& name)
{
    const std::lock_guard lock(mutex_);
    return players_[name].volume;
}

int ScriptedPlayers::polls()
{
    const std::lock_guard lock(mutex_);
    return polls_;
}

std::vector<int> ScriptedPlayers::volumesSet()
{
    const std::lock_guard lock(mutex_);
    return volumesSet_;
}

ScriptAnswer ScriptedPlayers::answer(const std::string& source)
{
    const std::string name = playerIn(source);
    return source.find("sound volume") == std::string::npos ? poll(name, source) : volumeScript(name, source);
}

ScriptAnswer ScriptedPlayers::poll(const std::string& name, const std::string& source)
{
    const std::lock_guard lock(mutex_);
    ++polls_;
    const Player& player = players_[name];
    if (denial_) return {.text = "error"};  // the script catches its errors itself
    if (!player.isRunning) return {.text = "notrunning"};
    if (player.title.empty()) return {.text = "error"};  // a stream has no current track
    const char* term = isMusicNew_ ? " favorited of " : " loved of ";
    if (name == "Music" && source.find(term) == std::string::npos) return {.text = "error"};
    std::string fields = player.title + "||" + player.artist + "||" + player.album;
    fields += player.isPlaying ? "||true" : "||false";
    if (name == "Music") fields += "||false";
    return {.text = fields};
}

ScriptAnswer ScriptedPlayers::volumeScript(const std::string& name, const std::string& source)
{
    const std::lock_guard wait(volumeGate_);
    const std::lock_guard lock(mutex_);
    if (denial_) return {.errorNumber = denial_};
    Player& player = players_[name];
    if (source.find("is running then") != std::string::npos) {  // a look
        if (!player.isRunning) return {};
        return {.text = std::to_string(player.volume) + (player.isPlaying ? "||true||" : "||false||") +
                        player.title};
    }
    const std::size_t command = source.find(setCommand);
    if (command == std::string::npos)
        return {.text = std::to_string(player.volume), .integer = player.volume};
    player.volume = std::stoi(source.substr(command + setCommand.size()));
    volumesSet_.push_back(player.volume);
    return {};
}

}  // namespace sonvara::test
