// A form for one object of the document (an item, or the document's info and
// param), laid out from the format's JSON Schema as the server serves it:
// each member's label ("title"), group, description, type, range, default and
// allowed names. The page decides nothing about validity: a change goes to
// the server, and a refusal comes back as the message shown by the field.
//
// The form is updated in place: while the same object is shown with the same
// members, only the values change, so focus, selection and scroll stay.

import { element } from './dom.js';
import { secondKeyOf } from './keys.js';
import { valueAt } from './store.js';

const GROUPS = ['Position', 'Keys', 'Behaviour', 'Advanced'];
const UNITS = { ms: 'in milliseconds', px: 'in pixels', screen: 'a fraction of the screen' };

export function resolve(schema, node) {
  for (let guard = 0; node && node.$ref && guard < 16; guard++) {
    node = { ...node.$ref.replace(/^#\//, '').split('/').reduce((at, part) => at && at[part], schema), ...withoutRef(node) };
  }
  return node || {};
}

function withoutRef(node) {
  const { $ref, ...rest } = node;
  return rest;
}

const isKeyNode = (raw, node) => (raw && /\/key$/.test(raw.$ref || '')) ||
  (node.properties && node.properties.device && node.properties.scan_code);
const isPoint = (node) => node.properties && node.properties.rel_x && node.properties.rel_y;
const isColour = (node) => node.type === 'string' && /0-9A-Fa-f\]\{8\}/.test(node.pattern || '');
const isMacro = (name, node) => node.type === 'array' && /_actions$/.test(name);

/// A person's name for a member: its schema title, else its JSON name in words.
export function labelOf(name, node) {
  if (node.title) return node.title;
  const words = name.replace(/^rel_/, '').replace(/_/g, ' ');
  return words.charAt(0).toUpperCase() + words.slice(1);
}

/// The group a member is shown in: the schema's own, else by its kind.
export function groupOf(name, raw, node) {
  const declared = node['x-group'] || node.group || (raw && (raw['x-group'] || raw.group));
  if (GROUPS.includes(declared)) return declared;
  if (isKeyNode(raw, node) || /_key$/.test(name)) return 'Keys';
  if (isPoint(node) || name === 'icon' || /radius|range|position|pos$/.test(name)) return 'Position';
  if (node.type === 'object' || node.properties) return 'Advanced';
  return 'Behaviour';
}

/// A value for an absent member, from the schema's defaults.
export function defaultOf(schema, raw) {
  const node = resolve(schema, raw);
  if (node.default !== undefined) return JSON.parse(JSON.stringify(node.default));
  if (node.properties) {
    const value = {};
    for (const [name, child] of Object.entries(node.properties)) value[name] = defaultOf(schema, child);
    return value;
  }
  return { boolean: false, integer: 0, number: 0, string: '', array: [] }[node.type] ?? null;
}

// A control is being edited while it has the focus and holds typing not yet
// sent; otherwise it shows the document, after an undo or another page's edit too.
function track(control) {
  control.addEventListener('input', () => { control.dataset.typed = 'true'; });
  control.addEventListener('change', () => { delete control.dataset.typed; });
  return control;
}
const editing = (control) => document.activeElement === control && control.dataset.typed === 'true';

export class Panel {
  /// `handlers`: change(member, value, target), remove(member, target), bind(members, target),
  /// macroCheck(lines), macroRunning(lines).
  constructor(host, handlers, { title = 'Select an item on the screen.' } = {}) {
    this.host = host;
    this.handlers = handlers;
    this.empty = title;
    this.shown = null;
    this.updaters = new Map();
  }

  clear() {
    this.commitFocused({ keep: false });
    this.shown = null;
    this.updaters.clear();
    this.host.replaceChildren(element('p', { class: 'empty', text: this.empty }));
  }

  /// Shows `value` laid out by the schema node `definition`; `prefix` is its
  /// JSON path ("keymaps[3]", "" for the document); `errors` maps JSON paths
  /// to refusals; `keyMembers` are the members binding fires; `target` is
  /// handed back with every change, naming what the form showed.
  show(schema, definition, value, { key, target, heading, prefix, errors = {}, keyMembers = [], captions = {},
    pending = [], sections = false }) {
    this.schema = schema;
    this.captions = captions;
    this.pending = pending;
    this.values = value;
    this.prefix = prefix;
    this.keyMembers = keyMembers;
    const layout = this.layout(definition, value, []).map((f) => f.path.join('.')).join('|');
    if (this.shown && this.shown.key === key && this.shown.layout === layout) {
      // The same item may have moved in the document's order (undo, reorder).
      const form = this.host.querySelector('form');
      form.setAttribute('aria-label', heading);
      form.querySelector('h2').textContent = heading;
      for (const [path, update] of this.updaters) update(valueAt(value, path), errors);
      return;
    }
    // A field left by the rebuild sends what was typed into it, to what it showed.
    if (this.shown && this.shown.key !== key) this.commitFocused({ keep: false });
    this.target = target;
    const focused = document.activeElement && this.host.contains(document.activeElement)
      ? document.activeElement.id : null;
    const scroll = this.host.scrollTop;
    this.updaters.clear();
    const form = element('form', { 'aria-label': heading });
    form.addEventListener('submit', (e) => e.preventDefault());
    form.append(element('h2', { text: heading }));
    if (definition.description) form.append(element('p', { class: 'hint', text: definition.description }));
    const groups = new Map(sections ? [] : GROUPS.map((g) => [g, []]));
    for (const field of this.layout(definition, value, [])) {
      // Sections: each member of the top level is a part of its own, open.
      const group = sections ? labelOf(field.name, field.node) : field.group;
      if (!groups.has(group)) groups.set(group, []);
      groups.get(group).push(field);
    }
    for (const [group, fields] of groups) {
      if (fields.length === 0) continue;
      const section = element('details', { class: 'group', 'data-group': group });
      section.open = group !== 'Advanced';
      section.append(element('summary', { text: group }), ...fields.map((f) => this.field(f, errors)));
      form.append(section);
    }
    this.host.replaceChildren(form);
    this.shown = { key, layout };
    if (focused) {
      const again = document.getElementById(focused);
      if (again) again.focus();
    }
    this.host.scrollTop = scroll;
  }

  /// The fields of `definition`: [{path, name, raw, node, value, group, present, required}].
  layout(definition, value, path) {
    const fields = [];
    const required = definition.required || [];
    for (const [name, raw] of Object.entries(definition.properties || {})) {
      if (name === 'type' || name === '$schema') continue;
      const node = resolve(this.schema, raw);
      const member = value ? value[name] : undefined;
      const here = [...path, name];
      const group = path.length ? null : groupOf(name, raw, node);
      const base = { path: here, name, raw, node, value: member, present: member !== undefined,
        required: required.includes(name) };
      if (node.properties && !isKeyNode(raw, node) && !isPoint(node) && member !== undefined) {
        fields.push({ ...base, group, nested: this.layout(node, member, here) });
      } else {
        fields.push({ ...base, group });
      }
    }
    return fields;
  }

  field(f, errors) {
    const { target } = this;
    const member = f.path.join('.');
    if (!f.present && !f.required && !isKeyNode(f.raw, f.node)) {
      const add = element('button', { type: 'button', class: 'add-member', text: `Add ${labelOf(f.name, f.node)}`,
        title: f.node.description });
      add.addEventListener('click', () => this.handlers.change(member, defaultOf(this.schema, f.raw), target));
      return element('div', { class: 'field absent' }, add);
    }
    if (f.nested) {
      const set = element('fieldset', {}, element('legend', { text: labelOf(f.name, f.node), title: f.node.description }));
      set.append(...f.nested.map((child) => this.field({ ...child, group: null }, errors)));
      if (!f.required) set.append(this.removeButton(member, f));
      return set;
    }
    let row;
    if (isKeyNode(f.raw, f.node)) row = this.keyField(f, member);
    else if (isPoint(f.node)) row = this.pointField(f, member);
    else if (isMacro(f.name, f.node)) row = this.macroField(f, member);
    else row = this.valueField(f, member);
    if (f.present && !f.required && !isKeyNode(f.raw, f.node)) row.append(this.removeButton(member, f));
    const error = element('span', { class: 'error', role: 'alert', hidden: true });
    row.append(error);
    const update = this.updaters.get(member);
    this.updaters.set(member, (value, errs) => {
      if (update) update(value, errs);
      const message = errs[`${this.prefix ? `${this.prefix}.` : ''}${member}`];
      error.hidden = !message;
      error.textContent = message || '';
      row.querySelectorAll('input, select, textarea').forEach((c) => c.toggleAttribute('aria-invalid', !!message));
    });
    this.updaters.get(member)(f.value, errors);
    return row;
  }

  removeButton(member, f) {
    const { target } = this;
    const remove = element('button', { type: 'button', class: 'remove-member', text: 'Remove',
      'aria-label': `Remove ${labelOf(f.name, f.node)}` });
    remove.addEventListener('click', () => this.handlers.remove(member, target));
    return remove;
  }

  row(member, f, control, extra = []) {
    const id = `field-${(this.prefix || 'doc').replace(/\W/g, '-')}-${member.replace(/\W/g, '-')}`;
    control.id = control.id || id;
    control.name = member;
    const description = element('small', { class: 'description', id: `${id}-about`,
      text: [f.node.description, UNITS[f.node['x-unit']] || f.node['x-unit'],
        f.node.default !== undefined && typeof f.node.default !== 'object'
          ? `default ${JSON.stringify(f.node.default)}` : ''].filter(Boolean).join(' · ') });
    control.setAttribute('aria-describedby', description.id);
    return element('div', { class: 'field', title: f.node.description || '' },
      element('label', { for: control.id, text: labelOf(f.name, f.node) }), control, ...extra, description);
  }

  // Keeps the control's value in step with the document, unless the user is in it.
  follow(member, control, show) {
    track(control);
    this.updaters.set(member, (value) => { if (!this.holds(member, control)) show(value); });
  }

  valueField(f, member) {
    const { target } = this;
    const { node } = f;
    const change = (v) => this.handlers.change(member, v, target);
    let control;
    const extra = [];
    if (node.type === 'boolean') {
      control = element('input', { type: 'checkbox' });
      control.addEventListener('change', () => change(control.checked));
      this.follow(member, control, (v) => { control.checked = v === true; });
    } else if (node.enum) {
      control = element('select');
      control.addEventListener('change', () => change(control.value));
      this.follow(member, control, (v) => {
        const options = node.enum.includes(v) ? node.enum : [v, ...node.enum];
        control.replaceChildren(...options.map((o) => element('option', { value: o, text: o })));
        control.value = v;
      });
    } else if (node.type === 'integer' || node.type === 'number') {
      control = element('input', { type: 'number', step: node.type === 'integer' ? 1 : 'any',
        min: node.minimum, max: node.maximum });
      const read = (text) => {
        const parsed = Number(text);
        return text.trim() === '' || !Number.isFinite(parsed) ? text : parsed;
      };
      control.addEventListener('change', () => change(read(control.value)));
      // A slider over the declared range; a fraction of the screen slides
      // over the screen, while the field still takes any number.
      const screen = node['x-unit'] === 'screen';
      const low = node.minimum ?? (screen ? 0 : undefined);
      const high = node.maximum ?? (screen ? 1 : undefined);
      if (low !== undefined && high !== undefined) {
        const slider = element('input', { type: 'range', min: low, max: high,
          step: node.type === 'integer' ? 1 : (high - low) / 200,
          'aria-label': `${labelOf(f.name, node)} slider` });
        slider.addEventListener('input', () => { control.value = slider.value; });
        slider.addEventListener('change', () => change(read(slider.value)));
        extra.push(slider);
        this.follow(member, slider, (v) => { slider.value = v; });
      }
      const previous = this.updaters.get(member);
      this.follow(member, control, (v) => { control.value = v ?? ''; });
      const mine = this.updaters.get(member);
      this.updaters.set(member, (v, e) => { if (previous) previous(v, e); mine(v, e); });
    } else if (isColour(node)) {
      return this.colourField(f, member);
    } else if (node.type === 'string') {
      control = element('input', { type: 'text' });
      control.addEventListener('change', () => change(control.value));
      this.follow(member, control, (v) => { control.value = v ?? ''; });
    } else {
      control = element('textarea', { spellcheck: 'false' });
      control.addEventListener('change', () => {
        try { change(JSON.parse(control.value)); } catch (e) { control.setCustomValidity(e.message); control.reportValidity(); }
      });
      this.follow(member, control, (v) => { control.value = JSON.stringify(v ?? null, null, 1); });
    }
    return this.row(member, f, control, extra);
  }

  colourField(f, member) {
    const { target } = this;
    const text = element('input', { type: 'text', pattern: '[0-9A-Fa-f]{8}', spellcheck: 'false' });
    const colour = element('input', { type: 'color', 'aria-label': `${labelOf(f.name, f.node)} colour` });
    const alpha = element('input', { type: 'range', min: 0, max: 255, step: 1,
      'aria-label': `${labelOf(f.name, f.node)} opacity` });
    const hex = (n) => Number(n).toString(16).padStart(2, '0').toUpperCase();
    const fromPickers = () => `${colour.value.slice(1).toUpperCase()}${hex(alpha.value)}`;
    colour.addEventListener('change', () => this.handlers.change(member, fromPickers(), target));
    alpha.addEventListener('change', () => this.handlers.change(member, fromPickers(), target));
    text.addEventListener('change', () => this.handlers.change(member, text.value, target));
    track(text);
    this.updaters.set(member, (v) => {
      const value = typeof v === 'string' ? v : '';
      if (!this.holds(member, text)) text.value = value;
      if (/^[0-9A-Fa-f]{8}$/.test(value)) {
        colour.value = `#${value.slice(0, 6).toLowerCase()}`;
        alpha.value = parseInt(value.slice(6), 16);
      }
    });
    return this.row(member, f, text, [colour, alpha]);
  }

  pointField(f, member) {
    const { target } = this;
    const inputs = ['rel_x', 'rel_y'].map((axis) => {
      const input = track(element('input', { type: 'number', step: 'any', 'aria-label': `${labelOf(f.name, f.node)} ${axis.slice(4)}` }));
      // One coordinate at a time: the other may be moving meanwhile.
      input.addEventListener('change', () => {
        const value = Number(input.value);
        this.handlers.change(`${member}.${axis}`, input.value.trim() === '' || !Number.isFinite(value) ? input.value : value, target);
      });
      return input;
    });
    this.updaters.set(member, (v) => inputs.forEach((input, i) => {
      if (!this.holds(member, input)) input.value = v ? v[i ? 'rel_y' : 'rel_x'] : '';
    }));
    const box = element('div', { class: 'point', role: 'group' }, ...inputs);
    return this.row(member, f, box);
  }

  keyField(f, member) {
    const { target } = this;
    const shown = element('output');
    const bind = element('button', { type: 'button', text: 'Bind', 'aria-label': `Bind ${labelOf(f.name, f.node)}` });
    const second = secondKeyOf(member);
    bind.addEventListener('click', () => this.handlers.bind(second && this.keyMembers.includes(second) ? [member, second] : [member], target));
    const clear = element('button', { type: 'button', text: 'Clear', 'aria-label': `Clear ${labelOf(f.name, f.node)}` });
    clear.addEventListener('click', () => this.handlers.clearKey(member, target));
    this.updaters.set(member, () => { shown.textContent = this.captions[member] || 'not bound'; });
    const control = element('div', { class: 'key-field', role: 'group', 'aria-label': labelOf(f.name, f.node) }, shown, bind, clear);
    return this.row(member, f, control);
  }

  macroField(f, member) {
    const { target } = this;
    const area = track(element('textarea', { spellcheck: 'false', rows: 6 }));
    const steps = element('ol', { class: 'macro-steps', 'aria-label': `${labelOf(f.name, f.node)} steps` });
    const refresh = async () => {
      const lines = area.value.split('\n');
      const bad = await this.handlers.macroCheck(lines);
      const good = lines.map((l, i) => (l.trim() && !bad.includes(i + 1) ? i : -1)).filter((i) => i >= 0);
      let running = await this.handlers.macroRunning(good.map((i) => lines[i]));
      if (running.length !== good.length) running = good.map(() => '');
      const shown = new Map(good.map((i, k) => [i, running[k]]));
      steps.replaceChildren(...lines.map((line, i) => element('li', {
        class: bad.includes(i + 1) ? 'bad' : line.trim() ? 'good' : 'blank', 'data-line': i + 1,
        title: bad.includes(i + 1) ? 'not a macro command' : null },
      element('span', { class: 'mark', text: bad.includes(i + 1) ? '✗' : line.trim() ? '✓' : '' }),
      element('code', { text: shown.get(i) || (bad.includes(i + 1) ? 'not a command' : '\u00a0') }))));
    };
    let timer = 0;
    area.addEventListener('input', () => { clearTimeout(timer); timer = setTimeout(refresh, 120); });
    area.addEventListener('change', () => this.handlers.change(member, area.value.split('\n').filter((l, i, all) => l !== '' || i < all.length - 1), target));
    area.addEventListener('scroll', () => { steps.scrollTop = area.scrollTop; });
    this.updaters.set(member, (v) => {
      if (this.holds(member, area)) return;
      const text = (v || []).join('\n');
      if (area.value !== text) { area.value = text; refresh(); }
    });
    const row = this.row(member, f, area);
    row.classList.add('wide');
    const box = element('div', { class: 'macro' });
    area.replaceWith(box);
    box.append(area, steps);
    return row;
  }

  // A control keeps what the user put in it while they are typing, and
  // until the server has answered the change it sent.
  holds(member, control) {
    return editing(control) || this.pending.some((p) => p === member || p.startsWith(`${member}.`));
  }

  /// Sends the change of the field being edited, if any, as leaving it does:
  /// the browser's own change event, once, to the item the field was made
  /// for. `keep` puts the focus back (a save); a new selection leaves it.
  commitFocused({ keep = true } = {}) {
    const active = document.activeElement;
    if (!active || !this.host.contains(active) || !/^(INPUT|TEXTAREA|SELECT)$/.test(active.tagName)) return false;
    active.blur();
    if (keep) active.focus({ preventScroll: true });
    return true;
  }
}
