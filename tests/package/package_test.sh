#!/usr/bin/env bash
# The Debian package of a build tree: built with cpack, its fields and contents read with
# dpkg-deb, then unpacked into a scratch root whose programs must run from there alone (their
# RUNPATHs relative to themselves), and whose desktop entry and MIME type must make a file
# manager open a settings document in the editor.
# usage: package_test.sh BUILD_DIR VERSION
set -euo pipefail
build=$1
version=$2
scratch=$(mktemp -d "${TMPDIR:-/tmp}/vantor-package.XXXXXX")
trap 'rm -rf "$scratch"' EXIT
failures=0
fail() {
    echo "FAIL: $*" >&2
    failures=$((failures + 1))
}

# Everything the programs might find outside the package is cleared.
run_clean() {
    env -i PATH=/usr/bin:/bin HOME="$scratch/home" XDG_DATA_HOME="$scratch/home/data" \
        XDG_CONFIG_HOME="$scratch/home/config" LANG=C.UTF-8 QT_QPA_PLATFORM=offscreen "$@"
}
mkdir -p "$scratch/home"

cpack --config "$build/CPackConfig.cmake" -B "$scratch/out" >"$scratch/cpack.log" 2>&1 ||
    { cat "$scratch/cpack.log" >&2; exit 1; }
arch=$(dpkg --print-architecture)
deb=$scratch/out/vantor-rules_${version}_${arch}.deb
[ -f "$deb" ] || { ls "$scratch/out" >&2; echo "FAIL: no $(basename "$deb")" >&2; exit 1; }

# Fields: the dependencies come from the linked libraries, and none is a library of our own.
[ "$(dpkg-deb -f "$deb" Package)" = vantor-rules ] || fail "package name"
[ "$(dpkg-deb -f "$deb" Version)" = "$version" ] || fail "version $(dpkg-deb -f "$deb" Version)"
depends=$(dpkg-deb -f "$deb" Depends)
sed 's/, /\n/g; s/ ([^)]*)//g' <<<"$depends" >"$scratch/depends"
for dep in libc6 libstdc++6 libqt6widgets6 libqt6gui6 libqt6core6 libsqlite3-0 libpugixml1v5 libpq5 \
    libzip4 libfreexl1 libgsf-1-114 qt6-qpa-plugins; do
    grep -qxF "$dep" "$scratch/depends" || fail "Depends lacks $dep: $depends"
done
grep -qi vantor "$scratch/depends" && fail "Depends names a library of the package: $depends"

# Contents.
dpkg-deb -c "$deb" | awk '{print $6}' | sed 's|^\./|/|' >"$scratch/contents"
for path in /usr/bin/vantor-rules /usr/bin/vantor-tools \
    /usr/lib/vantor/ZEBAssemblyRules.so /usr/lib/vantor/libVantorFrameWork.so \
    /usr/lib/vantor/libVantorFrameWorkUi.so /usr/lib/vantor/libVantorDatabase.so \
    /usr/lib/vantor/ZEBDatabaseu.so /usr/lib/vantor/ZEBHardwareDBBridge.so \
    /usr/lib/vantor/ZEBCLRMangedHelper.so /usr/lib/vantor/vantor-xls-reader \
    /usr/share/vantor/res/en/ZEBAssemblyRulesResu.so /usr/share/vantor/res/de/ZEBAssemblyRulesResu.so \
    /usr/share/vantor/res/en/vantor.html /usr/share/vantor/res/de/vantor.html \
    /usr/share/applications/vantor-rules.desktop /usr/share/icons/hicolor/scalable/apps/vantor-rules.svg \
    /usr/share/mime/packages/vantor-rules.xml \
    /usr/share/man/man1/vantor-rules.1.gz /usr/share/man/man1/vantor-tools.1.gz; do
    grep -qx "$path" "$scratch/contents" || fail "package lacks $path"
done
grep -q '\.qm$' "$scratch/contents" || fail "package lacks the editor's translations"
grep -Eq '/(tests|bench|fuzz)/|FailingRules|_tests$' "$scratch/contents" &&
    fail "package holds test or benchmark files: $(grep -E '/(tests|bench|fuzz)/|FailingRules|_tests$' "$scratch/contents")"

root=$scratch/root
dpkg-deb -x "$deb" "$root"

# Every program and library finds its neighbours relative to itself, never in the build tree.
while IFS= read -r elf; do
    dynamic=$(readelf -d "$elf")
    grep -q "$build" <<<"$dynamic" && fail "$elf names the build tree"
    paths=$(sed -n 's/.*R\(UN\)\?PATH.*\[\(.*\)\]/\2/p' <<<"$dynamic" | tr ':' '\n')
    while IFS= read -r entry; do
        [ -z "$entry" ] || [[ "$entry" == '$ORIGIN'* ]] || fail "$elf: search path $entry"
    done <<<"$paths"
