// Snapping a dragged point to other controls and to a grid, as layout tools
// do: the nearest line within reach wins, separately for x and y, and the
// lines snapped to are returned as guides to draw.

/// Grid spacing, in picture units, for a screen of `size`.
export const gridStep = (size) => size.width / 96;

/// The lines of the controls a point may snap to: each control's centre and,
/// with a radius, its edges, on both axes. A line snaps whatever the distance
/// along it, so the lines are filed by position on their own axis, in cells
/// as wide as the reach: a point looks at the few cells around it, however
/// many controls the screen holds.
export class SnapLines {
  /// `targets` are {x, y, r} in picture units.
  constructor(targets, reach = 8) {
    this.reach = reach;
    this.cells = { x: new Map(), y: new Map() };
    for (const t of targets) {
      for (const axis of ['x', 'y']) {
        this.file(axis, t[axis], 2);
        if (t.r) { this.file(axis, t[axis] - t.r, 1); this.file(axis, t[axis] + t.r, 1); }
      }
    }
  }

  file(axis, at, strength) {
    const key = Math.floor(at / this.reach);
    const cell = this.cells[axis].get(key);
    if (cell) cell.push({ at, strength });
    else this.cells[axis].set(key, [{ at, strength }]);
  }

  /// The lines on `axis` within reach of `at`.
  near(axis, at) {
    const found = [];
    for (let key = Math.floor((at - this.reach) / this.reach); key <= Math.floor((at + this.reach) / this.reach); key++) {
      const cell = this.cells[axis].get(key);
      if (cell) found.push(...cell);
    }
    return found;
  }
}

/// How far (dx, dy) to shift `point` so that it sits on a line of `lines`
/// (SnapLines, or the {x, y, r} targets to make them of), the screen's
/// middle or the grid, each within reach. Guides: [{axis: 'x'|'y', at}].
export function snapOffset(point, lines, size) {
  const index = lines instanceof SnapLines ? lines : new SnapLines(lines);
  const best = { x: null, y: null };
  const consider = (axis, at, strength) => {
    const distance = Math.abs(at - point[axis]);
    if (distance > index.reach) return;
    const current = best[axis];
    // Controls beat the grid at the same distance.
    if (!current || distance < current.distance || (distance === current.distance && strength > current.strength)) {
      best[axis] = { at, distance, strength, guide: strength > 0 };
    }
  };
  const step = gridStep(size);
  for (const axis of ['x', 'y']) {
    for (const line of index.near(axis, point[axis])) consider(axis, line.at, line.strength);
    consider(axis, (axis === 'x' ? size.width : size.height) / 2, 2);
    consider(axis, Math.round(point[axis] / step) * step, 0);
  }
  const guides = [];
  for (const axis of ['x', 'y']) if (best[axis] && best[axis].guide) guides.push({ axis, at: best[axis].at });
  return {
    dx: best.x ? best.x.at - point.x : 0,
    dy: best.y ? best.y.at - point.y : 0,
    guides,
  };
}
