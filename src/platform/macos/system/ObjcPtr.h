// Ownership of an Objective-C object from C++. For Objective-C++ sources only.
#pragma once

#import <Foundation/Foundation.h>

#include <utility>

namespace sonvara {

/// Owns one reference to an object of class `T`, or none.
template <typename T>
class ObjcPtr {
public:
    ObjcPtr() = default;
    ObjcPtr(const ObjcPtr& other) : object_([other.object_ retain]) {}
    ObjcPtr(ObjcPtr&& other) noexcept : object_(std::exchange(other.object_, nil)) {}
    ObjcPtr& operator=(ObjcPtr other) noexcept
    {
        std::swap(object_, other.object_);
        return *this;
    }
    ~ObjcPtr() { [object_ release]; }

    /// Takes over the reference that `object` was created with.
    static ObjcPtr adopt(T* object)
    {
        ObjcPtr pointer;
        pointer.object_ = object;
        return pointer;
    }
    /// Adds a reference of its own.
    static ObjcPtr share(T* object) { return adopt([object retain]); }

    T* get() const { return object_; }
    explicit operator bool() const { return object_ != nil; }

private:
    T* object_ = nil;
};

}  // namespace sonvara
