// Texts across the border between C++ and Objective-C. Any thread. For Objective-C++ sources only.
#pragma once

#import <Foundation/Foundation.h>

#include <string>

namespace sonvara {

/// An autoreleased copy. Never nil: bytes that are no UTF-8 are shown one character each, since most
/// Cocoa methods that take a string raise an exception for nil.
[[nodiscard]] NSString* toNSString(const std::string& text);

/// `text` as UTF-8; empty for nil. Lone surrogates are replaced.
[[nodiscard]] std::string toString(NSString* text);

}  // namespace sonvara
