#!/usr/bin/env bash
# on-tape.sh SERVICE COMMAND...: runs the command twice, each time with its operation URL in TEST_SERVICE_URL: through a
# recorder that stands before the service of TEST_SERVICE_URL, and against the tape alone. Either run has to succeed,
# every request of the second to stand on the tape, and no password on it.
set -euo pipefail

service=$1
shift
folder=$(mktemp -d)
pid=
finish()
{
    [ -z "$pid" ] || kill "$pid" 2>/dev/null || true
    wait
    rm -rf "$folder"
}
trap finish EXIT

# start WORDS...: runs the service's program with these; TEST_SERVICE_URL leads there.
start()
{
    : >"$folder/out"
    "$service" "$@" --listen 127.0.0.1:0 >"$folder/out" 2>"$folder/errors" </dev/null &
    pid=$!
    local patience address=
    for ((patience = 300; patience > 0; --patience)); do
        address=$(sed -n 's/^listening on //p' "$folder/out")
        [ -z "$address" ] || break
        kill -0 "$pid" 2>/dev/null || break
        sleep 0.1
    done
    if [ -z "$address" ]; then
        echo "$1 does not start:" >&2
        cat "$folder/errors" >&2
        exit 1
    fi
    export TEST_SERVICE_URL=http://$address/kznconnect/op.do
}

# stop: ends it; its status is that of the program.
stop()
{
    local status=0
    kill "$pid"
    wait "$pid" || status=$?
    pid=
    cat "$folder/errors"
    return $status
}

start record --to "$folder/day.tape" --upstream "$TEST_SERVICE_URL"
"$@"
stop
if grep -E 'demo-1|token-1' "$folder/day.tape"; then
    echo "a secret stands on the tape" >&2
    exit 1
fi
start replay "$folder/day.tape"
"$@"
stop
