// The environment of this process.
#pragma once

#include "platform/Environment.h"

namespace sonvara {

class PosixEnvironment final : public Environment {
public:
    [[nodiscard]] Variables variables() const override;
};

}  // namespace sonvara
