#!/usr/bin/env python3
"""Compiles and runs what a page of the guide shows, compares what it prints with the page, and looks up its links:

    check.py PAGE --work FOLDER --build BUILD-FOLDER --source SOURCE-FOLDER -- COMPILER FLAG...

Programs, and all statements of the page as one more program, are compiled in FOLDER. Each block that is run begins in a
folder with the files that the page has shown up to there, and the ini files that are beside the page.
"""

import argparse
import concurrent.futures
import os
import pathlib
import re
import shutil
import subprocess
import sys

import blocks

TIME_LIMIT = 60  # seconds for a program; nothing here needs more than a few

# A text, for machines without a table of zones: that of Central Europe, with summer time.
ZONE = "CET-1CEST,M3.5.0,M10.5.0/3"

PRELUDE = """\
#include <tessel/Tessel.h>

#include <patternmatcher/PatternMatcher.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>
"""

MAIN = """
int main(int, char ** ppArguments)
{
    try
    {
        tsl::Result const oResult = aStatements[std::stoi(ppArguments[1])]();
        if (oResult.IsError())
            std::cout << "Failure " << oResult.GetErrorCode() << ": " << oResult.GetText().s_str() << std::endl;
    }
    catch (tsl::Exception const & oException)
    {
        std::cout << "Exception " << oException.GetResult().GetErrorCode() << ": " << oException.GetText()
                  << std::endl;
    }
    catch (std::exception const & oException)
    {
        std::cout << "std::exception: " << oException.what() << std::endl;
    }
}
"""


