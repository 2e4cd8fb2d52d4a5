#!/usr/bin/env bash
# Builds a four-item keymap the way a script would, with the tool alone: a
# Swipehold on WASD, Fire on the left mouse button, a Spell on Q and a Macro
# on F. The result must pass the strict check and render with all four items.
#   four_items.sh TOOL WORKDIR
set -euo pipefail

tool=$1
work=$2
mkdir -p "$work"
doc=$work/four-items.json
rm -f "$doc"

"$tool" new --document >"$doc"
"$tool" add "$doc" Swipehold --key W --key D --key S --key A --at 0.18,0.72
"$tool" set "$doc" 'keymaps[0].rel_radius=0.08'
"$tool" add "$doc" Fire --key mouse:left --at 0.86,0.68
# A key object as `key` prints it goes into a document as it is.
"$tool" add "$doc" Spell --at 0.7,0.86
"$tool" set "$doc" "keymaps[2].key=$("$tool" key keyboard Q)"
"$tool" add "$doc" Macro --key F --at 0.5,0.5
"$tool" set "$doc" 'keymaps[3].press_actions=["press 960,540","sleep 50","release 960,540"]' \
    'keymaps[3].icon.description=tap the centre'

"$tool" check --strict "$doc"
"$tool" list "$doc"

items=$("$tool" render "$doc" | grep -o '<g class="item"' | wc -l)
if [ "$items" -ne 4 ]; then
    echo "render drew $items items, not 4" >&2
    exit 1
fi
