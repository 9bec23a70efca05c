#!/usr/bin/python3
"""test_desktops.py RELEASE PACKAGE.deb FOLDER: what Sonvara installs does a desktop of this Debian release no harm.

For a machine with each of Debian's desktops, and for one with none, apt is asked what it would do for the roles of
tools/packages.txt, and for the package with what it recommends: it may remove nothing, and bring no display manager and
no desktop. The lists are fetched once, and kept in the folder.

A package names the libraries of the release that it was built on. For the other one stands a package with the same
fields, in which the libraries are those that this release's own development packages ask for.
"""

import os
import re
import subprocess
import sys

sys.dont_write_bytecode = True

from apt_root import BASE, AptRoot, Fault, ask, field

DESKTOPS = ("gnome", "kde", "xfce", "mate", "lxqt", "cinnamon", None)
ROLES = (("run",), ("build", "run"), ("build", "run", "demo"), ("build", "run", "demo", "test"))
INSTALL = os.path.join(os.path.dirname(os.path.realpath(__file__)), "../../tools/install")
UNWANTED = {"x-display-manager", "x-session-manager"}


def names(text):
    """The packages that a field such as Depends or Provides names."""
    return set(re.findall(r"(?:^|[,|]) *([a-z0-9][a-z0-9.+-]+)", text))


def is_unwanted(stanza):
    return bool(names(field(stanza, "Provides")) & UNWANTED) or field(stanza, "Package").startswith("task-")


def findings(change):
    """What is wrong with that."""
    unwanted = sorted(field(stanza, "Package") for stanza in change.added if is_unwanted(stanza))
    return ([f"removes {' '.join(change.removed)}"] if change.removed else []) + \
        ([f"brings {' '.join(unwanted)}"] if unwanted else [])


class Trial:
    def __init__(self, release, package, folder):
        self.root = AptRoot(os.path.join(folder, release), release)
        self.newest = {field(stanza, "Package"): stanza for stanza in self.root.packages.values()}
        self.package = package if release == own_release() else self.stand_in(package)
        self.faults = 0

    def stand_in(self, package):
        """A package as it would have been built on the release."""
        kept = [part for part in field_of(package, "Depends").split(", ") if not part.startswith("lib")]
        development = [name for name in self.root.missing(INSTALL, "build") if re.fullmatch(r"(lib|qt6).*-dev", name)]
        asked = set().union(*(names(field(self.newest[name], "Depends")) for name in development))
        libraries = sorted(name for name in asked if re.match(r"lib(?!.*-dev$)", name))
        tree = os.path.join(self.root.folder, "stand-in")
        os.makedirs(os.path.join(tree, "DEBIAN"), exist_ok=True)
        with open(os.path.join(tree, "DEBIAN/control"), "w", encoding="utf-8") as file:
            for name in ("Package", "Version", "Architecture", "Maintainer", "Description"):
                file.write(f"{name}: {field_of(package, name).splitlines()[0]}\n")
            file.write(f"Depends: {', '.join(kept + libraries)}\n")
            file.write(f"Recommends: {field_of(package, 'Recommends')}\n")
        ask("dpkg-deb", "--root-owner-group", "--build", tree, f"{tree}.deb")
        return f"{tree}.deb"

    def check(self, desktop):
        self.root.become([])
        task = [f"task-{desktop}-desktop"] if desktop else []
        there = self.root.install(*BASE, *task, recommends=True).added
        if desktop and not any("x-session-manager" in names(field(stanza, "Provides")) for stanza in there):
            raise Fault(f"{task[0]} brings no desktop: this trial says nothing")
        self.root.become(there)
        self.say(f"{desktop or 'no desktop'}: {len(there)} packages")
        for roles in ROLES:
            self.judge(" ".join(roles), self.root.install(*self.root.missing(INSTALL, *roles), recommends=False))
        self.judge("the package", self.root.install(self.package, recommends=True))
        self.prove(desktop)

    def prove(self, desktop):
        """Harm is seen where it is known to be: a sound server in the place of GNOME's, and an extension that needs GNOME."""
        harm = {"gnome": "pulseaudio", None: "gnome-shell-extension-appindicator"}.get(desktop)
        if harm and not findings(self.root.install(harm, recommends=True)):
            raise Fault(f"{harm} does no harm here: this trial cannot fail")

    def judge(self, what, change):
        faults = findings(change)
        self.faults += len(faults)
        self.say(f"    {what}: {len(change.added)} packages", *(f"FAILED: {what} {fault}" for fault in faults))

    @staticmethod
    def say(*lines):
        print(*lines, sep="\n", flush=True)


def field_of(package, name):
    return ask("dpkg-deb", "--field", package, name).strip()


def own_release():
    with open("/etc/os-release", encoding="utf-8") as file:
        system = file.read()
    match = re.search(r'^VERSION_ID="?(\d+)', system, re.MULTILINE)
    return match[1] if match and re.search(r"^ID=debian$", system, re.MULTILINE) else None


def main(release, package, folder):
    try:
        trial = Trial(release, os.path.abspath(package), os.path.abspath(folder))
        for desktop in DESKTOPS:
            trial.check(desktop)
    except Fault as fault:
        sys.exit(f"FAILED: {fault}")
    sys.exit(trial.faults > 0)


if __name__ == "__main__":
    main(*sys.argv[1:])
