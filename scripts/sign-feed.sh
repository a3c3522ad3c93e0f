#!/usr/bin/env bash
# Makes what Karto's updates come from: a key pair, a signed feed for a package, and sure that both fit together.
#
#   scripts/sign-feed.sh key SECRET               makes a secret key in that file and prints the public one
#   scripts/sign-feed.sh feed SECRET PACKAGE ADDRESS NOTES [DAYS [PAGE]] >FEED
#                                                 signs a feed that offers the package, which lies at that address, with
#                                                 the text of the file NOTES; it is believed for 90 days, or DAYS. Who
#                                                 runs Karto without a package is shown PAGE, else the package's address
#   scripts/sign-feed.sh check FEED PUBLIC [PACKAGE]
#                                                 says whether the feed is signed by that key, still believed, and
#                                                 about that package
set -euo pipefail

fail() {
    echo "$*" >&2
    exit 1
}

usage() {
    sed -n '4,12s/^# \{0,1\}//p' "$0" >&2
    exit 2
}

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

public_of() { openssl pkey -in "$1" -pubout -outform DER | tail -c 32 | base64; }

# Seconds since 1970 as TOML has them.
moment() { date -u -d "@$1" +%Y-%m-%dT%H:%M:%SZ; }

make_key() {
    [[ ! -e $1 ]] || fail "There is a file $1 already; a key that was in use must not be lost."
    (umask 077 && openssl genpkey -algorithm ed25519 -out "$1")
    public_of "$1"
}

# The text of a file as TOML has it between three quotes.
quoted() { tr -d '\000-\010\013-\037\177' <"$1" | sed 's/[\\"]/\\&/g'; }

# What Karto refuses is refused here, before it is signed.
make_feed() {
    local secret=$1 package=$2 address=$3 notes=$4 days=${5:-90} page=${6:-$3} text=$scratch/text each now version size
    now=$(date +%s)
    version=$(dpkg-deb --field "$package" Version)
    size=$(stat -c %s "$package")
    for each in "$address" "$page"; do
        [[ $each =~ ^(https://|http://(localhost|127\.0\.0\.1|\[::1\])[:/])[^[:space:]\"\\]+$ ]] ||
            fail "Karto goes to addresses of HTTPS alone, not to $each."
    done
    [[ $days =~ ^[1-9][0-9]*$ ]] || fail "A feed is believed for a number of days, not for $days."
    [[ $size -le $((64 << 20)) ]] || fail "The package has more than 64 MiB."
    iconv -f UTF-8 "$notes" >/dev/null 2>&1 || fail "The notes are no text in UTF-8."
    cat >"$text" <<END
version = "$version"
date = $(moment "$now")
believedUntil = $(moment $((now + days * 86400)))
package = "$address"
page = "$page"
size = $size
sha256 = "$(sha256sum "$package" | cut -d' ' -f1)"
notes = """
$(quoted "$notes")"""
END
    [[ $(stat -c %s "$text") -lt 65000 ]] || fail "The notes are too long for a feed."
    openssl pkeyutl -sign -inkey "$secret" -rawin -in "$text" -out "$scratch/signature"
    echo "# signature: $(base64 -w 0 "$scratch/signature")"
    cat "$text"
}

value() { sed -n "s/^$1 = \"\{0,1\}\([^\"]*\)\"\{0,1\}\$/\1/p" "$scratch/text" | head -n 1; }

check_feed() {
    local feed=$1 public=$2 package=${3:-}
    tail -n +2 "$feed" >"$scratch/text"
    sed -n '1s/^# signature: //p' "$feed" | base64 -d >"$scratch/signature" 2>/dev/null || true
    # What comes before an Ed25519 key in the form that openssl reads.
    (printf '\x30\x2a\x30\x05\x06\x03\x2b\x65\x70\x03\x21\x00' && base64 -d <<<"$public" 2>/dev/null) >"$scratch/public" || true
    openssl pkeyutl -verify -pubin -keyform DER -inkey "$scratch/public" -rawin -in "$scratch/text" \
        -sigfile "$scratch/signature" >/dev/null 2>&1 || fail "The signature is not that of this key."
    [[ $(date -u -d "$(value believedUntil)" +%s) -gt $(date +%s) ]] ||
        fail "It was believed until $(value believedUntil) only."
    if [[ -n $package ]]; then
        [[ $(value version) == "$(dpkg-deb --field "$package" Version)" ]] || fail "The package has another version."
        [[ $(value size) == "$(stat -c %s "$package")" && $(value sha256) == "$(sha256sum "$package" | cut -d' ' -f1)" ]] ||
            fail "The package has other bytes."
    fi
    echo "Right: version $(value version) of $(value date), believed until $(value believedUntil)."
}

case "${1:-}:$#" in
    key:2) make_key "$2" ;;
    feed:[567]) make_feed "${@:2}" ;;
    check:[34]) check_feed "${@:2}" ;;
    *) usage ;;
esac
