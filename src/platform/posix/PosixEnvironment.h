// The environment of this process.
#pragma once

#include "ports/Environment.h"

namespace sonvara {

class PosixEnvironment final : public Environment {
public:
    [[nodiscard]] Variables variables() const override;
};

}  // namespace sonvara
