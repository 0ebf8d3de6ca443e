#!/usr/bin/env python3
"""Compiles and runs the samples of the documents against the installed package, and the stand-in service.

    with-service.sh SERVICE run_samples.py --built FOLDER --work FOLDER --config NAME --generator NAME
        [--toolchain FILE] [--compiler FILE] [--flags TEXT] [--emulator PROGRAM] [--shell]
"""
import argparse
import os
import re
import shutil
import socket
import subprocess
import sys
from pathlib import Path

import samples as reading

ROOT = Path(__file__).resolve().parents[2]
DEFAULT_ADDRESS = "127.0.0.1:8420"

# In these documents each block has a comment; in the others only C++ has.
OURS = ["README.md", "service/README.md", "examples/README.md", "docs/**/*.md"]
OTHERS = ["host/README.md", "log/README.md"]

# What a fragment may take for granted. Each is a line within the function, in the order in which they are named.
CONTEXTS = {
    "user": 'const CStringT user = kzn::pvutil::stringex::FromUtf8("anna");',
    "password": 'const CStringT password = kzn::pvutil::stringex::FromUtf8("anna-demo-1");',
    "client": 'CWapiClient client(kzn::pvutil::stringex::FromUtf8("http://127.0.0.1:8420/kznconnect/op.do"));\n'
              'if (!client.login(kzn::pvutil::stringex::FromUtf8("anna"), {}, {}, '
              'kzn::pvutil::stringex::FromUtf8("anna-demo-1"), 0, 1)) return;',
    "cred": "const CStringT cred = client.getRootCred();",
    "workspaceID": "CStringT workspaceID;\n"
                   "std::vector<CWapiClient::WKSP_Field_Value> none;\n"
                   'if (!client.createSpace(cred, kzn::pvutil::stringex::FromUtf8("A name"), none, workspaceID, 0, 0)) '
                   "return;",
    "showReason": "const auto showReason = [](const CStringT& reason) {\n"
                  '    std::fprintf(stderr, "%s\\n", kzn::pvutil::stringex::ToUtf8(reason).c_str());\n};',
}

FRAGMENT = """\
#include "client/WapiClient.h"
#include <cstdio>
{includes}
namespace {{
int holds = 0;

void sample()
{{
{context}
#line {line} "{document}"
{text}
    holds = ({check}) ? 1 : 0;
}}
}}  // namespace

int main()
{{
    sample();
    if (holds == 0) std::fprintf(stderr, "{document}:{line}: the sample's check does not hold\\n");
    return holds != 0 ? 0 : 1;
}}
"""

PROJECT = """\
cmake_minimum_required(VERSION 3.25)
project(Samples LANGUAGES CXX)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
add_compile_options(-Wall -Wextra -Wpedantic -Werror)
find_package(Threads REQUIRED)
"""

TARGET = """\
add_executable({name} {name}.cpp)
{package}
target_link_libraries({name} PRIVATE pvWapi::pvtrace Threads::Threads)
if(WIN32)
    add_custom_command(TARGET {name} POST_BUILD COMMAND_EXPAND_LISTS
        COMMAND ${{CMAKE_COMMAND}} -E copy_if_different $<TARGET_RUNTIME_DLLS:{name}> $<TARGET_FILE_DIR:{name}>)
endif()
"""

# A person types the next line when the service listens.
SHELL_HEAD = """\
set -eu
trap 'kill $(jobs -p) 2>/dev/null || true; wait' EXIT
await_service()
{
    local patience
    for ((patience = 100; patience > 0; --patience)); do
        (: >"/dev/tcp/127.0.0.1/$SAMPLE_PORT") 2>/dev/null && return 0
        sleep 0.1
    done
    echo "the service of the sample does not start" >&2
    return 1
}
"""

# The service of the samples listens where nobody else does, and the one of this machine's user stays out of it.
SERVICE = """\
#!/usr/bin/env bash
case " $* " in
    " control "* | " verify "* | *" --listen "*) exec {program} "$@" ;;
esac
exec {program} "$@" --listen 127.0.0.1:$SAMPLE_PORT
"""

# Debian's own program need not be installed.
SQLITE = """\
#!/usr/bin/env python3
import sqlite3, sys
with sqlite3.connect(sys.argv[1]) as database:
    for row in database.execute(sys.argv[2]):
        print(*row, sep="|")
"""


def run(*command, **options):
    return subprocess.run([str(word) for word in command], check=True, text=True, **options)


