// A speech daemon on a socket of the test's own, which does as the test says.
#pragma once

#include "platform/posix/Descriptors.h"

#include <functional>
#include <list>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace sonvara::test {

/// Speaks the server's side of the Speech Synthesis Interface Protocol and keeps what it was told.
/// All operations are for the test's own thread.
class StubSpeechServer {
public:
    enum class Endings {
        byTest,      ///< a line speaks until the test ends it
        atOnce,      ///< begin and end even come before the answer that tells the line's number
        atNextLine,  ///< a cancel is confirmed late: after the next line was accepted
        beginsOnly,  ///< lines begin and never end, as without a sound server
        waits,       ///< a line does not even begin, as while another program speaks, until the test says so
    };

    /// Listens at `path`. From now on it is the only one that the library knows, which cannot start a real daemon.
    explicit StubSpeechServer(std::string path);
    /// As `die`.
    ~StubSpeechServer();

    // What it does from now on.
    void setEndings(Endings endings);
    /// The next command that begins with `prefix` is not answered, nor any after it on its connection.
    void hangAt(const std::string& prefix);
    /// Connections that hang go on with what they were told meanwhile.
    void resume();
    /// The connection is cut at the next command that begins with `prefix`, so many times.
    void hangUpAt(const std::string& prefix, int times = 1);
    void refuseLines(bool refuse);
    /// Is called with each line as soon as it has come, on another thread.
    void onLine(std::function<void(const std::string&)> call);

    /// Cuts all connections and no longer listens.
    void die();
    /// Tells all connections that it sends nothing more, as the system does for a daemon on another machine that ends.
    void endSending();
    /// Listens again.
    void comeBack();
    /// Stays there but takes no more connections: connecting hangs.
    void stopAccepting();

    /// Sends an event of the line that it was given last, which must have come on a connection that is
    /// still open: "702 END", "703 CANCELED" or any other.
    void tell(const std::string& event);

    // What it has seen so far, and waiting for more while the event loop runs.
    [[nodiscard]] std::vector<std::string> lines() const;
    [[nodiscard]] std::vector<std::string> commands() const;
    [[nodiscard]] bool waitForLines(std::size_t count) const;
    [[nodiscard]] bool waitForCommand(const std::string& prefix) const;
    [[nodiscard]] bool waitForConnections(int open) const;

private:
    struct Client {
        FileDescriptor socket;
        std::string input;
        std::thread thread;
        bool receivingText = false;
        bool hearsEvents = false;
        bool hangs = false;
    };

    void listen(int backlog);
    void accept();
    void serve(Client& client);
    void handleInput(Client& client);
    void handle(Client& client, const std::string& line);
    void takeText(Client& client, const std::string& line);
    void cancel(const Client& client);
    void send(const Client& client, const std::string& text) const;
    void sendEvent(const std::string& event);
    bool waitFor(const std::function<bool()>& condition) const;

    const std::string path_;
    FileDescriptor listener_;
    std::thread accepting_;
    std::vector<FileDescriptor> fillers_;
    mutable std::mutex mutex_;  // guards what follows
    std::list<Client> clients_;
    Endings endings_ = Endings::byTest;
    std::string hangAt_;
    std::string hangUpAt_;
    int hangUps_ = 0;
    bool refuses_ = false;
    std::function<void(const std::string&)> onLine_;
    std::string text_;
    std::vector<std::string> lines_;
    std::vector<std::string> commands_;
    int open_ = 0;
    int spoken_ = -1;         // number of the last line
    bool speaking_ = false;   // it has not ended
    int cancelledLate_ = -1;  // number of a line whose cancel is still to be confirmed
    const Client* speaker_ = nullptr;
};

}  // namespace sonvara::test
