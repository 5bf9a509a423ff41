// SPDX-License-Identifier: Apache-2.0
// What the form of a message holds at first, and what it says beside what the catalogue says.
const brightest = 255;

// By message and field; by field; a field that is in neither has the lowest value that is no less than 0.
const values = {
  'BMS_SetLEDState.button_id': 5,
  'BMS_SetLEDState.time': 500,
  'BMS_SetLEDToggleIndicator.state': 1,
  'BMS_TFTSubTextLine._line_id': 2,
  'BMS_TFTSubTextLine._num_chars': 5,
  'BMS_TFTTextLine.flag': 1,
  'BMS_SetButtonColour.value_1': brightest,
  'BMS_SetButtonColourPair.first_value_1': brightest,
  'BMS_SetButtonColourPair.second_value_2': brightest,
  'BMS_SetButtonColourPair.first_time': 500,
  'BMS_SetButtonColourPair.second_time': 500,
};
const colours = { _text_colour: '#ffc25c' };

export const firstValue = (type, field) => values[`${type.name}.${field.name}`];
export const firstColour = (field) => colours[field.name] ?? '#000000';

// Fields that mean something with certain others only: `isNeeded` is asked with what the form reads. Elsewhere they are
// not shown, and sent as 0.
export const conditions = {
  'BMS_SetLEDState.time': { lowest: 1, isNeeded: (read) => read('state') === -1, hint: 'length of each blink phase in milliseconds' },
};

const remarks = {
  ignored: 'The panel does nothing with it: the daemon logs it as unhandled.',
  answer: 'The daemon sends it. From a client, it logs it as unhandled.',
};
export const remarkOn = (type) => remarks[type?.handling] ?? '';