def collect():
    """Every sample of every document, or the end where one of them is not told what becomes of it."""
    found, wrong = [], []
    for patterns, only_cpp in ((OURS, False), (OTHERS, True)):
        for path in sorted(path for pattern in patterns for path in ROOT.glob(pattern)):
            name = path.relative_to(ROOT).as_posix()
            for sample in reading.read_samples(name, path.read_text(encoding="utf-8")):
                wrong += reading.faults(sample, only_cpp)
                found.append(sample)
    if wrong:
        sys.exit("\n".join(wrong))
    return found


def of_kind(samples, *kinds):
    return [sample for sample in samples if sample.kind in kinds]


def program_text(sample, address):
    """A fragment with a program around it. Its own include lines go to the top."""
    lines = sample.text.rstrip("\n").split("\n")
    if sample.kind == "program":
        text = sample.text
    else:
        context = [CONTEXTS[name] for name in sample.values.get("context", "").split(",") if name]
        text = FRAGMENT.format(
            includes="\n".join(line for line in lines if line.startswith("#include")),
            context="\n".join(context), line=sample.line, document=sample.document, check=sample.values["check"],
            text="\n".join("" if line.startswith("#include") else line for line in lines))
    return text.replace(DEFAULT_ADDRESS, address)


def target_name(sample):
    return re.sub(r"\W", "_", sample.document.removesuffix(".md")) + f"_{sample.line}"


def write_project(folder, samples, address):
    """A project with a target for each sample; the first of a document with lines for CMake is built by these."""
    folder.mkdir(parents=True)
    wording = {sample.document: sample.text for sample in of_kind(samples, "cmake")}
    project = PROJECT
    for sample in of_kind(samples, "fragment", "program"):
        name = target_name(sample)
        (folder / f"{name}.cpp").write_text(program_text(sample, address), encoding="utf-8")
        package = wording.pop(sample.document, None)
        if package is None:
            package = f"find_package(pvWapi CONFIG REQUIRED)\ntarget_link_libraries({name} PRIVATE pvWapi::pvWapi)\n"
        project += TARGET.format(name=name, package=package.replace("host", name))
    if wording:
        sys.exit("no sample in C++ is built by the lines for CMake of " + ", ".join(wording))
    (folder / "CMakeLists.txt").write_text(project, encoding="utf-8")


def build_project(arguments, package):
    build = arguments.work / "build"
    choices = ["-G", arguments.generator, "-D", f"CMAKE_BUILD_TYPE={arguments.config}",
               "-D", f"CMAKE_PREFIX_PATH={package}"]
    if arguments.toolchain:
        choices += ["-D", f"CMAKE_TOOLCHAIN_FILE={arguments.toolchain}"]
    else:
        choices += ["-D", f"CMAKE_CXX_COMPILER={arguments.compiler}", "-D", f"CMAKE_CXX_FLAGS={arguments.flags}"]
    run("cmake", "-S", arguments.work / "samples", "-B", build, *choices, stdout=subprocess.DEVNULL)
    run("cmake", "--build", build, stdout=subprocess.DEVNULL)
    return build / "bin"


def run_programs(arguments, samples, programs):
    suffix = ".exe" if arguments.toolchain else ""
    for sample in of_kind(samples, "fragment", "program"):
        command = [str(programs / (target_name(sample) + suffix))]
        if arguments.emulator:
            command.insert(0, arguments.emulator)
        ended = subprocess.run(command, stdout=subprocess.PIPE, text=True, timeout=60)
        if ended.returncode != 0:
            sys.exit(f"{sample.place}: ends with status {ended.returncode}:\n{ended.stdout}")
        expect(sample, ended.stdout)
        print(f"{sample.place}: runs")


def expect(sample, shown):
    wanted = sample.values.get("expect", "")
    if wanted not in shown:
        sys.exit(f"{sample.place}: does not show {wanted!r} but:\n{shown}")


def check_sources(samples):
    for sample in of_kind(samples, "source"):
        if sample.text not in (ROOT / sample.values["file"]).read_text(encoding="utf-8"):
            sys.exit(f"{sample.place}: does not stand so in {sample.values['file']}")
        print(f"{sample.place}: stands in {sample.values['file']}")


def check_usage(samples, programs):
    for sample in of_kind(samples, "usage"):
        program, *words = sample.values["program"].split()
        told = run(programs / program, *words, "--help", stdout=subprocess.PIPE).stdout
        for option in re.findall(r"--[\w-]+", sample.text):
            if not re.search(re.escape(option) + r"(?![\w-])", told):
                sys.exit(f"{sample.place}: {sample.values['program']} has no {option}")
        print(f"{sample.place}: all options are there")


