// Port: the process's own environment.
#pragma once

#include <map>
#include <string>

namespace sonvara {

/// Environment variables by name.
using Variables = std::map<std::string, std::string>;

/// Reads the environment. Any thread.
class Environment {
public:
    virtual ~Environment() = default;

    /// A copy of the environment as it is now.
    [[nodiscard]] virtual Variables variables() const = 0;
};

}  // namespace sonvara
