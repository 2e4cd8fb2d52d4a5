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
