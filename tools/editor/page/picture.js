// The server's picture of the document, inline, with the editor's layer on
// top: selection, handles, snapping guides, test-mode marks. Items are the
// <g data-item-index> groups of the picture. A drag moves the groups on
// screen at once and reports one distance, as a fraction of the screen, when
// the pointer is released; the server's next picture then shows the result.
// A pointer step touches only the dragged groups, and a new picture replaces
// only the groups that differ from those shown, so both cost as much with a
// thousand items as with a few.

import { motionParts, recordedParts } from './motion.js';
import { unansweredMoves } from './operations.js';
import { changedItems, pictureParts } from './patching.js';
import { SnapLines, snapOffset } from './snapping.js';
import { markerOf, valueAt } from './store.js';

const SVG = 'http://www.w3.org/2000/svg';

function svgElement(tag, attributes = {}) {
  const node = document.createElementNS(SVG, tag);
  for (const [name, value] of Object.entries(attributes)) node.setAttribute(name, value);
  return node;
}

// Members of the item at `member` ("a.b").

/// Points of a "(x,y);(x,y)" text.
export function pointsOf(text) {
  return [...String(text || '').matchAll(/\(\s*(-?[\d.]+)\s*,\s*(-?[\d.]+)\s*\)/g)]
    .map((m) => ({ x: Number(m[1]), y: Number(m[2]) }));
}

const overlaps = (p, r, box) => p.x + r > box.x && p.x - r < box.x + box.width &&
  p.y + r > box.y && p.y - r < box.y + box.height;

/// `p`, or the nearest spot below-right of it where a handle of radius `r`
/// covers none of `boxes`.
function clearOf(p, r, boxes) {
  if (!boxes.some((box) => overlaps(p, r, box))) return p;
  for (let step = 1; step <= 12; step++) {
    const at = { x: p.x + step * r, y: p.y + step * r };
    if (!boxes.some((box) => overlaps(at, r, box))) return at;
  }
  return { x: p.x + 13 * r, y: p.y + 13 * r };
}

/// {x0, y0}: the centre of a handle, a circle or a square.
function centreOfHandle(node) {
  if (node.hasAttribute('cx')) return { x0: Number(node.getAttribute('cx')), y0: Number(node.getAttribute('cy')) };
  const half = Number(node.getAttribute('width')) / 2;
  return { x0: Number(node.getAttribute('x')) + half, y0: Number(node.getAttribute('y')) + half };
}

// Places `node` by an animation held at one frame: the compositor moves it
// at once, where a changed style would have the browser sort the paint of
// every item of the page into layers again, at each step of a drag.
const held = new WeakMap();
function hold(node, frame) {
  const animation = held.get(node);
  if (animation) animation.effect.setKeyframes([frame, frame]);
  else held.set(node, node.animate([frame, frame], { duration: 1e9, fill: 'forwards' }));
}

export class Picture {
  /// `handlers`: select(ids, {add}), moveItems(ids, dx, dy), movePoint(id, member, point, dx, dy),
  /// setValue(id, member, value), press(point) for pick and record modes, bind(id),
  /// current(): the store's state now (the picture's may be a frame older).
  constructor(host, stage, handlers) {
    this.host = host;
    this.stage = stage;
    this.handlers = handlers;
    this.svg = null;
    this.shownSvg = null;
    this.parts = null;
    this.groups = [];
    this.drag = null;
    this.landing = null;  // a released drag awaiting its answer
    this.size = { width: 1920, height: 1080 };
    this.view = { zoom: 1 };
    host.addEventListener('pointerdown', (e) => this.down(e));
    host.addEventListener('pointermove', (e) => this.moveTo(e));
    host.addEventListener('pointerup', (e) => this.up(e));
    host.addEventListener('pointercancel', () => this.cancel());
    // No text is selected on the picture: the browser would otherwise look
    // for the end of a selection among all the items at each pointer move.
    host.addEventListener('selectstart', (e) => e.preventDefault());
    // A double click binds the item it hit, whatever was selected before:
    // the pointer is captured, so the hit is asked of the point itself.
    host.addEventListener('dblclick', (e) => {
      if (!this.state || this.handlers.current().mode !== 'edit') return;
      const group = this.groupOf(document.elementFromPoint(e.clientX, e.clientY));
      const id = group ? this.idOf(group) : this.pressed;
      if (id === undefined || id === null) return;
      this.handlers.select([id]);
      this.handlers.bind(id);
    });
  }

