#!/usr/bin/env bash
# installed-linux.sh PACKAGES WORK: unpacks Debian's packages into an empty folder, builds programs against what is
# there, and runs them and the programs of the packages.
set -euo pipefail
packages=$1
work=$2
root=$(cd "$(dirname "$0")/../.." && pwd)
installed=$work/root
triplet=$(dpkg-architecture --query DEB_HOST_MULTIARCH)

fail()
{
    echo "$*" >&2
    exit 1
}

# Each package says which files of others are inside, with their terms, and has the list.
check_texts()
{
    local name=$1 word documents=$installed/usr/share/doc/$1
    [ -f "$documents/THIRD-PARTY.md" ] || fail "$name has no THIRD-PARTY.md"
    for word in 'the pvWapi authors' "${@:2}"; do
        grep -q "$word" "$documents/copyright" || fail "the copyright of $name says nothing of $word"
    done
}

rm -rf "$work"
mkdir -p "$installed" "$work/data"
count=0
for deb in "$packages"/*.deb; do
    case $deb in *-dbgsym_*) continue ;; esac
    dpkg -x "$deb" "$installed"
    count=$((count + 1))
done
[ "$count" -eq 6 ] || fail "there are $count packages, and not 6"

check_texts libpvtrace1
check_texts libpvwapi1 'Expat maintainers'
check_texts libpvwapi-c1
check_texts libpvwapi-dev
check_texts pvwapi-tools 'University of Cincinnati' 'Niels Lohmann' 'utf8proc'
check_texts pvwapi-service 'University of Cincinnati' 'Niels Lohmann'
for page in pvwapi pvwapi-log pvwapi-service; do
    [ -f "$installed/usr/share/man/man1/$page.1.gz" ] || fail "$page has no man page"
done

# What the packages ask for, Debian has; nothing is installed.
# shellcheck disable=SC2046 # names without blanks
apt-get --simulate install $(find "$packages" -name '*.deb' ! -name '*-dbgsym_*') >"$work/simulated" ||
    fail "apt cannot install them: $(cat "$work/simulated")"

export LD_LIBRARY_PATH=$installed/usr/lib/$triplet XDG_DATA_HOME=$work/data
cmake -D package="$installed/usr" -D libraries="lib/$triplet" -D host="$root/tests/package/host" -D work="$work/host" \
    -D generator=Ninja -D config=Release -D compiler=g++ -D system=Linux -D hasPrograms=ON -D hasService=ON \
    -P "$root/tests/package/consume.cmake"

# The programs of the packages, the one against the other.
export PVWAPI_USER=anna PVWAPI_PASSWORD=anna-demo-1
# shellcheck disable=SC2016 # the inner shell's variables
listed=$("$root/tests/host/with-service.sh" "$installed/usr/bin/pvwapi-service" \
    sh -c 'PVWAPI_BASE_URL=$TEST_SERVICE_URL "$0" spaces list' "$installed/usr/bin/pvwapi")
grep -q 'Autumn catalogue' <<<"$listed" || fail "pvwapi lists: $listed"
"$installed/usr/bin/pvwapi-log" | grep -q . || fail "pvwapi-log shows nothing"
