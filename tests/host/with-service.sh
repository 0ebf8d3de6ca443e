#!/usr/bin/env bash
# with-service.sh SERVICE COMMAND...: runs the command while the service serves a new data file on a free port. That of
# Windows runs under Wine.
# The command finds its operation URL in TEST_SERVICE_URL; sessions live for 6 seconds without use, long enough for a
# busy machine; pictures have at most 1,000,000 bytes.
set -euo pipefail

service=$1
shift
if [ ! -x "$service" ]; then
    echo "$service is not built: cmake --build with its preset and --target pvwapi-service" >&2
    exit 1
fi
wine=$(dirname "$0")/../../cmake
runner=()
case $service in *.exe) runner=("$wine/run-under-wine") ;; esac

folder=$(mktemp -d)
pid=

finish()
{
    if [ ${#runner[@]} -gt 0 ]; then
        "$wine/interrupt-under-wine" "$folder/data.db"
    elif [ -n "$pid" ]; then
        kill "$pid" 2>/dev/null || true
    fi
    wait
    rm -rf "$folder"
}
trap finish EXIT

: >"$folder/out" # the service opens it in its own time
"${runner[@]}" "$service" --data "$folder/data.db" --listen 127.0.0.1:0 --seed demo --session-duration 6000 \
    --max-upload 1000000 >"$folder/out" 2>&1 </dev/null &
pid=$!
for ((patience = 300; patience > 0; --patience)); do
    address=$(sed -n 's/^listening on //p' "$folder/out")
    [ -z "$address" ] || break
    kill -0 "$pid" 2>/dev/null || break
    sleep 0.1
done
if [ -z "$address" ]; then
    echo "the service does not start:" >&2
    cat "$folder/out" >&2
    exit 1
fi

export TEST_SERVICE_URL=http://$address/kznconnect/op.do
"$@"
