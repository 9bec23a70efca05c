// The speech synthesizer, whose lines end when a test says so.
#include "StandIns.h"

#import <AVFoundation/AVFoundation.h>

#include <algorithm>
#include <mutex>
#include <thread>
#include <utility>

using namespace sonvara::test::standins;

namespace {

std::mutex mutex;
Voices voices;
std::vector<SpokenLine> lines;
std::vector<std::string> heard;
AVSpeechSynthesizer* current = nil;  // the last one that was made; not owned

void expectMainThread(const char* operation)
{
    if (![NSThread isMainThread]) violated(std::string(operation) + " is called off the main thread");
}

Voices currentVoices()
{
    const std::lock_guard lock(mutex);
    return voices;
}

std::string text(NSString* string)
{
    return string != nil ? [string UTF8String] : "";
}

}  // namespace

@interface AVSpeechSynthesizer (Ending)
- (void)endFirst:(SEL)report;
- (void)report:(AVSpeechUtterance*)utterance by:(SEL)report;
@end

@implementation AVSpeechSynthesisVoice

+ (AVSpeechSynthesisVoice*)voiceWithLanguage:(NSString*)language
{
    return [self voiceWithIdentifier:[@"voice." stringByAppendingString:language]];
}

+ (AVSpeechSynthesisVoice*)voiceWithIdentifier:(NSString*)identifier
{
    if ([NSThread isMainThread]) violated("a voice is looked up on the main thread");
    const auto known = currentVoices().languages;
    const bool exists = std::any_of(known.begin(), known.end(), [identifier](const std::string& language) {
        return text(identifier) == "voice." + language;
    });
    if (!exists) return nil;
    AVSpeechSynthesisVoice* voice = [[[self alloc] init] autorelease];
    voice->identifier_ = [identifier copy];
    return voice;
}

+ (NSString*)currentLanguageCode
{
    return [NSString stringWithUTF8String:currentVoices().currentLanguage.c_str()];
}

- (NSString*)identifier
{
    return identifier_;
}

- (void)dealloc
{
    [identifier_ release];
    [super dealloc];
}

@end

@implementation AVSpeechUtterance

- (instancetype)initWithString:(NSString*)string
{
    self = [super init];
    if (self != nil) string_ = [string copy];
    return self;
}

- (void)dealloc
{
    [string_ release];
    [voice_ release];
    [super dealloc];
}

- (NSString*)speechString
{
    return string_;
}

- (AVSpeechSynthesisVoice*)voice
{
    return voice_;
}

- (void)setVoice:(AVSpeechSynthesisVoice*)voice
{
    [voice retain];
    [voice_ release];
    voice_ = voice;
}

- (float)rate
{
    return rate_;
}

- (void)setRate:(float)rate
{
    rate_ = rate;
}

@end

@implementation AVSpeechSynthesizer

- (instancetype)init
{
    self = [super init];
    if (self != nil) queue_ = [[NSMutableArray alloc] init];
    current = self;
    return self;
}

- (void)dealloc
{
    if (delegate_ != nil) violated("the synthesizer dies with its delegate set");
    if (current == self) current = nil;
    [queue_ release];
    [super dealloc];
}

- (id<AVSpeechSynthesizerDelegate>)delegate
{
    return delegate_;
}

- (void)setDelegate:(id<AVSpeechSynthesizerDelegate>)delegate
{
    @synchronized(self) {
        delegate_ = delegate;  // weak: a report that is under way keeps it alive
    }
}

- (void)speakUtterance:(AVSpeechUtterance*)utterance
{
    expectMainThread("speakUtterance:");
    const Voices now = currentVoices();
    bool isSwallowed = false;
    @synchronized(self) {
        isSwallowed = now.swallowsAfterCut && reportsUnderWay_ > 0;
    }
    {
        const std::lock_guard lock(mutex);
        const std::string line = text([utterance speechString]);
        lines.push_back({line, text([[utterance voice] identifier]), [utterance rate]});
        if (!isSwallowed) heard.push_back(line);
    }
    if (isSwallowed) return;
    @synchronized(self) {
        if ([queue_ containsObject:utterance]) violated("an utterance is spoken twice");
        [queue_ addObject:utterance];
    }
    if (now.finishesAtOnce) {
        [self endFirst:@selector(speechSynthesizer:didFinishSpeechUtterance:)];
    }
}

- (BOOL)stopSpeakingAtBoundary:(AVSpeechBoundary)boundary
{
    expectMainThread("stopSpeakingAtBoundary:");
    if (boundary != AVSpeechBoundaryImmediate) violated("the line is not cut at once");
    const CutReport report = currentVoices().cutReport;
    @synchronized(self) {
        if ([queue_ count] == 0) return NO;
        for (AVSpeechUtterance* utterance in queue_) {
            if (report == CutReport::cancelled)
                [self report:utterance by:@selector(speechSynthesizer:didCancelSpeechUtterance:)];
            else if (report == CutReport::finished)
                [self report:utterance by:@selector(speechSynthesizer:didFinishSpeechUtterance:)];
        }
        [queue_ removeAllObjects];
    }
    return YES;
}

@end

@implementation AVSpeechSynthesizer (Ending)

- (void)endFirst:(SEL)report
{
    @synchronized(self) {
        if ([queue_ count] == 0) return;
        [self report:[queue_ objectAtIndex:0] by:report];
        [queue_ removeObjectAtIndex:0];
    }
}

// The documentation names no thread for the delegate, so it is a foreign one here.
- (void)report:(AVSpeechUtterance*)utterance by:(SEL)report
{
    [self retain];
    [utterance retain];
    ++reportsUnderWay_;  // by a caller that has locked this
    std::thread([self, utterance, report] {
        GSRegisterCurrentThread();
        @autoreleasepool {
            NSObject* receiver = nil;
            @synchronized(self) {
                receiver = [[(NSObject*)delegate_ retain] autorelease];
                --reportsUnderWay_;
            }
            [receiver performSelector:report withObject:self withObject:utterance];
            [utterance release];
            [self release];
        }
        GSUnregisterCurrentThread();
    }).detach();
}

@end

namespace sonvara::test::standins {

void setVoices(Voices next)
{
    const std::lock_guard lock(mutex);
    voices = std::move(next);
    lines.clear();
    heard.clear();
}

std::vector<std::string> heardLines()
{
    const std::lock_guard lock(mutex);
    return heard;
}

std::vector<SpokenLine> spokenLines()
{
    const std::lock_guard lock(mutex);
    return lines;
}

void finishLine()
{
    [current endFirst:@selector(speechSynthesizer:didFinishSpeechUtterance:)];
}

}  // namespace sonvara::test::standins