def write_program(path, text):
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text, encoding="utf-8")
    path.chmod(0o755)


def make_home(home, built):
    """A folder in which a document's commands find what they find in the repository's."""
    (home / "build/linux/bin").mkdir(parents=True)
    for folder in ("", "bin"):
        for path in (built / folder).iterdir():
            if path.name not in ("bin", "pvwapi-service"):
                (home / "build/linux" / folder / path.name).symlink_to(path)
    service = SERVICE.format(program=built / "bin/pvwapi-service")
    write_program(home / "build/linux/bin/pvwapi-service", service)
    write_program(home / "commands/sqlite3", SQLITE)
    (home / "examples").symlink_to(ROOT / "examples")


def free_port():
    with socket.socket() as server:
        server.bind(("127.0.0.1", 0))
        return server.getsockname()[1]


def shell_script(samples, names):
    script = SHELL_HEAD
    for number, sample in enumerate(samples):
        script += f"echo '== {number}'\n"
        lines = sample.text
        for name, meant in names.items():
            lines = re.sub(rf"\b{re.escape(name)}\b", str(meant), lines)
        for line in lines.split("\n"):
            if "only" in sample.values:
                chain = [part.strip() for part in line.split("&&")]
                line = "\n".join(part for part in chain if part.startswith(sample.values["only"]))
            script += line + "\n" + ("await_service\n" if line.endswith(" &") else "")
    return script


def seeded_file(built, port, path):
    """The data file of a service that has ended."""
    service = subprocess.Popen([built / "bin/pvwapi-service", "--data", path, "--seed", "demo", "--listen",
                                f"127.0.0.1:{port}"], stdout=subprocess.PIPE, text=True)
    service.stdout.readline()
    service.terminate()
    if service.wait() != 0:
        sys.exit("the service does not end well")


def run_shell(arguments, document, samples):
    home = arguments.work / "shell" / re.sub(r"\W", "_", document)
    make_home(home, arguments.built)
    port = free_port()
    if any("FILE" in sample.text for sample in samples):
        seeded_file(arguments.built, port, home / "data.db")
    script = shell_script(samples, {"FILE": home / "data.db", "PREFIX": home / "package",
                                    DEFAULT_ADDRESS: f"127.0.0.1:{port}"})
    environment = dict(os.environ, SAMPLE_PORT=str(port), PATH=f"{home / 'commands'}:{os.environ['PATH']}",
                       PVWAPI_BASE_URL=f"http://127.0.0.1:{port}/kznconnect/op.do",
                       CMAKE_GENERATOR=arguments.generator, CXX=arguments.compiler, CXXFLAGS=arguments.flags,
                       CFLAGS=arguments.flags)
    ended = subprocess.run(["bash", "-c", script], cwd=home, env=environment, stdout=subprocess.PIPE, text=True,
                           timeout=200)
    shown = re.split(r"^== \d+\n", ended.stdout, flags=re.MULTILINE)[1:]
    if ended.returncode != 0:
        sys.exit(f"{samples[len(shown) - 1].place}: ends with status {ended.returncode}:\n{ended.stdout}")
    for sample, text in zip(samples, shown, strict=True):
        expect(sample, text)
        print(f"{sample.place}: runs")


def read_arguments():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    for name in ("built", "work"):
        arguments.add_argument(f"--{name}", type=Path, required=True)
    for name in ("config", "generator", "toolchain", "compiler", "flags", "emulator"):
        arguments.add_argument(f"--{name}", default="")
    arguments.add_argument("--shell", action="store_true", help="run the commands too")
    return arguments.parse_args()


def main():
    sys.stdout.reconfigure(line_buffering=True)
    arguments = read_arguments()
    address = re.match(r"http://([^/]*)/", os.environ["TEST_SERVICE_URL"]).group(1)
    shutil.rmtree(arguments.work, ignore_errors=True)
    os.environ["XDG_DATA_HOME"] = str(arguments.work / "data")
    samples = collect()
    check_sources(samples)

    package = arguments.work / "package"
    run("cmake", "--install", arguments.built, "--config", arguments.config, "--prefix", package,
        stdout=subprocess.DEVNULL)
    write_project(arguments.work / "samples", samples, address)
    run_programs(arguments, samples, build_project(arguments, package))
    if arguments.shell:
        check_usage(samples, arguments.built / "bin")
        commands = of_kind(samples, "shell")
        for document in sorted({sample.document for sample in commands}):
            run_shell(arguments, document, [sample for sample in commands if sample.document == document])


if __name__ == "__main__":
    main()
