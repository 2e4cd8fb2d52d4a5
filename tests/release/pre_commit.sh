#!/usr/bin/env bash
# The hooks of .pre-commit-hooks.yaml, as another repository uses them: Debian's
# pre-commit runs them from this repository (try-repo clones it from its path,
# so the hooks file must be committed) on a scratch repository holding a good,
# a broken and an unformatted keymap, with the tool on PATH.
#   pre_commit.sh SOURCE_ROOT TOOL WORK
set -euo pipefail
root=$1 tool=$2 work=$3
rm -rf "$work" && mkdir -p "$work/repo" "$work/bin"
ln -s "$tool" "$work/bin/zuno-keymap"
export PATH="$work/bin:$PATH" PRE_COMMIT_HOME="$work/cache" GIT_CONFIG_NOSYSTEM=1

cd "$work/repo"
git init -q .
cp "$root/examples/shooter.json" good.json
sed '0,/"type": "Fire"/s//"type": "Fier"/' good.json >broken.json
python3 -c 'import json, sys; print(json.dumps(json.load(open(sys.argv[1]))))' good.json >compact.json
git add good.json broken.json compact.json

failed=0
# hook  expected status  what the output must hold (_ for a space)  what it must not  files
while read -r hook expected holds lacks files; do
    holds=${holds//_/ } status=0
    read -r -a selection <<<"${files:---all-files}"
    [ -n "$files" ] && selection=(--files "${selection[@]}")
    out=$(pre-commit try-repo "$root" "$hook" "${selection[@]}" 2>&1) || status=$?
    if [ "$status" -ne "$expected" ] || ! grep -qF -- "$holds" <<<"$out" || grep -qF -- "$lacks" <<<"$out"; then
        echo "FAIL $hook: status $status (want $expected), wanted '$holds' and no '$lacks':"
        echo "$out"
        failed=1
    else
        echo "ok   $hook ${selection[*]}"
    fi
done <<'CASES'
zuno-keymap-check 1 broken.json:133:21: good.json:
zuno-keymap-fmt   1 +++_compact.json good.json good.json compact.json
CASES
exit $failed