done < <(find "$root" -type f \( -name '*.so' -o -perm -u+x \) -exec sh -c 'head -c4 "$1" | grep -q ELF' _ {} \; -print)
ldd "$root/usr/bin/vantor-rules" | grep -q 'not found' && fail "vantor-rules: $(ldd "$root/usr/bin/vantor-rules" | grep 'not found')"
framework=$(ldd "$root/usr/bin/vantor-rules" | sed -n 's/.*libVantorFrameWork\.so => \([^ ]*\).*/\1/p')
[ -n "$framework" ] && [ "$(realpath "$framework")" = "$root/usr/lib/vantor/libVantorFrameWork.so" ] ||
    fail "vantor-rules takes the framework from '$framework', not from the package"

# The installed programs: the module's rules, a new settings document, a vantor-tools command.
bin=$root/usr/bin
if run_clean "$bin/vantor-rules" list >"$scratch/list" 2>"$scratch/list.err"; then
    [ "$(wc -l <"$scratch/list")" -eq 12 ] || fail "list printed $(wc -l <"$scratch/list") rules"
    grep -q '^Fastener Clearance	' "$scratch/list" || fail "list lacks Fastener Clearance"
else
    fail "vantor-rules list: $(cat "$scratch/list.err")"
fi
# Not "settings.xml": the shared MIME database gives that name to another program's files.
settings=$scratch/rules.xml
if run_clean "$bin/vantor-rules" new -o "$settings" --unit 0 2>"$scratch/new.err"; then
    grep -q '<VantorSettings' "$settings" || fail "new wrote no settings document"
    [ "$(grep -o '<Rule ' "$settings" | wc -l)" -eq 12 ] || fail "new wrote $(grep -o '<Rule ' "$settings" | wc -l) rules"
    run_clean "$bin/vantor-rules" show "$settings" >/dev/null 2>"$scratch/show.err" ||
        fail "show of the new document: $(cat "$scratch/show.err")"
else
    fail "vantor-rules new: $(cat "$scratch/new.err")"
fi
run_clean "$bin/vantor-rules" units >"$scratch/units" 2>&1 || fail "vantor-rules units: $(cat "$scratch/units")"
grep -qP '^0\tmm\t' "$scratch/units" || fail "units lacks millimetres: $(head -3 "$scratch/units")"

# Manual pages: generated from --help, so they name the commands.
zcat "$root/usr/share/man/man1/vantor-rules.1.gz" >"$scratch/man"
grep -q '^\.SH' "$scratch/man" && grep -q 'convert' "$scratch/man" && grep -q 'units' "$scratch/man" ||
    fail "vantor-rules.1 lacks its sections or commands"
zcat "$root/usr/share/man/man1/vantor-tools.1.gz" >"$scratch/man"
grep -q 'gallery' "$scratch/man" || fail "vantor-tools.1 lacks gallery"

# The desktop: a valid menu entry whose program opens the file it is given in the editor, and a
# settings document recognized by its root element, with the editor as its application.
desktop=$root/usr/share/applications/vantor-rules.desktop
desktop-file-validate "$desktop" || fail "desktop entry not valid"
grep -qx 'Exec=vantor-rules edit %f' "$desktop" || fail "desktop entry does not open files in the editor"
update-mime-database "$root/usr/share/mime" >/dev/null 2>&1
update-desktop-database "$root/usr/share/applications"
printf '<?xml version="1.0"?>\n<other/>\n' >"$scratch/other.xml"
# A desktop offers only the entries whose program is on PATH.
gio_clean() {
    run_clean env XDG_DATA_DIRS="$root/usr/share:/usr/share" PATH="$bin:/usr/bin:/bin" gio "$@" 2>/dev/null
}
content_type() {
    gio_clean info -a standard::content-type "$1" | sed -n 's/.*standard::content-type: //p'
}
# By name (".vantor.xml"), by root element (a name no glob knows), and plain XML stays plain.
cp "$settings" "$scratch/plant.vantor.xml"
cp "$settings" "$scratch/plant-rules"
for file in plant.vantor.xml plant-rules; do
    type=$(content_type "$scratch/$file")
    [ "$type" = application/x-vantor-settings+xml ] || fail "settings document $file is of type '$type'"
done
type=$(content_type "$scratch/other.xml")
[ "$type" = application/xml ] || fail "another XML file is of type '$type'"
# Read whole before matching: grep -q stopping early would fail the pipe under pipefail.
handlers=$(gio_clean mime application/x-vantor-settings+xml)
grep -q 'vantor-rules.desktop' <<<"$handlers" || fail "no application for settings documents: $handlers"

if [ $failures -ne 0 ]; then
    echo "$failures check(s) failed" >&2
    exit 1
fi
echo "package $(basename "$deb") checked"
