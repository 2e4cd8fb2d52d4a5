// Aligning and distributing selected items by their markers, as layout
// tools do: the result is a move for each item, sent as one gesture.

import { markerOf } from './store.js';

/// Moves [{id, dx, dy}] that line up `entries` ([{id, item}]): 'left',
/// 'centre', 'right', 'top', 'middle', 'bottom', or evenly spaced
/// ('distribute-h', 'distribute-v') between the outermost two.
export function arrange(how, entries) {
  const points = entries.filter((e) => e.item).map((e) => ({ id: e.id, ...(markerOf(e.item) || { x: 0, y: 0 }) }));
  if (points.length < 2) return [];
  const xs = points.map((p) => p.x);
  const ys = points.map((p) => p.y);
  const target = {
    left: { x: Math.min(...xs) }, right: { x: Math.max(...xs) },
    centre: { x: (Math.min(...xs) + Math.max(...xs)) / 2 },
    top: { y: Math.min(...ys) }, bottom: { y: Math.max(...ys) },
    middle: { y: (Math.min(...ys) + Math.max(...ys)) / 2 },
  }[how];
  if (target) {
    return points.map((p) => ({ id: p.id, dx: target.x === undefined ? 0 : target.x - p.x,
      dy: target.y === undefined ? 0 : target.y - p.y })).filter((m) => m.dx || m.dy);
  }
  const axis = how === 'distribute-h' ? 'x' : how === 'distribute-v' ? 'y' : null;
  if (!axis || points.length < 3) return [];
  const sorted = [...points].sort((a, b) => a[axis] - b[axis]);
  const first = sorted[0][axis];
  const step = (sorted[sorted.length - 1][axis] - first) / (sorted.length - 1);
  return sorted.map((p, i) => ({ id: p.id, dx: axis === 'x' ? first + step * i - p.x : 0,
    dy: axis === 'y' ? first + step * i - p.y : 0 })).filter((m) => Math.abs(m.dx) + Math.abs(m.dy) > 1e-9);
}
