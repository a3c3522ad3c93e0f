#!/usr/bin/env bash
# Checks a package of Karto: its content, what lintian and the desktop's validators say of it, and that to install,
# upgrade, remove and purge it leaves nothing behind but the files of persons. All of it happens in a scratch folder.
#
#   scripts/check-package.sh FILE.deb
set -euo pipefail
package=$(realpath "${1:?usage: scripts/check-package.sh FILE.deb}")
source "$(dirname "$0")/common.sh"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() {
    echo "$*" >&2
    exit 1
}

# equal WHAT EXPECTED ACTUAL: complains with the lines that differ.
equal() {
    diff <(echo "$2") <(echo "$3") >&2 || fail "$1: expected (<) is not what is there (>)"
}

say "Checking the content of $(basename "$package")"
# In a build that looks for updates.
fetcher="-rwxr-xr-x root/root ./usr/libexec/karto/karto-fetch"
equal "files of the package" "\
-rw-r--r-- root/root ./usr/share/applications/karto.desktop
-rw-r--r-- root/root ./usr/share/doc/karto/changelog.gz
-rw-r--r-- root/root ./usr/share/doc/karto/copyright
-rw-r--r-- root/root ./usr/share/icons/hicolor/16x16/apps/karto.svg
-rw-r--r-- root/root ./usr/share/icons/hicolor/24x24/apps/karto-symbolic.svg
-rw-r--r-- root/root ./usr/share/icons/hicolor/24x24/apps/karto.svg
-rw-r--r-- root/root ./usr/share/icons/hicolor/32x32/apps/karto.svg
-rw-r--r-- root/root ./usr/share/icons/hicolor/48x48/apps/karto.svg
-rw-r--r-- root/root ./usr/share/icons/hicolor/scalable/apps/karto.svg
-rw-r--r-- root/root ./usr/share/icons/hicolor/symbolic/apps/karto-symbolic.svg
-rw-r--r-- root/root ./usr/share/lintian/overrides/karto
-rw-r--r-- root/root ./usr/share/man/man1/karto.1.gz
-rw-r--r-- root/root ./usr/share/metainfo/org.karto.Karto.metainfo.xml
-rwxr-xr-x root/root ./usr/bin/karto" \
    "$(dpkg-deb --contents "$package" | awk '!/^d/ { print $1, $2, $6 }' | grep -vxF -e "$fetcher" | LC_ALL=C sort)"
# Neither scripts nor configuration files of its own: nothing can go wrong with them.
equal "control files" $'./control\n./md5sums' "$(dpkg-deb --ctrl-tarfile "$package" | tar -t | grep -v '/$' | sort)"

version=$(dpkg-deb --field "$package" Version)
equal "version in the changelog" "$version" "$(dpkg-parsechangelog -l packaging/debian/changelog -S Version)"
equal "version in the metainfo" "$version" \
    "$(grep -om1 '<release version="[^"]*' packaging/org.karto.Karto.metainfo.xml | cut -d'"' -f2)"
[[ "$(dpkg-deb --field "$package" Depends)" == *libqt6widgets6*libxcb1* ]] || fail "dependencies are missing"

say "Asking the validators and lintian"
content=$scratch/content
dpkg-deb --extract "$package" "$content"
entry=$content/usr/share/applications/karto.desktop
desktop-file-validate "$entry"
[[ -x $content/usr/bin/$(sed -n 's/^Exec=//p' "$entry") ]] || fail "the menu entry names another program"
[[ -f $content/usr/share/icons/hicolor/scalable/apps/$(sed -n 's/^Icon=//p' "$entry").svg ]] ||
    fail "the menu entry names another icon"
appstreamcli validate-tree --no-net "$content"
find "$content" -name '*.svg' -exec python3 -c 'import sys, xml.dom.minidom as xml
for file in sys.argv[1:]: xml.parse(file)' {} +
lintian --allow-root --fail-on error,warning "$package"

say "Installing, upgrading, removing and purging in a scratch folder"
root=$scratch/root
mkdir -p "$root/var/lib/dpkg" "$root"/home/person/{.config/{karto,autostart},Library/Logs/Karto}
touch "$root/var/lib/dpkg/status" "$root"/home/person/.config/{karto/config.toml,autostart/karto.desktop} \
    "$root/home/person/Library/Logs/Karto/karto-check.log"
in_root() {
    PATH=$PATH:/usr/sbin:/sbin fakeroot dpkg --root="$root" --log=/dev/null --force-depends --force-unsafe-io "$@" \
        >"$scratch/dpkg.out" 2>&1 ||
        fail "$(cat "$scratch/dpkg.out")"
}
everything() { (cd "$root" && find . -path ./var -prune -o -print | sort); }
before=$(everything)

dpkg-deb --raw-extract "$package" "$scratch/newer"
sed -i 's/^Version: .*/&.1/' "$scratch/newer/DEBIAN/control"
dpkg-deb --root-owner-group --build "$scratch/newer" "$scratch/newer.deb" >/dev/null

in_root --install "$package"
in_root --install "$scratch/newer.deb"
equal "version after the upgrade" "$version.1" "$(dpkg-query --root="$root" --show --showformat='${Version}' karto)"
[[ -x $root/usr/bin/karto ]] || fail "the program is not installed"
in_root --remove karto
equal "files after removing" "$before" "$(everything)"
in_root --purge karto
equal "files after purging" "$before" "$(everything)"
