// The server's picture as text, cut into its frame (the screen, the legend,
// everything outside the items) and one piece per item's group. An answered
// edit usually changes a few items: comparing the pieces with those shown
// finds them without parsing the rest. Markup inside a group escapes '<', so
// every "<g" and "</g>" in the text is a tag.

const ITEMS = '<g class="items">';
const GROUP_TAG = /<(\/?)g\b[^>]*?(\/?)>/g;

// The last picture cut, for the answer that patches it and the picture
// that shows it: a thousand items' text is cut once.
let last = { text: null, parts: null };

/// {root, head, tail, items}: the root's start tag, the text before the first
/// item, the text after the last, and each item's group; null for text that
/// has no items' group.
export function pictureParts(text) {
  if (text !== last.text) last = { text, parts: cut(text) };
  return last.parts;
}

/// The picture `text` with the groups of `groups` ({INDEX: group text}) in
/// place of its own, byte for byte what the server would have drawn; null
/// when it has no such items.
export function withGroups(text, groups) {
  const parts = text ? pictureParts(text) : null;
  if (!parts) return null;
  const indexes = Object.keys(groups).map(Number).sort((x, y) => x - y);
  if (indexes.some((index) => !(index in parts.items))) return null;
  const items = parts.items.slice();
  let joined = '';
  let kept = 0;
  for (const index of indexes) {
    // Groups name their index, so each is found once, after the one before.
    const at = text.indexOf(items[index], kept);
    joined += text.slice(kept, at) + groups[index];
    kept = at + items[index].length;
    items[index] = groups[index];
  }
  joined += text.slice(kept);
  last = { text: joined, parts: { ...parts, items } };
  return joined;
}

function cut(text) {
  const opened = text.indexOf(ITEMS);
  const root = /<svg\b[^>]*>/.exec(text);
  if (opened < 0 || !root) return null;
  const items = [];
  let depth = 0;
  let start = 0;
  let head = -1;
  GROUP_TAG.lastIndex = opened + ITEMS.length;
  for (let tag; (tag = GROUP_TAG.exec(text));) {
    const closing = tag[1] === '/';
    if (closing && depth === 0) {
      return { root: root[0], head: text.slice(0, head < 0 ? tag.index : head),
        tail: text.slice(tag.index), items };
    }
    if (depth === 0) {
      start = tag.index;
      if (head < 0) head = start;
    }
    if (closing) depth--;
    else if (!tag[2]) depth++;
    if (depth === 0) items.push(text.slice(start, GROUP_TAG.lastIndex));
  }
  return null;
}

/// The indexes of the items whose groups differ between `shown` and `next`
/// (pictureParts), or null when the frame or the number of items changed
/// and the picture must be drawn anew.
export function changedItems(shown, next) {
  if (!shown || !next || shown.items.length !== next.items.length || shown.head !== next.head ||
      shown.tail !== next.tail || shown.root !== next.root) return null;
  const changed = [];
  shown.items.forEach((group, index) => { if (group !== next.items[index]) changed.push(index); });
  return changed;
}
