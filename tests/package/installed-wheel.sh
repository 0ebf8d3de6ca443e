#!/usr/bin/env bash
# installed-wheel.sh PACKAGES WORK: installs the wheel into an empty folder, and runs the first steps with it against
# the stand-in service of the clone.
set -euo pipefail
packages=$1
work=$2
root=$(cd "$(dirname "$0")/../.." && pwd)
service=$root/build/linux/bin/pvwapi-service

rm -rf "$work"
mkdir -p "$work/data"
/usr/bin/python3 -m pip install --quiet --no-index --no-deps --target "$work/site" "$packages"/pvwapi-*.whl

# Nothing but the wheel has the library.
unset PVWAPI_LIBRARY LD_LIBRARY_PATH
export PYTHONPATH=$work/site PYTHONDONTWRITEBYTECODE=1 XDG_DATA_HOME=$work/data
"$root/tests/host/with-service.sh" "$service" /usr/bin/python3 "$root/tests/bindings/first_steps.py" \
    /usr/bin/python3 "$root/examples/first_steps.py"
for text in LICENSE THIRD-PARTY.md licenses/expat.txt; do
    [ -s "$work/site/pvwapi/$text" ] || { echo "the wheel has no $text" >&2; exit 1; }
done
