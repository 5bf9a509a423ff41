// SPDX-License-Identifier: Apache-2.0
// Which lines of the log say that the daemon did not do what a message asks for. It tells its clients nothing of that.
const refusal = new RegExp("^\\s*(buttondriver: ?)?(button id -?\\d+ must|invalid|failed to upload|error generating" +
  "|could not allocate|dib header|only 24-bit|bitmap data and|bmp data pointer|input parameter 'data')|unhandled switch case", 'i');

// The first one of some entries, null when there is none.
export const refusalAmong = (entries) => entries.find(({ text }) => refusal.test(text))?.text.trim() ?? null;
