#!/usr/bin/env bash
# Builds the Debian package into a temporary folder with CPack and checks it
# as apt would see it: its control fields, dependencies computed from the
# binaries, and the same files as an installation with prefix /usr.
#
# check_package.sh CMAKE CPACK BUILD_DIR RELEASE
set -euo pipefail
cmake=$1 cpack=$2 build=$(cd "$3" && pwd -P) release=$4

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0
fail() {
    echo "FAIL: $*" >&2
    failures=$((failures + 1))
}

"$cpack" --config "$build/CPackConfig.cmake" -G DEB -B "$work/out" >"$work/cpack.log" 2>&1 \
    || { cat "$work/cpack.log" >&2; exit 1; }
arch=$(dpkg --print-architecture)
deb=$work/out/orvchstrip_${release}_$arch.deb
[ -f "$deb" ] || { echo "FAIL: cpack made $(ls "$work/out"), not $(basename "$deb")" >&2; exit 1; }

field() { dpkg-deb --field "$deb" "$1"; }
[ "$(field Package)" = orvchstrip ] || fail "Package: $(field Package)"
[ "$(field Version)" = "$release" ] || fail "Version: $(field Version), not $release"
[ "$(field Section)" = sound ] || fail "Section: $(field Section)"
[ -n "$(field Maintainer)" ] || fail "no Maintainer"
[ -n "$(field Description)" ] || fail "no Description"
# dpkg-shlibdeps found the libraries the programs and the plug-in link.
depends=$(field Depends)
for library in libc6 libstdc++6 libqt6core6 libqt6gui6 libqt6widgets6 libqt6svg6 libsndfile1; do
    [[ ", $depends," == *", $library "* ]] || fail "Depends lacks $library: $depends"
done

# No maintainer scripts: with none, apt-get remove leaves nothing behind (not
# even the package's record in the configuration-files state).
scripts=$(dpkg-deb --ctrl-tarfile "$deb" | tar -t | grep -E 'postinst|postrm|preinst|prerm|conffiles' || true)
[ -z "$scripts" ] || fail "the package has maintainer scripts or conffiles: $scripts"

# The package holds the files an installation with prefix /usr holds.
DESTDIR=$work/tree "$cmake" --install "$build" --prefix /usr >/dev/null
(cd "$work/tree" && find . -type f -o -type l) | sed 's|^\./|/|' | sort >"$work/installed"
dpkg-deb --fsys-tarfile "$deb" | tar -t | grep -v '/$' | sed 's|^\./|/|' | sort >"$work/packaged"
diff -u "$work/installed" "$work/packaged" >&2 || fail "the package's files differ from an installation (- installed, + packaged)"

dpkg-deb --extract "$deb" "$work/extracted"
if found=$(grep -rlF -- "$build" "$work/extracted"); then
    fail "packaged files name the build folder: $found"
fi

exit $((failures > 0))