  groupOf(target) { return target && target.closest ? target.closest('g.item[data-item-index]') : null; }
  idOf(group) { return this.state.ids[Number(group.dataset.itemIndex)]; }
  // A handle names its item by the index in its path, as drawn.
  idOfHandle(handle) { return this.state.ids[Number(/^keymaps\[(\d+)\]/.exec(handle.dataset.path)[1])]; }
  items() { return this.groups.filter(Boolean); }

  /// Draws `state`; `unanswered` are the edits the server has not answered yet.
  render(state, unanswered, shapes) {
    this.state = state;
    this.shapes = shapes;
    const fresh = state.svg !== this.shownSvg;
    if (fresh) this.show(state.svg);
    if (!this.svg) return;
    const pending = unansweredMoves(unanswered);
    // A drag's copies come down with the picture that shows their move.
    const landing = this.landing;
    if (landing && (fresh || !landing.ids.some((id) => pending.has(id)))) {
      this.landing = null;
      this.settle(landing);
    }
    const triggered = new Set(state.triggered.map((t) => t.index));
    const selected = new Set(state.selected);
    const hidden = new Set(state.hidden);
    for (const group of this.items()) {
      const index = Number(group.dataset.itemIndex);
      const id = state.ids[index];
      // Only what differs is touched: a style or attribute written again,
      // even unchanged, has the browser look at every item anew.
      if (group.classList.contains('selected') !== selected.has(id)) group.classList.toggle('selected');
      if (group.classList.contains('triggered') !== triggered.has(index)) group.classList.toggle('triggered');
      const display = hidden.has(id) ? 'none' : '';
      if (group.style.display !== display) group.style.display = display;
      const moved = pending.get(id);
      const dragging = this.drag && this.drag.kind === 'items' && this.drag.ids.includes(id);
      if (!dragging) {
        if (moved) group.setAttribute('transform', `translate(${moved.dx * this.size.width} ${moved.dy * this.size.height})`);
        else if (group.hasAttribute('transform')) group.removeAttribute('transform');
      }
    }
    if (!this.drag) this.drawOverlay(state, pending);
    this.fit(state);
    // For measurements: when the server's latest picture is on the page.
    if (fresh) performance.mark('picture-drawn');
  }

  /// Shows the picture `svgText`: the groups that changed, or all of it when
  /// its frame or its items did.
  show(svgText) {
    this.shownSvg = svgText;
    const parts = svgText ? pictureParts(svgText) : null;
    const changed = this.svg && this.svg.isConnected ? changedItems(this.parts, parts) : null;
    this.parts = parts;
    // Each of the items' pieces of text is the group of its index; the
    // markers of the groups kept keep their measured sizes.
    if (changed && this.groups.length === parts.items.length && this.patch(parts, changed)) {
      if (this.snapRadii) for (const index of changed) this.snapRadii[index] = undefined;
    } else {
      this.snapRadii = null;
      this.replace(svgText);
    }
    // Measured while the page is idle, not at the first step of a drag.
    const shown = this.shownSvg;
    const idle = window.requestIdleCallback || ((fn) => setTimeout(fn, 100));
    idle(() => { if (shown === this.shownSvg && !this.drag) this.measureRadii(); }, { timeout: 1000 });
  }

