#!/usr/bin/env node
// Writes docs/format.md from docs/keymap.schema.json, which is written from
// the library's member tables (docs/schema/KeymapSchema.cpp): the members'
// types, whether they are required, their defaults and descriptions, and the
// names a setting allows.
//
//   node scripts/gen-format-doc.js                 rewrite docs/format.md
//   node scripts/gen-format-doc.js --check         fail when docs/format.md is not
//                                                  what this script writes, or a
//                                                  member has no description
"use strict";
const fs = require("fs");
const path = require("path");

const root = path.join(__dirname, "..");
const schemaPath = path.join(root, "docs", "keymap.schema.json");
const outputPath = path.join(root, "docs", "format.md");
const schema = JSON.parse(fs.readFileSync(schemaPath, "utf8"));
const definitions = schema.definitions;

const undescribed = [];
const ref = (node) => (node.$ref ? node.$ref.replace("#/definitions/", "") : null);
const resolve = (node) => (ref(node) ? definitions[ref(node)] : node);

function typeOf(node) {
  const name = ref(node);
  if (name && ["key", "point", "size"].includes(name)) return name;
  const target = resolve(node);
  if (target.type === "array") return `array of ${typeOf(target.items)}s`;
  return target.type || "string";
}

// A number member's integral default still reads as a number: 1.0, not 1.
function number(value) {
  return Number.isInteger(value) ? value.toFixed(1) : String(value);
}

function showDefault(node, required) {
  if (!("default" in node)) return required && resolve(node).type !== "object" ? "—" : "";
  const value = node.default;
  const name = ref(node);
  if (name === "key") {
    return value.device === ""
      ? "unset"
      : `\`"${value.text}"\` on \`"${value.device}"\`, virtual key ${value.virtual_key}, scan code ${value.scan_code}`;
  }
  if (name === "point") return `(${value.rel_x}, ${value.rel_y})`;
  if (name === "size") return `(${value.rel_width}, ${value.rel_height})`;
  if (typeof value === "string") return JSON.stringify(value);
  if (typeof value === "number" && typeOf(node) === "number") return number(value);
  return JSON.stringify(value);
}

function names(list) {
  const shown = list.filter((n) => n !== "");
  return shown.length > 1 ? `${shown.slice(0, -1).join(", ")} or ${shown[shown.length - 1]}` : shown.join("");
}

function notes(node, where) {
  if (!node.description) undescribed.push(where);
  let text = node.description || "";
  const target = resolve(node);
  const listed = target.enum && target.enum.every((name) => name === "" || text.includes(name));
  if (target.enum && !listed && where.split(".").pop() !== "type") text += `; one of ${names(target.enum)}`;
  return text;
}

// The rows of an object's members, nested objects flattened with dots.
function rows(node, prefix, owner, skip = () => false, flatten = true) {
  const object = resolve(node);
  const out = [];
  for (const [name, member] of Object.entries(object.properties || {})) {
    if (skip(name)) continue;
    const dotted = prefix + name;
    const required = (object.required || []).includes(name);
    out.push(`| \`${dotted}\` | ${typeOf(member)} | ${required ? "yes" : "no"} | ${showDefault(member, required)} | ${notes(member, owner + "." + dotted)} |`);
    const target = resolve(member);
    const shape = ["key", "point", "size"].includes(ref(member));
    if (flatten && !shape && target.type === "object" && target.properties) {
      out.push(...rows(member, dotted + ".", owner));
    }
  }
  return out;
}

function table(lines) {
  return ["| Member | Type | Required | Default | Notes |", "|---|---|---|---|---|", ...lines].join("\n");
}

// Members every item has; the type sections list only their own.
const common = ["type", "rel_work_position", "editor_icon_scale", "key", "icon"];
const types = definitions.item.properties.type.enum;

function itemSection(type) {
  const def = definitions[type];
  const key = def.properties.key;
  const own = rows(def, "", type, (name) => common.includes(name));
  const keyDefault = showDefault(key, true);
  return [
    `### ${type}`,
    "",
    def.description || (undescribed.push(type), ""),
    "",
    `Common members, and \`key\` defaults to ${keyDefault}.`,
    ...(own.length ? ["", table(own)] : []),
  ].join("\n");
}

function describeCommonType(name) {
  const def = definitions[name];
  if (!def.description) undescribed.push(name);
  for (const [member, node] of Object.entries(def.properties)) notes(node, `${name}.${member}`);
  return def.description;
}

