// Snapping a dragged point to other controls and to a grid, as layout tools
// do: the nearest line within reach wins, separately for x and y, and the
// lines snapped to are returned as guides to draw.

/// Grid spacing, in picture units, for a screen of `size`.
export const gridStep = (size) => size.width / 96;

/// How far (dx, dy) to shift `point` so that it sits on a target's centre or
/// edge, the screen's middle, or the grid, each within `reach` units;
/// `targets` are {x, y, r} in picture units. Guides: [{axis: 'x'|'y', at}].
export function snapOffset(point, targets, size, reach = 8) {
  const best = { x: null, y: null };
  const consider = (axis, at, strength) => {
    const distance = Math.abs(at - point[axis]);
    if (distance > reach) return;
    const current = best[axis];
    // Controls beat the grid at the same distance.
    if (!current || distance < current.distance || (distance === current.distance && strength > current.strength)) {
      best[axis] = { at, distance, strength, guide: strength > 0 };
    }
  };
  for (const t of targets) {
    for (const axis of ['x', 'y']) {
      consider(axis, t[axis], 2);
      if (t.r) { consider(axis, t[axis] - t.r, 1); consider(axis, t[axis] + t.r, 1); }
    }
  }
  const step = gridStep(size);
  for (const axis of ['x', 'y']) consider(axis, Math.round(point[axis] / step) * step, 0);
  const guides = [];
  for (const axis of ['x', 'y']) if (best[axis] && best[axis].guide) guides.push({ axis, at: best[axis].at });
  return {
    dx: best.x ? best.x.at - point.x : 0,
    dy: best.y ? best.y.at - point.y : 0,
    guides,
  };
}
