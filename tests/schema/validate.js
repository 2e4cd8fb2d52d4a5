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
// The editor's annotations: the group a member is shown in and its unit.
ajv.addKeyword("x-group");
ajv.addKeyword("x-unit");
const schema = JSON.parse(fs.readFileSync(schemaPath, "utf8"));
const validate = ajv.compile(schema);
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

// Every item type, with the members that are written only when set: each
// optional member the schema lists and a fresh item lacks gets a value that
// counts as set (a key, non-zero numbers, a line), as does an empty list.
const definitions = schema.definitions;
const resolve = (node) => (node.$ref ? definitions[node.$ref.replace("#/definitions/", "")] : node);
const ctrl = { device: "keyboard", text: "Ctrl", virtual_key: 17, scan_code: 29 };
function example(node) {
  if (node.$ref === "#/definitions/key") return ctrl;
  const target = resolve(node);
  if (target.enum) return target.enum.find((name) => name !== "");
  switch (target.type) {
    case "object":
      return Object.fromEntries(Object.entries(target.properties).map(([name, member]) => [name, example(member)]));
    case "array":
      return ["sleep 10"];
    case "number":
      return 0.5;
    case "integer":
      return 1;
    case "boolean":
      return true;
    default:
      return "1,2";
  }
}
function fill(value, node) {
  const target = resolve(node);
  if (node.$ref === "#/definitions/key" || target.type !== "object") return;
  for (const [name, member] of Object.entries(target.properties)) {
    // Of the keys, only second keys are left out when unset; others are always written.
    const droppedKey = member.$ref === "#/definitions/key" && name !== "second_key";
    if ((!(name in value) && !droppedKey) || (Array.isArray(value[name]) && value[name].length === 0)) {
      value[name] = example(member);
    } else if (value[name] && typeof value[name] === "object" && !Array.isArray(value[name])) {
      fill(value[name], member);
    }
  }
}
const types = run("new", "--list").trim().split("\n");
const items = types.map((type) => {
  const item = JSON.parse(run("new", type));
  item.key = item.key.device ? item.key : { device: "keyboard", text: "Q", virtual_key: 81, scan_code: 16 };
  fill(item, definitions[type]);
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
