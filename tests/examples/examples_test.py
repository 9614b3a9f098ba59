"""The example programs do what their first lines say. The folder of the programs is the first argument."""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

PROGRAMS = pathlib.Path(sys.argv.pop(1))
HEAD = b"\xef\xbb\xbf# Vellatorquine Log version 2.0\n"
RECORD = re.compile(
    r"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}(?:[+-]\d\d:\d\d)? \[HOST:[^]]*\]\[SERVER:\]\[PID:(?P<process>\d+)\]"
    r"\[THR:(?P<thread>\d+)\]\[(?P<logger>[^]]*)\]\[Info\]\[UID:0\]\[SID:0\]\[OID:0\] (?P<text>.*)")


def run(program, *arguments, folder, text=None):
    command = [PROGRAMS / program, *map(str, arguments)]
    return subprocess.run(command, cwd=folder, input=text, capture_output=True, timeout=100, check=False)


def records(path):
    """The records of one file, which must begin as every log file does and hold nothing else."""
    content = path.read_bytes()
    assert content.startswith(HEAD), content[:80]
    matches = [RECORD.fullmatch(line) for line in content[len(HEAD):].decode().split("\n")[:-1]]
    assert all(matches) and content.endswith(b"\n"), content
    return matches


class InFolder(unittest.TestCase):
    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)


class FirstProgram(InFolder):
    def test_logs_two_records_to_a_file_in_its_folder(self):
        result = run("first_program", folder=self.folder)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        found = records(self.folder / "orders.log")
        self.assertEqual([record["text"] for record in found], ["Ready", "Order 4711 took 12.5 ms"])
        self.assertEqual({record["logger"] for record in found}, {"Orders"})


def counts(read, found):
    """What log_lines prints."""
    return f"{read} lines read, {found} records found in the file and its backups\n"


class LogLines(InFolder):
    def log(self, text, *arguments):
        result = run("log_lines", "--file", "lines.log", *arguments, folder=self.folder, text=text.encode())
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout.decode()

    def texts(self, pattern="lines.log"):
        return [record["text"] for path in sorted(self.folder.glob(pattern)) for record in records(path)]

    def test_logs_each_line_of_standard_input_in_order(self):
        self.assertEqual(self.log("first\nsécond %1 100%\n  third\nlast"), counts(4, 4))
        self.assertEqual(self.texts(), ["first", "sécond %1 100%", "  third", "last"])

    def test_logs_an_empty_line_as_a_record_without_text(self):
        self.assertEqual(self.log("one\n\n\r\ntwo\r\n"), counts(4, 4))
        self.assertEqual(self.texts(), ["one", "", "", "two"])

    def test_logs_no_record_for_no_line(self):
        self.assertEqual(self.log(""), counts(0, 0))
        self.assertEqual((self.folder / "lines.log").read_bytes(), b"")

    def test_reads_each_input_file(self):
        for name in ("a.txt", "b.txt"):
            (self.folder / name).write_text(f"from {name}\n", encoding="utf-8")
        self.log("not read\n", "a.txt", "b.txt")
        self.assertEqual(self.texts(), ["from a.txt", "from b.txt"])

    def test_loses_nothing_among_threads_processes_and_rotations(self):
        lines = [f"line {number}" for number in range(2000)]
        output = self.log("\n".join(lines), "--threads", 4, "--processes", 3, "--limit", 50000, "--backups", 50)
        self.assertEqual(output, counts(2000, 2000))
        self.assertEqual(sorted(self.texts("lines.log*")), sorted(lines))
        self.assertGreater(len(list(self.folder.glob("lines.log.bak*"))), 2)

    def test_logs_from_as_many_threads_and_processes_as_asked(self):
        self.log("x\n" * 6, "--threads", 2, "--processes", 3)
        found = records(self.folder / "lines.log")
        self.assertEqual(len({record["process"] for record in found}), 3)
        self.assertEqual(len({record["thread"] for record in found}), 6)

    def test_keeps_as_many_backups_as_asked(self):
        output = self.log("x\n" * 100, "--limit", 500, "--backups", 2)
        self.assertEqual(output, counts(100, len(self.texts("lines.log*"))))
        names = sorted(path.name for path in self.folder.iterdir())
        self.assertEqual(names, ["lines.log", "lines.log.bak00", "lines.log.bak01"])

    def test_counts_only_what_this_run_added(self):
        self.log("a\nb\n")
        self.assertEqual(self.log("c\n"), counts(1, 1))
        self.assertEqual(self.texts(), ["a", "b", "c"])

    def test_fails_and_says_so_when_no_line_arrives(self):
        (self.folder / "lines.log").mkdir()
        for arguments in ([], ["--processes", "2"]):
            result = run("log_lines", "--file", "lines.log", *arguments, folder=self.folder, text=b"a\nb\n")
            self.assertEqual((result.returncode, result.stdout.decode()), (1, counts(2, 0)))

    def test_prints_its_usage_for_wrong_arguments(self):
        for arguments in (
            [], ["--file"], ["--file", "x", "--threads", "0"], ["--file", "x", "--limit", "-1"],
            ["--file", "x", "--backups", "2x"], ["--file", "x", "--processes", "99999999999999999999"],
            ["--file", "x", "--size", "1"]):
            result = run("log_lines", *arguments, folder=self.folder, text=b"")
            self.assertEqual(result.returncode, 2, arguments)
            self.assertIn(b"usage: log_lines", result.stderr)

    def test_names_an_input_that_it_cannot_read(self):
        result = run("log_lines", "--file", "lines.log", "missing.txt", folder=self.folder)
        self.assertEqual(result.returncode, 1)
        self.assertIn(b"missing.txt", result.stderr)


