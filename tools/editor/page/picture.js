// The server's picture of the document, inline so that its items can be
// picked and dragged. Items are the <g data-item-index> groups; a drag moves
// the group on screen and reports the distance, as a fraction of the screen,
// when the pointer is released.

export class Picture {
  /// `handlers`: select(index), move(index, part, dx, dy) with part 'marker' or 'touch'.
  constructor(host, handlers) {
    this.host = host;
    this.handlers = handlers;
    this.selected = -1;
    this.drag = null;
    host.addEventListener('pointerdown', (e) => this.down(e));
    host.addEventListener('pointermove', (e) => this.moveTo(e));
    host.addEventListener('pointerup', (e) => this.up(e));
    host.addEventListener('pointercancel', () => this.cancel());
  }

  /// Shows `svgText` (from /api/render.svg).
  show(svgText) {
    const parsed = new DOMParser().parseFromString(svgText, 'image/svg+xml');
    const svg = parsed.documentElement;
    if (svg.nodeName !== 'svg') return;
    // Touch points just above their markers (captions stay on top), so that
    // both can be grabbed.
    for (const touch of svg.querySelectorAll('g.item .touch')) {
      const marker = touch.parentNode.querySelector('.marker');
      if (marker) marker.after(touch);
      touch.setAttribute('r', Math.max(Number(touch.getAttribute('r')) || 0, 6));
    }
    this.svg = document.importNode(svg, true);
    this.host.replaceChildren(this.svg);
    this.select(this.selected);
  }

  items() { return this.host.querySelectorAll('g.item[data-item-index]'); }

  select(index) {
    this.selected = index;
    for (const item of this.items()) {
      item.classList.toggle('selected', Number(item.dataset.itemIndex) === index);
    }
  }

  // The screen's size: the picture may hold a band outside it.
  size() {
    const screen = this.svg.querySelector('rect.screen');
    const width = screen ? screen.width.baseVal.value : this.svg.viewBox.baseVal.width;
    const height = screen ? screen.height.baseVal.value : this.svg.viewBox.baseVal.height;
    return { width: width || 1, height: height || 1 };
  }

  // Pointer position in the picture's own units.
  point(e) {
    const matrix = this.svg.getScreenCTM();
    if (!matrix) return { x: 0, y: 0 };
    const p = new DOMPoint(e.clientX, e.clientY).matrixTransform(matrix.inverse());
    return { x: p.x, y: p.y };
  }

  down(e) {
    if (e.button !== 0 || !this.svg) return;
    const group = e.target.closest && e.target.closest('g.item[data-item-index]');
    if (!group) return;
    const index = Number(group.dataset.itemIndex);
    const part = e.target.classList.contains('touch') ? 'touch' : 'marker';
    const moving = part === 'touch' ? e.target : group;
    this.drag = { index, part, moving, group, start: this.point(e), moved: false };
    group.classList.add('dragging');
    this.host.setPointerCapture(e.pointerId);
    this.handlers.select(index);
    e.preventDefault();
  }

  moveTo(e) {
    if (!this.drag) return;
    const p = this.point(e);
    const dx = p.x - this.drag.start.x;
    const dy = p.y - this.drag.start.y;
    this.drag.moved = this.drag.moved || Math.abs(dx) + Math.abs(dy) > 1;
    this.drag.moving.setAttribute('transform', `translate(${dx} ${dy})`);
  }

  up(e) {
    if (!this.drag) return;
    const drag = this.drag;
    this.drag = null;
    drag.group.classList.remove('dragging');
    if (!drag.moved) return;
    const p = this.point(e);
    const { width, height } = this.size();
    this.handlers.move(drag.index, drag.part, (p.x - drag.start.x) / width,
      (p.y - drag.start.y) / height);
  }

  cancel() {
    if (!this.drag) return;
    this.drag.moving.removeAttribute('transform');
    this.drag.group.classList.remove('dragging');
    this.drag = null;
  }
}
