// The classes of GNUstep, made ready for threads.
#pragma once

namespace sonvara {

/// Has every class of GNUstep initialise itself. To be called before there are threads: the GNU runtime
/// deadlocks when two threads use classes for the first time at once, as one holds the runtime's lock and
/// wants one that a class takes while it initialises itself, and the other has them the other way round.
void initialiseClasses();

}  // namespace sonvara
