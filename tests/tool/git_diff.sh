#!/usr/bin/env bash
# The README's git setup, in a repository of its own: `git diff` and
# `git log -p` show what a commit did to a keymap in the keymap's terms.
#   git_diff.sh TOOL WORKDIR EXAMPLE
set -euo pipefail

tool=$1
work=$2/git-diff
example=$3
rm -rf "$work"
mkdir -p "$work"
cd "$work"
git init -q .
git config user.email test@example.invalid
git config user.name test
# As the README says.
echo '*.json diff=keymap' >.gitattributes
git config diff.keymap.command \
    "sh -c '\"\$0\" diff \"\$2\" \"\$5\"; test \$? -le 1' \"$tool\""

cp "$example" keymap.json
git add .gitattributes keymap.json
git commit -qm first
"$tool" set keymap.json 'keymaps[1].key=Q' >/dev/null
git commit -qam rebind

out=$(git log -p -1 --ext-diff -- keymap.json)
grep -q 'rebound   keymaps\[1\] Fire "fire and aim": left_mouse -> Q' <<<"$out" ||
    { echo "git log -p shows no semantic diff:"; echo "$out"; exit 1; }
"$tool" set keymap.json 'keymaps[0].icon.description=run' >/dev/null
out=$(git diff)
grep -q 'changed   keymaps\[0\].icon.description: "walk" -> "run"' <<<"$out" ||
    { echo "git diff shows no semantic diff:"; echo "$out"; exit 1; }
echo "git diff and git log -p speak the keymap's terms"
