// How the system's colours look in what is drawn.
#pragma once

namespace sonvara {

/// Main thread, with an application: the system's colours are those of its light appearance from now on, whatever the
/// user of this Mac has chosen.
void useLightAppearance();

}  // namespace sonvara
