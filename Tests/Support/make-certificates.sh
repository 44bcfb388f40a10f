#!/usr/bin/env bash
# make-certificates.sh FOLDER: creates certificates NAME.pem, each with its key NAME.key: two
# authorities, `authority` and `other-authority`; server certificates signed by the first, `good`
# (for localhost and 127.0.0.1), `expired` and `other-host`; and `self-signed`. All except `expired`
# are valid for ten years, since a build folder may be kept for long.
set -Eeuo pipefail
mkdir -p "$1"
cd "$1"
exec 2>errors.txt
trap 'cat errors.txt' ERR
unset OPENSSL_CONF

new_key=(-newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes)
for name in authority other-authority self-signed; do
  openssl req -x509 "${new_key[@]}" -days 3650 -subj /CN=localhost -addext subjectAltName=DNS:localhost \
    -keyout "$name.key" -out "$name.pem"
done

# sign NAME HOST DAYS [ADDRESS]: creates a server certificate. With a negative DAYS, it has already
# expired.
sign() {
  openssl req -new "${new_key[@]}" -subj "/CN=$2" -keyout "$1.key" -out "$1.csr"
  openssl x509 -req -in "$1.csr" -CA authority.pem -CAkey authority.key -CAcreateserial -days "$3" \
    -extfile <(echo "subjectAltName=DNS:$2${4:+,IP:$4}") -out "$1.pem"
}
sign good localhost 3650 127.0.0.1
sign expired localhost -1
sign other-host other.example 3650
