// SPDX-License-Identifier: Apache-2.0
// Which inputs a message has, and what they hold at first.
import { BytesInput, ChoiceInput, ColourInput, IdsInput, NumberInput, TextInput } from './inputs.js';
import { PictureInput } from './picture_input.js';
import { bmpOf, buttonImage, fitsAt, screenPixels } from './picture.js';

const onOff = [[1, 'On'], [0, 'Off']];
const choices = {
  'BMS_SetLEDState.state': [[1, 'On'], [0, 'Off'], [-1, 'Blinking']],
  'BMS_SetLEDStatusIndicator.state': onOff,
  'BMS_SetLEDToggleIndicator.state': onOff,
  'BMS_TFTTextLine.flag': [[1, 'White on black'], [0, 'Black on white']],
};
const screens = [[0, 'Screen 0'], [1, 'Screen 1'], [2, 'Screen 2'], [-1, 'All screens']];
const firstValues = {
  'BMS_SetLEDState.button_id': 5,
  'BMS_TFTSubTextLine._line_id': 2,
  'BMS_TFTSubTextLine._num_chars': 5,
  'BMS_SetParameter.parameter': 8,
};
const firstColours = { _text_colour: '#ffc25c', _back_colour: '#000000' };

const label = (name) => name.replace(/^_/, '').replaceAll('_', ' ');

function numberRange(field) {
  if (field.width === 1) return { lowest: 0, highest: 255 };
  return field.kind === 'signed' ? { lowest: -(2 ** 31), highest: 2 ** 31 - 1 } : { lowest: 0, highest: 2 ** 32 - 1 };
}

function inputFor(type, field) {
  const place = `${type.name}.${field.name}`;
  if (/^_?screen_id$/.test(field.name)) return new ChoiceInput('screen', screens, 0);
  if (choices[place]) return new ChoiceInput(label(field.name), choices[place], choices[place][0][0]);
  if (field.name in firstColours) return new ColourInput(label(field.name), firstColours[field.name]);
  return new NumberInput(label(field.name), { ...numberRange(field), value: firstValues[place] ?? 0, hint: field.meaning });
}

// Counts are made, not typed; the sizes of pictures and reserved fields as well.
function isTyped(type, field, i) {
  const isCount = type.counted !== 'nothing' && i === type.fields.length - 1;
  return i > 0 && !isCount && field.kind !== 'bytes' && !field.name.includes('reserved') && `${type.name}.${field.name}` !== 'BMS_UploadImage.size';
}

export const rawName = 'raw';

// The inputs of one message, and what they make together.
export class MessageForm {
  constructor(catalogue, name) {
    this.catalogue = catalogue;
    this.name = name;
    this.type = catalogue.find(name);
    this.fields = new Map();
    this.rest = null;
    this.picture = null;
    if (name === rawName) this.rest = new BytesInput('bytes', { value: '0000000c', fewest: 0, hint: 'From the opcode on, in hexadecimal; the length is put before them' });
    else this.#build();
  }

  #build() {
    this.type.fields.forEach((field, i) => {
      if (isTyped(this.type, field, i)) this.fields.set(field.name, inputFor(this.type, field));
    });
    if (this.type.counted === 'text') this.rest = new TextInput('text', this.name === 'BMS_TFTSubTextLine' ? '12:30' : 'Hello, panel');
    if (this.type.counted === 'ids') this.rest = new IdsInput('image ids', '1, 2');
    if (this.name === 'TYPE_NULL_MESSAGE') this.rest = new BytesInput('bytes behind the opcode', { value: '', fewest: 0 });
    if (this.name === 'BMS_DrawTFTImage') this.picture = this.#screenPicture();
    if (this.name === 'BMS_UploadImage') this.picture = this.#buttonPicture();
  }

  #screenPicture() {
    return new PictureInput('Choose a picture', 'Drop a picture here. One that is too large is scaled to fit.', (bitmap) => {
      const x = this.fields.get('_xoffset').read();
      const y = this.fields.get('_yoffset').read();
      this.isFitted = !fitsAt(bitmap, x, y);
      if (this.isFitted && (x < 0 || y < 0 || x > 127 || y > 127)) return { fault: 'There is no room for a picture at this corner.' };
      const image = screenPixels(bitmap, x, y, this.isFitted);
      return { image, bytes: bmpOf(image) };
    });
  }

  #buttonPicture() {
    return new PictureInput('Choose a picture', 'Drop a picture of 40 × 24 pixels here.', (bitmap) => {
      const bytes = buttonImage(bitmap);
      if (!bytes) return { fault: 'A button image has 40 × 24 pixels.' };
      return { image: screenPixels(bitmap, 0, 0, false), bytes };
    });
  }

  get inputs() {
    return [...this.fields.values(), this.rest, this.picture].filter((input) => input !== null);
  }

  // Shows what is wrong; returns whether something is.
  check() {
    return this.inputs.map((input) => input.check()).includes(true);
  }

  // The message, and the parts that it is made of. Only when nothing is wrong.
  read() {
    if (this.name === rawName) return { bytes: this.rest.read(), parts: {} };
    const values = Object.fromEntries([...this.fields].map(([name, input]) => [name, input.read()]));
    let rest = this.rest?.read();
    if (this.name === 'BMS_TFTSubTextLine' && values._num_chars > rest.length && values._num_chars <= 128)
      rest = rest.padEnd(values._num_chars, ' ');
    const picture = this.picture?.read();
    if (this.name === 'BMS_UploadImage') Object.assign(values, { size: picture.length, image: picture });
    if (this.name === 'BMS_DrawTFTImage') rest = picture;
    const parts = { values, rest, fileName: this.picture?.name, isFitted: this.isFitted };
    return { bytes: this.catalogue.encode(this.name, values, rest), parts };
  }
}
