"""A network of one's own, in which there is this machine and nothing else, and folders of one's own for what is everybody's.

A program that calls enter() at its start runs on in namespaces of its own: its only network is loopback, /tmp and /opt
are empty, and nobody else sees what is put there. Whatever wanted to leave is counted.
"""

import ctypes
import fcntl
import os
import socket
import struct
import subprocess
import sys

SKIP = 77
_INSIDE = "SONVARA_SECLUDED"
_COMMANDS = (
    ("unshare", "--mount", "--net"),
    # Without the right to do so: as the same user in a user namespace, where it may.
    ("unshare", "--user", "--map-current-user", "--keep-caps", "--mount", "--net"),
)
_SIOCSIFFLAGS, _IFF_UP = 0x8914, 1
_MS_BIND = 4096
_libc = ctypes.CDLL(None, use_errno=True)


def enter(keep):
    """Returns inside, where the folder `keep` is to be seen wherever it is. Where the machine permits no such
    namespaces, says so and ends the program as skipped."""
    if os.environ.pop(_INSIDE, None):
        _start_loopback()
        _empty_folders(keep)
        return
    for command in _COMMANDS:
        if subprocess.run([*command, "true"], stderr=subprocess.DEVNULL, check=False).returncode == 0:
            os.execvpe(command[0], [*command, sys.executable, "-B", *sys.argv], {**os.environ, _INSIDE: "yes"})
    print("Skipped: this machine permits no network of one's own (unshare --net).")
    sys.exit(SKIP)


def _empty_folders(keep):
    kept = os.open(keep, os.O_PATH)
    for folder, mode in (("/opt", "0755"), ("/tmp", "1777")):
        _mount("tmpfs", folder, "tmpfs", 0, "mode=" + mode)
    if not os.path.exists(keep):
        os.makedirs(keep)
        _mount(f"/proc/self/fd/{kept}", keep, None, _MS_BIND, None)
    os.close(kept)


def _mount(source, target, kind, flags, options):
    if _libc.mount(source.encode(), target.encode(), kind and kind.encode(), flags, options and options.encode()) != 0:
        error = ctypes.get_errno()
        raise OSError(error, os.strerror(error), target)


def attempts_to_leave():
    """How many packets had no way out, and how many questions (for names) nobody answered."""
    counts = {}
    with open("/proc/net/snmp", encoding="ascii") as file:
        lines = [line.split() for line in file]
    for names, values in zip(lines[::2], lines[1::2]):
        counts.update({names[0] + name: int(value) for name, value in zip(names[1:], values[1:])})
    with open("/proc/net/snmp6", encoding="ascii") as file:
        counts.update({name: int(value) for name, value in (line.split() for line in file)})
    return counts["Ip:OutNoRoutes"] + counts.get("Ip6OutNoRoutes", 0) + counts["Udp:NoPorts"]


def _start_loopback():
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as any_socket:
        fcntl.ioctl(any_socket, _SIOCSIFFLAGS, struct.pack("16sH14x", b"lo", _IFF_UP))
