#include "platform/macos/players/AppleScriptRunner.h"

#import "platform/macos/system/ObjcPtr.h"
#import "platform/macos/system/Strings.h"

#include <mutex>

namespace sonvara {

namespace {

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
    static std::mutex component;
    const std::lock_guard lock(component);
    @autoreleasepool {  // inside the lock: what the component leaves behind is released under it, too
        const auto script =
            ObjcPtr<NSAppleScript>::adopt([[NSAppleScript alloc] initWithSource:toNSString(source)]);
        if (!script) return {.created = false, .error = {}, .text = {}, .integer = 0};
        return execute(script.get());
    }
}

}  // namespace sonvara
