// What the process arranges for itself before anything else.
#pragma once

namespace sonvara {

/// To be called first in `main`, while there is only one thread. Puts standard input on /dev/null, and
/// what else is missing of the standard descriptors, too. Sees to it that the status of children is
/// kept and that writing to someone who has gone is an error and not our end. Completes the
/// environment with what keeps the command-line tools from opening a browser, from starting themselves
/// anew, from retrying for longer than anybody waits, from taking a title for more than text, and from
/// remembering it. A value that is there already stays.
void setUpProcess();

}  // namespace sonvara
