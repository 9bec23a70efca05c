// The wall clock of the C library.
#pragma once

#include "ports/Clock.h"

namespace sonvara {

class PosixClock final : public Clock {
public:
    [[nodiscard]] WallTime now() const override;
    [[nodiscard]] TimeOfDay local(WallTime time) const override;
};

}  // namespace sonvara
