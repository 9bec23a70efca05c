#include "Classes.h"

#import <AppKit/AppKit.h>
#import <objc/runtime.h>

#include <string_view>
#include <vector>

namespace sonvara {

namespace {

bool opensADevice(std::string_view name)
{
    return name.find("Sound") != std::string_view::npos || name.find("Speech") != std::string_view::npos;
}

}  // namespace

void initialiseClasses()
{
    @autoreleasepool {
        (void)[NSApplication sharedApplication];  // loads the classes that draw
        std::vector<Class> classes(static_cast<std::size_t>(objc_getClassList(nullptr, 0)));
        objc_getClassList(classes.data(), static_cast<int>(classes.size()));
        for (const Class each : classes) {
            if (!opensADevice(class_getName(each))) (void)[each class];
        }
    }
}

}  // namespace sonvara
