// Validates saved keymap documents against docs/keymap.schema.json.
//
//   node validate.js SCHEMA TOOL EXAMPLE...
//
// Builds a document holding every item type (fresh items from `TOOL new`,
// with their optional members filled in), lets the library save it with
// `TOOL fmt`, and validates that, the built-in documents as saved, and each
// example as it is and as saved. Then makes sure the schema still rejects
// documents that are wrong.

"use strict";
const fs = require("fs");
const os = require("os");
const path = require("path");
const { execFileSync } = require("child_process");
const Ajv = require("ajv");

const [schemaPath, tool, ...examples] = process.argv.slice(2);
const ajv = new Ajv({ allErrors: true, strict: true });
const validate = ajv.compile(JSON.parse(fs.readFileSync(schemaPath, "utf8")));
const run = (...args) => execFileSync(tool, args, { encoding: "utf8" });
const tmp = fs.mkdtempSync(path.join(os.tmpdir(), "zuno-schema-"));

let passed = 0;
let failed = 0;
function expect(name, document, valid) {
  const ok = validate(document) === valid;
  if (ok) {
    passed++;
  } else {
    failed++;
    console.log(`FAIL ${name}: expected ${valid ? "valid" : "invalid"}`);
    if (validate.errors) console.log(JSON.stringify(validate.errors, null, 2));
  }
}
function saved(text, joystick) {
  const file = path.join(tmp, "doc.json");
  fs.writeFileSync(file, text);
  return JSON.parse(run("fmt", ...(joystick ? ["--joystick"] : []), file));
}

// Every item type, with the members that are written only when set.
const ctrl = { device: "keyboard", text: "Ctrl", virtual_key: 17, scan_code: 29 };
const types = run("new", "--list").trim().split("\n");
const items = types.map((type) => {
  const item = JSON.parse(run("new", type));
  item.key = item.key.device ? item.key : { device: "keyboard", text: "Q", virtual_key: 81, scan_code: 16 };
  if ("positive_key" in item) {
    item.positive_key.second_key = ctrl;
  } else if (!("top_key" in item) && item.key.device !== "joystick" && type !== "Fire" && type !== "RightWalk") {
    item.second_key = ctrl;
  }
  if (type === "Spell") {
    item.tap_info = { seq: "1,2", factor: 0.5, distance_ratio: 0.25, rel_center_pos: { rel_x: 0.5, rel_y: 0.5 } };
  }
  if (type === "Macro") {
    item.press_actions = ["sleep 10"];
    item.release_actions = ["release_all"];
  }
  return item;
});
const every = saved(JSON.stringify({ info: { background_color: "000000FF", visibility: true }, keymaps: items }), false);
if (every.keymaps.length !== types.length) {
  failed++;
  console.log(`FAIL every type: ${every.keymaps.length} of ${types.length} items survived the save`);
}
expect("every item type, saved", every, true);
expect("every item type, saved as a gamepad document", saved(JSON.stringify(every), true), true);
const spell = every.keymaps.find((item) => item.type === "Spell");
if (!spell || !spell.tap_info || !every.keymaps.some((item) => item.second_key)) {
  failed++;
  console.log("FAIL the saved document lacks the optional members it was given");
}

const blank = "sanitary-4EA33DC3-6C4B-46A2-A180-6F2597234300";
expect("built-in blank keymap, saved", JSON.parse(run("fmt", blank)), true);
expect("built-in blank gamepad document, saved", JSON.parse(run("fmt", "--joystick", blank)), true);
for (const example of examples) {
  const text = fs.readFileSync(example, "utf8");
  const joystick = JSON.parse(text).info.is_joystick === true;
  expect(path.basename(example), JSON.parse(text), true);
  expect(path.basename(example) + ", saved", saved(text, joystick), true);
}

// The schema is no rubber stamp.
const broken = (name, edit) => {
  const document = JSON.parse(JSON.stringify(every));
  edit(document);
  expect(name, document, false);
};
broken("no info", (d) => delete d.info);
broken("unknown item type", (d) => (d.keymaps[0].type = "click"));
broken("missing required member", (d) => delete d.keymaps.find((i) => i.type === "Fire").need_fire_and_drag);
broken("nested member of the wrong type", (d) => (d.keymaps.find((i) => i.type === "Spell").swipehold_info.steps = "6"));
broken("misspelt member", (d) => (d.keymaps.find((i) => i.type === "Wheel").sensitivty = 5));
broken("key without scan code", (d) => delete d.keymaps[0].key.scan_code);

fs.rmSync(tmp, { recursive: true, force: true });
console.log(`${passed} passed, ${failed} failed`);
process.exit(failed === 0 ? 0 : 1);
