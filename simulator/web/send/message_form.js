// SPDX-License-Identifier: Apache-2.0
// Which inputs a message has, and what they hold at first.
import { catalogue, panel } from '../protocol/catalogue.js';
import { hexOf } from '../protocol/bytes.js';
import { BytesInput, ChoiceInput, ColourInput, IdsInput, NumberInput, TextInput } from './inputs.js';
import { conditions, firstColour, firstValue } from './first_values.js';
import { PictureInput } from './picture_input.js';
import { bmpOf, buttonImage, fitsAt, isOnScreen, screenPixels } from './picture.js';

const screens = [...Array.from({ length: panel.screen_count }, (_, id) => [id, `Screen ${id}`]), [panel.all_screens, 'All screens']];

const label = (name) => name.replace(/^_/, '').replaceAll('_', ' ');

const capital = (text) => text[0].toUpperCase() + text.slice(1);

// The values of a field, each with its name; null when not every value has a name of its own.
function choicesOf({ lowest, highest, named }) {
  const choices = named.filter(({ first, last }) => first === last).map(({ first, name }) => [first, capital(name)]);
  for (let value = lowest; value <= highest; ++value)
    if (!choices.some(([one]) => one === value)) return null;
  return choices;
}

function inputFor(type, field) {
  const { lowest = field.lowest, hint = field.meaning } = conditions[`${type.name}.${field.name}`] ?? {};
  if (/^_?screen_id$/.test(field.name)) return new ChoiceInput('screen', screens, 0);
  if (field.is_colour) return new ColourInput(label(field.name), firstColour(field));
  if (field.kind === 'bytes') return bytesInputFor(field);
  const choices = choicesOf(field);
  if (choices) return new ChoiceInput(label(field.name), choices, firstValue(type, field) ?? choices[0][0]);
  const value = firstValue(type, field) ?? Math.min(Math.max(0, lowest), field.highest);
  return new NumberInput(label(field.name), { ...field, lowest, value, hint });
}

function bytesInputFor(field) {
  if (field.width === panel.button_image_bytes) return buttonPicture();
  const value = hexOf(new Uint8Array(field.width));
  return new BytesInput(label(field.name), { value, hint: field.meaning, fewest: field.width, most: field.width });
}

function buttonPicture() {
  const size = `${panel.button_image_width} × ${panel.button_image_height} pixels`;
  return new PictureInput('Choose a picture', `Drop a picture of ${size} here.`, (bitmap) => {
    const bytes = buttonImage(bitmap);
    return bytes ? { image: screenPixels(bitmap, 0, 0, false), bytes } : { fault: `A button image has ${size}.` };
  });
}

// Counts are made, not typed; fields with one possible value as well.
function isTyped(type, field, i) {
  const isCount = type.counted !== 'nothing' && i === type.fields.length - 1;
  return i > 0 && !isCount && onlyValue(field) === undefined;
}

// The one value that a field can have, if it is so.
function onlyValue({ lowest, highest }) {
  return lowest === highest ? lowest : undefined;
}

export const rawName = 'raw';

// The inputs of one message, and what they make together.
export class MessageForm {
  constructor(name) {
    this.name = name;
    this.type = catalogue.find(name);
    this.fields = new Map();
    this.rest = null;
    if (name === rawName) this.rest = new BytesInput('bytes', { value: '0000000c', fewest: 1, hint: 'From the opcode on, in hexadecimal; the length is put before them' });
    else this.#build();
  }

  #build() {
    this.type.fields.forEach((field, i) => {
      if (isTyped(this.type, field, i)) this.fields.set(field.name, inputFor(this.type, field));
    });
    if (this.type.counted === 'text') this.rest = new TextInput('text', this.name === 'BMS_TFTSubTextLine' ? '12:30' : 'Hello, panel');
    if (this.type.counted === 'ids') this.rest = new IdsInput('image ids', '1, 2');
    if (this.type.counted === 'image') this.rest = this.#screenPicture();
    if (this.name === 'TYPE_NULL_MESSAGE') this.rest = new BytesInput('bytes after the opcode', { value: '', fewest: 0 });
  }

  #screenPicture() {
    const corner = (name) => this.fields.get(name)?.read() ?? 0;
    return new PictureInput('Choose a picture', 'Drop a picture here. One that is too large is scaled to fit.', (bitmap) => {
      const [x, y] = [corner('_xoffset'), corner('_yoffset')];
      this.isFitted = !fitsAt(bitmap, x, y);
      if (this.isFitted && !isOnScreen(x, y)) return { fault: 'There is no room for a picture at this corner.' };
      const image = screenPixels(bitmap, x, y, this.isFitted);
      return { image, bytes: bmpOf(image) };
    });
  }

  // The input that takes a picture, null when there is none.
  get picture() {
    return this.inputs.find((input) => input instanceof PictureInput) ?? null;
  }

  get inputs() {
    return [...this.fields.values(), this.rest].filter((input) => input !== null);
  }

  #isNeeded(name) {
    return conditions[`${this.name}.${name}`]?.isNeeded((other) => this.fields.get(other).read()) ?? true;
  }

  // Shows what is needed, and what is wrong with it; returns whether something is.
  check() {
    for (const [name, input] of this.fields) input.element.hidden = !this.#isNeeded(name);
    return this.inputs.map((input) => !input.element.hidden && input.check()).includes(true);
  }

  // The message, and the parts that it is made of. Only when nothing is wrong.
  read() {
    if (this.name === rawName) return { bytes: this.rest.read(), parts: {} };
    const values = Object.fromEntries([...this.fields].map(([name, input]) => [name, this.#isNeeded(name) ? input.read() : 0]));
    for (const field of this.type.fields) values[field.name] ??= onlyValue(field);
    let rest = this.rest?.read();
    if (this.name === 'BMS_TFTSubTextLine' && values._num_chars > rest.length && values._num_chars <= panel.screen_width)
      rest = rest.padEnd(values._num_chars, ' ');
    const parts = { values, rest, fileName: this.picture?.name, isFitted: this.isFitted };
    return { bytes: catalogue.encode(this.name, values, rest), parts };
  }
}
