#!/bin/sh
# withTlsServer.sh COMMAND...: runs it beside TLS servers, each with another certificate. Their ports and the test
# authority are in the environment:
#   PVWAPI_TLS_AUTHORITY   the authority's certificate, a file
#   PVWAPI_TLS_GOOD        signed by it, for localhost and 127.0.0.1
#   PVWAPI_TLS_NUMBER, PVWAPI_TLS_APART        the same; a server serves one connection at a time, and a kept one
#                          would be in the way
#   PVWAPI_TLS_NAME        signed by it, for another host
#   PVWAPI_TLS_EXPIRED, PVWAPI_TLS_FUTURE      signed by it, for another time
#   PVWAPI_TLS_UNKNOWN     signed by an authority that nobody knows
#   PVWAPI_TLS_SELF        signed by nobody but itself
#   PVWAPI_TLS_OLD         good, but speaks no version of TLS later than 1.1
# A server answers a get of /page with 200, so that whoever believes a wrong certificate is found out.
set -eu
folder=$(mktemp -d)
servers=
finish()
{
    # shellcheck disable=SC2086 # one word a process
    [ -z "$servers" ] || kill $servers 2>/dev/null || true
    rm -rf "$folder"
}
trap finish EXIT
trap 'exit 1' HUP INT TERM

key() { openssl ecparam -name prime256v1 -genkey -noout -out "$1.key"; }

# authority NAME: a root of its own in the folder NAME.
authority()
{
    mkdir "$1"
    : >"$1/index"
    printf '[ca]\ndefault_ca=own\n[own]\ndatabase=%s/index\nnew_certs_dir=%s\ncertificate=%s.crt\nprivate_key=%s.key
rand_serial=yes\ndefault_md=sha256\npolicy=any\nunique_subject=no\ncopy_extensions=copy\n[any]\ncommonName=supplied\n' \
        "$1" "$1" "$1" "$1" >"$1/config"
    key "$1"
    openssl req -x509 -new -key "$1.key" -days 30 -subj "/CN=Test authority $1" -out "$1.crt" \
        -addext basicConstraints=critical,CA:TRUE -addext keyUsage=critical,keyCertSign,cRLSign
}

# certificate NAME AUTHORITY HOSTS FROM TO
certificate()
{
    key "$1"
    openssl req -new -key "$1.key" -subj "/CN=$1" -addext "subjectAltName=$3" -out "$1.csr"
    openssl ca -batch -notext -config "$2/config" -in "$1.csr" -startdate "$4" -enddate "$5" -out "$1.crt"
}

certificates()
{
    hosts=DNS:localhost,IP:127.0.0.1
    past=20200101000000Z yesterday=$(date -u -d yesterday +%Y%m%d%H%M%SZ)
    next=$(date -u -d '+20 days' +%Y%m%d%H%M%SZ) tomorrow=$(date -u -d tomorrow +%Y%m%d%H%M%SZ)
    authority known
    authority unknown
    certificate good known "$hosts" "$yesterday" "$next"
    certificate name known DNS:elsewhere.example "$yesterday" "$next"
    certificate expired known "$hosts" "$past" "$yesterday"
    certificate future known "$hosts" "$tomorrow" "$next"
    certificate stranger unknown "$hosts" "$yesterday" "$next"
    key self
    openssl req -x509 -new -key self.key -days 2 -subj /CN=localhost -addext "subjectAltName=$hosts" -out self.crt
}

# serve NAME CERTIFICATE [OPTION...]: puts the port into the file NAME.port.
serve()
{
    name=$1 certificate=$2
    shift 2
    : >"$folder/$name.log" # the server opens it in its own time
    (cd "$folder" && exec openssl s_server -accept 127.0.0.1:0 -key "$certificate.key" -cert "$certificate.crt" -HTTP \
        "$@" >"$name.log" 2>&1 </dev/null) &
    servers="$servers $!"
    for _ in $(seq 100); do
        sed -n 's/^ACCEPT .*:\([0-9]*\)$/\1/p' "$folder/$name.log" | head -n 1 >"$folder/$name.port"
        [ -s "$folder/$name.port" ] && return 0
        sleep 0.1
    done
    echo "the TLS server $name does not start" >&2
    cat "$folder/$name.log" >&2
    exit 1
}

(cd "$folder" && certificates) >"$folder/openssl.log" 2>&1 || { cat "$folder/openssl.log" >&2; exit 1; }
printf 'HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\nContent-Length: 9\r\n\r\n<kznapi/>' >"$folder/page"
serve good good
serve number good
serve apart good
serve name name
serve expired expired
serve future future
serve unknown stranger
serve self self
serve old good -tls1_1 -cipher ALL:@SECLEVEL=0

printf 'GET /page HTTP/1.0\r\n\r\n' |
    openssl s_client -quiet -verify_return_error -CAfile "$folder/known.crt" \
        -connect "127.0.0.1:$(cat "$folder/good.port")" 2>/dev/null |
    grep -q '^HTTP/1.1 200' || { echo "the TLS server does not answer" >&2; cat "$folder/good.log" >&2; exit 1; }

for name in good number apart name expired future unknown self old; do
    export "PVWAPI_TLS_$(echo "$name" | tr a-z A-Z)=$(cat "$folder/$name.port")"
done
export PVWAPI_TLS_AUTHORITY="$folder/known.crt"
# The system as old as it can be set: what is too old is the library's to refuse.
printf '%s\n' openssl_conf=all '[all]' ssl_conf=ssl '[ssl]' system_default=old '[old]' MinProtocol=TLSv1 \
    CipherString=ALL:@SECLEVEL=0 >"$folder/old.cnf"
export OPENSSL_CONF="$folder/old.cnf"
"$@"