  /// Replaces the groups at `changed` by those of `parts`; false when they
  /// do not read, and the picture must be drawn anew.
  patch(parts, changed) {
    if (changed.length === 0) return true;
    const text = `${parts.root}${changed.map((index) => parts.items[index]).join('')}</svg>`;
    const parsed = new DOMParser().parseFromString(text, 'image/svg+xml').documentElement;
    const fresh = parsed.nodeName === 'svg' ? [...parsed.children] : [];
    if (fresh.length !== changed.length || changed.some((index) => !this.groups[index])) return false;
    changed.forEach((index, k) => {
      const group = document.importNode(fresh[k], true);
      this.groups[index].replaceWith(group);
      this.groups[index] = group;
    });
    this.keepDrag();
    return true;
  }

  replace(svgText) {
    if (!svgText) return;
    const parsed = new DOMParser().parseFromString(svgText, 'image/svg+xml');
    const svg = parsed.documentElement;
    if (svg.nodeName !== 'svg') return;
    this.svg = document.importNode(svg, true);
    // A group, not an image: its handles are controls of their own.
    this.svg.setAttribute('role', 'group');
    this.svg.setAttribute('aria-label', 'The screen with every item');
    // The screen's corner is the origin; a band above it may hold the legend.
    const box = this.svg.viewBox.baseVal;
    const screen = this.svg.querySelector('rect.screen');
    this.size = screen ? { width: screen.width.baseVal.value, height: screen.height.baseVal.value }
      : { width: box.width || 1920, height: box.height || 1080 };
    this.view = { width: box.width || this.size.width, height: box.height || this.size.height };
    this.overlay = svgElement('g', { class: 'editor-overlay' });
    this.svg.append(this.overlay);
    // A handle being moved by keys keeps the focus across the new picture.
    this.refocus = this.focusedHandle();
    this.host.replaceChildren(this.svg);
    this.groups = [];
    for (const group of this.svg.querySelectorAll('g.item[data-item-index]')) {
      this.groups[Number(group.dataset.itemIndex)] = group;
    }
    this.keepDrag();
  }

  // A drag under way keeps its item where the pointer has it.
  keepDrag() {
    if (!this.drag || this.drag.kind !== 'items') return;
    const lifted = Boolean(this.drag.layer);
    this.settle(this.drag);
    this.drag.groups = this.drag.ids.map((id) => this.groupById(id));
    if (lifted) this.lift(this.drag);
  }

  // For a drag, copies of the dragged groups go to a layer of their own,
  // which is moved. The layer sits in a cover fixed over the stage, outside
  // the scrolled picture: a change anywhere inside the stage has the
  // browser walk and repaint all the picture's items again, a change
  // outside it does not. The cover also takes the pointer, so that finding
  // what lies under it costs nothing, and the guides are lines moved and
  // shown the same way, never drawn anew. The boxes are read once a drag.
  lift(drag) {
    const stage = this.stage.getBoundingClientRect();
    const shown = this.host.getBoundingClientRect();
    const cover = document.createElement('div');
    cover.className = 'drag-cover';
    cover.setAttribute('aria-hidden', 'true');
    Object.assign(cover.style, { left: `${stage.left}px`, top: `${stage.top}px`,
      width: `${stage.width}px`, height: `${stage.height}px` });
    drag.layer = svgElement('svg', { class: 'drag-layer', viewBox: this.svg.getAttribute('viewBox'),
      preserveAspectRatio: this.svg.getAttribute('preserveAspectRatio') || 'xMidYMid meet' });
    Object.assign(drag.layer.style, { left: `${shown.left - stage.left}px`, top: `${shown.top - stage.top}px`,
      width: `${shown.width}px`, height: `${shown.height}px` });
    for (const group of drag.groups) {
      if (!group) continue;
      drag.layer.append(group.cloneNode(true));
      group.classList.add('lifted');
    }
    // Picture units to the cover's pixels.
    const m = drag.inverse.inverse();
    drag.toCover = { a: m.a, d: m.d, e: m.e - stage.left, f: m.f - stage.top };
    drag.guides = { x: document.createElement('div'), y: document.createElement('div') };
    drag.guides.x.className = 'guide guide-x';
    drag.guides.y.className = 'guide guide-y';
    cover.append(drag.layer, drag.guides.x, drag.guides.y);
    document.body.append(cover);
    drag.cover = cover;
    this.moveLayer(drag);
  }

