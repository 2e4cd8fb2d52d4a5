#!/usr/bin/env bash
# The release's files as the people who download them meet them: scripts/release
# writes dist/, then the Windows zip runs in a fresh Wine prefix from a folder
# whose name has spaces and non-ASCII letters, with output byte for byte that
# of the Linux build; a host builds against the SDK zip alone and runs; the
# web tarball is served by a plain static server and opened in chromium; and
# SHA256SUMS matches. Run by scripts/test after its Windows and web stages,
# whose builds it reuses.
set -euo pipefail
cd "$(dirname "$0")/../.."
root=$PWD
here=$root/tests/release
dist=$root/dist
linux_tool=$root/build/tools/zuno-keymap/zuno-keymap

scripts/release "$dist"
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' build/CMakeCache.txt)
work=$root/build-release/test
rm -rf "$work" && mkdir -p "$work"
failed=0
fail() {
    echo "FAIL $*"
    failed=1
}

echo "-- SHA256SUMS and versions"
(cd "$dist" && sha256sum --check --strict --quiet SHA256SUMS) || fail "SHA256SUMS does not match"
listed=$(cut -d' ' -f3 "$dist/SHA256SUMS" | sort)
present=$(cd "$dist" && find . -maxdepth 1 -type f ! -name SHA256SUMS -printf '%f\n' | sort)
[ "$listed" = "$present" ] || fail "SHA256SUMS lists '$listed', dist holds '$present'"
for deb in "$dist"/*.deb; do
    [ "$(dpkg-deb -f "$deb" Version)" = "$version" ] || fail "$deb is not version $version"
done

# A Wine prefix of its own: nothing installed but Windows' own DLLs.
export PATH=$PATH:/usr/lib/wine WINEPREFIX=$work/wine WINEDEBUG=-all
export WINEDLLOVERRIDES="mscoree,mshtml="
unset DISPLAY WAYLAND_DISPLAY
stop_wine() { wineserver -k 2>/dev/null || true; }
server=
# shellcheck disable=SC2317 # run by the trap
cleanup() {
    [ -z "$server" ] || kill "$server" 2>/dev/null || true
    stop_wine
}
trap cleanup EXIT
wine64 wineboot -i >/dev/null 2>&1
wineserver -w

echo "-- the Windows zip"
folder="$work/Zoë's keymaps 鍵位"
mkdir -p "$folder"
unzip -q "$dist/zuno-keymap-$version-windows-x64.zip" -d "$folder"
app="$folder/zuno-keymap-$version-windows-x64"
for file in README.md CHANGELOG.md COPYRIGHT.txt docs/format.md examples/shooter.json; do
    [ -f "$app/$file" ] || fail "the zip has no $file"
done
# The same relative names on both sides: the zip's examples are the repository's.
while IFS= read -r line; do
    read -r -a args <<<"$line"
    linux_status=0 windows_status=0
    (cd "$root" && "$linux_tool" "${args[@]}") >"$work/linux.out" 2>/dev/null || linux_status=$?
    (cd "$app" && wine64 ./zuno-keymap.exe "${args[@]}") >"$work/windows.out" 2>"$work/windows.err" ||
        windows_status=$?
    if [ "$linux_status" != "$windows_status" ] || ! cmp -s "$work/linux.out" "$work/windows.out"; then
        fail "zuno-keymap $line: Windows exit $windows_status, Linux $linux_status"
        diff "$work/linux.out" "$work/windows.out" | head -5 || true
        head -5 "$work/windows.err"
    else
        echo "ok   zuno-keymap $line"
    fi
done <<'COMMANDS'
--version
check examples/shooter.json examples/macros.json
check --format gcc --strict examples/gamepad.json
check --json examples/macros.json
fmt examples/shooter.json
render --labels examples/shooter.json -o -
diff examples/shooter.json examples/macros.json
COMMANDS

echo "-- zuno-keymap.exe edit"
cp "$root/examples/shooter.json" "$work/edited.json"
(cd "$app" && exec wine64 ./zuno-keymap.exe edit --no-browser "$work/edited.json") \
    >"$work/edit.out" 2>&1 &
editor=$!
address=
for _ in $(seq 120); do
    address=$(grep -o 'http://127\.0\.0\.1:[0-9]*/?token=[0-9a-f]*' "$work/edit.out" || true)
    [ -n "$address" ] && break
    sleep 0.5
done
if [ -z "$address" ]; then
    fail "the editor printed no address:"
    cat "$work/edit.out"
else
    state=$(curl -sf "${address%%/\?*}/api/state?${address#*/\?}" || true)
    if grep -q '"joystick": *false' <<<"$state"; then
        echo "ok   /api/state with the printed token"
    else
        fail "/api/state answered: ${state:0:200}"
    fi
fi
kill "$editor" 2>/dev/null || true
wait "$editor" 2>/dev/null || true
stop_wine

echo "-- a host built against the SDK zip"
sdk="$folder/sdk"
mkdir -p "$sdk"
unzip -q "$dist/zuno-keymapmanager-$version-windows-x64-sdk.zip" -d "$sdk"
sdk="$sdk/zuno-keymapmanager-$version-windows-x64-sdk"
cmake -S "$here/host" -B "$work/host" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$root/cmake/mingw-w64.cmake" \
    -DCMAKE_PREFIX_PATH="$sdk" -DCMAKE_BUILD_TYPE=Release >"$work/host.log"
cmake --build "$work/host" >>"$work/host.log"
cp "$work/host/sdk-host.exe" "$sdk/bin/"
host_out=$(cd "$app" && wine64 "$sdk/bin/sdk-host.exe" examples/shooter.json 2>&1) || true
if [[ "$host_out" =~ ^$version\ [1-9][0-9]*$'\r'?$ ]]; then
    echo "ok   the host says: $host_out"
else
    fail "the host says: $host_out"
fi
stop_wine

echo "-- the web page"
tar -xzf "$dist/zuno-keymap-web-$version.tar.gz" -C "$work"
python3 -u -m http.server --bind 127.0.0.1 --directory "$work/zuno-keymap-web-$version" 0 \
    >"$work/server.out" 2>&1 &
server=$!
port=
for _ in $(seq 50); do
    port=$(sed -n 's/.* port \([0-9]*\) .*/\1/p' "$work/server.out" | head -1)
    [ -n "$port" ] && break
    sleep 0.2
done
cmake -DNPM="$(command -v npm)" -DSOURCE="$root/tests/browser" -DWORK="$root/build/browser" \
    -P "$here/NpmInstall.cmake"
if node "$here/web_page.cjs" "$root/build/browser" "http://127.0.0.1:$port/"; then
    echo "ok   the page loads its module and shows the keymap"
else
    fail "the web page did not become ready"
fi
kill "$server"
wait "$server" 2>/dev/null || true

[ "$failed" -eq 0 ] && echo "-- release $version: every check passed"
exit "$failed"
