#!/usr/bin/env bash
# The README's git setup, in a repository of its own: `git diff` and
# `git log -p` show what a commit did to a keymap in the keymap's terms. The
# setup lines are read from the README itself, so the two cannot drift.
#   git_diff.sh TOOL WORKDIR EXAMPLE
set -euo pipefail

tool=$1
work=$2/git-diff
example=$3
readme=$(cd "$(dirname "$0")/../.." && pwd)/README.md
rm -rf "$work"
mkdir -p "$work/bin"
ln -s "$tool" "$work/bin/zuno-keymap"
export PATH="$work/bin:$PATH"
cd "$work"
git init -q repo
cd repo
git config user.email test@example.invalid
git config user.name test
setup=$(grep -E '^(echo .\*\.json diff=keymap|git config diff\.keymap\.command )' "$readme")
[ "$(wc -l <<<"$setup")" -eq 2 ] || { echo "README.md has no git setup:"; echo "$setup"; exit 1; }
eval "$setup"

# A name that reads as an option must still be a file name.
for name in keymap.json -.json; do
    cp "$example" ./"$name"
done
git add .gitattributes keymap.json ./-.json
git commit -qm first
zuno-keymap set keymap.json 'keymaps[1].key=Q' >/dev/null
git commit -qam rebind

out=$(git log -p -1 --ext-diff -- keymap.json)
grep -q 'rebound   keymaps\[1\] Fire "fire and aim": left_mouse -> Q' <<<"$out" ||
    { echo "git log -p shows no semantic diff:"; echo "$out"; exit 1; }
zuno-keymap set keymap.json 'keymaps[0].icon.description=run' >/dev/null
out=$(git diff)
grep -q 'changed   keymaps\[0\].icon.description: "walk" -> "run"' <<<"$out" ||
    { echo "git diff shows no semantic diff:"; echo "$out"; exit 1; }
# git names a changed file of the work tree as it is, "-.json".
zuno-keymap set ./-.json 'keymaps[1].key=Q' >/dev/null
out=$(git diff -- ./-.json)
grep -q 'rebound   keymaps\[1\] Fire' <<<"$out" ||
    { echo "git diff shows no semantic diff for -.json:"; echo "$out"; exit 1; }
# git hands the driver /dev/null for the side an added file did not have.
cp "$example" added.json
git add added.json
git commit -qm added
out=$(git log -p -1 --ext-diff -- added.json)
grep -q '^  added ' <<<"$out" ||
    { echo "git log -p shows no semantic diff for an added keymap:"; echo "$out"; exit 1; }
echo "git diff and git log -p speak the keymap's terms"