class Page:
    def __init__(self, arguments):
        self.path = pathlib.Path(arguments.page).resolve()
        self.work = pathlib.Path(arguments.work).resolve()
        self.build = pathlib.Path(arguments.build).resolve()
        self.source = pathlib.Path(arguments.source).resolve()
        self.compiler = arguments.compiler
        self.blocks = blocks.read_page(self.path)
        self.failures = []

    def check(self):
        shutil.rmtree(self.work, ignore_errors=True)
        self.code = self.work / "code"
        self.bin = self.work / "bin"
        self.code.mkdir(parents=True)
        self.bin.mkdir()
        self.check_links()
        self.write_code()
        self.compile_all()
        if not self.failures:
            self.run_all()
        return self.failures

    def check_links(self):
        text = re.sub(r"```.*?```", "", self.path.read_text(encoding="utf-8"), flags=re.DOTALL)
        links = set(re.findall(r"\]\((?!https?:)([^)#\s]+)", text))
        self.failures += [f"there is no {link}" for link in sorted(links) if not (self.path.parent / link).exists()]
        if self.path.name == "index.md":
            pages = {page.name for page in self.path.parent.glob("*.md")} - {"index.md"}
            self.failures += [f"the index lacks {page}" for page in sorted(pages - links)]

    def write_code(self):
        self.programs = {}  # name of the source file, libraries
        for block in self.blocks:
            if block.kind == "file" and pathlib.Path(block.name).suffix != ".ini":
                with open(self.code / block.name, "a", encoding="utf-8") as file:
                    file.write(block.text)
                if block.name.endswith(".cpp"):
                    self.programs[block.name] = self.programs.get(block.name, ()) + block.links
        if any(block.kind == "statements" for block in self.blocks):
            name = self.path.stem + ".cpp"
            if name in self.programs:
                raise blocks.PageError(f"a program of the page has the page's own name, {name}")
            (self.code / name).write_text(self.get_statements(), encoding="utf-8")
            self.programs[name] = ()

    def get_statements(self):
        """The program of all declarations and statements. Its first argument is the number of the statements."""
        text = PRELUDE
        names = []
        for block in self.blocks:
            place = f'#line {block.line} "{self.path.name}"\n'
            if block.kind == "declarations":
                text += "\n" + place + block.text
            elif block.kind == "statements":
                names.append(f"Statements{len(names)}")
                text += f"\nstatic tsl::Result {names[-1]}()\n{{\n{place}{block.text}return {{}};\n}}\n"
        return text + f"\nstatic tsl::Result (*const aStatements[])() = {{{', '.join(names)}}};\n" + MAIN

    def compile_all(self):
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            for name, output in pool.map(self.compile, self.programs):
                if output:
                    self.failures.append(f"{name} does not compile:\n{output}")

    def compile(self, name):
        text = (self.code / name).read_text(encoding="utf-8")
        plug_in = "main(" not in text and not self.programs[name]
        target = self.bin / (pathlib.Path(name).stem + (".so" if plug_in else ""))
        libraries = self.build / "lib"
        # A compiler cache works on single files, so linking is a command of its own.
        command = self.compiler + ["-std=c++20", "-Wall", "-Wextra", "-Werror", "-Wno-unused", "-fPIC",
            f"-I{self.source / 'src'}", f"-I{self.source / 'src' / 'kit'}",
            f'-DTESSELKIT_CHILD="{self.build / "libexec" / "scripted-child"}"', "-c", name, "-o", name + ".o"]
        link = self.compiler[1:] if "ccache" in self.compiler[0] else list(self.compiler)
        link += (["-shared"] if plug_in else []) + [name + ".o", "-o", str(target), f"-L{libraries}",
            f"-Wl,-rpath,{libraries}"]
        link += ["-l" + library for library in (*self.programs[name], "TesselKit", "Tessel", "PatternMatcher")]
        for step in (command, link):
            outcome = subprocess.run(step, cwd=self.code, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
            if outcome.returncode != 0:
                return name, outcome.stdout or "without a reason"
        return name, ""

    def run_all(self):
        files = {ini.name: ini.read_text(encoding="utf-8") for ini in self.path.parent.glob("*.ini")}
        statements = 0
        for block in self.blocks:
            if block.kind == "file":
                files[block.name] = block.text if block.name.endswith(".ini") else (
                    self.code / block.name).read_text(encoding="utf-8")
            elif block.kind == "statements":
                printed = self.run([f"./{self.path.stem}", str(statements)], files)
                statements += 1
                self.compare(block.line, "the statements print", block.output, printed)
            elif block.kind == "console":
                self.run_console(block, files)

    def run_console(self, block, files):
        commands = blocks.read_commands(block.text)
        mark = "=== end of a command ==="
        script = "".join(f"{command}\nstatus=$?; echo '{mark}'; (exit $status)\n" for command, _ in commands)
        printed = self.run(["sh", "-c", script], files).split(mark + "\n")
        for i, (command, expected) in enumerate(commands):
            self.compare(block.line, f"'{command}' prints", expected, printed[i] if i < len(printed) else "nothing at all")

    def run(self, command, files):
        folder = self.work / "run"
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir()
        for name, text in files.items():
            (folder / name).write_text(text, encoding="utf-8")
        for program in self.bin.iterdir():
            (folder / program.name).symlink_to(program)
        environment = {**os.environ, "TZ": ZONE, "LC_ALL": "C",
            "PATH": f"{self.build / 'bin'}:{os.environ.get('PATH', '')}"}
        try:
            outcome = subprocess.run(command, cwd=folder, env=environment, stdin=subprocess.DEVNULL,
                stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=TIME_LIMIT)
        except subprocess.TimeoutExpired as late:
            return (late.stdout or b"").decode(errors="replace") + "\n(did not end)\n"
        printed = outcome.stdout.decode(errors="replace")
        if outcome.returncode < 0:
            printed += f"(ended by signal {-outcome.returncode})\n"
        return printed

    def compare(self, line, what, expected, printed):
        if not blocks.matches(expected, printed):
            self.failures.append(f"{self.path.name}:{line}: {what}\n{printed}instead of\n{expected}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("page")
    for name in ("--work", "--build", "--source"):
        parser.add_argument(name, required=True)
    parser.add_argument("compiler", nargs="+")
    try:
        failures = Page(parser.parse_args()).check()
    except blocks.PageError as error:
        failures = [f"{sys.argv[1]}:{error}"]
    print("\n".join(failures))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
