#include "volume/CountedVoice.h"

#include "ports/Queues.h"
#include "volume/LoweredPlayers.h"

#include <mutex>
#include <utility>

namespace sonvara {

class CountedVoice::Endings final : public SpeechSynthesizerDelegate,
                                    public std::enable_shared_from_this<Endings> {
public:
    Endings(MainQueue& mainQueue, LoweredPlayers& loweredPlayers)
        : mainQueue_(mainQueue),
          loweredPlayers_(loweredPlayers)
    {}

    void setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> delegate)
    {
        const std::lock_guard lock(mutex_);
        delegate_ = std::move(delegate);
    }
    void didFinish() override { end(&SpeechSynthesizerDelegate::didFinish); }
    void didCancel() override { end(&SpeechSynthesizerDelegate::didCancel); }

private:
    void end(void (SpeechSynthesizerDelegate::*ending)())
    {
        // The queue may come to this when the voice and its users have gone.
        mainQueue_.post([weak = weak_from_this()] {
            if (const auto alive = weak.lock()) alive->loweredPlayers_.lineEnded();
        });
        std::unique_lock lock(mutex_);
        const auto delegate = delegate_.lock();
        lock.unlock();
        if (delegate) ((*delegate).*ending)();
    }

    MainQueue& mainQueue_;
    LoweredPlayers& loweredPlayers_;
    std::mutex mutex_;  ///< guards the rest: ends come on any thread
    std::weak_ptr<SpeechSynthesizerDelegate> delegate_;
};

CountedVoice::CountedVoice(SpeechSynthesizer& voice, MainQueue& mainQueue, LoweredPlayers& loweredPlayers)
    : voice_(&voice),
      loweredPlayers_(loweredPlayers),
      endings_(std::make_shared<Endings>(mainQueue, loweredPlayers))
{
    voice_->setDelegate(endings_);
}

void CountedVoice::setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> delegate)
{
    endings_->setDelegate(std::move(delegate));
}

void CountedVoice::speak(SpeechUtterance utterance)
{
    if (voice_ == nullptr) return;
    loweredPlayers_.lineBegan();
    voice_->speak(std::move(utterance));
}

void CountedVoice::stopSpeaking()
{
    if (voice_ != nullptr) voice_->stopSpeaking();
}

std::string CountedVoice::currentLanguageCode() const
{
    return voice_ == nullptr ? std::string() : voice_->currentLanguageCode();
}

std::optional<SpeechVoice> CountedVoice::voiceForLanguage(const std::string& code) const
{
    return voice_ == nullptr ? std::nullopt : voice_->voiceForLanguage(code);
}

}  // namespace sonvara
