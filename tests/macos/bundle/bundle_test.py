"""The bundle for macOS keeps its seal through every change, as the project's own build files put it together."""
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
ROOT = HERE.parents[2]


class BundleTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = Path(cls.enterClassContext(tempfile.TemporaryDirectory()))
        cls.tree = cls.folder / "sonvara"
        shutil.copytree(ROOT, cls.tree, ignore=shutil.ignore_patterns("build", ".git"))
        cls.record = cls.folder / "record"
        cls.build = cls.folder / "build"
        cls.run_tool("cmake", "-S", cls.tree, "-B", cls.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                     f"-DCMAKE_TOOLCHAIN_FILE={HERE}/darwin.cmake", "-DBUILD_TESTING=OFF")

    @classmethod
    def run_tool(cls, *command):
        run = subprocess.run([str(part) for part in command], capture_output=True, text=True,
                             env={**os.environ, "PATH": f"{HERE}:{os.environ['PATH']}", "RECORD": str(cls.record)})
        if run.returncode != 0:
            raise AssertionError(f"{command} failed:\n{run.stdout}\n{run.stderr}")
        return run.stdout

    def setUp(self):
        self.make()
        self.record.write_text("")

    def make(self, target="sonvara"):
        self.run_tool("cmake", "--build", self.build, "--target", target)

    @property
    def signatures(self):
        return self.record.read_text().count("signed")

    def change(self, name, old, new):
        path = self.tree / name
        text = path.read_text(encoding="utf-8")
        self.assertIn(old, text)
        path.write_text(text.replace(old, new), encoding="utf-8")

    def expect_new_seal(self):
        self.make()
        self.assertEqual(self.signatures, 1)
        self.run_tool("codesign", "--verify", self.build / "Sonvara.app")
        self.make()
        self.assertEqual(self.signatures, 1, "nothing has changed since")

    def test_what_has_not_changed_keeps_its_seal(self):
        self.make()
        self.assertEqual(self.signatures, 0)
        self.run_tool("codesign", "--verify", self.build / "Sonvara.app")

    def test_a_changed_description_is_sealed_anew(self):
        self.change("packaging/macos/Info.plist.in", "public.app-category.music", "public.app-category.entertainment")
        self.expect_new_seal()

    def test_changed_entitlements_are_sealed_anew(self):
        self.change("packaging/macos/Sonvara.entitlements", "<dict>\n", "<dict>\n    <!-- changed -->\n")
        self.expect_new_seal()
        self.assertIn("changed", (self.build / "Sonvara.app/Contents/_CodeSignature/Entitlements").read_text())

    def test_a_changed_icon_is_sealed_anew(self):
        self.change("packaging/macos/icon/main.cpp", "#include <cstdlib>", "#include <cstdlib>  // changed")
        self.expect_new_seal()

    def test_a_changed_program_is_sealed_anew(self):
        self.change("src/platform/macos/main.cpp", "int main()", "int main() /* changed */")
        self.expect_new_seal()

    def test_a_new_version_is_packed_with_an_intact_seal(self):
        self.change("CMakeLists.txt", "VERSION 1.0.0", "VERSION 1.0.1")
        self.make("dmg")
        with tempfile.TemporaryDirectory() as mounted:
            self.run_tool("tar", "--extract", "--file", self.build / "Sonvara-1.0.1.dmg", "--directory", mounted)
            self.run_tool("codesign", "--verify", Path(mounted) / "Sonvara.app")
            self.assertIn("<string>1.0.1</string>", (Path(mounted) / "Sonvara.app/Contents/Info.plist").read_text())
            self.assertTrue((Path(mounted) / "Sonvara.app/Contents/Resources/Sonvara.icns").is_file())

    def test_the_tests_are_configured_as_on_a_mac(self):
        self.run_tool("cmake", "-S", self.tree, "-B", self.folder / "with tests", "-G", "Ninja",
                      f"-DCMAKE_TOOLCHAIN_FILE={HERE}/darwin.cmake")


if __name__ == "__main__":
    unittest.main()