  moveLayer(drag) {
    const { x, y } = drag.offset;
    hold(drag.layer, { transform: `translate(${x * drag.toCover.a}px, ${y * drag.toCover.d}px)` });
  }

  // The dragged groups back in the picture, where the pointer left them.
  settle(drag) {
    if (!drag.layer) return;
    drag.cover.remove();
    drag.cover = null;
    drag.layer = null;
    drag.guides = null;
    this.shownGuides = null;
    const { x, y } = drag.offset;
    for (const group of drag.groups) {
      if (!group) continue;
      group.classList.remove('lifted');
      group.setAttribute('transform', `translate(${x} ${y})`);
    }
  }

  groupById(id) { return this.groups[this.state.ids.indexOf(id)] || null; }

  // Pointer position in the picture's own units. A drag asks with the
  // picture's matrix of its start: asking the page for it at every step
  // would lay the whole picture out again after each move.
  point(e, inverse = (this.drag && this.drag.inverse) || this.inverse()) {
    if (!inverse) return { x: 0, y: 0 };
    const p = new DOMPoint(e.clientX, e.clientY).matrixTransform(inverse);
    return { x: p.x, y: p.y };
  }

  inverse() {
    const matrix = this.svg.getScreenCTM();
    return matrix ? matrix.inverse() : null;
  }

  /// The screen's shorter side, the unit of radii.
  side() { return Math.min(this.size.width, this.size.height); }

  // ---- the editor's layer --------------------------------------------------

  drawOverlay(state, pending) {
    if (!this.overlay) return;
    // Redrawn only when what it shows changed: a handle being looked at stays.
    const signature = JSON.stringify([this.shownSvg.length, state.version, state.mode, state.selected,
      state.triggered, state.motion, state.recorded, [...pending], this.handleRadius()]);
    if (signature === this.overlaySignature && this.overlay.isConnected && this.overlay.childElementCount) return;
    this.overlaySignature = signature;
    const parts = [];
    if (state.mode === 'test') {
      for (const t of state.triggered) {
        parts.push(svgElement('circle', { class: 'touch-shown', cx: t.rel_x * this.size.width,
          cy: t.rel_y * this.size.height, r: 14 }));
      }
      parts.push(...motionParts(state.motion));
    }
    if (state.mode === 'record') parts.push(...recordedParts(state.recorded, this.size));
    if (state.mode === 'edit' && state.selected.length === 1 && this.shapes) {
      const index = state.ids.indexOf(state.selected[0]);
      const item = state.doc && state.doc.keymaps[index];
      const moved = pending.get(state.selected[0]) || { dx: 0, dy: 0 };
      if (item) parts.push(...this.handlesOf(item, index, moved));
    }
    const lost = !document.activeElement || document.activeElement === document.body;
    const focused = this.focusedHandle() || (lost ? this.refocus : null);
    this.refocus = null;
    this.overlay.replaceChildren(...parts);
    if (focused) {
      const again = parts.find((part) => part.getAttribute('aria-label') === focused);
      if (again) again.focus();
    }
  }

  focusedHandle() {
    const now = document.activeElement;
    return now && now.classList && now.classList.contains('handle') ? now.getAttribute('aria-label') : null;
  }

