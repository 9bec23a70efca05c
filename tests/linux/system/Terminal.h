// A terminal in place of standard error.
#pragma once

#include <array>
#include <gtest/gtest.h>
#include <pty.h>
#include <string>
#include <unistd.h>

namespace sonvara::test {

/// While it lives, standard error is a terminal.
class Terminal {
public:
    Terminal()
    {
        EXPECT_EQ(::openpty(&screen_, &terminal_, nullptr, nullptr, nullptr), 0);
        ::dup2(terminal_, STDERR_FILENO);
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal()
    {
        ::dup2(saved_, STDERR_FILENO);
        for (const int descriptor : {saved_, screen_, terminal_}) ::close(descriptor);
    }

    /// What was written since the last call, at least one byte.
    [[nodiscard]] std::string read() const
    {
        std::array<char, 200> text{};
        const auto count = ::read(screen_, text.data(), text.size());
        return {text.data(), count > 0 ? static_cast<std::size_t>(count) : 0};
    }

private:
    const int saved_ = ::dup(STDERR_FILENO);
    int screen_ = -1;
    int terminal_ = -1;
};

}  // namespace sonvara::test
