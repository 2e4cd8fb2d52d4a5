// The selected item as a form, laid out from the format's JSON Schema (served
// by the editor): one field per member with its type, default and allowed
// names. Changes go back through `onChange(path, value)`; the document is
// loaded by the library before anything is kept.

function resolve(schema, node) {
  while (node && node.$ref) {
    node = node.$ref.replace(/^#\//, '').split('/').reduce((at, part) => at && at[part], schema);
  }
  return node || {};
}

function isKeyRef(node) { return node && node.$ref === '#/definitions/key'; }

function element(tag, attributes = {}, ...children) {
  const node = document.createElement(tag);
  for (const [name, value] of Object.entries(attributes)) {
    if (value === undefined || value === null || value === false) continue;
    if (name === 'text') node.textContent = value;
    else node.setAttribute(name, value === true ? '' : value);
  }
  node.append(...children);
  return node;
}

function describe(node) {
  const parts = [node.type || (node.enum ? 'string' : 'value')];
  if (node.default !== undefined) parts.push(`default ${JSON.stringify(node.default)}`);
  if (node.enum) parts.push(`one of ${node.enum.join(', ')}`);
  return parts.join(' · ');
}

export class Panel {
  /// `handlers`: change(path, value), bind(path), macro lines check and conversion.
  constructor(host, handlers) {
    this.host = host;
    this.handlers = handlers;
  }

  clear() {
    this.host.replaceChildren(element('p', { class: 'empty', text: 'Select an item on the screen.' }));
  }

  /// Shows item `index` of the document; `errors` maps member paths ("icon.rel_position.rel_x")
  /// to the library's diagnostic.
  show(schema, item, index, errors = {}) {
    const definition = resolve(schema, (schema.definitions || {})[item.type]);
    const form = element('form', { 'aria-label': `Item ${index}` });
    form.addEventListener('submit', (e) => e.preventDefault());
    form.append(element('h2', { text: `keymaps[${index}] — ${item.type}` }));
    if (definition.description) form.append(element('p', { class: 'empty', text: definition.description }));
    this.fields(schema, definition, item, [], form, errors);
    this.host.replaceChildren(form);
  }

  fields(schema, definition, value, path, parent, errors) {
    const properties = definition.properties || {};
    const names = Object.keys(properties).filter((name) => name !== 'type');
    for (const name of names) {
      const raw = properties[name];
      const node = resolve(schema, raw);
      const memberPath = [...path, name];
      const member = value ? value[name] : undefined;
      if (member === undefined && !(definition.required || []).includes(name) && !isKeyRef(raw)) {
        continue;
      }
      if (isKeyRef(raw)) {
        parent.append(this.keyField(memberPath, member, node, errors));
      } else if (node.type === 'object' || node.properties) {
        const set = element('fieldset', {}, element('legend', { text: name }));
        this.fields(schema, node, member || {}, memberPath, set, errors);
        parent.append(set);
      } else if (node.type === 'array' && (name === 'press_actions' || name === 'release_actions')) {
        parent.append(this.macroField(memberPath, member || [], errors));
      } else {
        parent.append(this.valueField(memberPath, member, node, errors));
      }
    }
  }

  row(path, control, node, errors, label = path.join('.')) {
    const id = `field-${path.join('-')}`;
    control.id = control.id || id;
    control.name = path.join('.');
    const row = element('div', { class: 'field' },
      element('label', { for: control.id, text: label, title: node.description }), control,
      element('small', { text: describe(node) }));
    const error = errors[path.join('.')];
    if (error) {
      control.setAttribute('aria-invalid', 'true');
      row.append(element('span', { class: 'error', role: 'alert', text: error }));
    }
    return row;
  }

  valueField(path, value, node, errors) {
    let control;
    const change = (v) => this.handlers.change(path, v);
    if (node.type === 'boolean') {
      control = element('input', { type: 'checkbox', checked: value === true });
      control.addEventListener('change', () => change(control.checked));
    } else if (node.enum) {
      control = element('select');
      const options = node.enum.includes(value) ? node.enum : [value, ...node.enum];
      for (const option of options) {
        control.append(element('option', { value: option, selected: option === value, text: option }));
      }
      control.addEventListener('change', () => change(control.value));
    } else if (node.type === 'integer' || node.type === 'number') {
      control = element('input', { type: 'number', step: node.type === 'integer' ? 1 : 'any',
        value: value ?? '' });
      control.addEventListener('change', () => {
        const parsed = node.type === 'integer' ? parseInt(control.value, 10) : parseFloat(control.value);
        change(Number.isFinite(parsed) ? parsed : null);
      });
    } else if (node.type === 'string') {
      control = element('input', { type: 'text', value: value ?? '' });
      control.addEventListener('change', () => change(control.value));
    } else {
      control = element('textarea', { spellcheck: 'false' });
      control.value = JSON.stringify(value ?? null, null, 1);
      control.addEventListener('change', () => {
        try { change(JSON.parse(control.value)); } catch (e) { control.setCustomValidity(e.message); control.reportValidity(); }
      });
    }
    return this.row(path, control, node, errors);
  }

  keyField(path, key, node, errors) {
    const shown = element('output', { text: key && key.device ? (key.text || `${key.device} ${key.scan_code}`) : '—' });
    const bind = element('button', { type: 'button', 'aria-label': 'Bind key', text: 'Bind key' });
    bind.addEventListener('click', () => this.handlers.bind(path));
    const clear = element('button', { type: 'button', text: 'Clear', 'aria-label': `Clear ${path.join('.')}` });
    clear.addEventListener('click', () => this.handlers.clearKey(path));
    const control = element('div', { class: 'key-field', role: 'group' }, shown, bind, clear);
    return this.row(path, control, { type: 'key', description: node.description }, errors);
  }

  macroField(path, lines, errors) {
    const area = element('textarea', { spellcheck: 'false', 'aria-label': path.join('.') });
    area.value = lines.join('\n');
    const marks = element('ol', { class: 'macro-lines', 'aria-label': `${path.join('.')} check` });
    const running = element('pre', { 'aria-label': `${path.join('.')} running form` });
    const refresh = async () => {
      const current = area.value.split('\n');
      const [bad, converted] = await Promise.all([this.handlers.macroCheck(current),
        this.handlers.macroRunning(current)]);
      marks.replaceChildren(...current.map((line, i) => element('li', {
        class: bad.includes(i + 1) ? 'bad' : null, 'data-line': i + 1,
        title: bad.includes(i + 1) ? 'not a macro command' : null, text: line || '\u00a0' })));
      running.textContent = converted.join('\n');
    };
    let timer = 0;
    area.addEventListener('input', () => { clearTimeout(timer); timer = setTimeout(refresh, 150); });
    area.addEventListener('change', () => this.handlers.change(path, area.value.split('\n').filter((l, i, all) => l !== '' || i < all.length - 1)));
    refresh();
    const box = element('div', { class: 'macro' }, area, element('div', {}, marks, running));
    return this.row(path, box, { type: 'array', description: 'one macro command a line' }, errors);
  }
}
