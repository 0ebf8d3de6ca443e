#!/usr/bin/env bash
# alone.sh COMMAND...: runs the command where there is no network but loopback. Where the system does not let a user
# make such a place, it runs as it is: the test looks at every address that was met anyway.
set -euo pipefail
if unshare --user --net --map-root-user ip link set lo up 2>/dev/null; then
    exec unshare --user --net --map-root-user sh -c 'ip link set lo up && exec "$@"' sh "$@"
fi
exec "$@"
