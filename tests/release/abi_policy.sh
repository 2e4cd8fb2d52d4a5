#!/usr/bin/env bash
# scripts/abi on a tiny library built in several versions from one header: the
# check passes on the same ABI and on a new SONAME, and fails on a removed or
# changed function or type, and on an addition the record does not have yet.
#   abi_policy.sh SOURCE_ROOT WORK CXX
set -euo pipefail
root=$1 work=$2 cxx=$3
rm -rf "$work" && mkdir -p "$work/include"

cat >"$work/include/box.h" <<'H'
#pragma once
#define API __attribute__((visibility("default")))
struct Box {
    int width;
    int height;
#ifdef WIDER_BOX
    int depth;
#endif
};
#ifdef CHANGED_SIGNATURE
API long area(const Box& box, int scale);
#else
API int area(const Box& box);
#endif
#ifndef REMOVED
API Box grow(Box box);
#endif
#ifdef ADDED
API int perimeter(const Box& box);
#endif
H
cat >"$work/box.cpp" <<'C'
#include "box.h"
#ifdef CHANGED_SIGNATURE
long area(const Box& box, int scale) { return long(box.width) * box.height * scale; }
#else
int area(const Box& box) { return box.width * box.height; }
#endif
#ifndef REMOVED
Box grow(Box box) { return Box{box.width + 1, box.height + 1}; }
#endif
#ifdef ADDED
int perimeter(const Box& box) { return 2 * (box.width + box.height); }
#endif
C

# build NAME SONAME DEFINES...
build() {
    local name=$1 soname=$2
    shift 2
    mkdir -p "$work/$name"
    "$cxx" -shared -fPIC -g -fvisibility=hidden "$@" -I"$work/include" "$work/box.cpp" \
        -Wl,-soname,"$soname" -o "$work/$name/libbox.so"
}

abi() {
    bash "$root/scripts/abi" "$1" --record "$work/box.abi" --headers "$work/include" \
        "$work/$2/libbox.so"
}

build v1 libbox.so.1
abi update v1 >/dev/null

failed=0
# name  soname  expected status  words the output must hold  defines
while read -r name soname expected words defines; do
    # shellcheck disable=SC2086
    build "$name" "$soname" $defines
    status=0
    output=$(abi check "$name" 2>&1) || status=$?
    if [ "$status" -ne "$expected" ] || ! grep -q -- "${words//_/ }" <<<"$output"; then
        echo "FAIL $name: status $status (want $expected), output lacks '${words//_/ }':"
        echo "$output" | tail -5
        failed=1
    else
        echo "ok   $name"
    fi
done <<'CASES'
same        libbox.so.1 0 offers_what
removed     libbox.so.1 1 changed_incompatibly -DREMOVED
signature   libbox.so.1 1 changed_incompatibly -DCHANGED_SIGNATURE
wider-type  libbox.so.1 1 changed_incompatibly -DWIDER_BOX
added       libbox.so.1 1 scripts/abi_update_and_commit -DADDED
new-major   libbox.so.2 0 SONAME_moved -DCHANGED_SIGNATURE
CASES
exit $failed
