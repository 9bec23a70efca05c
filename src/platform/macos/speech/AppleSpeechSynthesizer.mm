#include "platform/macos/speech/AppleSpeechSynthesizer.h"

#import "platform/macos/system/ObjcPtr.h"
#import "platform/macos/system/Strings.h"

#import <AVFoundation/AVFoundation.h>

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace sonvara {

namespace {

/// The utterances that have not ended yet. Any thread: the system reports ends on a thread of its own.
class UtterancesUnderWay {
public:
    using Ending = void (SpeechSynthesizerDelegate::*)();

    void setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> delegate)
    {
        const std::lock_guard lock(mutex_);
        delegate_ = std::move(delegate);
    }

    void begin(ObjcPtr<AVSpeechUtterance> utterance)
    {
        const std::lock_guard lock(mutex_);
        utterances_.push_back(std::move(utterance));
    }

    /// Reports the end of `utterance`, unless it has been reported before.
    void end(AVSpeechUtterance* utterance, Ending ending)
    {
        std::unique_lock lock(mutex_);
        const auto known = std::find_if(utterances_.begin(), utterances_.end(),
                                        [utterance](const auto& other) { return other.get() == utterance; });
        if (known == utterances_.end()) return;
        utterances_.erase(known);
        const auto delegate = delegate_.lock();
        lock.unlock();
        if (delegate != nullptr) ((*delegate).*ending)();
    }

    /// All of them, in order of speaking.
    std::vector<ObjcPtr<AVSpeechUtterance>> list()
    {
        const std::lock_guard lock(mutex_);
        return utterances_;
    }

private:
    std::mutex mutex_;
    std::weak_ptr<SpeechSynthesizerDelegate> delegate_;
    std::vector<ObjcPtr<AVSpeechUtterance>> utterances_;  // alive, so that no address is used twice
};

}  // namespace

}  // namespace sonvara

@interface SNVSpeechDelegate : NSObject <AVSpeechSynthesizerDelegate> {
    std::shared_ptr<sonvara::UtterancesUnderWay> underWay_;
}
- (instancetype)initWithUtterances:(std::shared_ptr<sonvara::UtterancesUnderWay>)underWay;
@end

@implementation SNVSpeechDelegate

- (instancetype)initWithUtterances:(std::shared_ptr<sonvara::UtterancesUnderWay>)underWay
{
    self = [super init];
    if (self != nil) underWay_ = std::move(underWay);
    return self;
}

- (void)speechSynthesizer:(AVSpeechSynthesizer*)synthesizer
    didFinishSpeechUtterance:(AVSpeechUtterance*)utterance
{
    (void)synthesizer;
    underWay_->end(utterance, &sonvara::SpeechSynthesizerDelegate::didFinish);
}

- (void)speechSynthesizer:(AVSpeechSynthesizer*)synthesizer
    didCancelSpeechUtterance:(AVSpeechUtterance*)utterance
{
    (void)synthesizer;
    underWay_->end(utterance, &sonvara::SpeechSynthesizerDelegate::didCancel);
}

@end

namespace sonvara {

struct AppleSpeechSynthesizer::Impl {
    std::shared_ptr<UtterancesUnderWay> underWay = std::make_shared<UtterancesUnderWay>();
    // The synthesizer holds its delegate weakly.
    ObjcPtr<SNVSpeechDelegate> delegate =
        ObjcPtr<SNVSpeechDelegate>::adopt([[SNVSpeechDelegate alloc] initWithUtterances:underWay]);
    ObjcPtr<AVSpeechSynthesizer> synthesizer =
        ObjcPtr<AVSpeechSynthesizer>::adopt([[AVSpeechSynthesizer alloc] init]);
};

AppleSpeechSynthesizer::AppleSpeechSynthesizer() : impl_(std::make_unique<Impl>())
{
    [impl_->synthesizer.get() setDelegate:impl_->delegate.get()];
}

AppleSpeechSynthesizer::~AppleSpeechSynthesizer()
{
    [impl_->synthesizer.get() setDelegate:nil];
}

void AppleSpeechSynthesizer::setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> delegate)
{
    impl_->underWay->setDelegate(std::move(delegate));
}

void AppleSpeechSynthesizer::speak(SpeechUtterance utterance)
{
    const auto spoken = ObjcPtr<AVSpeechUtterance>::adopt(
        [[AVSpeechUtterance alloc] initWithString:toNSString(utterance.line)]);
    if (utterance.voice) {
        [spoken.get()
            setVoice:[AVSpeechSynthesisVoice voiceWithIdentifier:toNSString(utterance.voice->identifier)]];
    }
    [spoken.get() setRate:static_cast<float>(utterance.rate)];
    impl_->underWay->begin(spoken);
    [impl_->synthesizer.get() speakUtterance:spoken.get()];
}

// The system's own reports of the cancels may come before, during or after this, or not at all.
void AppleSpeechSynthesizer::stopSpeaking()
{
    const auto stopped = impl_->underWay->list();
    [impl_->synthesizer.get() stopSpeakingAtBoundary:AVSpeechBoundaryImmediate];
    for (const auto& utterance : stopped) {
        impl_->underWay->end(utterance.get(), &SpeechSynthesizerDelegate::didCancel);
    }
}

std::string AppleSpeechSynthesizer::currentLanguageCode() const
{
    return toString([AVSpeechSynthesisVoice currentLanguageCode]);
}

std::optional<SpeechVoice> AppleSpeechSynthesizer::voiceForLanguage(const std::string& code) const
{
    AVSpeechSynthesisVoice* voice = [AVSpeechSynthesisVoice voiceWithLanguage:toNSString(code)];
    if (voice == nil) return std::nullopt;
    return SpeechVoice{toString([voice identifier])};
}

}  // namespace sonvara
