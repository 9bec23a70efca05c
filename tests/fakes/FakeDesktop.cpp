// Compiled once: each test that made a desktop of its own would repeat the code of all its fakes.
#include "fakes/FakeDesktop.h"

namespace sonvara::test {

FakeDesktop::FakeDesktop()
{
    DJLog::setUp(time, time);
}

FakeDesktop::~FakeDesktop()
{
    time.end();
}

}  // namespace sonvara::test
