# shellcheck shell=bash disable=SC2034
# What the scripts of this folder share; sourced, never run.
# The caller stands in the repository's root afterwards.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build=$root/build
logs=$build/log
jobs=${PVWAPI_JOBS:-2}
cache=${XDG_CACHE_HOME:-${HOME:-$build}/.cache}/pvwapi
self=$(basename "$0")

# Wine finds the prefix of this build and keeps its diagnostics to itself.
export WINEPREFIX=$build/wine WINEDEBUG=-all WINEDLLOVERRIDES='mscoree=;mshtml='
export LC_ALL=C.UTF-8
# What one clone has compiled serves another one.
export CCACHE_BASEDIR=$root CCACHE_NOHASHDIR=1

cd "$root" || exit 1
mkdir -p "$logs"

say() { printf '%s: %s\n' "$self" "$*"; }

fail()
{
    printf '%s: %s\n' "$self" "$*" >&2
    exit 1
}

# show_tail FILE [LINES]: the end of a log is what a reader needs first.
show_tail() { sed 's/^/    /' <(tail -n "${2:-40}" "$1") >&2; }

# run_logged NAME COMMAND...: the output goes to build/log/NAME.log; on failure its end is shown.
run_logged()
{
    local log=$logs/$1.log
    shift
    "$@" >"$log" 2>&1 </dev/null 9>&- && return 0
    printf '%s: failed: %s\n' "$self" "$*" >&2
    show_tail "$log"
    printf '%s: the whole output is in %s\n' "$self" "${log#"$root"/}" >&2
    return 1
}

# as_root COMMAND...: as it stands for root, through sudo for anybody else.
as_root()
{
    if [ "$(id -u)" -eq 0 ]; then "$@"
    elif command -v sudo >/dev/null; then sudo --preserve-env=DEBIAN_FRONTEND "$@"
    else fail "this needs root: run scripts/setup as root, or install sudo ($1)"
    fi
}

installed() { dpkg-query --show --showformat '${db:Status-Status}\n' "$1" 2>/dev/null | grep -qx installed; }

# install_packages PACKAGE...: those of Debian's packages that are not there yet.
install_packages()
{
    local package missing=()
    for package; do installed "$package" || missing+=("$package"); done
    [ ${#missing[@]} -eq 0 ] && return 0
    say "installing ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    # An index that cannot be had matters only when a package cannot be had.
    as_root apt-get -q -o DPkg::Lock::Timeout=600 update >"$logs/apt-update.log" 2>&1 || true
    run_logged apt-install as_root apt-get -q -y -o DPkg::Lock::Timeout=600 install --no-install-recommends \
        "${missing[@]}" || fail "these Debian packages cannot be installed: ${missing[*]}"
}

# last_change FOLDER: when its files were changed last, in seconds since 1970: its last commit, or, where there are no
# commits, the change that was written down last.
last_change() { git -C "$1" log -1 --format=%ct 2>/dev/null || stat --format=%Y "$1/CHANGELOG.md"; }

# take_lock NAME: the rest of the script runs alone in this clone; a second run waits.
take_lock()
{
    exec 9>"$build/$1.lock"
    flock --nonblock 9 && return 0
    say "another run of $1 is under way; waiting for it"
    flock 9
}

# build_targets PRESET TARGET...
build_targets()
{
    local preset=$1
    shift
    say "building $* ($preset)"
    [ -f "build/$preset/build.ninja" ] || run_logged "configure-$preset" cmake --preset "$preset" || exit 1
    run_logged "$self-build-$preset" cmake --build --preset "$preset" --parallel "$jobs" --target "$@" || exit 1
}

# What talks to a server on this machine must not go through a proxy.
without_proxies() { unset http_proxy https_proxy all_proxy HTTP_PROXY HTTPS_PROXY ALL_PROXY; }

# A wineserver that stays up makes a Windows program start in 0.2 s instead of 2.6 s.
start_wineserver() { wineserver -p 9>&- >/dev/null 2>&1 || true; }
stop_wineserver() { wineserver -k 9>&- >/dev/null 2>&1 || true; }
