// SPDX-License-Identifier: Apache-2.0
// A scene that shows what the panel can do, as the messages that a client would send.
import { catalogue, panel } from '../protocol/catalogue.js';
import { bmpOf } from './picture.js';

const side = panel.screen_width;
const white = 0xffffff;
const black = 0x000000;
const amber = 0xffc25c;
const green = 0x5cf5a6;
const ice = 0x72c8ff;
const grey = 0x9aa0a7;

function painted(draw) {
  const canvas = document.createElement('canvas');
  canvas.width = canvas.height = side;
  const context = canvas.getContext('2d', { willReadFrequently: true });
  context.fillStyle = '#05080b';
  context.fillRect(0, 0, side, side);
  draw(context);
  return bmpOf(context.getImageData(0, 0, side, side));
}

function waveform(context) {
  context.strokeStyle = '#15303a';
  for (let i = 16; i < side; i += 16) {
    context.strokeRect(i + 0.5, -1, 0, side + 2);
    context.strokeRect(-1, i + 0.5, side + 2, 0);
  }
  const curves = [['#2a93e8', 30, 23, 0.6], ['#5cf5a6', 40, 37, 2.1]];
  for (const [colour, height, length, phase] of curves) {
    context.strokeStyle = colour;
    context.lineWidth = 2;
    context.beginPath();
    for (let x = 0; x <= side; ++x) {
      const envelope = Math.sin((x / side) * Math.PI);
      context.lineTo(x, 66 - Math.sin((x / length) * Math.PI + phase) * height * envelope);
    }
    context.stroke();
  }
}

function gauge(context) {
  const [x, y, radius] = [64, 80, 50];
  const start = Math.PI * 0.8;
  const sweep = Math.PI * 1.4;
  const arc = (from, to, colour, width) => {
    context.strokeStyle = colour;
    context.lineWidth = width;
    context.beginPath();
    context.arc(x, y, radius, start + sweep * from, start + sweep * to);
    context.stroke();
  };
  arc(0, 1, '#24282e', 9);
  arc(0, 0.62, '#ffc25c', 9);
  arc(0.86, 1, '#ff5a46', 3);
  context.strokeStyle = '#f4ebdd';
  context.lineWidth = 3;
  context.beginPath();
  context.moveTo(x, y);
  context.lineTo(x + Math.cos(start + sweep * 0.62) * 36, y + Math.sin(start + sweep * 0.62) * 36);
  context.stroke();
  context.fillStyle = '#f4ebdd';
  context.beginPath();
  context.arc(x, y, 5, 0, Math.PI * 2);
  context.fill();
}

export function demonstration() {
  const line = (screen_id, line_id, text, flag = 1) =>
    catalogue.encode('BMS_TFTTextLine', { screen_id, line_id, flag }, text);
  const part = (screen, row, offset, text, colour, background = black) =>
    catalogue.encode('BMS_TFTSubTextLine', { _screen_id: screen, _line_id: row, _offset: offset, _num_chars: text.length,
      _text_colour: colour, _back_colour: background }, text);
  const picture = (screen, draw) =>
    catalogue.encode('BMS_DrawTFTImage', { _screen_id: screen, _xoffset: 0, _yoffset: 0 }, painted(draw));
  const led = (button_id, state, time = 0) => catalogue.encode('BMS_SetLEDState', { button_id, state, time });
  const status = (button_id, state) => catalogue.encode('BMS_SetLEDStatusIndicator', { button_id, state });
  const toggle = (button_id, state) => catalogue.encode('BMS_SetLEDToggleIndicator', { button_id, state });

  const lit = [0, 5, 9, 10, 18, 23];
  return [
    catalogue.encode('BMS_BlackoutScreen', { screen_id: panel.all_screens }),
    line(0, 0, '  CHANNEL 7', 0),
    part(0, 2, 0, 'Frequency', grey),
    part(0, 3, 0, '118.250 MHz', amber),
    part(0, 4, 0, 'Volume', grey),
    part(0, 5, 0, '\xa0'.repeat(9), black, green),
    part(0, 5, 9, '\xa0'.repeat(7), black, 0x24323a),
    part(0, 7, 0, 'Ready', green),
    part(0, 7, 11, '12:30', white),
    picture(1, waveform),
    part(1, 7, 0, '  L  ', black, ice),
    part(1, 7, 11, '  R  ', black, green),
    picture(2, gauge),
    part(2, 0, 0, 'Power', white),
    part(2, 0, 12, '62 %', amber),
    ...Array.from({ length: panel.button_count }, (_, id) => led(id, lit.includes(id) ? 1 : 0)),
    led(14, -1, 500),
    ...Array.from({ length: panel.led_count }, (_, id) => status(id, [0, 1, 2, 4, 8, 9, 12, 17, 24, 25, 31].includes(id) ? 1 : 0)),
    toggle(0, 0),
    toggle(1, 1),
    catalogue.encode('BMS_Ping', {}),
  ];
}
