"""tools/install with an apt that says what the real one said (apt_debian_*.txt): what it asks for, and what it tells."""
import os
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
HERE = Path(__file__).resolve().parent

TABLE = """
role   debian-12    debian-13   fedora-42
build  g++          =           gcc-c++
run    file         =           =
run    pipewire-pulse|pulseaudio  =  -
test   back-12      back-13     back
"""

# Beside the program stand: what it says (says), what is installed, what apt knows, and what was called.
PROGRAMS = {
    "apt-get": """
echo "apt-get $*" >>calls
case $* in *--print-uris*) kind=plan ;; *update*) kind=update ;; *) kind=install ;; esac
n=$(grep -c . $kind.count 2>/dev/null); echo x >>$kind.count
answer=$(sed -n "$((n + 1))p" $kind.answers); answer=${answer:-$kind}
cat "says/$answer"
[ $answer != update ] || cat archive >>known
if [ $answer = install ] && [ ! -e forgetful ]; then
    while [ "$1" != install ]; do shift; done; shift; printf '%s\\n' "$@" >>installed
fi
exit "$(cat "says/$answer.status")"
""",
    "apt-cache": "cat known\n",
    "apt-mark": "cat held\n",
    "dpkg-query": "[ ! -e dpkg_fails ] || exit 2; sed 's/^/installed /' installed\n",
    "df": "echo Avail; cat free\n",
    "id": "cat uid\n",
    "sudo": """
echo "sudo $*" >>calls
[ -e sudo_works ] || exit 1
[ "$1" = -n ] || exec "$@"
""",
}


def read_sayings(release):
    text = (HERE / f"apt_debian_{release}.txt").read_text(encoding="utf-8")
    parts = re.split(r"^=== (\w+) \(status (\d+)\)\n", text, flags=re.MULTILINE)[1:]
    return {name: (status, said) for name, status, said in zip(parts[::3], parts[1::3], parts[2::3])}


class Machine:
    """A machine of which only the tools in PROGRAMS are false. Any attribute of it is a file that they read."""

    def __init__(self, folder, release):
        self.folder = folder
        self.release = release
        (folder / "bin").mkdir()
        (folder / "tools").mkdir()
        (folder / "says").mkdir()
        for tool in ("install", "install-apt"):
            shutil.copy(ROOT / "tools" / tool, folder / "tools")
        for name, (status, said) in read_sayings(release).items():
            self.write(f"says/{name}", said)
            self.write(f"says/{name}.status", status)
        for name, script in PROGRAMS.items():
            self.add_program(name, script)
        self.write("tools/packages.txt", TABLE)
        self.write("os-release", f'ID=debian\nVERSION_ID="{release}"\n')
        for name, text in (("installed", "dpkg\n"), ("known", "dpkg\nfile\npulseaudio\ng++\n"), ("free", "90000\n"),
                           ("archive", "file\ng++\n"), ("held", ""), ("uid", "0\n"), ("calls", "")):
            self.write(name, text)
        for kind in ("plan", "update", "install"):
            self.answer(kind)

    def write(self, name, text):
        (self.folder / name).write_text(text, encoding="utf-8")

    def add_program(self, name, script):
        path = self.folder / "bin" / name
        path.write_text(f"#!/bin/sh\ncd '{self.folder}'\n{script}", encoding="utf-8")
        path.chmod(0o755)

    def answer(self, kind, *names):
        """What apt says the first time, the second time ... that it is asked for this; then, that all is well."""
        self.write(f"{kind}.answers", "".join(f"{name}\n" for name in names))

    def install(self, *arguments):
        environment = {"PATH": f"{self.folder}/bin:/usr/bin:/bin", "SONVARA_OS_RELEASE": str(self.folder / "os-release")}
        run = subprocess.run(["bash", self.folder / "tools/install", *arguments], env=environment, text=True,
                             stdin=subprocess.DEVNULL, capture_output=True, timeout=60)
        return run.returncode, run.stdout, run.stderr

    def calls(self):
        return (self.folder / "calls").read_text(encoding="utf-8").splitlines()


