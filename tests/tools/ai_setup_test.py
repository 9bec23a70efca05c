"""tools/ai-setup leads each of those who install the AI tools in their own ways to the line that is missing."""
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

NODE_22 = "#!/bin/sh\necho v22.1.0\n"
SETUP = Path(__file__).resolve().parents[2] / "tools/ai-setup"


class AiSetup(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.home = self.folder / "home"
        self.found = self.folder / "bin"  # where Sonvara looks
        for path in (self.home, self.found):
            path.mkdir()

    def tool(self, path, script="#!/bin/sh\n"):
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(script)
        path.chmod(0o755)
        return path

    def advice(self, path="/usr/bin:/bin", **env):
        """What is said of claude, and what of gemini."""
        done = subprocess.run([SETUP], capture_output=True, text=True, check=True, stdin=subprocess.DEVNULL,
                              env={"HOME": str(self.home), "PATH": path, "SHELL": "/bin/bash",
                                   "SONVARA_BIN_DIRS": f"{self.found} /nowhere", **env})
        self.assertEqual(done.stderr, "")
        of_claude, _, of_gemini = done.stdout.partition("gemini: ")
        return of_claude, of_gemini

    def link(self, target, name):
        return f"sudo ln -sfn {target} {self.found}/{name}\n"

    def npm(self, prefix):
        """The path with an npm that puts programs below the prefix."""
        npm = self.tool(self.folder / "npm/npm", f"#!/bin/sh\necho {prefix}\n")
        return f"{npm.parent}:/usr/bin:/bin"

    def test_what_is_not_installed_is_installed_first(self):
        of_claude, of_gemini = self.advice(self.npm(self.folder / "nowhere"))
        self.assertIn("    sudo npm install -g @anthropic-ai/claude-code\n", of_claude)
        self.assertIn("    sudo npm install -g @google/gemini-cli\n", of_gemini)

    def test_an_npm_of_the_users_own_needs_no_sudo(self):
        (self.home / "lib/node_modules").mkdir(parents=True)
        self.assertIn("    npm install -g @anthropic-ai/claude-code\n", self.advice(self.npm(self.home))[0])

    def test_without_npm_that_is_installed_first(self):
        path = self.folder / "little"
        path.mkdir()
        for name in ("bash", "env", "head", "tail", "tr", "grep", "dirname", "readlink", "uname"):
            (path / name).symlink_to(shutil.which(name))
        self.assertRegex(self.advice(str(path))[0], "    (sudo apt-get install npm|brew install node)\n")

    def test_what_is_found_needs_no_link(self):
        path = self.tool(self.found / "claude")
        of_claude, _ = self.advice()
        self.assertIn(f"Sonvara finds {path}\n", of_claude)
        self.assertNotIn("ln -s", of_claude)

    def test_what_is_on_the_path_of_the_terminal_is_linked(self):
        path = self.tool(self.home / "tools/claude")
        self.assertIn(self.link(path, "claude"), self.advice(f"{path.parent}:/usr/bin:/bin")[0])

    def test_a_tool_of_nvm_is_linked_with_its_node(self):
        versions = self.home / ".nvm/versions/node/v22.1.0/bin"
        path = self.tool(versions / "gemini", "#!/usr/bin/env node\n")
        node = self.tool(versions / "node", NODE_22)
        (self.home / ".bashrc").write_text(f"PATH={versions}:$PATH\n")
        of_gemini = self.advice()[1]
        self.assertIn(self.link(path, "gemini"), of_gemini)
        self.assertIn(self.link(node, "node"), of_gemini)

    def test_a_tool_that_is_linked_without_its_node_lacks_the_node(self):
        node = self.tool(self.home / "v22/bin/node", NODE_22)
        path = self.tool(self.home / "v22/bin/gemini", "#!/usr/bin/env node\n")
        (self.found / "gemini").symlink_to(path)
        of_gemini = self.advice()[1]
        self.assertIn("Sonvara finds", of_gemini)
        self.assertIn(self.link(node, "node"), of_gemini)

    def test_a_node_that_is_too_old_gives_way_to_another(self):
        self.tool(self.found / "node", "#!/bin/sh\necho v18.20.4\n")
        self.tool(self.found / "gemini", "#!/usr/bin/env node\n")
        node = self.tool(self.home / "v22/node", NODE_22)
        self.assertIn(self.link(node, "node"), self.advice(path=f"{node.parent}:/usr/bin:/bin")[1])

    def test_an_alias_is_followed(self):
        path = self.tool(self.home / "somewhere/claude")
        (self.home / ".bashrc").write_text("alias claude='~/somewhere/claude --verbose'\n")
        self.assertIn(self.link(path, "claude"), self.advice()[0])

    def test_an_old_link_is_replaced(self):
        path = self.tool(self.home / ".local/bin/claude")
        (self.found / "claude").symlink_to(self.home / "gone")
        self.assertIn(self.link(path, "claude"), self.advice()[0])

    def test_a_key_of_the_terminal_is_put_where_the_desktop_sees_it(self):
        for name in ("claude", "gemini"):
            self.tool(self.found / name)
        of_claude, of_gemini = self.advice(GEMINI_API_KEY="secret", ANTHROPIC_API_KEY="secret")
        self.assertIn("~/.claude/settings.json", of_claude)
        self.assertIn("~/.gemini/.env", of_gemini)
        self.assertNotIn("secret", of_claude + of_gemini)

    def test_it_says_how_to_try_it_as_sonvara_does(self):
        self.tool(self.found / "claude", "#!/bin/sh\n[ \"$1\" = -p ] && echo \"said: $2\"\n")
        command = next(line for line in self.advice()[0].splitlines() if "env -i" in line)
        done = subprocess.run(["sh", "-c", command], capture_output=True, text=True, check=True,
                              env={"HOME": os.fspath(self.home)})
        self.assertEqual(done.stdout, "said: Say hello.\n")


if __name__ == "__main__":
    unittest.main()
