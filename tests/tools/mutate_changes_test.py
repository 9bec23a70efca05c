"""Each kind of change that tools/mutate promises is made, and nothing is changed that is no code."""
import tempfile
import unittest

from mutate_test import CODE, Tree

PARTS = """#include "log/Code.h"
#include <functional>
#include <memory>
#include <string>
#include <vector>
enum class QualityOfService { standard, utility };
struct MainQueue { void post(std::function<void()> task); };
struct GlobalQueue { void post(QualityOfService quality, std::function<void()> task); };
struct Platform { MainQueue mainQueue; GlobalQueue globalQueue; };
struct LogPiece { std::string text; bool isPublic; };
struct Logger {
    void error(std::vector<LogPiece> pieces) const;
    static LogPiece hidden(std::string text);
};
struct Part : std::enable_shared_from_this<Part> {
    void run(bool isFirst, int size, const std::string& name);
    void work();
    Platform& platform_;
    Logger logger_;
};
"""


def body(*lines):
    return CODE + PARTS + "void Part::run(bool isFirst, int size, const std::string& name)\n{\n" + "\n".join(lines) + "\n}\n"


class MutateChangesTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory()
        cls.addClassCleanup(folder.cleanup)
        cls.tree = Tree(folder.name)
        cls.tree.write("src/log/Code.cpp", body())
        cls.others = cls.tree.changes("src/log/Code.cpp")

    def changes(self, *lines):
        self.tree.write("src/log/Code.cpp", body(*lines))
        return self.tree.changes("src/log/Code.cpp") - self.others

    def expect(self, line, *becomes):
        self.assertEqual({new for old, new in self.changes(line) if old == line}, set(becomes))

    def test_a_condition_is_negated(self):
        self.expect("if (isFirst) work();", "if (!(isFirst)) work();", "")
        self.expect("if (!isFirst) work();", "if (isFirst) work();", "")
        self.expect("if (auto copy = isFirst) work();", "if (auto copy = isFirst; !copy) work();", "")
        self.expect("auto other = isFirst ? size : 0;", "auto other = !(isFirst) ? size : 0;", "auto other = isFirst ? size : 1;")
        self.expect("while (isFirst) work();", "while (!(isFirst)) work();", "")

    def test_a_part_of_a_condition_is_dropped(self):
        self.expect("const auto both = isFirst && name.empty();", "const auto both = isFirst;", "const auto both = name.empty();")

    def test_a_bound_is_moved(self):
        self.expect("const auto other = size < 9;", *(f"const auto other = size {end};" for end in ("<= 9", "< 8", "< 10")))
        self.expect("const auto other = 0600;", "const auto other = 0601;", "const auto other = 0577;")
        self.expect("const auto other = 0xff;", "const auto other = 0x100;", "const auto other = 0xfe;")
        self.expect("const auto other = 0.5;", "const auto other = (0.5 + 0.1);")
        self.expect("const auto other = 'a';", "const auto other = 'b';")

    def test_a_statement_is_dropped(self):
        self.expect("work();", "")
        self.expect("if (isFirst) work(); else return;", "if (isFirst) work(); else {};", "if (!(isFirst)) work(); else return;", "")

    def test_neighbours_of_one_type_are_swapped(self):
        self.expect("std::string other(name, size, 3);", *(f"std::string other(name, {end});" for end in
                                                         ("size, 2", "size, 4", "3, size")))
        self.expect("LogPiece both[] = {{name, isFirst}, {name, true}};",
                    "LogPiece both[] = {{name, true}, {name, isFirst}};", "LogPiece both[] = {{name, isFirst}, {name, false}};",
                    "LogPiece both[] = {Logger::hidden(name, isFirst), {name, true}};",
                    "LogPiece both[] = {{name, isFirst}, Logger::hidden(name, true)};")

    def test_a_text_is_changed_by_a_letter(self):
        self.expect('std::string other = "a title";', 'std::string other = "a tiule";')
        lines = 'std::string other = R"(first', 'second)";'
        self.assertEqual(self.changes(*lines), {(lines[0], lines[0].replace("first", "fisst")),
                                                (lines[1], lines[1].replace("second", "secpnd"))})
        self.expect('std::string other = "\\n";')
        self.expect('std::string other = "||";', 'std::string other = "|!";')
        self.expect('static_assert(true, "said");')

    def test_a_queue_is_exchanged(self):
        self.expect("platform_.mainQueue.post([] {});", "([] {})();",
                    "platform_.globalQueue.post(QualityOfService::standard, [] {});", "")
        self.expect("platform_.globalQueue.post(QualityOfService::standard, [] {});", "([] {})();",
                    "platform_.mainQueue.post([] {});", "platform_.globalQueue.post(QualityOfService::utility, [] {});", "")

    def test_a_level_and_a_privacy_mark_are_exchanged(self):
        self.expect("logger_.error({{name, true}, Logger::hidden(name)});", "",
                    "logger_.debug({{name, true}, Logger::hidden(name)});",
                    "logger_.error({{name, false}, Logger::hidden(name)});",
                    "logger_.error({Logger::hidden(name, true), Logger::hidden(name)});",
                    "logger_.error({{name, true}, {name}});", "logger_.error({Logger::hidden(name), {name, true}});")

    def test_a_capture_is_made_strong_or_weak(self):
        self.expect("auto later = [weak = weak_from_this()] {};",
                    "auto later = [held = (weak_from_this()).lock(), weak = weak_from_this()] {};")
        self.expect("auto later = [self = shared_from_this()] {};", "auto later = [self = Unheld(shared_from_this())] {};")
        self.assertIn(("auto later = [weak] {};", "auto later = [held = (weak).lock(), weak] {};"),
                      self.changes("const auto weak = weak_from_this();", "auto later = [weak] {};"))


if __name__ == "__main__":
    unittest.main()
