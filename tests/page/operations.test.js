// The edit queue: order, gestures summed, one batch in flight, lost answers
// retried under the same number, refusals leaving the rest in place.
import { test } from 'node:test';
import assert from 'node:assert/strict';
import { OpQueue, enqueue, op, unansweredMoves } from '../../tools/editor/page/operations.js';

test('consecutive moves of one gesture are summed, others kept apart', () => {
  const cases = [
    { name: 'same item and group', ops: [op.move(1, 0.1, 0, 'g'), op.move(1, 0.2, 0.1, 'g')], sent: 1, dx: 0.30000000000000004 },
    { name: 'another group', ops: [op.move(1, 0.1, 0, 'g'), op.move(1, 0.2, 0, 'h')], sent: 2 },
    { name: 'another item', ops: [op.move(1, 0.1, 0, 'g'), op.move(2, 0.2, 0, 'g')], sent: 2 },
    { name: 'no group', ops: [op.move(1, 0.1, 0), op.move(1, 0.2, 0)], sent: 2 },
    { name: 'an edit between', ops: [op.move(1, 0.1, 0, 'g'), op.set(1, 'a', 1, 'g'), op.move(1, 0.1, 0, 'g')], sent: 3 },
  ];
  for (const c of cases) {
    const pending = c.ops.reduce((list, o) => enqueue(list, o), []);
    assert.equal(pending.length, c.sent, c.name);
    if (c.dx !== undefined) assert.equal(pending[0].dx, c.dx, c.name);
  }
});

test('unanswered moves are summed by item, point moves and edits aside', () => {
  const point = { ...op.move(1, 0.5, 0.5), member: 'spell_info.rel_position' };
  const moves = unansweredMoves([op.move(1, 0.1, 0), op.set(1, 'x', 2), point, op.move(1, 0.1, 0.2), op.move(3, 0, 0.5)]);
  assert.deepEqual([...moves.keys()], [1, 3]);
  assert.ok(Math.abs(moves.get(1).dx - 0.2) < 1e-12);
  assert.equal(moves.get(3).dy, 0.5);
});

// A server that holds a number and answers each batch after `delay` ms.
function fakeServer({ failFirst = 0, refuse = () => false, delay = 1 } = {}) {
  const server = { x: 0, batches: [], seen: new Set(), failures: failFirst };
  server.send = async (body) => {
    await new Promise((r) => setTimeout(r, delay));
    server.batches.push(body);
    if (!server.seen.has(body.seq)) {
      server.seen.add(body.seq);
      server.results = body.ops.map((o) => {
        if (refuse(o)) return { ok: false, error: 'refused' };
        server.x += o.dx || 0;
        return { ok: true };
      });
    }
    if (server.failures > 0) { server.failures--; return { status: 0, ok: false, data: { error: 'lost' } }; }
    return { status: 200, ok: true, data: { results: server.results, x: server.x } };
  };
  return server;
}

test('thirty quick presses arrive as thirty steps, in order, one batch at a time', async () => {
  const server = fakeServer({ delay: 5 });
  const answers = [];
  const queue = new OpQueue(server.send, (data) => answers.push(data.x));
  for (let i = 0; i < 30; i++) queue.push(op.move(7, 1, 0));
  await queue.idle();
  assert.equal(server.x, 30);
  assert.ok(server.batches.length < 30, 'presses made while waiting go in one batch');
  assert.deepEqual(answers, [...answers].sort((a, b) => a - b));
});

test('a lost answer is asked again and applied once', async () => {
  const server = fakeServer({ failFirst: 2 });
  const troubles = [];
  const queue = new OpQueue(server.send, () => {}, (t) => troubles.push(t), { retryDelay: 1 });
  const result = await queue.push(op.move(1, 5, 0));
  assert.equal(result.ok, true);
  assert.equal(server.x, 5);
  assert.equal(new Set(server.batches.map((b) => b.seq)).size, 1);
  assert.equal(troubles[troubles.length - 1], null);
});

test('a refused edit is reported and the rest of the queue still applies', async () => {
  const server = fakeServer({ refuse: (o) => o.dx === 2 });
  const queue = new OpQueue(server.send, () => {});
  const results = await Promise.all([1, 2, 3].map((dx) => queue.push(op.move(dx, dx, 0))));
  assert.deepEqual(results.map((r) => r.ok), [true, false, true]);
  assert.equal(server.x, 4);
});
