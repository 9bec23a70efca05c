// A variable of this process's environment for one test.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace sonvara::test {

/// Sets a variable, or removes it with a null pointer; what was there before comes back at the end.
class ScopedVariable {
public:
    ScopedVariable(const char* name, const char* value) : name_(name)
    {
        if (const char* const before = std::getenv(name)) before_ = before;
        set(value);
    }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;
    ~ScopedVariable() { set(before_ ? before_->c_str() : nullptr); }

    void set(const char* value) const
    {
        if (value != nullptr)
            ::setenv(name_, value, 1);
        else
            ::unsetenv(name_);
    }

private:
    const char* name_;
    std::optional<std::string> before_;
};

}  // namespace sonvara::test
