#!/usr/bin/env bash
# Installs the build into a temporary DESTDIR as the package does (prefix
# /usr, stripped) and runs the installed host and tool from there in an
# environment that names nothing of the build or source tree: the host has to
# find its plug-in, and the tool the factory morph sets, by themselves.
#
# check_installed_tree.sh CMAKE BUILD_DIR SOURCE_DIR LIBDIR DESIGNER_DIR RELEASE PLUGIN_VERSION
# (DESIGNER_DIR is empty when the Designer plug-in is not built)
set -euo pipefail
cmake=$1 build=$(cd "$2" && pwd -P) source=$(cd "$3" && pwd -P)
libdir=$4 designer_dir=$5 release=$6 plugin_version=$7

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
root=$work/root
failures=0
fail() {
    echo "FAIL: $*" >&2
    failures=$((failures + 1))
}

DESTDIR=$root "$cmake" --install "$build" --prefix /usr --strip >/dev/null

# Exactly the promised files: the programs, the plug-in in its own folder,
# the factory morph records and what a desktop expects; nothing of the build.
{
    printf '%s\n' usr/bin/orvchstrip-host usr/bin/orvchstrip-tool "usr/$libdir/orvchstrip/orvchstrip.so" \
        usr/share/applications/orvchstrip-host.desktop usr/share/icons/hicolor/scalable/apps/orvchstrip.svg \
        usr/share/bash-completion/completions/orvchstrip-tool \
        usr/share/man/man1/orvchstrip-host.1.gz usr/share/man/man1/orvchstrip-tool.1.gz
    [ -z "$designer_dir" ] || echo "usr/$designer_dir/designer/orvchstrip_designer.so"
    (cd "$source/presets/morph" && find . -type f -name '*.ord' | sed 's|^\./|usr/share/Halvorn/ORVD/|')
} | sort >"$work/expected"
(cd "$root" && find . -type f -o -type l) | sed 's|^\./||' | sort >"$work/installed"
diff -u "$work/expected" "$work/installed" >&2 || fail "the installed files differ from the expected ones (- expected, + installed)"

for tree in "$build" "$source"; do
    if found=$(grep -rlF -- "$tree" "$root"); then
        fail "installed files name $tree: $found"
    fi
done

# The installed programs, run from a folder of their own with a minimal
# environment; the morph folder is found through the XDG data directories as
# on a desktop, here below the DESTDIR.
mkdir -p "$work/home" "$work/run" && chmod 700 "$work/run"
installed_env=(env -i "HOME=$work/home" "XDG_RUNTIME_DIR=$work/run" "PATH=$root/usr/bin:/usr/bin:/bin"
    "XDG_DATA_DIRS=$root/usr/local/share:$root/usr/share" QT_QPA_PLATFORM=offscreen LANG=C.UTF-8)
cd "$work"

if "${installed_env[@]}" orvchstrip-host --no-settings --screenshot editor.png >host.log 2>&1; then
    picture=$(file -b editor.png)
    [[ $picture == "PNG image data, 1015 x 572,"* ]] || fail "the installed host rendered '$picture'"
else
    fail "the installed host did not render the editor: $(cat host.log)"
fi

version=$("${installed_env[@]}" orvchstrip-tool --version)
[[ $version == *"$release"*"$plugin_version"* ]] \
    || fail "orvchstrip-tool --version printed '$version', not release $release and plug-in $plugin_version"

# morph list shows every factory set, by name, from the installed folder.
listing=$("${installed_env[@]}" orvchstrip-tool morph list)
grep -qF "$root/usr/share/Halvorn/ORVD" <<<"$listing" || fail "morph list did not read the installed sets: $listing"
while IFS= read -r set; do
    grep -qF -- "$(basename "$set" .ord)" <<<"$listing" || fail "morph list lacks the factory set $set"
done < <(cd "$source/presets/morph" && find . -type f -name '*.ord')

# The man pages render; the host's lists every option of its --help, the
# tool's (written by hand) every command of its --help.
page() { LC_ALL=C MANWIDTH=200 man -l "$root/usr/share/man/man1/$1.1.gz" 2>/dev/null; }
host_page=$(page orvchstrip-host) tool_page=$(page orvchstrip-tool)
grep -q "^NAME" <<<"$host_page" || fail "the man page of orvchstrip-host does not render"
grep -q "^NAME" <<<"$tool_page" || fail "the man page of orvchstrip-tool does not render"
for option in $("${installed_env[@]}" orvchstrip-host --help | grep -oE -- '--[a-z][a-z-]*' | sort -u); do
    grep -qF -- "$option" <<<"$host_page" || fail "the man page of orvchstrip-host lacks $option"
done
while IFS= read -r usage; do
    grep -qF -- "$usage" <<<"$tool_page" || fail "the man page of orvchstrip-tool lacks '$usage'"
done < <("${installed_env[@]}" orvchstrip-tool --help | sed -n 's/^  orvchstrip-tool //p' | sed 's/ | /\n/g')

# The desktop entry starts an installed program and names an installed icon.
entry=$root/usr/share/applications/orvchstrip-host.desktop
exec_line=$(sed -n 's/^Exec=//p' "$entry")
icon=$(sed -n 's/^Icon=//p' "$entry")
[ -x "$root/usr/bin/${exec_line%% *}" ] || fail "the desktop entry runs '$exec_line', which is not installed"
[ -f "$root/usr/share/icons/hicolor/scalable/apps/$icon.svg" ] || fail "the desktop entry's icon '$icon' is not installed"

# Completion offers the tool's commands and a command's options.
complete_words() {
    "${installed_env[@]}" bash -c 'source "$1"; shift; COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1))
        _orvchstrip_tool; printf "%s\n" "${COMPREPLY[@]}" | sort | paste -sd " "' \
        - "$root/usr/share/bash-completion/completions/orvchstrip-tool" orvchstrip-tool "$@"
}
[ "$(complete_words "")" = "--help --version chunk morph preset state" ] || fail "completing a command gave '$(complete_words "")'"
[ "$(complete_words morph "")" = "list make show" ] || fail "completing a morph command gave '$(complete_words morph "")'"
[ "$(complete_words morph make --)" = "--from --json --out" ] \
    || fail "completing morph make's options gave '$(complete_words morph make --)'"

exit $((failures > 0))
