// SPDX-License-Identifier: Apache-2.0
// The line for a shell that sends the same message.
import { hexOf } from '../protocol/bytes.js';
import { panel } from '../protocol/catalogue.js';

const mostHexDigits = 2000;

const quoted = (text) => (/^[\w@%+=:,./-]+$/.test(text) && !text.startsWith('-') ? text : `'${text.replaceAll("'", "'\\''")}'`);
const isIn = (value, lowest, highest) => value >= lowest && value <= highest;
const isBelow = (value, count) => isIn(value, 0, count - 1);
const screenOf = (id) => (id === panel.all_screens ? 'all' : String(id));
const colourOf = (value) => value.toString(16).padStart(6, '0').toUpperCase();
// Everything after "--" is an argument, also what starts with a dash.
const withText = (text, words, options) =>
  text.startsWith('-') ? [words[0], ...options, '--', ...words.slice(1)] : [...words, ...options];

// Each returns the words after "buttonctl", or null for what only "raw" can say. `parts` has the values, the text or
// bytes after the head, and the picture's file.
const commands = {
  BMS_TFTTextLine: ({ values, rest }) => isBelow(values.line_id, panel.screen_height) &&
    withText(rest, ['text', screenOf(values.screen_id), String(values.line_id), quoted(rest)],
      values.flag === 0 ? ['--black-on-white'] : []),
  BMS_TFTSubTextLine: ({ values, rest }) =>
    isBelow(values._line_id, panel.screen_height) && isBelow(values._offset, panel.screen_width) &&
    isIn(values._num_chars, 1, panel.screen_width) &&
    rest.length === values._num_chars &&
    withText(rest, ['subtext', screenOf(values._screen_id), String(values._line_id), String(values._offset), quoted(rest)],
      [...(values._text_colour === 0xffffff ? [] : ['--colour', colourOf(values._text_colour)]),
        ...(values._back_colour === 0 ? [] : ['--background', colourOf(values._back_colour)])]),
  BMS_DrawTFTImage: ({ values, fileName, isFitted }) => {
    const { _xoffset: x, _yoffset: y } = values;
    if (!fileName || x < 0 || y < 0) return null;
    return ['image', screenOf(values._screen_id), quoted(fileName), ...(x || y ? ['--at', `${x},${y}`] : []),
      ...(isFitted ? ['--fit'] : [])];
  },
  BMS_BlackoutScreen: ({ values }) => ['blackout', screenOf(values.screen_id)],
  BMS_SetLEDState: ({ values: { button_id: id, state, time } }) => {
    if (!(id === panel.all_buttons || isBelow(id, panel.button_count)) || (state === -1 && time < 1) || (state !== -1 && time !== 0)) return null;
    const how = state === -1 ? ['blink', String(time)] : [state === 1 ? 'on' : 'off'];
    return ['led', id === panel.all_buttons ? 'all' : String(id), ...how];
  },
  BMS_SetLEDStatusIndicator: ({ values }) =>
    isBelow(values.button_id, panel.led_count) && ['status', String(values.button_id), values.state === 1 ? 'on' : 'off'],
  BMS_SetLEDToggleIndicator: ({ values }) =>
    isBelow(values.button_id, panel.toggle_count) && ['toggle', String(values.button_id), values.state === 1 ? 'on' : 'off'],
  BMS_UploadImage: ({ values, fileName }) =>
    fileName && values.image_id >= 0 && ['upload', String(values.image_id), quoted(fileName)],
  BMS_Reconfig: () => ['reconfig'],
  BMS_Ping: () => ['ping'],
  TYPE_NULL_MESSAGE: ({ rest }) => (rest?.length ? ['null', hexOf(rest)] : ['null']),
};

export function commandLine(name, parts, bytes, port) {
  const where = port && port !== panel.default_port ? ['-p', String(port)] : [];
  const host = /^(127\.0\.0\.1|localhost|\[::1\])$/.test(location.hostname) ? [] : ['--host', location.hostname];
  const words = commands[name]?.(parts) || rawCommand(bytes);
  return words ? ['buttonctl', ...host, ...where, ...words].join(' ') : 'Too long for a command line.';
}

function rawCommand(bytes) {
  const hex = hexOf(bytes);
  return hex.length <= mostHexDigits && ['raw', hex.replace(/.{8}(?=.)/g, '$& ')];
}