  /// Where a handle of `item` is drawn, in picture units.
  handlesOf(item, index, moved) {
    const W = this.size.width;
    const H = this.size.height;
    const touch = item.rel_work_position || { rel_x: 0, rel_y: 0 };
    const px = (p) => ({ x: (p.rel_x + moved.dx) * W, y: (p.rel_y + moved.dy) * H });
    const pointOf = (member, nullIsTouch) => {
      const p = valueAt(item, member);
      if (!p || typeof p.rel_x !== 'number') return null;
      return p.rel_x === 0 && p.rel_y === 0 && nullIsTouch ? px(touch) : px(p);
    };
    const out = [];
    const r = this.handleRadius();
    const handle = (shape, attributes, member, label, extra = {}) => {
      const node = svgElement(shape, { class: `handle handle-${extra.kind || 'point'}`, tabindex: '0',
        role: 'button', 'aria-roledescription': 'handle', 'aria-label': `${label} of item ${index}`,
        'data-path': `keymaps[${index}].${member}`, 'data-member': member, ...attributes });
      Object.assign(node.dataset, extra.data || {});
      const tip = svgElement('title');
      tip.textContent = `${label} (${member})`;
      node.append(tip);
      out.push(node);
      return node;
    };
    const m = markerOf(item);
    const marker = m ? px({ rel_x: m.x, rel_y: m.y }) : px(touch);
    const blocked = [...this.captionBoxes(index, moved), { x: marker.x - r, y: marker.y - r, width: 2 * r, height: 2 * r }];
    for (const h of this.shapes.handles[item.type] || []) {
      if (h.member === 'icon.rel_position') continue;  // the item itself is grabbed
      if (h.kind === 'point') {
        const p = pointOf(h.member, h.null_is_touch);
        if (!p) continue;
        // A point under the marker or a caption is shown beside it, on a
        // leader, so the item and its words stay readable and grabbable.
        const at = clearOf(p, r, blocked);
        if (at !== p) out.push(svgElement('line', { class: 'handle-leader', x1: p.x, y1: p.y, x2: at.x, y2: at.y }));
        handle('circle', { cx: at.x, cy: at.y, r }, h.member, h.label);
      } else if (h.kind === 'radius') {
        const centre = h.centre ? pointOf(h.centre, true) : px(touch);
        if (!centre) continue;
        const reach = Math.abs(Number(valueAt(item, h.member)) || 0) * this.side();
        handle('circle', { cx: centre.x + reach, cy: centre.y, r }, h.member, h.label,
          { kind: 'radius', data: { cx: centre.x, cy: centre.y } });
      } else if (h.kind === 'area') {
        const area = valueAt(item, h.member) || {};
        const c = px(touch);
        const w = Math.abs(Number(area.rel_width) || 0) * W / 2;
        const hh = Math.abs(Number(area.rel_height) || 0) * H / 2;
        for (const [sx, sy, name] of [[1, 1, 'corner'], [1, 0, 'right edge'], [0, 1, 'bottom edge'],
          [-1, -1, 'corner'], [-1, 0, 'left edge'], [0, -1, 'top edge'], [1, -1, 'corner'], [-1, 1, 'corner']]) {
          handle('rect', { x: c.x + sx * w - r, y: c.y + sy * hh - r, width: 2 * r, height: 2 * r }, h.member,
            `${h.label} ${name}`, { kind: 'area', data: { cx: c.x, cy: c.y, sx, sy } });
        }
      } else if (h.kind === 'points') {
        pointsOf(valueAt(item, h.member)).forEach((p, k) => {
          const at = px({ rel_x: p.x, rel_y: p.y });
          handle('circle', { cx: at.x, cy: at.y, r }, h.member, `${h.label} ${k + 1}`,
            { kind: 'points', data: { point: k } });
        });
      }
    }
    return out;
  }

  /// A handle's radius in picture units: 12 CSS pixels, so that it is a
  /// 24-pixel target whatever the zoom.
  handleRadius() {
    const shown = this.host.clientWidth;
    return shown ? Math.round(12 * (this.view.width || this.size.width) / shown * 100) / 100 : 12;
  }

  /// The boxes of item `index`'s captions and labels, where handles must not sit.
  captionBoxes(index, moved) {
    const group = this.host.querySelector(`g.item[data-item-index="${index}"]`);
    if (!group) return [];
    const dx = moved.dx * this.size.width;
    const dy = moved.dy * this.size.height;
    return [...group.querySelectorAll('.caption, .label, .keycap')].map((node) => {
      const box = node.getBBox();
      return { x: box.x + dx, y: box.y + dy, width: box.width, height: box.height };
    });
  }

