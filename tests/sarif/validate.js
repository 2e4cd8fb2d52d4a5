// Checks `zuno-keymap check --format sarif` against the SARIF 2.1.0 schema,
// and against the tool's own JSON report of the same files.
//
//   node validate.js SCHEMA TOOL WORK
//
// WORK is emptied and filled with documents of every sort the check meets:
// clean, with warnings, with errors, malformed, in a subfolder, with a name
// a URI must escape; one more lies outside the folder the tool runs in.

"use strict";
const fs = require("fs");
const path = require("path");
const { spawnSync } = require("child_process");
const Ajv = require("ajv-draft-04");
const addFormats = require("ajv-formats");

const [schemaPath, toolGiven, workGiven] = process.argv.slice(2);
const tool = path.resolve(toolGiven);
const work = path.resolve(workGiven);
const ajv = new Ajv({ allErrors: true, strict: false });
addFormats(ajv);
const validate = ajv.compile(JSON.parse(fs.readFileSync(schemaPath, "utf8")));

let passed = 0;
let failed = 0;
function expect(name, ok, detail) {
  if (ok) {
    passed++;
  } else {
    failed++;
    console.log(`FAIL ${name}` + (detail === undefined ? "" : `: ${JSON.stringify(detail)}`));
  }
}
function check(args, cwd) {
  const run = spawnSync(tool, ["check", ...args], { cwd, encoding: "utf8" });
  return { status: run.status, out: run.stdout };
}

fs.rmSync(work, { recursive: true, force: true });
const here = path.join(work, "here");
fs.mkdirSync(path.join(here, "sub"), { recursive: true });
const item = (type, key) => {
  const made = JSON.parse(spawnSync(tool, ["new", type], { encoding: "utf8" }).stdout);
  made.key = { device: "keyboard", text: key, virtual_key: key.charCodeAt(0), scan_code: 16 };
  return made;
};
const blank = JSON.parse(spawnSync(tool, ["new", "--document"], { encoding: "utf8" }).stdout);
const documentOf = (items) => JSON.stringify({ ...blank, keymaps: items }, null, 4);
const misspelt = item("Click", "Q");
misspelt.descripton = "typo";
const files = {
  "clean.json": documentOf([item("Click", "Q")]),
  "sub/collide.json": documentOf([item("Click", "Q"), item("Click", "Q")]),
  "two words é.json": documentOf([misspelt]),
  "malformed.json": '{\n  "info" {}\n}\n',
  // On one line, after text of one to four UTF-8 bytes a character: SARIF
  // counts UTF-16 code units where the JSON report counts bytes.
  "wide.json": JSON.stringify({ ...blank, keymaps: [Object.assign({ description: "" }, misspelt, { description: "é中😀" })] }),
};
for (const [name, text] of Object.entries(files)) {
  fs.writeFileSync(path.join(here, name), text);
}
const outside = path.join(work, "outside.json");
fs.writeFileSync(outside, documentOf([item("Click", "Q"), item("Click", "Q")]));
const given = [...Object.keys(files), outside];

const sarif = check(["--format", "sarif", ...given], here);
expect("exit status as without --format", sarif.status === 1, sarif.status);
let log = null;
try {
  log = JSON.parse(sarif.out);
} catch (error) {
  expect("the output is JSON", false, String(error));
}
if (log) {
  expect("valid against the SARIF 2.1.0 schema", validate(log), validate.errors);
  expect("one run", log.runs.length === 1);
  const run = log.runs[0];
  const rules = run.tool.driver.rules;
  expect("a rule for each kind, named as the check names it",
    rules.length === 11 && new Set(rules.map((r) => r.id)).size === 11);

  // The same findings as the JSON report, in the same places.
  const report = JSON.parse(check(["--json", ...given], here).out);
  const expected = [];
  report.documents.forEach((document, k) => {
    for (const finding of document.findings) expected.push({ file: given[k], finding });
  });
  expect("one result for each finding", run.results.length === expected.length,
    [run.results.length, expected.length]);
  run.results.forEach((result, k) => {
    const { file, finding } = expected[k] || {};
    if (!finding) return;
    const name = `result ${k} (${finding.kind} in ${file})`;
    expect(`${name}: its rule`, rules[result.ruleIndex].id === result.ruleId &&
      result.ruleId === finding.kind);
    expect(`${name}: its level`, result.level === finding.severity);
    const where = result.locations[0].physicalLocation;
    const uri = where.artifactLocation.uri;
    const wanted = path.isAbsolute(file)
      ? new URL(`file://${file}`).href
      : file.split("/").map(encodeURIComponent).join("/");
    expect(`${name}: its file`, uri === wanted, [uri, wanted]);
    const text = fs.readFileSync(path.isAbsolute(file) ? file : path.join(here, file));
    const lineStart = text.toString("latin1").split("\n").slice(0, finding.line - 1)
      .reduce((at, line) => at + line.length + 1, 0);
    const column = text.subarray(lineStart, lineStart + finding.column - 1).toString("utf8").length + 1;
    expect(`${name}: its line and column`, where.region !== undefined &&
      where.region.startLine === finding.line && where.region.startColumn === column,
      [where.region, finding.line, column]);
  });
  const levels = new Set(run.results.map((r) => r.level));
  expect("errors and warnings both met", levels.has("error") && levels.has("warning"));

  // The schema is no rubber stamp.
  const broken = (name, edit) => {
    const copy = JSON.parse(JSON.stringify(log));
    edit(copy.runs[0].results[0]);
    expect(`the schema refuses ${name}`, !validate(copy));
  };
  broken("an unknown level", (r) => (r.level = "fatal"));
  broken("line 0", (r) => (r.locations[0].physicalLocation.region.startLine = 0));
}

// Standard input has no file to point at; the log stays valid.
const piped = spawnSync(tool, ["check", "--format", "sarif", "-"],
  { input: files["sub/collide.json"], encoding: "utf8" });
const pipedLog = JSON.parse(piped.stdout);
expect("standard input: valid", validate(pipedLog), validate.errors);
expect("standard input: results without a location",
  pipedLog.runs[0].results.length > 0 && pipedLog.runs[0].results.every((r) => !r.locations));

console.log(`${passed} passed, ${failed} failed`);
process.exit(failed === 0 ? 0 : 1);