class HttpMasking(InFolder):
    def logged(self, request):
        """The text of the one record that a run with this request leaves."""
        log = self.folder / "requests.log"
        log.unlink(missing_ok=True)
        result = run("http_masking", folder=self.folder, text=request.encode())
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        (record,) = records(log)
        return record["text"]

    def test_logs_a_request_as_it_is_but_for_its_password(self):
        self.assertEqual(self.logged('{"user":"bob"}'), '{"user":"bob"}')
        self.assertEqual(self.logged('{"user":"ann","password":"s3cret","host":"h"}'),
                         '{"user":"ann","password":"***","host":"h"}')

    def test_masks_members_and_attributes(self):
        for request, expected in (
            (r'{"password":"s3\"cret","host":"h"}', '{"password":"***","host":"h"}'),
            ('{"password" : "", "command":"x"}', '{"password" : "***", "command":"x"}'),
            ('<login user="eve" password="s3cret" />', '<login user="eve" password="***" />')):
            self.assertEqual(self.logged(request), expected)

    def test_masks_in_texts_whose_quotes_are_escaped(self):
        for request, expected in (
            (r'{"command":"<login user=\"eve\" password=\"s3cret\"/>"}',
             '{"command":"<login user="eve" password="***"/>"}'),
            (r'{"body":"{\"password\":\"s3\\\"cret\",\"host\":\"h\"}"}',
             '{"body":"{"password":"***","host":"h"}"}'),
            (r'{"body":"{\"command\":\"<login password=\\\"s3cret\\\"/>\"}"}',
             '{"body":"{"command":"<login password="***"/>"}"}')):
            self.assertEqual(self.logged(request), expected)

    def test_masks_across_lines(self):
        for request, expected in (
            ('{"user":"ann",\n "password":\n  "s3cret"\n}\n', '{"user":"ann", "password": "***" }'),
            ('{"password":"s3\ncret"}', '{"password":"***"}'),
            ('<login\n\tuser="eve"\n\tpassword="s3cret"/>', '<login user="eve" password="***"/>'),
            (r'{"command":"<login\npassword=\"s3cret\"/>"}', '{"command":"<login password="***"/>"}')):
            self.assertEqual(self.logged(request), expected)


class Statistics(InFolder):
    def test_prints_two_commands_and_three_destinations(self):
        result = run("statistics", folder=self.folder)
        self.assertEqual((result.returncode, result.stderr), (0, b""))
        commands = (self.folder / "commands.txt").read_bytes()
        self.assertEqual(commands, b"1/4(25.00%)\t\t7:3(9/16/30)\t93:1(250/250/250)\t\n")
        time, *rows = (self.folder / "messages.txt").read_text(encoding="ascii").splitlines(keepends=True)
        self.assertRegex(time, r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}\n$")
        self.assertEqual(rows, [
            f"1\t{'billing':50}\t17(1-0-0:5)\t\n",
            f"1\t{'mail':50}\t17(1-1-0:50)\t\n",
            f"1\t{'warehouse':50}\t17(0-0-1:900)\t\n"])


if __name__ == "__main__":
    unittest.main()
