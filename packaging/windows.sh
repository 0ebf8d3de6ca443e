#!/usr/bin/env bash
# Makes the package for Windows: packaging/windows.sh win32|win64 FOLDER [CMAKE-OPTION...]
#
# FOLDER receives pvWapi-<version>-<target>.zip and a file of its checksum. The same sources give the same bytes, wherever
# and whenever they are built: dates are those of the last commit (or SOURCE_DATE_EPOCH), and nothing names a folder of
# this machine.
set -euo pipefail
target=${1:-} output=${2:-} more=("${@:3}")
[ -z "$output" ] || output=$(realpath -m "$output")
. "$(dirname "$0")/../scripts/lib.sh"

case $target in
    win32) processor=i686 ;;
    win64) processor=x86_64 ;;
    *) fail "which target: win32 or win64?" ;;
esac
[ -n "$output" ] || fail "which folder receives the package?"

tools=$processor-w64-mingw32
version=$(sed -n 's/^#define PVWAPI_VERSION "\(.*\)"$/\1/p' pvutil/Platform.h)
name=pvWapi-$version-$target
work=$build/package-$target
tree=$work/build
package=$work/$name
# The linker and the tools that split a file write this as its date.
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(last_change .)}
export SOURCE_DATE_EPOCH

# Paths stay whole here, so that the compiler can take from each what names this machine.
unset CCACHE_BASEDIR

build_package()
{
    local part options=()
    for part in TESTS BENCH EXAMPLES; do options+=(-D "PVWAPI_BUILD_$part=OFF"); done
    for part in C CXX; do options+=(-D "CMAKE_${part}_COMPILER_LAUNCHER=$(command -v ccache)"); done
    run_logged "configure-package-$target" cmake --preset "$target" -B "$tree" -D PVWAPI_SYMBOLS=ON "${options[@]}" \
        "${more[@]}" &&
        run_logged "build-package-$target" cmake --build "$tree" --parallel "$jobs" &&
        run_logged "install-package-$target" cmake --install "$tree" --prefix "$package"
}

# split FILE: what a debugger needs goes to debug/, and the file says where it was.
split()
{
    local file=$1 symbols
    symbols=$package/debug/$(basename "$file").debug
    "$tools-objcopy" --only-keep-debug "$file" "$symbols"
    "$tools-strip" --strip-all "$file"
    "$tools-objcopy" --add-gnu-debuglink="$symbols" "$file"
    chmod 644 "$symbols"
}

add_debug_files()
{
    local file
    mkdir "$package/debug"
    for file in "$package"/bin/*.dll "$package"/bin/*.exe; do
        split "$file"
        file=$(basename "$file")
        python3 packaging/pdb.py "$tree/symbols/${file%.*}.pdb" "$package/debug/${file%.*}.pdb" "$tree"
    done
}

rm -rf "$package"
say "$target: building"
build_package || fail "the package $name cannot be built"
add_debug_files
cp capi/pvwapi_c.def pvtrace/pvtrace.def "$package/lib/"
sed -e "s/@NAME@/$name/g" -e "s/@TOOLS@/$tools/g" packaging/windows-readme.md.in >"$package/README.md"
mkdir -p "$output"
python3 packaging/pack.py "$package" "$output/$name.zip"
say "$target: $output/$name.zip"
