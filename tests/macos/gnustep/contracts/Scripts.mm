// The script component, which answers what a test tells it to.
#include "StandIns.h"

#import <AppleAdditions.h>
#include <CoreServices/CoreServices.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string_view>
#include <utility>

using namespace sonvara::test::standins;

namespace {

std::mutex mutex;
std::function<ScriptAnswer(const std::string&)> answers;
std::atomic<int> leftovers = 0;
std::atomic<int> usersOfComponent = 0;  // the documentation allows one at a time

/// Notes the use of the script component by this thread.
class ComponentUse {
public:
    ComponentUse()
    {
        if (usersOfComponent.fetch_add(1) != 0) violated("NSAppleScript is used by two threads at once");
        if ([NSThread isMainThread]) violated("a script blocks the main thread");
    }
    ~ComponentUse() { --usersOfComponent; }
};

std::vector<std::string> installed{"Music", "Spotify"};
std::string questioned;  // the application about which the user is being asked
std::condition_variable answered;

std::string applicationIn(const std::string& source)
{
    constexpr std::string_view before = "application \"";
    const auto place = source.find(before);
    if (place == std::string::npos) return {};
    const auto begin = place + before.size();
    return source.substr(begin, source.find('"', begin) - begin);
}

std::string applicationOf(std::string_view bundle)
{
    if (bundle == "com.apple.Music") return "Music";
    return bundle == "com.spotify.client" ? "Spotify" : "";
}

bool isInstalled(const std::string& application)
{
    const std::lock_guard lock(mutex);
    return std::find(installed.begin(), installed.end(), application) != installed.end();
}

/// The component looks up an application when it compiles a script that names it.
void compile(const std::string& source)
{
    const auto application = applicationIn(source);
    if (!application.empty() && !isInstalled(application))
        violated("a script names " + application + ", which is not installed: the user is asked where it is");
}

void waitForConsent(const std::string& application)
{
    std::unique_lock lock(mutex);
    answered.wait(lock, [&application] { return questioned != application || questioned.empty(); });
}

void expectNoQuestion(const std::string& application)
{
    std::unique_lock lock(mutex);
    const bool isAsked = !questioned.empty() && questioned == application;
    lock.unlock();
    if (isAsked) violated("a script waits for the user's consent, and keeps all others waiting");
    waitForConsent(application);
}

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
        compile(source_);
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
    expectNoQuestion(applicationIn(source_));
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

/// The address of an application.
@interface SNVTarget : NSAppleEventDescriptor {
    AEDesc description_;
    std::string bundle_;
}
- (instancetype)initWithBundle:(NSString*)bundle;
@end

@implementation SNVTarget

- (instancetype)initWithBundle:(NSString*)bundle
{
    self = [super init];
    if (self != nil) {
        bundle_ = [bundle UTF8String];
        description_.bundle = bundle_.c_str();
    }
    return self;
}

- (const AEDesc*)aeDesc
{
    return &description_;
}

@end

@implementation NSAppleEventDescriptor (AppleAdditions)

+ (NSAppleEventDescriptor*)descriptorWithBundleIdentifier:(NSString*)identifier
{
    return [[[SNVTarget alloc] initWithBundle:identifier] autorelease];
}

- (const AEDesc*)aeDesc
{
    return nullptr;
}

- (NSString*)stringValue
{
    return nil;
}

- (std::int32_t)int32Value
{
    return 0;
}

@end

@implementation NSWorkspace (AppleAdditions)

- (NSURL*)URLForApplicationWithBundleIdentifier:(NSString*)identifier
{
    const auto application = applicationOf([identifier UTF8String]);
    if (!isInstalled(application)) return nil;
    const auto path = "/Applications/" + application + ".app";
    return [NSURL fileURLWithPath:[NSString stringWithUTF8String:path.c_str()]];
}

@end

OSStatus AEDeterminePermissionToAutomateTarget(const AEDesc* target, std::uint32_t, std::uint32_t,
                                               Boolean asks)
{
    if ([NSThread isMainThread]) violated("the main thread waits for the user's consent");
    if (asks == 0) violated("nobody asks the user for consent");
    waitForConsent(applicationOf(target->bundle));
    return 0;
}

namespace sonvara::test::standins {

void setInstalled(std::vector<std::string> applications)
{
    const std::lock_guard lock(mutex);
    installed = std::move(applications);
}

void openConsentQuestion(const std::string& application)
{
    const std::lock_guard lock(mutex);
    questioned = application;
}

void answerConsentQuestion()
{
    const std::lock_guard lock(mutex);
    questioned.clear();
    answered.notify_all();
}

void setScripts(std::function<ScriptAnswer(const std::string& source)> answer)
{
    const std::lock_guard lock(mutex);
    answers = std::move(answer);
}

int scriptLeftovers()
{
    return leftovers;
}

}  // namespace sonvara::test::standins
