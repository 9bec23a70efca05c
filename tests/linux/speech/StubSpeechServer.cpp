#include "StubSpeechServer.h"

#include "helpers/EventLoop.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <sys/socket.h>
#include <sys/un.h>

namespace sonvara::test {

namespace {

sockaddr_un addressOf(const std::string& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
}

/// The protocol does not care for capitals, and the library's own call writes small ones.
bool isSpeak(const std::string& command)
{
    return command == "SPEAK" || command == "speak";
}

/// What the daemon answers to a command that sets something.
std::string answerTo(const std::string& command)
{
    if (command.starts_with("SET SELF CLIENT_NAME")) return "208 OK CLIENT NAME SET";
    if (command.starts_with("SET SELF NOTIFICATION")) return "220 OK NOTIFICATION SET";
    if (command.starts_with("SET SELF PRIORITY")) return "202 OK PRIORITY SET";
    if (command.starts_with("SET SELF LANGUAGE")) return "201 OK LANGUAGE SET";
    if (command.starts_with("SET SELF RATE")) return "203 OK RATE SET";
    if (command == "QUIT") return "231 HAPPY HACKING";
    return "500 ERR INVALID COMMAND";
}

}  // namespace

StubSpeechServer::StubSpeechServer(std::string path) : path_(std::move(path))
{
    ::setenv("SPEECHD_ADDRESS", ("unix_socket:" + path_).c_str(), 1);
    ::setenv("SPEECHD_CMD", "/bin/false", 1);
    comeBack();
}

StubSpeechServer::~StubSpeechServer()
{
    die();
}

void StubSpeechServer::setEndings(Endings endings)
{
    const std::lock_guard lock(mutex_);
    endings_ = endings;
}

void StubSpeechServer::hangAt(const std::string& prefix)
{
    const std::lock_guard lock(mutex_);
    hangAt_ = prefix;
}

void StubSpeechServer::hangUpAt(const std::string& prefix, int times)
{
    const std::lock_guard lock(mutex_);
    hangUpAt_ = prefix;
    hangUps_ = times;
}

void StubSpeechServer::refuseLines(bool refuse)
{
    const std::lock_guard lock(mutex_);
    refuses_ = refuse;
}

void StubSpeechServer::onLine(std::function<void(const std::string&)> call)
{
    const std::lock_guard lock(mutex_);
    onLine_ = std::move(call);
}

void StubSpeechServer::listen(int backlog)
{
    ::unlink(path_.c_str());
    listener_ = FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_un address = addressOf(path_);
    ::bind(listener_.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::listen(listener_.get(), backlog);
}

void StubSpeechServer::comeBack()
{
    listen(8);
    accepting_ = std::thread([this] { accept(); });
}

void StubSpeechServer::die()
{
    ::unlink(path_.c_str());
    ::shutdown(listener_.get(), SHUT_RDWR);
    if (accepting_.joinable()) accepting_.join();
    listener_.reset();
    fillers_.clear();
    {
        const std::lock_guard lock(mutex_);
        for (Client& client : clients_) ::shutdown(client.socket.get(), SHUT_RDWR);
    }
    for (Client& client : clients_) client.thread.join();
    clients_.clear();
    speaking_ = false;
}

void StubSpeechServer::endSending()
{
    const std::lock_guard lock(mutex_);
    for (const Client& client : clients_) ::shutdown(client.socket.get(), SHUT_WR);
}

void StubSpeechServer::stopAccepting()
{
    die();
    listen(0);
    const sockaddr_un address = addressOf(path_);
    int result = 0;
    while (result == 0) {
        fillers_.emplace_back(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
        result =
            ::connect(fillers_.back().get(), reinterpret_cast<const sockaddr*>(&address), sizeof address);
    }
}

void StubSpeechServer::accept()
{
    while (true) {
        FileDescriptor socket(::accept4(listener_.get(), nullptr, nullptr, SOCK_CLOEXEC));
        if (socket.get() < 0) return;
        const std::lock_guard lock(mutex_);
        Client& client = clients_.emplace_back();
        client.socket = std::move(socket);
        ++open_;
        client.thread = std::thread([this, &client] { serve(client); });
    }
}

void StubSpeechServer::serve(Client& client)
{
    std::array<char, 4096> buffer{};
    ssize_t count = 0;
    while ((count = ::recv(client.socket.get(), buffer.data(), buffer.size(), 0)) > 0) {
        const std::lock_guard lock(mutex_);
        client.input.append(buffer.data(), static_cast<std::size_t>(count));
        handleInput(client);
    }
    const std::lock_guard lock(mutex_);
    ::shutdown(client.socket.get(), SHUT_RDWR);
    --open_;
}

void StubSpeechServer::handleInput(Client& client)
{
    std::size_t end = 0;
    while (!client.hangs && (end = client.input.find("\r\n")) != std::string::npos) {
        const std::string line = client.input.substr(0, end);
        client.input.erase(0, end + 2);
        handle(client, line);
    }
}

void StubSpeechServer::resume()
{
    const std::lock_guard lock(mutex_);
    for (Client& client : clients_) {
        client.hangs = false;
        handleInput(client);
    }
}

void StubSpeechServer::handle(Client& client, const std::string& line)
{
    if (client.receivingText) return takeText(client, line);
    commands_.push_back(line);
    if (!hangAt_.empty() && line.starts_with(hangAt_)) {
        hangAt_.clear();
        client.hangs = true;
        client.input.insert(0, line + "\r\n");
    } else if (hangUps_ > 0 && line.starts_with(hangUpAt_)) {
        --hangUps_;
        ::shutdown(client.socket.get(), SHUT_RDWR);
    } else if (isSpeak(line)) {
        client.receivingText = !refuses_;
        send(client, refuses_ ? "400 ERR INTERNAL" : "230 OK RECEIVING DATA");
    } else if (line.starts_with("CANCEL")) {
        cancel(client);
    } else {
        client.hearsEvents = client.hearsEvents || line.starts_with("SET SELF NOTIFICATION");
        send(client, answerTo(line));
    }
}

void StubSpeechServer::takeText(Client& client, const std::string& line)
{
    if (line != ".") {
        text_ += (text_.empty() ? "" : "\r\n") + line.substr(line.starts_with("..") ? 1 : 0);
        return;
    }
    client.receivingText = false;
    if (onLine_) onLine_(text_);
    lines_.push_back(std::exchange(text_, {}));
    const int number = ++spoken_;
    speaking_ = true;
    speaker_ = &client;
    if (endings_ == Endings::atOnce) {
        sendEvent("701 BEGIN");
        sendEvent("702 END");
        speaking_ = false;
    }
    send(client, "225-" + std::to_string(number) + "\r\n225 OK MESSAGE QUEUED");
    if (endings_ != Endings::atOnce && endings_ != Endings::waits) sendEvent("701 BEGIN");
    if (const int late = std::exchange(cancelledLate_, -1); late >= 0) {
        spoken_ = late;
        sendEvent("703 CANCELED");
        spoken_ = number;
    }
}

void StubSpeechServer::cancel(const Client& client)
{
    if (speaking_ && speaker_ == &client) {
        speaking_ = false;
        if (endings_ == Endings::atNextLine)
            cancelledLate_ = spoken_;
        else
            sendEvent("703 CANCELED");
    }
    send(client, "210 OK STOPPED");
}

void StubSpeechServer::tell(const std::string& event)
{
    const std::lock_guard lock(mutex_);
    sendEvent(event);
    if (event.starts_with("702") || event.starts_with("703")) speaking_ = false;
}

void StubSpeechServer::sendEvent(const std::string& event)
{
    if (!speaker_->hearsEvents) return;
    const std::string code = event.substr(0, 3);
    send(*speaker_, code + "-" + std::to_string(spoken_) + "\r\n" + code + "-1\r\n" + event);
}

void StubSpeechServer::send(const Client& client, const std::string& text) const
{
    const std::string data = text + "\r\n";
    // A client that has gone is no concern of the daemon's.
    [[maybe_unused]] const auto ignored = ::send(client.socket.get(), data.data(), data.size(), MSG_NOSIGNAL);
}

std::vector<std::string> StubSpeechServer::lines() const
{
    const std::lock_guard lock(mutex_);
    return lines_;
}

std::vector<std::string> StubSpeechServer::commands() const
{
    const std::lock_guard lock(mutex_);
    return commands_;
}

bool StubSpeechServer::waitFor(const std::function<bool()>& condition) const
{
    return eventually([&] {
        const std::lock_guard lock(mutex_);
        return condition();
    });
}

bool StubSpeechServer::waitForLines(std::size_t count) const
{
    return waitFor([&] { return lines_.size() >= count; });
}

bool StubSpeechServer::waitForCommand(const std::string& prefix) const
{
    return waitFor([&] {
        return std::ranges::any_of(commands_, [&](const std::string& c) { return c.starts_with(prefix); });
    });
}

bool StubSpeechServer::waitForConnections(int open) const
{
    return waitFor([&] { return open_ == open; });
}

}  // namespace sonvara::test