class InstallTest(unittest.TestCase):
    release = "12"

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.machine = Machine(Path(folder.name), self.release)

    def expect_fault(self, *sentences, role="run"):
        """The last that is said is one sentence, and nothing was installed."""
        status, _, said = self.machine.install(role)
        self.assertEqual(status, 1, said)
        for sentence in sentences:
            self.assertIn(sentence, said)
        self.assertEqual(said.count("tools/install: "), 1, said)
        self.assertEqual((self.machine.folder / "installed").read_text(encoding="utf-8"), "dpkg\n")
        return said

    def expect_missing(self, expected, *roles):
        status, names, said = self.machine.install("--missing", *roles)
        self.assertEqual((status, names.split(), said), (0, expected, ""))
        self.assertEqual(self.machine.calls(), [])


class Table(InstallTest):
    def test_the_column_of_the_release_counts(self):
        self.expect_missing(["back-12", "g++"], "build", "test")
        self.machine.write("os-release", "ID=debian\nVERSION_ID=13\n")
        self.expect_missing(["back-13", "g++"], "build", "test")

    def test_a_later_release_takes_the_newest_column_and_so_does_one_without_a_number(self):
        for release in ("VERSION_ID=14\n", 'VERSION_ID="13.7"\n', ""):
            self.machine.write("os-release", f"ID=debian\n{release}")
            self.expect_missing(["back-13"], "test")

    def test_of_alternatives_the_one_that_is_there_counts_and_the_last_is_installed(self):
        self.expect_missing(["file", "pulseaudio"], "run")
        for name in ("pulseaudio", "pipewire-pulse"):
            self.machine.write("installed", f"dpkg\n{name}\n")
            self.expect_missing(["file"], "run")

    def test_another_system_is_told_which_column_it_lacks(self):
        for release in ("ID=ubuntu\nVERSION_ID=24.04\n", "ID=debian\nVERSION_ID=11\n", "ID=fedora\nVERSION_ID=41\n"):
            self.machine.write("os-release", release)
            status, _, said = self.machine.install("run")
            self.assertEqual(status, 1)
            name = re.sub(r"ID=(\w+)\nVERSION_ID=(\S+)\n", r"\1-\2", release)
            self.assertIn(f"tools/packages.txt has no column for this system, {name}:", said)

    def test_an_unknown_role_is_refused(self):
        for arguments in ((), ("nothing",), ("run", "ru")):
            self.assertEqual(self.machine.install(*arguments)[0], 2)


