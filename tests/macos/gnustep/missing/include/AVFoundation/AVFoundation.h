// Stand-in: the speech synthesizer.
#pragma once

#import <Foundation/Foundation.h>

@class AVSpeechSynthesizer;

enum AVSpeechBoundary : NSInteger { AVSpeechBoundaryImmediate, AVSpeechBoundaryWord };

@interface AVSpeechSynthesisVoice : NSObject {
    NSString* identifier_;
}
+ (AVSpeechSynthesisVoice*)voiceWithLanguage:(NSString*)language;
+ (AVSpeechSynthesisVoice*)voiceWithIdentifier:(NSString*)identifier;
+ (NSString*)currentLanguageCode;
- (NSString*)identifier;
@end

@interface AVSpeechUtterance : NSObject {
    NSString* string_;
    AVSpeechSynthesisVoice* voice_;
    float rate_;
}
- (instancetype)initWithString:(NSString*)string;
- (NSString*)speechString;
- (AVSpeechSynthesisVoice*)voice;
- (void)setVoice:(AVSpeechSynthesisVoice*)voice;
- (float)rate;
- (void)setRate:(float)rate;
@end

@protocol AVSpeechSynthesizerDelegate <NSObject>
@optional
- (void)speechSynthesizer:(AVSpeechSynthesizer*)synthesizer
    didFinishSpeechUtterance:(AVSpeechUtterance*)utterance;
- (void)speechSynthesizer:(AVSpeechSynthesizer*)synthesizer
    didCancelSpeechUtterance:(AVSpeechUtterance*)utterance;
@end

@interface AVSpeechSynthesizer : NSObject {
    id<AVSpeechSynthesizerDelegate> delegate_;
    NSMutableArray* queue_;
    NSInteger reportsUnderWay_;
}
- (id<AVSpeechSynthesizerDelegate>)delegate;
- (void)setDelegate:(id<AVSpeechSynthesizerDelegate>)delegate;
- (void)speakUtterance:(AVSpeechUtterance*)utterance;
- (BOOL)stopSpeakingAtBoundary:(AVSpeechBoundary)boundary;
@end
