// Undo and redo over whole document texts: every change the page makes is
// one step, whatever it touched.

export class History {
  constructor() { this.undoStack = []; this.redoStack = []; }

  /// Records that the document was `before` until now.
  record(before) { this.undoStack.push(before); this.redoStack = []; }
  canUndo() { return this.undoStack.length > 0; }
  canRedo() { return this.redoStack.length > 0; }
  /// The text to go back to from `current`, or null.
  undo(current) {
    if (!this.canUndo()) return null;
    this.redoStack.push(current);
    return this.undoStack.pop();
  }
  redo(current) {
    if (!this.canRedo()) return null;
    this.undoStack.push(current);
    return this.redoStack.pop();
  }
  /// Takes back the step just undone or redone when the server refused it.
  revert(direction) {
    if (direction === 'undo') this.undoStack.push(this.redoStack.pop());
    else this.redoStack.push(this.undoStack.pop());
  }
}