  // ---- pointer -------------------------------------------------------------

  down(e) {
    if (!this.svg || !this.state) return;
    // The picture takes the keyboard (and a field being edited commits, to
    // its own item) before the selection changes.
    this.pressed = null;
    // A drag whose release never came (another button, a lost capture), or
    // whose answer has not come yet, ends here.
    if (this.drag && this.drag.kind === 'items') this.settle(this.drag);
    if (this.landing) { this.settle(this.landing); this.landing = null; }
    if (document.activeElement !== this.host) this.host.focus({ preventScroll: true });
    const current = this.handlers.current();
    if (e.button === 1 || (e.button === 0 && this.spaceHeld)) { this.startPan(e); return; }
    if (e.button !== 0) return;
    const inverse = this.inverse();
    const p = this.point(e, inverse);
    if (current.mode === 'pick' || current.mode === 'record') {
      this.handlers.press({ x: p.x / this.size.width, y: p.y / this.size.height, down: true, time: e.timeStamp });
      this.host.setPointerCapture(e.pointerId);
      this.drag = { kind: 'press' };
      e.preventDefault();
      return;
    }
    if (current.mode !== 'edit') return;
    const handle = e.target.closest && e.target.closest('.handle');
    if (handle) {
      this.drag = { kind: 'handle', handle, start: p, inverse, moved: false, id: this.idOfHandle(handle),
        ...centreOfHandle(handle) };
      this.host.setPointerCapture(e.pointerId);
      e.preventDefault();
      return;
    }
    const group = this.groupOf(e.target);
    if (!group) { this.startBand(e, p, inverse, current.selected); return; }
    const id = this.idOf(group);
    this.pressed = id;
    let ids = current.selected;
    if (e.shiftKey || e.ctrlKey || e.metaKey) {
      this.handlers.select(ids.includes(id) ? ids.filter((x) => x !== id) : [...ids, id]);
      return;
    }
    if (!ids.includes(id)) { ids = [id]; this.handlers.select(ids); }
    const anchor = this.markerAt(this.state.doc.keymaps[Number(group.dataset.itemIndex)]) || p;
    this.drag = { kind: 'items', ids, groups: ids.map((x) => this.groupById(x)), start: p, inverse, anchor,
      moved: false, offset: { x: 0, y: 0 } };
    this.host.setPointerCapture(e.pointerId);
    e.preventDefault();
  }

  moveTo(e) {
    if (!this.drag) return;
    if (this.drag.kind === 'pan') { this.pan(e); return; }
    if (this.drag.kind === 'press') return;
    const p = this.point(e, this.drag.inverse);
    if (this.drag.kind === 'band') { this.stretchBand(p); return; }
    let dx = p.x - this.drag.start.x;
    let dy = p.y - this.drag.start.y;
    this.drag.moved = this.drag.moved || Math.abs(dx) + Math.abs(dy) > 1;
    if (!this.drag.moved) return;
    if (this.drag.kind === 'items') {
      let guides = [];
      if (this.state.snap && !e.altKey) {
        const snapped = snapOffset({ x: this.drag.anchor.x + dx, y: this.drag.anchor.y + dy },
          this.targets(), this.size);
        dx += snapped.dx;
        dy += snapped.dy;
        guides = snapped.guides;
      }
      this.drag.offset = { x: dx, y: dy };
      if (this.drag.layer) this.moveLayer(this.drag);
      else this.lift(this.drag);
      this.drawGuides(guides);
    } else {
      const h = this.drag.handle;
      const x = this.drag.x0 + dx;
      const y = this.drag.y0 + dy;
      this.drag.offset = { x: dx, y: dy };
      const half = Number(h.getAttribute('width')) / 2;
      if (h.tagName === 'rect') { h.setAttribute('x', x - half); h.setAttribute('y', y - half); }
      else { h.setAttribute('cx', x); h.setAttribute('cy', y); }
    }
  }

