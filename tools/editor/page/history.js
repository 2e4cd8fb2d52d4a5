// Undo and redo live on the server, as operations in the same queue as the
// edits. The page only names gestures: every operation of one gesture (a
// drag, a key held down, one action on many selected items) carries the same
// group, and the server makes one undo step of it.

export class Gestures {
  constructor() { this.count = 0; this.held = null; }

  /// A group of its own, for a gesture of `kind`.
  next(kind) { return `${kind}-${++this.count}`; }

  /// The group of a key press: the repeats of a held key continue the group
  /// of its first press; another key, or the same key pressed again, starts
  /// a new one.
  forKey(code, repeat) {
    if (!repeat || !this.held || this.held.code !== code) {
      this.held = { code, group: this.next('key') };
    }
    return this.held.group;
  }

  keyUp(code) { if (this.held && this.held.code === code) this.held = null; }
}

/// Whether Undo and Redo can do anything, counting edits not yet answered:
/// an edit on its way can be undone, and it ends what there was to redo.
export function undoState(state, unanswered) {
  const edits = unanswered.filter((o) => o.op !== 'undo' && o.op !== 'redo').length;
  return { canUndo: state.canUndo || edits > 0, canRedo: state.canRedo && edits === 0 };
}
