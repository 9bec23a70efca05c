#include "platform/macos/players/AppleScriptRunner.h"

#import "platform/macos/system/ObjcPtr.h"
#import "platform/macos/system/Strings.h"

#include <chrono>
#include <mutex>

namespace sonvara {

namespace {

constexpr auto mainThreadPatience = std::chrono::seconds(2);

/// The right to use the component, unless waiting for it would keep the program from ending.
std::unique_lock<std::timed_mutex> lockComponent()
{
    static std::timed_mutex mutex;
    if ([NSThread isMainThread]) return std::unique_lock(mutex, mainThreadPatience);
    return std::unique_lock(mutex);
}

ScriptResult execute(NSAppleScript* script)
{
    ScriptResult result;
    NSDictionary* error = nil;
    NSAppleEventDescriptor* value = [script executeAndReturnError:&error];
    if (error != nil) result.error = toString([error description]);
    if (NSString* text = [value stringValue]; text != nil) result.text = toString(text);
    result.integer = [value int32Value];
    return result;
}

}  // namespace

ScriptResult AppleScriptRunner::run(const std::string& source)
{
    const auto lock = lockComponent();
    if (!lock) return {.created = false, .error = {}, .text = {}, .integer = 0};
    @autoreleasepool {  // inside the lock: what the component leaves behind is released under it, too
        const auto script =
            ObjcPtr<NSAppleScript>::adopt([[NSAppleScript alloc] initWithSource:toNSString(source)]);
        if (!script) return {.created = false, .error = {}, .text = {}, .integer = 0};
        return execute(script.get());
    }
}

}  // namespace sonvara
