# Checks for a newer release; a download is the announced release or is removed.
. "$PROMISES/promises.sh"
. "$PROMISES/local-service.sh"
command -v openssl >out || exit 77
openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 2 -subj /CN=local \
    -addext subjectAltName=IP:127.0.0.1 -keyout key.pem -out certificate.pem 2>err || exit 77
serve certificate.pem key.pem
mkdir service/site/app
head -c 300000 "$TARNWICK" >service/site/release.tar
digest=$(sha256sum <service/site/release.tar | cut -c 1-64)

# document BUILD MEMBERS: of a release at that address.
document() {
    printf '{"version":"9.\\u001b[1m5","build":%s,"url":"%s/release.tar"%s}' "$1" "$TARNWICK_SERVER" "$2" \
        >service/site/app/latest.json
}

expect 1 'certificate' release # nobody vouches for the service
export SSL_CERT_FILE="$folder/certificate.pem"
expect 1 'Tarnweb answered 404 for the release' release
echo '{"version":"1"}' >service/site/app/latest.json
expect 1 '' release
document 1 ',"notes":"None."'
expect 0 'There is no newer release than this one, Tarnwick [0-9.]* (build 1)' release
expect 0 'There is no newer release' release --download -o new.tar
have ! -e new.tar
document '"99"' ',"notes":"First.\nSecond\u0007."'
expect 0 '^Tarnwick 9.?\[1m5 (build 99) is newer than this one, Tarnwick ' release
grep -q -x "$TARNWICK_SERVER/release.tar" out || complain 'no address' release
grep -q -x 'Second?.' out || complain 'no notes' release
expect 2 'download requires -o' release --download
expect 1 'none/new.tar cannot be written' release --download -o none/new.tar
expect 1 'gives no SHA-256' release --download -o new.tar
document 99 ",\"sha256\":\"$(echo "$digest" | tr a-f A-F)\""
expect 0 'is in new.tar; its SHA-256 is the right one' release --download -o new.tar
cmp -s new.tar service/site/release.tar || complain 'another file' release
echo more >>service/site/release.tar
expect 1 'is not the announced release' release --download -o other.tar
expect 2 '^tarnwick: new.tar already exists and is not replaced.$' release --download -o new.tar
have "$(sha256sum <new.tar | cut -c 1-64)" = "$digest"
rm service/site/release.tar
expect 1 'Tarnweb answered 404 for the release' release --download -o other.tar
have "$(echo other* ./*partial)" = 'other* ./*partial'
finish
