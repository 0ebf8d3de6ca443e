#!/bin/sh
# withTlsServer.sh COMMAND...: runs it beside a TLS server whose certificate nobody has signed; the server's port is in
# PVWAPI_TLS_PORT. The server answers a get of /page with 200, so that whoever believes its certificate is found out.
set -eu
folder=$(mktemp -d)
server=
finish()
{
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    rm -rf "$folder"
}
trap finish EXIT
trap 'exit 1' HUP INT TERM

openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 2 -subj /CN=localhost \
    -addext 'subjectAltName=DNS:localhost,IP:127.0.0.1' -keyout "$folder/key.pem" -out "$folder/cert.pem" 2>/dev/null
printf 'HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\nContent-Length: 9\r\n\r\n<kznapi/>' >"$folder/page"
: >"$folder/log" # the server opens it in its own time
(cd "$folder" && exec openssl s_server -accept 127.0.0.1:0 -key key.pem -cert cert.pem -HTTP >log 2>&1 </dev/null) &
server=$!

port=
for _ in $(seq 100); do
    port=$(sed -n 's/^ACCEPT .*:\([0-9]*\)$/\1/p' "$folder/log" | head -n 1)
    [ -n "$port" ] && break
    sleep 0.1
done
printf 'GET /page HTTP/1.0\r\n\r\n' |
    openssl s_client -quiet -verify_return_error -CAfile "$folder/cert.pem" -connect "127.0.0.1:$port" 2>/dev/null |
    grep -q '^HTTP/1.1 200' || { echo "the TLS server does not answer" >&2; cat "$folder/log" >&2; exit 1; }

PVWAPI_TLS_PORT=$port "$@"
