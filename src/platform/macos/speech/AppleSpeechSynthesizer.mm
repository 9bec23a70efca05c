#include "platform/macos/speech/AppleSpeechSynthesizer.h"

#import "platform/macos/system/ObjcPtr.h"
#import "platform/macos/system/Strings.h"
#include "ports/Queues.h"

#import <AVFoundation/AVFoundation.h>

#include <utility>

namespace sonvara {

namespace {

/// Hears of an end on whichever thread the system reports it.
using Ended = std::function<void(AVSpeechUtterance* utterance, SpokenLines::Ending ending)>;

}  // namespace

}  // namespace sonvara

@interface SNVSpeechDelegate : NSObject <AVSpeechSynthesizerDelegate> {
    sonvara::Ended ended_;
}
- (instancetype)initWithHandler:(sonvara::Ended)ended;
@end

@implementation SNVSpeechDelegate

- (instancetype)initWithHandler:(sonvara::Ended)ended
{
    self = [super init];
    if (self != nil) ended_ = std::move(ended);
    return self;
}

- (void)speechSynthesizer:(AVSpeechSynthesizer*)synthesizer
    didFinishSpeechUtterance:(AVSpeechUtterance*)utterance
{
    (void)synthesizer;
    ended_(utterance, &sonvara::SpeechSynthesizerDelegate::didFinish);
}

- (void)speechSynthesizer:(AVSpeechSynthesizer*)synthesizer
    didCancelSpeechUtterance:(AVSpeechUtterance*)utterance
{
    (void)synthesizer;
    ended_(utterance, &sonvara::SpeechSynthesizerDelegate::didCancel);
}

@end

namespace sonvara {

namespace {

/// The voice of the current language, as it was looked up last.
struct KnownVoice {
    std::string language;
    ObjcPtr<AVSpeechSynthesisVoice> voice;  // none: there is none for the language
};

KnownVoice lookUpVoice()
{
    NSString* language = [AVSpeechSynthesisVoice currentLanguageCode];
    return {toString(language),
            ObjcPtr<AVSpeechSynthesisVoice>::share([AVSpeechSynthesisVoice voiceWithLanguage:language])};
}

}  // namespace

struct AppleSpeechSynthesizer::Impl final : LineSpeaker, std::enable_shared_from_this<Impl> {
    Impl(GlobalQueue& queue, MainQueue& main) : workers(queue), mainQueue(main) {}
    ~Impl() override { [synthesizer.get() setDelegate:nil]; }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    void start(const SpokenLines::Times& times)
    {
        lines = std::make_shared<SpokenLines>(
            *this,
            [this](std::chrono::milliseconds delay, std::function<void()> task) {
                (void)workers.postAfter(QualityOfService::userInitiated, delay,
                                        [&main = mainQueue, task = std::move(task)] { main.post(task); });
            },
            times);
        delegate =
            ObjcPtr<SNVSpeechDelegate>::adopt([[SNVSpeechDelegate alloc] initWithHandler:endedLater()]);
        [synthesizer.get() setDelegate:delegate.get()];
        refreshVoice();
    }

    void speak(LineNumber next, const SpeechUtterance& utterance) override
    {
        number = next;
        current = ObjcPtr<AVSpeechUtterance>::adopt(
            [[AVSpeechUtterance alloc] initWithString:toNSString(utterance.line)]);
        if (utterance.voice && known.voice && utterance.voice->identifier == identifier())
            [current.get() setVoice:known.voice.get()];
        [current.get() setRate:static_cast<float>(utterance.rate)];
        [synthesizer.get() speakUtterance:current.get()];
    }

    void cut() override { [synthesizer.get() stopSpeakingAtBoundary:AVSpeechBoundaryImmediate]; }

    void refreshVoice()
    {
        workers.post(QualityOfService::userInitiated, [weak = weak_from_this(), &main = mainQueue] {
            main.post([weak, found = lookUpVoice()] {
                if (const auto alive = weak.lock()) alive->known = found;
            });
        });
    }

    /// Hands a report over to the main thread, with the utterance alive.
    Ended endedLater()
    {
        return [weak = weak_from_this(), &main = mainQueue](AVSpeechUtterance* utterance,
                                                            SpokenLines::Ending ending) {
            main.post([weak, ending, ended = ObjcPtr<AVSpeechUtterance>::share(utterance)] {
                const auto impl = weak.lock();
                if (impl && impl->current.get() == ended.get()) impl->lines->ended(impl->number, ending);
            });
        };
    }

    [[nodiscard]] std::string identifier() const { return toString([known.voice.get() identifier]); }

    GlobalQueue& workers;
    MainQueue& mainQueue;
    KnownVoice known;
    LineNumber number = 0;
    ObjcPtr<AVSpeechUtterance> current;   // alive, so that no other one has its address
    std::shared_ptr<SpokenLines> lines;   // of which this is the speaker
    ObjcPtr<SNVSpeechDelegate> delegate;  // which the synthesizer holds weakly
    ObjcPtr<AVSpeechSynthesizer> synthesizer =
        ObjcPtr<AVSpeechSynthesizer>::adopt([[AVSpeechSynthesizer alloc] init]);
};

AppleSpeechSynthesizer::AppleSpeechSynthesizer(GlobalQueue& workers, MainQueue& mainQueue,
                                               const SpokenLines::Times& times)
    : impl_(std::make_shared<Impl>(workers, mainQueue))
{
    impl_->start(times);
}

AppleSpeechSynthesizer::~AppleSpeechSynthesizer() = default;

void AppleSpeechSynthesizer::setDelegate(std::weak_ptr<SpeechSynthesizerDelegate> delegate)
{
    impl_->lines->setDelegate(std::move(delegate));
}

void AppleSpeechSynthesizer::speak(SpeechUtterance utterance)
{
    impl_->lines->speak(std::move(utterance));
    impl_->refreshVoice();
}

void AppleSpeechSynthesizer::stopSpeaking()
{
    impl_->lines->stop();
}

std::string AppleSpeechSynthesizer::currentLanguageCode() const
{
    return impl_->known.language;
}

std::optional<SpeechVoice> AppleSpeechSynthesizer::voiceForLanguage(const std::string& code) const
{
    if (!impl_->known.voice || code != impl_->known.language) return std::nullopt;
    return SpeechVoice{impl_->identifier()};
}

}  // namespace sonvara
