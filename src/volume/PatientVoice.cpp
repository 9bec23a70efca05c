#include "volume/PatientVoice.h"

#include "ports/GlobalQueue.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <deque>
#include <mutex>
#include <utility>
#include <vector>

namespace sonvara {
namespace {

using namespace std::chrono_literals;

// Longer than a player may take to tell its volume and to be set.
constexpr auto earliestEnd = 1s;

using Ending = void (SpeechSynthesizerDelegate::*)();

}  // namespace

/// The lines that have been handed over and of whose end nothing has been said.
class PatientVoice::Endings : public SpeechSynthesizerDelegate {
public:
    void setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> delegate)
    {
        const std::lock_guard lock(mutex_);
        delegate_ = std::move(delegate);
    }
    std::uint64_t add()
    {
        const std::lock_guard lock(mutex_);
        lines_.push_back({++lastNumber_, nullptr, false});
        return lastNumber_;
    }
    /// The line may end from now on.
    void ripen(std::uint64_t number)
    {
        change([number](const Line& line) { return line.number == number; },
               [](Line& line) { line.isRipe = true; });
    }
    void didFinish() override { end(&SpeechSynthesizerDelegate::didFinish); }
    void didCancel() override { end(&SpeechSynthesizerDelegate::didCancel); }

private:
    struct Line {
        std::uint64_t number;
        Ending ending;  ///< null while it is spoken
        bool isRipe;
    };

    /// Lines come to their ends in the order in which they were handed over.
    void end(Ending ending)
    {
        change([](const Line& line) { return line.ending == nullptr; },
               [ending](Line& line) { line.ending = ending; });
    }

    template <typename Which, typename Change>
    void change(Which which, Change change)
    {
        std::unique_lock lock(mutex_);
        const auto line = std::ranges::find_if(lines_, which);
        if (line == lines_.end()) return;
        change(*line);
        std::vector<Ending> due;
        for (; !lines_.empty() && lines_.front().ending && lines_.front().isRipe; lines_.pop_front())
            due.push_back(lines_.front().ending);
        const auto delegate = delegate_.lock();
        lock.unlock();
        for (const auto ending : due)
            if (delegate) ((*delegate).*ending)();
    }

    std::mutex mutex_;  // guards the rest
    std::weak_ptr<SpeechSynthesizerDelegate> delegate_;
    std::deque<Line> lines_;
    std::uint64_t lastNumber_ = 0;
};

PatientVoice::PatientVoice(SpeechSynthesizer& voice, GlobalQueue& queue)
    : voice_(voice),
      queue_(queue),
      endings_(std::make_shared<Endings>())
{
    voice_.setDelegate(endings_);
}

void PatientVoice::setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> delegate)
{
    endings_->setDelegate(std::move(delegate));
}

void PatientVoice::speak(SpeechUtterance utterance)
{
    const auto number = endings_->add();
    voice_.speak(std::move(utterance));  // first: the wait may need a thread to be started
    queue_.postAfter(QualityOfService::standard, earliestEnd,
                     [endings = endings_, number] { endings->ripen(number); });
}

}  // namespace sonvara