class Apt(InstallTest):
    def setUp(self):
        super().setUp()
        self.machine.write("tools/packages.txt", "role debian-12 debian-13\nrun file =\nbuild g++ =\n")

    def test_nothing_is_said_or_asked_when_all_is_there(self):
        self.machine.write("installed", "file\n")
        self.assertEqual(self.machine.install("run"), (0, "", ""))
        self.assertEqual(self.machine.calls(), [])

    def test_it_says_what_comes_and_how_large_it_is_and_installs_it(self):
        status, said, faults = self.machine.install("run")
        self.assertEqual((status, faults), (0, ""))
        size = {"12": "fetches 451 kB, takes 8644 kB", "13": "fetches 491 kB, takes 10.7 MB"}[self.release]
        magic = {"12": "libmagic1", "13": "libmagic1t64"}[self.release]
        self.assertIn(f"apt installs 3 packages for it, {size} of the disk, and removes nothing.\n"
                      f"They are: file libmagic-mgc {magic}\n", said)
        self.assertLess(said.index("They are:"), said.index("Setting up file"))

    def test_apt_may_remove_nothing_and_is_given_no_leave_to_change_what_is_held(self):
        self.machine.install("run")
        planned, installed = self.machine.calls()
        for call in (planned, installed):
            self.assertIn(" --no-remove --no-install-recommends ", call)
            self.assertNotIn("allow", call)
        self.assertIn("--print-uris", planned)

    def test_names_that_apt_does_not_know_are_not_taken_for_patterns(self):
        self.machine.write("known", "dpkg\n")
        status, said, _ = self.machine.install("build")
        self.assertEqual(status, 0, said)
        kinds = [re.search("update|print-uris|install g", call).group() for call in self.machine.calls()]
        self.assertEqual(kinds, ["update", "print-uris", "install g"])

    def test_old_lists_are_fetched_anew_once(self):
        self.machine.answer("install", "install_from_old_lists")
        self.assertEqual(self.machine.install("run")[0], 0)
        self.machine.write("installed", "dpkg\n")
        for kind in ("plan", "install", "update"):
            (self.machine.folder / f"{kind}.count").unlink()
        self.machine.answer("install", *["install_from_old_lists"] * 3)
        self.expect_fault("A server of packages is broken", "404  Not Found")

    def test_without_a_network(self):
        self.machine.write("known", "dpkg\n")
        self.machine.answer("update", "update_without_network")
        self.expect_fault("cannot be reached: is there a network?", "Temporary failure resolving 'mirror.example'")

    def test_without_a_network_and_with_lists(self):
        self.machine.answer("update", "update_without_network")
        self.machine.answer("install", *["install_without_network"] * 2)
        self.expect_fault("cannot be reached: is there a network?")

    def test_a_broken_mirror(self):
        self.machine.write("known", "dpkg\n")
        self.machine.answer("update", "update_from_broken_mirror")
        self.expect_fault("A server of packages is broken", "400  Bad Request")

    def test_a_name_that_the_servers_do_not_have(self):
        self.machine.write("known", "dpkg\n")
        self.machine.write("archive", "")
        self.expect_fault("apt does not know file.")

    def test_a_full_disk_is_seen_before_anything_is_fetched(self):
        self.machine.write("free", "9\n")
        self.expect_fault("The disk is full: /usr has 9 MB left, and ")
        self.machine.write("known", "dpkg\n")
        self.expect_fault("The disk is full: /var/lib/apt has 9 MB left, and 200 MB are needed. Nothing was changed.")
        self.assertFalse(any("update" in call or "yes --no-remove" in call for call in self.machine.calls()))

    def test_a_full_disk_that_apt_sees(self):
        self.machine.answer("install", "install_disk_full")
        self.expect_fault("The disk is full. apt says: You don't have enough free space")

    def test_what_would_remove_something(self):
        self.machine.answer("plan", "plan_removes")
        self.expect_fault("by removing exim4-base exim4-config exim4-daemon-light, and nothing of yours is removed.")
        self.assertEqual(len(self.machine.calls()), 1)

    def test_what_is_held(self):
        self.machine.write("held", "exim4-base\nexim4-config\n")
        self.machine.answer("plan", "plan_held", "plan_held")
        said = self.expect_fault("apt cannot install file beside what is installed; you hold: exim4-base exim4-config.")
        self.assertIn("\n  postfix : Conflicts: mail-transport-agent\n", said)
        self.assertNotIn("The following", said)

    def test_a_list_of_packages_that_cannot_be_read(self):
        self.machine.write("dpkg_fails", "")
        self.expect_fault("The packages that are installed cannot be listed.")

    def test_another_program_that_installs(self):
        self.machine.answer("install", "install_locked")
        self.expect_fault("Another program is installing packages at this moment.")

    def test_apt_that_reports_success_and_installs_nothing(self):
        self.machine.write("forgetful", "")
        self.expect_fault("apt reported no fault, and yet these packages are not installed: file")

    def test_a_user_without_rights_gets_the_command(self):
        self.machine.write("uid", "1000\n")
        self.expect_fault("cannot be installed as this user. As root, run:\n"
                          "  apt-get update && apt-get install --no-remove --no-install-recommends file\n")

    def test_a_user_with_rights_uses_them(self):
        self.machine.write("uid", "1000\n")
        self.machine.write("sudo_works", "")
        self.assertEqual(self.machine.install("run")[0], 0)
        self.assertTrue(any(call.startswith("sudo env ") and call.endswith(" install file")
                            for call in self.machine.calls()))


class AptOfDebian13(Apt):
    release = "13"


class OtherFamilies(InstallTest):
    """Nobody has tried those: what to do is said, not done."""

    def test_the_command_is_said(self):
        bash = shutil.which("bash")
        for name in ("apt-get", "sudo"):
            (self.machine.folder / "bin" / name).unlink()
        for tool in ("dirname", "readlink", "uname", "grep", "sed", "awk", "sort", "env", "sh", "cat"):
            os.symlink(shutil.which(tool), self.machine.folder / "bin" / tool)
        self.machine.write("os-release", "ID=fedora\nVERSION_ID=42\n")
        self.machine.add_program("dnf", "")
        self.machine.add_program("rpm", "cat installed\n")
        run = subprocess.run([bash, self.machine.folder / "tools/install", "build", "run"], text=True, capture_output=True,
                             env={"PATH": str(self.machine.folder / "bin"),
                                  "SONVARA_OS_RELEASE": str(self.machine.folder / "os-release")})
        self.assertEqual(run.stderr, "tools/install: These packages are missing. As root, run:\n  dnf install file gcc-c++\n")
        self.assertEqual(run.returncode, 1)


if __name__ == "__main__":
    unittest.main()
