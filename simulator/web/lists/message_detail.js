// SPDX-License-Identifier: Apache-2.0
// What an open row of the messages shows: the bytes, and the line for a shell that sends the same.
import { bytesOf } from '../protocol/bytes.js';
import { catalogue } from '../protocol/catalogue.js';
import { commandLine } from '../send/command_line.js';

const wordDigits = 8;

const areEqual = (one, other) => one.length === other.length && one.every((byte, i) => byte === other[i]);

// The line, or why there is none.
function lineFor(entry, bytes, port) {
  if (bytes.length < entry.size) return 'Too long for a command line.';
  if (!entry.name) return commandLine('', {}, bytes, port);
  const { values, rest } = catalogue.decode(entry.name, bytes);
  // A message that its client has made in another way is sent as it is.
  const isUsual = areEqual(catalogue.encode(entry.name, values, rest), bytes);
  return commandLine(isUsual ? entry.name : '', { values, rest }, bytes, port);
}

export function fillDetail(place, entry, port) {
  const bytes = bytesOf(entry.bytes);
  const hex = document.createElement('code');
  hex.className = 'hex';
  hex.textContent = entry.bytes.replace(new RegExp(`.{${wordDigits}}(?=.)`, 'g'), '$& ');
  const size = document.createElement('p');
  const more = entry.size - bytes.length;
  size.textContent = `${entry.size.toLocaleString('en')} bytes${more > 0 ? `, these are the first ${bytes.length}` : ''}`;
  const line = document.createElement('code');
  line.className = 'line';
  line.textContent = lineFor(entry, bytes, port);
  place.append(size, hex, line);
}
