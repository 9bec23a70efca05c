"""A Debian machine that exists only for apt: its lists, and the packages that are said to be installed on it.

Nothing is installed, no rights are needed, and this machine's apt is only asked where it fetches from.
"""

import collections
import os
import re
import subprocess
import urllib.parse

CODE_NAMES = {"12": "bookworm", "13": "trixie"}
KEYS = "/usr/share/keyrings/debian-archive-keyring.gpg"  # of all releases, in debian-archive-keyring

# What the installer of Debian puts on every machine.
BASE = ("?essential", "?priority(required)", "?priority(important)", "?priority(standard)")

# What dpkg keeps of a package's stanza in the lists; it accepts no other that tells of the archive.
STATUS_FIELDS = ("Package|Essential|Priority|Section|Installed-Size|Maintainer|Architecture|Multi-Arch|Source|Version|"
                 "Provides|Depends|Pre-Depends|Recommends|Suggests|Conflicts|Breaks|Replaces|Description")

Change = collections.namedtuple("Change", "added removed")


class Fault(Exception):
    """Something that the trial needs is not there, or apt refuses."""


def ask(*command, **options):
    run = subprocess.run(command, text=True, capture_output=True, **options)
    if run.returncode:
        raise Fault(f"{' '.join(command[:8])} ...\n{run.stdout[-2000:]}{run.stderr[-2000:]}")
    return run.stdout


def find_mirrors():
    """The addresses that this machine's apt fetches Debian and its security updates from, by their labels."""
    lines = ask("apt-get", "indextargets", "--format", "$(LABEL)|$(REPO_URI)", "Created-By: Packages").splitlines()
    mirrors = dict(line.split("|") for line in reversed(lines))
    if "Debian" not in mirrors:
        raise Fault("apt knows no Debian mirror on this machine, or has never fetched its lists: apt-get update")
    return mirrors


class AptRoot:
    def __init__(self, folder, release):
        """Lists are fetched into the folder when it is new, and kept there."""
        self.folder = folder
        self.release = release
        self._write_settings()
        if not os.path.exists(self._path("fetched")):
            self._fetch_lists()
        self.packages = self._read_lists()
        self.become([])

    def become(self, stanzas):
        """From now on these are the packages that are installed."""
        with open(self._path("dpkg/status"), "w", encoding="utf-8") as file:
            for stanza in stanzas:
                file.write("\n".join(re.findall(rf"^(?:{STATUS_FIELDS}): .*", stanza, re.MULTILINE)))
                file.write("\nStatus: install ok installed\n\n")

    def install(self, *packages, recommends):
        """What apt would do: the stanzas of what is new, and the names of what would go."""
        said = ask("apt-get", "-qy", "--print-uris", "-o", "Debug::NoLocking=true", "-o",
                   f"APT::Install-Recommends={recommends}", "install", *packages, env=self._environment())
        names = re.findall(r"^'(?!file:)\S+' ([^_]+)_([^_]+)_\w+\.deb ", said, re.MULTILINE)
        added = [self.packages[name, urllib.parse.unquote(version)] for name, version in names]
        gone = re.findall(r"^The following packages will be (?:REMOVED|DOWNGRADED):\n((?:  .*\n)+)", said, re.MULTILINE)
        return Change(added, " ".join(gone).split())

    def missing(self, tool, *roles):
        """What tools/install would have apt install on this machine."""
        return ask(tool, "--missing", *roles, env=self._environment()).split()

    def _environment(self):
        return {"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "APT_CONFIG": self._path("apt.conf"),
                "DPKG_ADMINDIR": self._path("dpkg"), "SONVARA_OS_RELEASE": self._path("os-release")}

    def _path(self, name):
        return os.path.join(self.folder, name)

    def _write_settings(self):
        for name in ("state", "cache", "dpkg"):
            os.makedirs(self._path(name), exist_ok=True)
        architecture = ask("dpkg", "--print-architecture").strip()
        settings = {
            "Dir::Etc::main": "/dev/null", "Dir::Etc::parts": "/dev/null", "Dir::Etc::sourceparts": "/dev/null",
            "Dir::Etc::preferences": "/dev/null", "Dir::Etc::preferencesparts": "/dev/null",
            "Dir::Etc::sourcelist": self._path("sources.list"), "Dir::State": self._path("state"),
            "Dir::State::status": self._path("dpkg/status"), "Dir::Cache": self._path("cache"),
            "APT::Architecture": architecture, "APT::Architectures": architecture, "Acquire::Languages": "none",
            "Acquire::GzipIndexes": "false",  # they are read here, too
        }
        with open(self._path("apt.conf"), "w", encoding="utf-8") as file:
            file.write(ask("apt-config", "dump", "--no-empty", "Acquire"))  # as this machine fetches
            file.writelines(f'{name} "{value}";\n' for name, value in settings.items())
        with open(self._path("os-release"), "w", encoding="utf-8") as file:
            file.write(f'ID=debian\nVERSION_ID="{self.release}"\n')

    def _fetch_lists(self):
        if not os.path.exists(KEYS):
            raise Fault(f"{KEYS} is missing, with the keys that Debian's lists are signed with: tools/install test")
        code_name, mirrors = CODE_NAMES[self.release], find_mirrors()
        sources = [(mirrors["Debian"], code_name), (mirrors["Debian"], f"{code_name}-updates")]
        if "Debian-Security" in mirrors:
            sources.append((mirrors["Debian-Security"], f"{code_name}-security"))
        with open(self._path("sources.list"), "w", encoding="utf-8") as file:
            file.writelines(f"deb [signed-by={KEYS}] {mirror} {suite} main\n" for mirror, suite in sources)
        open(self._path("dpkg/status"), "w", encoding="utf-8").close()
        ask("apt-get", "-q", "update", "--error-on=any", env=self._environment())
        open(self._path("fetched"), "w", encoding="utf-8").close()

    def _read_lists(self):
        packages = {}
        lists = self._path("state/lists")
        for name in os.listdir(lists):
            if name.endswith("_Packages"):
                with open(os.path.join(lists, name), encoding="utf-8") as file:
                    for stanza in file.read().strip().split("\n\n"):
                        packages[field(stanza, "Package"), field(stanza, "Version")] = stanza
        return packages


def field(stanza, name):
    match = re.search(rf"^{name}: (.*)$", stanza, re.MULTILINE)
    return match[1] if match else ""
