// SPDX-License-Identifier: Apache-2.0
// The inputs of the form, one kind of thing each. An input has an `element`, says by `read()` what it holds, and by
// `fault()` what is wrong with that, if anything is.
import { bytesOf, isLatin1 } from '../protocol/bytes.js';

let nextId = 0;
const largestSigned = 0x7fffffff;

class Input {
  constructor(label, control, { hint, isWide } = {}) {
    this.control = control;
    control.id = `input-${nextId++}`;
    this.element = document.createElement('div');
    this.element.className = isWide ? 'field wide' : 'field';
    const name = document.createElement('label');
    name.htmlFor = control.id;
    name.textContent = label;
    this.wrong = document.createElement('span');
    this.wrong.className = 'wrong';
    this.wrong.id = `${control.id}-wrong`;
    this.element.append(name, control);
    if (hint) {
      const small = document.createElement('small');
      small.id = `${control.id}-hint`;
      small.textContent = hint;
      this.element.append(small);
      control.setAttribute('aria-describedby', `${small.id} ${this.wrong.id}`);
    } else {
      control.setAttribute('aria-describedby', this.wrong.id);
    }
    this.element.append(this.wrong);
  }

  // Shows what is wrong, and returns whether something is.
  check() {
    const fault = this.fault();
    this.wrong.textContent = fault ?? '';
    if (fault) this.control.setAttribute('aria-invalid', 'true');
    else this.control.removeAttribute('aria-invalid');
    return fault !== null;
  }

  fault() {
    return null;
  }
}

function inputOf(type, value) {
  const control = document.createElement('input');
  control.type = type;
  control.value = value;
  control.autocomplete = 'off';
  control.spellcheck = false;
  return control;
}

export class NumberInput extends Input {
  // `named` has the values outside of the range that mean something as well.
  constructor(label, { lowest, highest, named, value, hint }) {
    const control = inputOf('text', String(value));
    control.inputMode = 'numeric';
    super(label, control, { hint });
    this.lowest = lowest;
    this.highest = highest;
    this.named = named;
  }

  read() {
    return Number(this.control.value);
  }

  fault() {
    const text = this.control.value.trim();
    const value = Number(text);
    if (!/^-?(\d+|0x[0-9a-f]+)$/i.test(text)) return 'A whole number, please.';
    const isNamed = this.named.some(({ first, last }) => value >= first && value <= last);
    if (isNamed || (value >= this.lowest && value <= this.highest)) return null;
    return this.highest >= largestSigned ? `${this.lowest} or more, please.` : `From ${this.lowest} to ${this.highest}, please.`;
  }
}

export class ChoiceInput extends Input {
  // `choices` are pairs of a value and its text.
  constructor(label, choices, value) {
    const control = document.createElement('select');
    for (const [number, text] of choices) control.add(new Option(text, String(number), false, number === value));
    super(label, control);
  }

  read() {
    return Number(this.control.value);
  }
}

export class ColourInput extends Input {
  constructor(label, value) {
    super(label, inputOf('color', value));
  }

  read() {
    return parseInt(this.control.value.slice(1), 16);
  }
}

export class TextInput extends Input {
  constructor(label, value) {
    super(label, inputOf('text', value), { isWide: true });
  }

  read() {
    return this.control.value;
  }

  fault() {
    return isLatin1(this.control.value) ? null : 'The panel knows only the characters of Latin-1.';
  }
}

export class IdsInput extends Input {
  constructor(label, value) {
    super(label, inputOf('text', value), { isWide: true, hint: 'Numbers, with blanks or commas between them' });
  }

  read() {
    return this.control.value.split(/[\s,]+/).filter(Boolean).map(Number);
  }

  fault() {
    return this.read().every((id) => Number.isInteger(id) && id >= 0 && id <= 0xffffffff) ? null : 'Whole numbers, please.';
  }
}

export class BytesInput extends Input {
  constructor(label, { value, hint, fewest, most = Infinity }) {
    const control = document.createElement('textarea');
    control.value = value;
    control.spellcheck = false;
    super(label, control, { hint, isWide: true });
    this.fewest = fewest;
    this.most = most;
  }

  read() {
    return bytesOf(this.control.value) ?? new Uint8Array();
  }

  fault() {
    const bytes = bytesOf(this.control.value);
    if (bytes === null) return 'Two hexadecimal digits for each byte, please.';
    if (bytes.length === 0 && this.fewest > 0) return 'This would be an empty message: some bytes, please.';
    if (bytes.length < this.fewest) return `At least ${this.fewest} bytes, please.`;
    return bytes.length > this.most ? `At most ${this.most} bytes, please.` : null;
  }
}
