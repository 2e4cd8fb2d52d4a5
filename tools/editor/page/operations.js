// Edits as operations, sent to the server in the order they were made. The
// server applies each to the document it holds, so an edit never carries a
// copy of the document that could be out of date: a move says "by so much",
// a member change says "this member of that item". Items are named by the
// server's identifiers, which stay with an item whatever is added or deleted
// before it.
//
// One batch is in flight at a time; what is made meanwhile waits and goes in
// the next batch, with consecutive moves of one item in one gesture summed.
// A lost answer is asked again with the same sequence number, which the
// server recognises, so nothing is applied twice and nothing is dropped.

export const op = {
  move: (item, dx, dy, group) => ({ op: 'move', item, dx, dy, ...(group ? { group } : {}) }),
  set: (item, member, value, group) =>
    ({ op: 'set', ...(item === null ? {} : { item }), member, value, ...(group ? { group } : {}) }),
  remove: (item, member, group) =>
    ({ op: 'remove', ...(item === null ? {} : { item }), member, ...(group ? { group } : {}) }),
  add: (type, at) => ({ op: 'add', type, ...(at ? { at } : {}) }),
  duplicate: (item, group) => ({ op: 'duplicate', item, ...(group ? { group } : {}) }),
  delete: (item, group) => ({ op: 'delete', item, ...(group ? { group } : {}) }),
  reorder: (item, to) => ({ op: 'reorder', item, to }),
  undo: () => ({ op: 'undo' }),
  redo: () => ({ op: 'redo' }),
};

/// Adds `next` to the end of `pending`, summed into the last operation when
/// both move the same item in the same gesture.
export function enqueue(pending, next) {
  const last = pending[pending.length - 1];
  if (last && last.op === 'move' && next.op === 'move' && last.item === next.item &&
      last.group && last.group === next.group) {
    pending[pending.length - 1] = { ...last, dx: last.dx + next.dx, dy: last.dy + next.dy,
      resolves: [...(last.resolves || []), ...(next.resolves || [])] };
  } else {
    pending.push(next);
  }
  return pending;
}

/// The whole-item moves not yet reflected in what the server last answered,
/// summed by item (a point's move changes no item's place).
export function unansweredMoves(ops) {
  const moves = new Map();
  for (const o of ops) {
    if (o.op !== 'move' || o.member) continue;
    const sum = moves.get(o.item) || { dx: 0, dy: 0 };
    moves.set(o.item, { dx: sum.dx + o.dx, dy: sum.dy + o.dy });
  }
  return moves;
}

const wait = (ms) => new Promise((resolve) => setTimeout(resolve, ms));

export class OpQueue {
  /// `send(body)` posts {client, seq, ops} and resolves to {status, ok, data};
  /// `answered(data, ops)` gets each answer with the operations it answers;
  /// `trouble(message)` is told when the server cannot be reached (and again
  /// with null once it can).
  constructor(send, answered, trouble = () => {}, { client, retryDelay = 250 } = {}) {
    this.send = send;
    this.answered = answered;
    this.trouble = trouble;
    this.client = client || Math.random().toString(36).slice(2) + Date.now().toString(36);
    this.seq = 0;
    this.pending = [];
    this.inflight = null;
    this.retryDelay = retryDelay;
    this.waiters = [];
  }

  /// Queues one operation; the promise resolves to its result ({ok, error, ...}).
  push(operation) {
    return new Promise((resolve) => {
      enqueue(this.pending, { ...operation, resolves: [resolve] });
      this.pump();
    });
  }

  /// Operations sent or waiting, not yet answered.
  unanswered() { return [...(this.inflight || []), ...this.pending]; }

  busy() { return this.inflight !== null || this.pending.length > 0; }

  /// Resolves once every operation queued so far is answered.
  idle() {
    if (!this.busy()) return Promise.resolve();
    return new Promise((resolve) => this.waiters.push(resolve));
  }

  async pump() {
    if (this.inflight || this.pending.length === 0) return;
    const batch = this.pending.splice(0);
    this.inflight = batch;
    const seq = ++this.seq;
    const ops = batch.map(({ resolves, ...o }) => o);
    let answer;
    for (let attempt = 0; ; attempt++) {
      answer = await this.send({ client: this.client, seq, ops });
      // 4xx: the request itself is wrong and would be refused again.
      if (answer.ok || (answer.status >= 400 && answer.status < 500)) break;
      this.trouble(`Not reached the editor, trying again: ${(answer.data && answer.data.error) || answer.status}`);
      await wait(Math.min(this.retryDelay * 2 ** attempt, 4000));
    }
    this.trouble(null);
    const results = answer.ok && answer.data && Array.isArray(answer.data.results) ? answer.data.results
      : batch.map(() => ({ ok: false, error: (answer.data && answer.data.error) || `HTTP ${answer.status}` }));
    this.inflight = null;
    if (answer.ok) this.answered(answer.data, batch);
    batch.forEach((o, i) => (o.resolves || []).forEach((resolve) => resolve(results[i] || { ok: false })));
    if (!answer.ok) this.answered(null, batch, results);
    if (this.pending.length > 0) this.pump();
    else this.waiters.splice(0).forEach((resolve) => resolve());
  }
}
