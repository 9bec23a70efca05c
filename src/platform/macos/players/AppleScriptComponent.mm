#include "platform/macos/players/AppleScriptComponent.h"

#import "platform/macos/system/ObjcPtr.h"
#import "platform/macos/system/Strings.h"
#include "support/PlayerScripts.h"

#import <AppKit/AppKit.h>
#include <CoreServices/CoreServices.h>

namespace sonvara {

namespace {

/// Nil for a player that the system does not know.
NSString* bundleIdentifier(const std::string& player)
{
    if (player == musicSource) return @"com.apple.Music";
    return player == spotifySource ? @"com.spotify.client" : nil;
}

ScriptResult resultOf(NSAppleScript* script)
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

bool AppleScriptComponent::isInstalled(const std::string& player)
{
    @autoreleasepool {
        NSString* identifier = bundleIdentifier(player);
        if (identifier == nil) return false;
        return [[NSWorkspace sharedWorkspace] URLForApplicationWithBundleIdentifier:identifier] != nil;
    }
}

void AppleScriptComponent::awaitConsent(const std::string& player)
{
    @autoreleasepool {
        NSString* identifier = bundleIdentifier(player);
        if (identifier == nil) return;
        NSAppleEventDescriptor* target = [NSAppleEventDescriptor descriptorWithBundleIdentifier:identifier];
        constexpr Boolean asks = 1;
        // Whatever the answer is: the script itself says it in its own way.
        (void)AEDeterminePermissionToAutomateTarget([target aeDesc], typeWildCard, typeWildCard, asks);
    }
}

ScriptResult AppleScriptComponent::execute(const std::string& source)
{
    const std::lock_guard lock(component_);
    @autoreleasepool {  // inside the lock: what the component leaves behind is released under it, too
        const auto script =
            ObjcPtr<NSAppleScript>::adopt([[NSAppleScript alloc] initWithSource:toNSString(source)]);
        if (!script) return {.created = false, .error = {}, .text = {}, .integer = 0};
        return resultOf(script.get());
    }
}

}  // namespace sonvara
