#include "helpers/PainterHook.h"

#include <QPainter>

#include <dlfcn.h>

namespace {

thread_local int painters = 0;

}  // namespace

// What the linker calls QPainter::QPainter(QPaintDevice*).
extern "C" void makePainter(QPainter* painter, QPaintDevice* device) asm("_ZN8QPainterC1EP12QPaintDevice");
extern "C" void makePainter(QPainter* painter, QPaintDevice* device)
{
    static const auto qt =
        reinterpret_cast<decltype(&makePainter)>(::dlsym(RTLD_NEXT, "_ZN8QPainterC1EP12QPaintDevice"));
    ++painters;
    qt(painter, device);
}

namespace sonvara::test {

int paintersOfThisThread()
{
    return painters;
}

}  // namespace sonvara::test
