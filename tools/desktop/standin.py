"""A stand-in for an AI tool, put where Sonvara looks for one, for the eyes of one process only.

Sonvara looks in fixed folders of the machine. The stand-in is laid over /opt in a mount namespace of the
program's own: nobody else sees it, and it goes with the program.
"""

import os
import subprocess

# What starts a program with mounts of its own.
ALONE = (
    ("unshare", "--mount"),
    # Without the right to mount: as the same user in a user namespace, where it may.
    ("unshare", "--user", "--map-current-user", "--keep-caps", "--mount"),
)
# The program lets a tool work only in a folder that nobody else can write to or above; ours are below /tmp.
_ENTER = ("sh", "-c", 'mount --bind "$0" /opt && exec env XDG_CACHE_HOME=/opt/cache "$@"')


class StandIn:
    """The shell script `text` as the tool `name`."""

    def __init__(self, folder, name, text):
        self._root = os.path.join(folder, "opt")
        self._tool = os.path.join("homebrew", "bin", name)
        path = os.path.join(self._root, self._tool)
        os.makedirs(os.path.dirname(path))
        os.chmod(self._root, 0o700)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        os.chmod(path, 0o755)

    def command(self, *program):
        """The command that runs the program with the stand-in in its sight; None where that is not permitted."""
        for alone in ALONE:
            enter = [*alone, *_ENTER, self._root]
            probe = [*enter, "test", "-x", os.path.join("/opt", self._tool)]
            if subprocess.run(probe, stderr=subprocess.DEVNULL).returncode == 0:
                return [*enter, *program]
        return None