  // ---- rubber band: a drag on the empty screen selects the items whose
  // markers it encloses; with Ctrl or Shift, in addition to those selected.

  startBand(e, p, inverse, selected) {
    const add = e.shiftKey || e.ctrlKey || e.metaKey;
    this.drag = { kind: 'band', start: p, inverse, moved: false, base: add ? selected : [] };
    if (!add) this.handlers.select([]);
    this.host.setPointerCapture(e.pointerId);
    e.preventDefault();
  }

  stretchBand(p) {
    const { start, base } = this.drag;
    const box = { x: Math.min(start.x, p.x), y: Math.min(start.y, p.y),
      width: Math.abs(p.x - start.x), height: Math.abs(p.y - start.y) };
    this.drag.moved = this.drag.moved || box.width + box.height > 2;
    if (!this.drag.moved) return;
    const inside = [];
    for (const group of this.items()) {
      const id = this.idOf(group);
      const at = this.markerAt(this.state.doc.keymaps[Number(group.dataset.itemIndex)]);
      if (group.style.display !== 'none' && at && at.x >= box.x && at.x <= box.x + box.width &&
        at.y >= box.y && at.y <= box.y + box.height && !base.includes(id)) inside.push(id);
    }
    this.handlers.select([...base, ...inside]);
    this.overlaySignature = null;
    this.overlay.replaceChildren(svgElement('rect', { class: 'band', ...box }));
  }

  /// Where the document puts `item`'s marker (at its touch point while unset),
  /// in picture units: the true spot, wherever a crowd fans the drawing out.
  markerAt(item) {
    const p = item ? markerOf(item) : null;
    return p ? { x: p.x * this.size.width, y: p.y * this.size.height } : null;
  }

  // Centres and edges of the other items, for snapping: made once a drag,
  // with the markers' sizes measured once a picture.
  targets() {
    if (this.drag.targets) return this.drag.targets;
    this.measureRadii();
    const dragged = new Set(this.drag.groups);
    const list = [];
    this.groups.forEach((group, index) => {
      const at = dragged.has(group) ? null : this.markerAt(this.state.doc.keymaps[index]);
      if (at) list.push({ ...at, r: this.snapRadii[index] });
    });
    this.drag.targets = new SnapLines(list);
    return this.drag.targets;
  }

  measureRadii() {
    const radii = this.snapRadii || [];
    this.groups.forEach((group, index) => {
      if (radii[index] !== undefined) return;
      const marker = group.querySelector('.marker');
      radii[index] = marker ? marker.getBBox().width / 2 : 0;
    });
    this.snapRadii = radii;
  }

  drawGuides(guides) {
    const lines = this.drag && this.drag.guides;
    if (!lines) return;
    const shown = JSON.stringify(guides);
    if (shown === this.shownGuides) return;
    this.shownGuides = shown;
    const { a, d, e, f } = this.drag.toCover;
    for (const axis of ['x', 'y']) {
      const guide = guides.find((g) => g.axis === axis);
      const at = !guide ? 'none' : axis === 'x' ? `translateX(${guide.at * a + e}px)` : `translateY(${guide.at * d + f}px)`;
      hold(lines[axis], { opacity: guide ? 1 : 0, transform: at });
    }
  }

  up(e) {
    const drag = this.drag;
    if (!drag) return;
    this.drag = null;
    if (drag.kind === 'pan') return;
    if (drag.kind === 'band') { this.overlaySignature = null; this.handlers.changed(); return; }
    // A moved item's copies stay over the picture, letting the pointer
    // through, until the answer's picture shows the item there: put back
    // now, the item would have the browser paint the whole picture twice,
    // and the answer's frame would wait for the first.
    if (drag.kind === 'items' && drag.moved && drag.cover) {
      drag.cover.style.pointerEvents = 'none';
      this.landing = drag;
    } else if (drag.kind === 'items') this.settle(drag);
    if (drag.kind === 'press') {
      const p = this.point(e);
      this.handlers.press({ x: p.x / this.size.width, y: p.y / this.size.height, down: false, time: e.timeStamp });
      return;
    }
    if (!drag.moved) { this.handlers.changed(); return; }
    const { width: W, height: H } = this.size;
    if (drag.kind === 'items') {
      // The groups keep their place until the answer shows them there.
      this.handlers.moveItems(drag.ids, drag.offset.x / W, drag.offset.y / H);
      return;
    }
    this.handleReleased(drag, W, H);
  }

