// SPDX-License-Identifier: Apache-2.0
// Rows of the running lists. What clients have sent is only ever set as text.
function made(tag, className, text) {
  const element = document.createElement(tag);
  if (className) element.className = className;
  if (text !== undefined) element.textContent = text;
  return element;
}

function timeOf(milliseconds, withMilliseconds) {
  const date = new Date(milliseconds);
  const two = (number) => String(number).padStart(2, '0');
  const time = [date.getHours(), date.getMinutes(), date.getSeconds()].map(two).join(':');
  const element = made('time', '', withMilliseconds ? `${time}.${String(date.getMilliseconds()).padStart(3, '0')}` : time);
  element.dateTime = date.toISOString();
  return element;
}

export function messageRow(entry) {
  const row = made('li');
  const what = made('span', 'what');
  what.append(made('span', 'name', entry.name || 'unknown message'));
  for (const [name, value] of entry.fields) {
    if (name === 'opcode' && entry.name) continue;
    what.append(` ${name} `, made('b', '', String(value)));
  }
  if (entry.text !== undefined) what.append(' ', made('q', '', entry.text));
  if (entry.rest !== undefined) what.append(` and ${entry.rest.toLocaleString('en')} bytes`);
  row.append(timeOf(entry.time, true), made('span', 'client', String(entry.client)), what);
  return row;
}

export function logRow(entry) {
  const row = made('li', entry.source);
  row.append(timeOf(entry.time, false), made('span', 'text', entry.text));
  return row;
}
