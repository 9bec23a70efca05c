// The script component, which answers what a test tells it to.
#include "StandIns.h"

#import <AppleAdditions.h>

#include <atomic>
#include <mutex>
#include <utility>

using namespace sonvara::test::standins;

namespace {

std::mutex mutex;
std::function<ScriptAnswer(const std::string&)> answers;
std::atomic<int> leftovers = 0;
std::atomic<bool> isTerminating = false;
std::atomic<int> usersOfComponent = 0;  // the documentation allows one at a time

/// Notes the use of the script component by this thread.
class ComponentUse {
public:
    ComponentUse()
    {
        if (usersOfComponent.fetch_add(1) != 0) violated("NSAppleScript is used by two threads at once");
        if ([NSThread isMainThread] && !isTerminating) violated("a script blocks the main thread");
    }
    ~ComponentUse() { --usersOfComponent; }
};

ScriptAnswer answerTo(const std::string& source)
{
    std::unique_lock lock(mutex);
    const auto answer = answers;
    lock.unlock();
    return answer ? answer(source) : ScriptAnswer{};
}

}  // namespace

@interface SNVDescriptor : NSAppleEventDescriptor {
    ScriptAnswer answer_;
}
- (instancetype)initWithAnswer:(ScriptAnswer)answer;
@end

@implementation SNVDescriptor

- (instancetype)initWithAnswer:(ScriptAnswer)answer
{
    self = [super init];
    if (self != nil) answer_ = std::move(answer);
    ++leftovers;
    return self;
}

- (void)dealloc
{
    --leftovers;
    [super dealloc];
}

- (NSString*)stringValue
{
    return answer_.text ? [NSString stringWithUTF8String:answer_.text->c_str()] : nil;
}

- (std::int32_t)int32Value
{
    return answer_.integer;
}

@end

@interface SNVScript : NSAppleScript {
    std::string source_;
}
@end

@implementation SNVScript

- (instancetype)initWithSource:(NSString*)source
{
    self = [super init];
    if (self == nil) return nil;
    {
        const ComponentUse use;
        source_ = [source UTF8String];
    }
    if (!source_.empty()) return self;
    [self release];
    return nil;
}

- (void)dealloc
{
    const ComponentUse use;
    [super dealloc];
}

- (NSAppleEventDescriptor*)executeAndReturnError:(NSDictionary**)error
{
    const ComponentUse use;
    const ScriptAnswer answer = answerTo(source_);
    if (answer.errorNumber) {
        *error = @{@"NSAppleScriptErrorNumber" : [NSNumber numberWithInt:*answer.errorNumber]};
        return nil;
    }
    return [[[SNVDescriptor alloc] initWithAnswer:answer] autorelease];
}

@end

// The adapters make plain NSAppleScript objects.
@implementation NSAppleScript (AppleAdditions)

+ (id)allocWithZone:(NSZone*)zone
{
    return NSAllocateObject([SNVScript class], 0, zone);
}

- (instancetype)initWithSource:(NSString*)source
{
    (void)source;
    return [self init];
}

- (NSAppleEventDescriptor*)executeAndReturnError:(NSDictionary**)error
{
    (void)error;
    return nil;
}

@end

@implementation NSAppleEventDescriptor (AppleAdditions)

- (NSString*)stringValue
{
    return nil;
}

- (std::int32_t)int32Value
{
    return 0;
}

@end

namespace sonvara::test::standins {

void setScripts(std::function<ScriptAnswer(const std::string& source)> answer)
{
    const std::lock_guard lock(mutex);
    answers = std::move(answer);
}

void allowScriptsOnMainThread()
{
    isTerminating = true;
}

int scriptLeftovers()
{
    return leftovers;
}

}  // namespace sonvara::test::standins
