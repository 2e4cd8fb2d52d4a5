// The list of items beside the picture: type marker, key captions,
// description and problems of each, filtered by the search box. Selecting an
// entry selects the item, however it is hidden or covered on the picture.

import { element, keyedChildren } from './dom.js';
import { keyCaptions, matchingItems, problemsByItem } from './store.js';


// The picture's marker shapes as characters, for lists of text.
export const GLYPHS = { circle: '●', hexagon: '⬢', diamond: '◆', pentagon: '⬟', square: '■', capsule: '▬', bubble: '▰' };

export class ItemList {
  /// `handlers`: select(id, {add, range}), bind(id), toggleHidden(id), reorder(id, to).
  constructor(list, handlers) {
    this.list = list;
    this.handlers = handlers;
    this.rows = new Map();
    list.addEventListener('keydown', (e) => this.key(e));
  }

  /// `colours`, `keyMembers` and `markers` are the types' own, from the server.
  render(state, colours, keyMembers = {}, markers = {}) {
    const shown = matchingItems(state, state.search);
    const signature = JSON.stringify([state.version, state.search, state.selected, state.hidden, shown.length]);
    if (signature === this.signature) return;
    this.signature = signature;
    const focusedId = document.activeElement && this.list.contains(document.activeElement)
      ? Number(document.activeElement.closest('li').dataset.itemId) : null;
    // A row is made again only when what it shows changed.
    const problems = problemsByItem(state.report);
    const rows = shown.map(({ item, index, id }) => {
      const row = { id, item, index, problems: problems.get(index) || [], selected: state.selected.includes(id),
        hidden: state.hidden.includes(id), keys: keyCaptions(state, index, keyMembers[item.type]),
        first: !state.selected.length && index === 0, colour: colours[item.type], shape: markers[item.type] };
      return { key: JSON.stringify(row), make: () => this.row(row) };
    });
    // The list is a listbox: even its note of emptiness is an option, one that cannot be chosen.
    if (rows.length === 0) {
      rows.push({ key: 'empty',
        make: () => element('li', { class: 'empty', role: 'option', 'aria-disabled': 'true', text: 'No items' }) });
    }
    this.rows = keyedChildren(this.list, this.rows, rows);
    if (focusedId !== null) {
      const again = this.list.querySelector(`li[data-item-id="${focusedId}"]`);
      if (again) again.focus();
    }
  }

  row({ id, item, index, problems, selected, hidden, keys: captions, first, colour, shape }) {
    const keys = captions || 'no key';
    const description = (item.icon && item.icon.description) || '';
    const li = element('li', { role: 'option', tabindex: selected || first ? 0 : -1,
      'aria-selected': selected ? 'true' : 'false', 'data-item-id': id, 'data-item-index': index,
      class: `${hidden ? 'hidden ' : ''}${problems.length ? 'has-problems' : ''}`,
      'aria-label': `${item.type} ${keys}${description ? `, ${description}` : ''}${problems.length ? `, ${problems.length} problems` : ''}${hidden ? ', hidden' : ''}` },
    element('span', { class: 'marker-glyph', style: `color:${colour || '#fff'}`, 'aria-hidden': 'true',
      text: GLYPHS[shape] || '●' }),
    element('span', { class: 'caption', text: keys, title: keys }),
    element('span', { class: 'type', text: item.type }),
    element('span', { class: 'description', text: description }),
    problems.length ? element('span', { class: 'problems', text: `⚠ ${problems.length}`, title: problems.map((p) => p.message).join('\n') }) : '');
    // Not a control of its own: an option holds none. The keyboard's way is H.
    const eye = element('span', { class: 'eye', 'aria-hidden': 'true', title: `${hidden ? 'Show' : 'Hide'} (H)`,
      text: hidden ? '◌' : '●' });
    eye.addEventListener('click', (e) => { e.stopPropagation(); this.handlers.toggleHidden(id); });
    li.append(eye);
    li.addEventListener('click', (e) => this.handlers.select(id, { add: e.ctrlKey || e.metaKey, range: e.shiftKey }));
    return li;
  }

  key(e) {
    const li = e.target.closest('li[data-item-id]');
    if (!li) return;
    const id = Number(li.dataset.itemId);
    if ((e.key === 'ArrowDown' || e.key === 'ArrowUp') && e.altKey) {
      // Alt+arrows move the item in the document's order (drawn later is on top).
      e.preventDefault();
      this.handlers.reorder(id, Number(li.dataset.itemIndex) + (e.key === 'ArrowDown' ? 1 : -1));
    } else if (e.key === 'ArrowDown' || e.key === 'ArrowUp') {
      e.preventDefault();
      const next = e.key === 'ArrowDown' ? li.nextElementSibling : li.previousElementSibling;
      if (next && next.dataset.itemId) {
        next.focus();
        this.handlers.select(Number(next.dataset.itemId), { add: false, range: e.shiftKey });
      }
    } else if (e.key === ' ') {
      e.preventDefault();
      this.handlers.select(id, { add: e.ctrlKey || e.metaKey, range: e.shiftKey });
    } else if (e.key === 'Enter') {
      // Enter binds, here as on the picture.
      e.preventDefault();
      this.handlers.select(id, { add: false, range: false });
      this.handlers.bind(id);
    } else if (e.key.toLowerCase() === 'h' && !e.ctrlKey) {
      this.handlers.toggleHidden(id);
    }
  }
}
