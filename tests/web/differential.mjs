// The keymap module against the native tool, byte for byte: for every
// example and the documents of the fuzz corpus, the module's check report
// and picture must equal what `zuno-keymap check --json NAME` and
// `zuno-keymap render NAME` print, run beside the file, and the editor's
// session must take each one as an edit or refuse it with the contract's
// statuses. Prints the module's
// sizes and the time of an edit round trip on a 200-item document; neither
// decides the outcome.
//
//   node tests/web/differential.mjs BUNDLE TOOL [LIMIT]
// BUNDLE is the folder scripts/web wrote, TOOL the native zuno-keymap, LIMIT
// the most corpus documents to compare (default 300).

import { spawnSync } from 'node:child_process';
import fs from 'node:fs';
import { createRequire } from 'node:module';
import path from 'node:path';
import { fileURLToPath } from 'node:url';
import zlib from 'node:zlib';

const [bundle, toolGiven, limitText] = process.argv.slice(2);
const tool = toolGiven && path.resolve(toolGiven);
if (!bundle || !toolGiven) {
  console.error('usage: node differential.mjs BUNDLE TOOL [LIMIT]');
  process.exit(2);
}
const source = path.resolve(path.dirname(fileURLToPath(import.meta.url)), '../..');
const glue = path.join(path.resolve(bundle), 'zuno-keymap-module.js');
const wasm = path.join(path.resolve(bundle), 'zuno-keymap-module.wasm');

// The binary is handed over whole: node's fetch cannot read a file path.
const createKeymapModule = createRequire(import.meta.url)(glue);
const module = await createKeymapModule({ wasmBinary: fs.readFileSync(wasm) });

function documents() {
  const list = (folder, keep) => fs.readdirSync(folder).filter(keep).sort()
    .map((name) => path.join(folder, name));
  const corpus = list(path.join(source, 'fuzz/corpus/document'), () => true);
  return [...list(path.join(source, 'examples'), (name) => name.endsWith('.json')),
    ...corpus.slice(0, Number(limitText || 300))];
}

function native(args, cwd) {
  const run = spawnSync(tool, args, { cwd, maxBuffer: 1 << 28 });
  if (run.error) throw run.error;
  return run;
}

// What differs first, for the report: the byte offset and a little context.
function firstDifference(a, b) {
  let i = 0;
  while (i < a.length && i < b.length && a[i] === b[i]) i += 1;
  const show = (bytes) => JSON.stringify(Buffer.from(bytes.slice(Math.max(0, i - 30), i + 30)).toString());
  return `at byte ${i}: module ${show(a)}, tool ${show(b)}`;
}

const failures = [];
let compared = 0;
for (const file of documents()) {
  const name = path.basename(file);
  const cwd = path.dirname(file);
  const bytes = new Uint8Array(fs.readFileSync(file));
  const check = module.check(name, bytes, { bytes: true });
  const checked = native(['check', '--json', name], cwd);
  if (check.status !== 200 || Buffer.compare(Buffer.from(check.body), checked.stdout) !== 0) {
    failures.push(`${file}: check ${check.status} ${firstDifference(check.body, checked.stdout)}`);
  }
  const picture = module.render(name, bytes, { bytes: true });
  const drawn = native(['render', name], cwd);
  if (drawn.status === 0) {
    if (picture.status !== 200 || Buffer.compare(Buffer.from(picture.body), drawn.stdout) !== 0) {
      failures.push(`${file}: render ${picture.status} ${firstDifference(picture.body, drawn.stdout)}`);
    }
  } else if (picture.status === 200) {
    failures.push(`${file}: the module drew a picture of what the tool refuses (${drawn.status})`);
  }
  // The editor's session takes the same document as an edit, or refuses it.
  const put = module.request('PUT', '/api/document', bytes);
  if (![200, 400, 422].includes(put.status)) failures.push(`${file}: PUT answered ${put.status}: ${put.body}`);
  compared += 1;
}

const sizes = [glue, wasm].map((file) => {
  const raw = fs.readFileSync(file);
  return { name: path.basename(file), raw: raw.length, gzipped: zlib.gzipSync(raw, { level: 9 }).length };
});
for (const { name, raw, gzipped } of sizes) {
  console.log(`web: ${name}: ${(raw / 1024).toFixed(0)} KiB, ${(gzipped / 1024).toFixed(0)} KiB gzipped`);
}
const total = sizes.reduce((sum, size) => sum + size.gzipped, 0);
console.log(`web: module and glue: ${(total / 1024).toFixed(0)} KiB gzipped (goal: under 400 KB)`);

// An edit round trip as the page makes it: the whole document in, the picture out.
const click = JSON.parse(module.request('GET', '/api/item?type=Click').body);
const at = (i) => ({ rel_x: 0.05 + (i % 20) * 0.045, rel_y: 0.05 + Math.floor(i / 20) * 0.09 });
const doc = { info: { background_color: '000000FF', visibility: true },
  keymaps: Array.from({ length: 200 }, (_, i) => ({ ...click, icon: { ...click.icon, rel_position: at(i) },
    rel_work_position: at(i) })) };
if (module.open('big.json', JSON.stringify(doc)).status !== 200) failures.push('the 200-item document did not open');
const times = [];
for (let round = 0; round < 21; round += 1) {
  doc.keymaps[round].rel_work_position = { rel_x: 0.5, rel_y: 0.5 };
  const start = performance.now();
  const put = module.request('PUT', '/api/document', JSON.stringify(doc));
  const svg = module.request('GET', '/api/render.svg');
  times.push(performance.now() - start);
  if (put.status !== 200 || svg.status !== 200) failures.push(`edit round trip ${round}: ${put.status} ${svg.status}`);
}
times.sort((a, b) => a - b);
console.log(`web: edit round trip on a 200-item document in the module: ${times[10].toFixed(1)} ms (median of 21; goal: under 50 ms)`);

for (const failure of failures.slice(0, 20)) console.error(failure);
console.log(`web: ${compared} documents compared with the native tool, ${failures.length} differences`);
process.exit(failures.length === 0 && compared > 0 ? 0 : 1);
