#!/usr/bin/env bash
# Tries a package for Windows as somebody who has nothing else: packaging/windows-test.sh win32|win64 ZIP
#
# Unpacks it into an empty folder, and builds and runs there a host with CMake and MinGW-w64, one in C by pkg-config, by
# CMake, and by Visual C++'s rules, and the first steps by Visual C++'s rules with the package's own service.
set -euo pipefail
target=${1:-} archive=${2:-}
[ -z "$archive" ] || archive=$(realpath "$archive")
. "$(dirname "$0")/../scripts/lib.sh"

case $target in
    win32) processor=i686 pointer=4 ;;
    win64) processor=x86_64 pointer=8 ;;
    *) fail "which target: win32 or win64?" ;;
esac
[ -s "$archive" ] || fail "which zip?"
work=$build/package-$target/test
package=$work/package
tools=$processor-w64-mingw32
version=$(sed -n 's/^#define PVWAPI_VERSION "\(.*\)"$/\1/p' pvutil/Platform.h)

expect() { "${@:2}" || fail "$1"; }

# consume.cmake is what the tests of a build do with what it installs.
run_hosts()
{
    run_logged "package-$target-hosts" cmake -D archive="$archive" -D work="$work" -D config=MinSizeRel \
        -D host="$root/tests/package/host" -D generator=Ninja -D toolchain="$root/cmake/toolchain-$target.cmake" \
        -D processor="$processor" -D compiler="$tools-g++-posix" -D flags= -D emulator="$root/cmake/run-under-wine" \
        -D hasPrograms=ON -D hasService=ON -D suffix=.exe -D system=Windows -D pointer="$pointer" \
        -P tests/package/consume.cmake
}

run_first_steps()
{
    mkdir -p "$work/first"
    cp "$package"/bin/*.dll "$work/first"
    run_logged "package-$target-visual-c" cmake -D source="$root" -D processor="$processor" -D work="$work/first" \
        -D library="$package/lib/pvwapi_c.lib" -D program="$work/first/FirstStepsInVisualC.exe" \
        -P tests/bindings/visual-c.cmake &&
        run_logged "package-$target-first-steps" tests/host/with-service.sh "$package/bin/pvwapi-service.exe" \
            python3 -B tests/bindings/first_steps.py cmake/run-under-wine "$work/first/FirstStepsInVisualC.exe"
}

sums_agree()
{
    (cd "$package" && sha256sum --quiet --strict --check SHA256SUMS &&
        [ "$(wc -l <SHA256SUMS)" -eq "$(find . -type f ! -path ./SHA256SUMS | wc -l)" ])
}

sum_beside_agrees() { (cd "$(dirname "$archive")" && sha256sum --quiet --strict --check "$archive.sha256"); }

names_this_machine() { grep -rlaF -e "$root" -e "$HOME/" "$package"; }

run_hosts || fail "$archive cannot be used as it should"
run_first_steps || fail "what Visual C++ builds with $archive does not work"
expect "SHA256SUMS does not name every file as it is" sums_agree
expect "the checksum beside the zip is not its own" sum_beside_agrees
if names_this_machine; then fail "these files name a folder of this machine"; fi
run_logged "package-$target-files" python3 packaging/windows_files.py "$package" "$version" "$tools-objcopy" ||
    fail "a file of $archive is not what it should be"
say "$target: good"