function generate() {
  const click = definitions.Click;
  const commonRows = rows(click, "", "item", (name) => !common.includes(name)).map((line) =>
    line.startsWith("| `type` |") ? line.replace(/\| [^|]* \|$/, `| ${definitions.item.properties.type.description} |`) : line,
  );
  const topRows = rows(schema, "", "document", () => false, false);
  const keyProps = definitions.key.properties;
  return `# The keymap document format

<!-- Generated by scripts/gen-format-doc.js from docs/keymap.schema.json; edit those, not this file. -->

A keymap is one JSON document. This page describes it for people who write or
review keymaps by hand; \`docs/keymap.schema.json\` says the same for machines
(editors that know JSON Schema complete and check members when a document
names it in \`"$schema"\`), and \`zuno-keymap check\` tells whether a document
loads and works as meant.

\`\`\`sh
zuno-keymap new --list            # the ${types.length} item types
zuno-keymap new Swipehold         # a fresh item, every member at its default
zuno-keymap check my-game.json    # does it load? unknown or misspelt members? collisions?
zuno-keymap check --strict my-game.json   # fail on warnings too
zuno-keymap fmt --in-place my-game.json
\`\`\`

## How the library reads and writes a document

- **Required** members must be present; when one is missing or cannot be read
  as its type, the whole load fails. The host is told, and the document it
  gets holds only what was read before the failure. \`zuno-keymap check\`
  (or \`CheckKeymapDocument\` in a host) names every missing member at once,
  for example \`keymaps[3].swipehold_info.steps\`, with the item's type.
- **Optional** members may be left out; the member then keeps its default.
  An optional *object* that is present must be complete: its own required
  members apply.
- In the tables, a dotted member such as \`wheel_policy.zoom_steps\` belongs to
  the object before the dot; "required" there means required whenever that
  object is present.
- Values are converted leniently on reading (a number written as a string is
  accepted, an integer is accepted where a number is expected). The schema
  asks for the plain JSON types, which is what the library writes.
- Members the library does not know are ignored on reading and dropped on
  saving. Items of an unknown \`type\` are dropped silently. The schema and
  \`check\` flag both, with the nearest known name, since they are usually
  typing mistakes.
- Names of settings (policies, orientations, ...) are kept as written: a name
  outside the listed values is not an error for the library and survives a
  save, but \`check\` warns about it.
- Saving writes every member (except the few marked "written only when ..."),
  with keys in ascending byte order and an indentation of 4 spaces.
  \`zuno-keymap fmt\` produces exactly that form.

## Common types

- **point**: \`{"rel_x": number, "rel_y": number}\`, both required: ${describeCommonType("point")}.
  \`rel_x\` is the ${definitions.point.properties.rel_x.description}; \`rel_y\` the ${definitions.point.properties.rel_y.description}.
- **size**: \`{"rel_width": number, "rel_height": number}\`, both required: ${describeCommonType("size")}, each 0 to 1.
- **key**: \`{"device": string, "text": string, "virtual_key": integer,
  "scan_code": integer}\`, all four required: ${describeCommonType("key")}.
  - \`device\`: ${keyProps.device.description}.
  - \`text\`: ${keyProps.text.description}.
  - \`virtual_key\`: ${keyProps.virtual_key.description}.
  - \`scan_code\`: ${keyProps.scan_code.description}.

  A key is *set* when its device is not empty and, for a gamepad key, its text
  is not empty, or, for any other device, neither code is 2147483647.
  \`zuno-keymap key keyboard 30\` shows what the library makes of a code.
- **colours** are strings of eight hexadecimal digits, RRGGBBAA (alpha last).

## The top level

${table(topRows)}

### info

${table(rows(schema.properties.info, "", "info"))}

A gamepad document (\`is_joystick\` true, or loaded as one) writes only
\`background_color\`, \`visibility\`, \`is_joystick\` and \`transparent_joystick\`.

### param

${table(rows(schema.properties.param, "", "param"))}

## Items

Every item is an object with a \`type\` and the common members below, then the
members of its type. An item is *invalid* (loaded, but unusable) when its key
is not set; the items with direction keys (Swipehold, Eye, Gravity) are valid
when any direction key is set, and Wheel and Zoom items are never invalid.
\`zuno-keymap check\` reports invalid items and every pair of items that the
same key or key combination would fire.

### Common members

${table(commonRows)}

\`icon.*\` members are required once \`icon\` is present (and it is required).

Items that may be bound to a key *combination* (${types.filter((t) => definitions[t].properties.second_key).join(", ")}) have an optional
\`second_key\`: with it set, the item fires only when both keys are pressed,
never for its \`key\` alone.

${types.map(itemSection).join("\n\n")}
`;
}

const text = generate();
if (undescribed.length) {
  console.error(`members without a description in ${path.relative(root, schemaPath)}:\n  ${undescribed.join("\n  ")}`);
  process.exit(1);
}
if (process.argv.includes("--check")) {
  if (fs.readFileSync(outputPath, "utf8") !== text) {
    console.error("docs/format.md is not what scripts/gen-format-doc.js writes; run it and commit the result");
    process.exit(1);
  }
  console.log("docs/format.md matches the schema");
} else {
  fs.writeFileSync(outputPath, text);
}
