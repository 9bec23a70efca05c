#include "support/Random.h"

#include <memory>

namespace sonvara {

// Made once: it asks the processor what it can do, for which a virtual machine stands still. It is large, so it lies in no
// thread that draws nothing.
std::random_device& randomSource()
{
    thread_local const auto source = std::make_unique<std::random_device>();
    return *source;
}

}  // namespace sonvara
