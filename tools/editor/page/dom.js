// Making page elements: one helper for every view.

/// A new `tag` element with `attributes` ("text" sets its text; false, null
/// and undefined leave an attribute out) and `children`.
export function element(tag, attributes = {}, ...children) {
  const node = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (value === undefined || value === null || value === false) continue;
    if (name === 'text') node.textContent = value;
    else node.setAttribute(name, value === true ? '' : value);
  }
  node.append(...children);
  return node;
}

/// Shows one node for each of `rows` ({key, make()}) in `parent`: the node
/// shown before for the same key is kept (`shown`, key -> node, is what the
/// last call returned), and while the order holds only the changed nodes
/// are replaced, since a list of a thousand rows made anew costs a long
/// layout. Returns the map for the next call.
export function keyedChildren(parent, shown, rows) {
  const next = new Map();
  const nodes = rows.map(({ key, make }) => {
    let unique = key;
    while (next.has(unique)) unique += '+';
    const node = shown.get(unique) || make();
    next.set(unique, node);
    return node;
  });
  const children = parent.children;
  const inPlace = nodes.length > 0 && children.length === nodes.length &&
    nodes.every((node, i) => children[i] === node || node.parentNode !== parent);
  if (inPlace) nodes.forEach((node, i) => { if (children[i] !== node) children[i].replaceWith(node); });
  else parent.replaceChildren(...nodes);
  return next;
}
