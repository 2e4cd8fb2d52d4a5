// What test mode and the recorder draw over the picture: the fingers a key
// moves, a macro's taps as they are played, and the steps being recorded.
// Everything is in picture units; the geometry comes from the document and
// the server's shapes, and a macro's lines are those the library accepts.

import { valueAt } from './store.js';

const SVG = 'http://www.w3.org/2000/svg';
const DIRECTIONS = { top: [0, -1], right: [1, 0], bottom: [0, 1], left: [-1, 0] };

// Longer scripts are shown in part: the picture is a preview, not a player.
const MAX_TAPS = 200;
const MAX_PLAY_MS = 10000;

function node(name, attributes, text) {
  const element = document.createElementNS(SVG, name);
  for (const [key, value] of Object.entries(attributes)) element.setAttribute(key, String(value));
  if (text !== undefined) element.textContent = text;
  return element;
}

/// The drag radius of `item` in picture units and the centre it is drawn
/// around: the shapes' radius named `label` (the first radius otherwise).
export function dragCircle(item, handles, size, label) {
  const radii = (handles || []).filter((h) => h.kind === 'radius');
  const h = radii.find((r) => r.label === label) || radii[0];
  const touch = item.rel_work_position || { rel_x: 0, rel_y: 0 };
  let centre = touch;
  const p = h && h.centre ? valueAt(item, h.centre) : null;
  if (p && typeof p.rel_x === 'number' && (p.rel_x !== 0 || p.rel_y !== 0)) centre = p;
  const side = Math.min(size.width, size.height);
  return { x: centre.rel_x * size.width, y: centre.rel_y * size.height,
    r: h ? Math.abs(Number(valueAt(item, h.member)) || 0) * side : 0 };
}

/// Where a pad's finger is with the direction keys `held` (["top", ...]):
/// at the rim toward their sum, or at the centre when they cancel out.
export function padFinger(circle, held) {
  let [dx, dy] = [0, 0];
  for (const role of held) {
    const [x, y] = DIRECTIONS[role] || [0, 0];
    dx += x;
    dy += y;
  }
  const length = Math.hypot(dx, dy);
  if (length === 0) return { x: circle.x, y: circle.y };
  return { x: circle.x + dx / length * circle.r, y: circle.y + dy / length * circle.r };
}

/// An aim from `from` toward `pointer`, no longer than `r`.
export function aimFinger(from, pointer, r) {
  const [dx, dy] = [pointer.x - from.x, pointer.y - from.y];
  const length = Math.hypot(dx, dy);
  if (length <= r || length === 0) return { x: pointer.x, y: pointer.y };
  return { x: from.x + dx / length * r, y: from.y + dy / length * r };
}

/// The taps of a script in time: [{at, x, y, n}], x and y fractions of the
/// screen, n counting from 1. `lines` are the editing form, whose points are
/// pixels of a `width` x `height` macro screen; the lines the library
/// refuses (`bad`, line numbers from 1, as its check gives them) are left
/// out, and so is what comes after the limits. A point taken from the mouse
/// has no place to show.
export function macroTaps(lines, bad, width, height) {
  const refused = new Set(bad);
  const taps = [];
  let at = 0;
  for (const [index, line] of lines.entries()) {
    if (refused.has(index + 1)) continue;
    const words = line.trim().split(/\s+/);
    if (words[0] === 'sleep' && words.length === 2) { at += Number(words[1]) || 0; continue; }
    for (const word of words.slice(1)) {
      const point = /^(-?\d+),(-?\d+)$/.exec(word);
      if (!point) continue;
      if (taps.length >= MAX_TAPS || at > MAX_PLAY_MS) return taps;
      taps.push({ at, x: Number(point[1]) / width, y: Number(point[2]) / height, n: taps.length + 1 });
    }
  }
  return taps;
}

/// The overlay's pieces for `motion` ({fingers: [{from, to}], taps: [{x, y, n}]},
/// picture units).
export function motionParts(motion) {
  if (!motion) return [];
  const parts = [];
  for (const { from, to } of motion.fingers || []) {
    parts.push(node('line', { class: 'finger-path', x1: from.x, y1: from.y, x2: to.x, y2: to.y }));
    parts.push(node('circle', { class: 'finger', cx: to.x, cy: to.y, r: 16 }));
  }
  for (const tap of motion.taps || []) parts.push(...numberedDot('macro-tap', tap));
  return parts;
}

/// A dot with its number, as taps and recorded steps are shown.
export function numberedDot(kind, { x, y, n }) {
  return [node('circle', { class: kind, cx: x, cy: y, r: 18 }),
    node('text', { class: `${kind}-number`, x, y: y + 6, 'text-anchor': 'middle' }, String(n))];
}

/// The recorder's steps so far ([{kind, from, to}], fractions of the screen),
/// numbered in the order they were made: a dot where each began and a
/// line along each drag.
export function recordedParts(events, size) {
  const parts = [];
  let n = 0;
  for (const e of events || []) {
    if (!e.from) continue;
    n += 1;
    const from = { x: e.from.x * size.width, y: e.from.y * size.height };
    if (e.kind === 'drag') {
      parts.push(node('line', { class: 'finger-path', x1: from.x, y1: from.y,
        x2: e.to.x * size.width, y2: e.to.y * size.height }));
    }
    parts.push(...numberedDot('recorded-step', { ...from, n }));
  }
  return parts;
}