  handleReleased(drag, W, H) {
    const h = drag.handle;
    const member = h.dataset.member;
    const { x: dx, y: dy } = drag.offset;
    if (h.classList.contains('handle-radius')) {
      const r = Math.hypot(drag.x0 + dx - Number(h.dataset.cx), drag.y0 + dy - Number(h.dataset.cy));
      this.handlers.setValue(drag.id, member, Math.round(r / this.side() * 1e4) / 1e4);
    } else if (h.classList.contains('handle-area')) {
      const sx = Number(h.dataset.sx);
      const sy = Number(h.dataset.sy);
      // An edge changes one side only; a corner both, as one step.
      const group = `area-${Date.now()}`;
      const round = (v) => Math.round(Math.min(Math.max(v, 0.01), 2) * 1e4) / 1e4;
      if (sx) this.handlers.setValue(drag.id, `${member}.rel_width`, round(Math.abs(drag.x0 + dx - Number(h.dataset.cx)) * 2 / W), group);
      if (sy) this.handlers.setValue(drag.id, `${member}.rel_height`, round(Math.abs(drag.y0 + dy - Number(h.dataset.cy)) * 2 / H), group);
    } else {
      this.handlers.movePoint(drag.id, member, Number(h.dataset.point || 0), dx / W, dy / H);
    }
  }

  cancel() {
    if (!this.drag) return;
    if (this.drag.kind === 'items') this.settle(this.drag);
    this.drag = null;
    this.handlers.changed();
  }

  /// Nudges the handle `node` by (dx, dy) picture units, as a drag would.
  nudgeHandle(node, dx, dy) {
    const drag = { handle: node, id: this.idOfHandle(node), offset: { x: dx, y: dy },
      ...centreOfHandle(node) };
    this.handleReleased(drag, this.size.width, this.size.height);
  }

  // ---- view: zoom, pan, fit ------------------------------------------------

  fit(state) {
    if (!this.svg) return;
    const box = this.stage.getBoundingClientRect();
    const scale = Math.min((box.width - 16) / this.view.width, (box.height - 16) / this.view.height);
    const width = Math.max(50, this.view.width * scale * state.zoom);
    if (this.shownWidth !== width) {
      this.shownWidth = width;
      this.host.style.width = `${width}px`;
      this.host.style.height = `${width * this.view.height / this.view.width}px`;
    }
  }

  /// Zooms by `factor` keeping the picture point under (clientX, clientY) in place.
  zoomAt(factor, clientX, clientY, zoom) {
    const before = this.host.getBoundingClientRect();
    const fx = (clientX - before.left) / before.width;
    const fy = (clientY - before.top) / before.height;
    const next = Math.min(Math.max(zoom * factor, 0.25), 8);
    return { zoom: next, keep: () => {
      const after = this.host.getBoundingClientRect();
      this.stage.scrollLeft += after.left + fx * after.width - clientX;
      this.stage.scrollTop += after.top + fy * after.height - clientY;
    } };
  }

  startPan(e) {
    this.drag = { kind: 'pan', x: e.clientX, y: e.clientY };
    this.host.setPointerCapture(e.pointerId);
    e.preventDefault();
  }

  pan(e) {
    this.stage.scrollLeft -= e.clientX - this.drag.x;
    this.stage.scrollTop -= e.clientY - this.drag.y;
    this.drag.x = e.clientX;
    this.drag.y = e.clientY;
  }
}
