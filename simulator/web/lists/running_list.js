// SPDX-License-Identifier: Apache-2.0
// A list that grows at its end and forgets its beginning. It stands still while somebody reads in it: while it is
// paused, scrolled away from its end, has an open row, or a row has the keyboard. A frame only writes it, and never asks
// how it is laid out; the style sheet keeps its end in view.
import { matches } from './filter.js';

const mostRows = 500;
// Milliseconds from one change of the list to the next.
const interval = 250;
const nearTheEnd = 24;

const element = (id) => document.getElementById(id);
const newest = (entries) => (entries.length > mostRows ? entries.slice(-mostRows) : entries);
const counted = (number) => number.toLocaleString('en');

export class RunningList {
  #list;
  #scroller;
  #row;
  #kept = [];
  #waiting = [];
  #leftOut = 0;
  #filter = '';
  #isStale = false;
  #isAtItsEnd = true;
  #isDue = false;
  #changedAt = -Infinity;

  // `name` is that of the list's elements. `row` has two functions: make() makes an empty row, and fill(row, entry) puts
  // an entry into it, or another one; and `textOf(entry)` is what the filter looks at.
  constructor(name, row) {
    this.#row = row;
    this.#list = element(name);
    this.#scroller = this.#list.parentElement;
    this.note = element(`${name}-note`);
    this.pause = element(`${name}-pause`);
    this.pause.addEventListener('click', () => {
      this.pause.setAttribute('aria-pressed', String(!this.#isPaused));
      this.#becomeDue();
    });
    element(`${name}-clear`).addEventListener('click', () => this.clear());
    element(`${name}-filter`).addEventListener('input', (event) => this.#setFilter(event.target.value));
    // Scrolling is told before anything of a frame is written.
    this.#scroller.addEventListener('scroll', () => {
      this.#isAtItsEnd = this.#scroller.scrollTop > -nearTheEnd;
      this.#becomeDue();
    });
    for (const event of ['toggle', 'focusout']) this.#list.addEventListener(event, () => this.#becomeDue(), true);
  }

  add(entries, leftOut) {
    this.#leftOut += leftOut;
    this.#kept = newest([...this.#kept, ...entries]);
    this.#waiting = newest([...this.#waiting, ...entries.filter((entry) => this.#isWanted(entry))]);
    this.#becomeDue();
  }

  clear() {
    this.#kept = [];
    this.#leftOut = 0;
    this.#showAll();
  }

  #setFilter(text) {
    this.#filter = text.trim().toLowerCase();
    this.#showAll();
  }

  // The rows that stand there count no more.
  #showAll() {
    this.#waiting = this.#kept.filter((entry) => this.#isWanted(entry));
    this.#isStale = true;
    this.#becomeDue();
  }

  #isWanted(entry) {
    return matches(this.#row.textOf(entry), this.#filter);
  }

  get #isPaused() {
    return this.pause.getAttribute('aria-pressed') === 'true';
  }

  get #isHeld() {
    return this.#isPaused || !this.#isAtItsEnd || this.#list.querySelector('[open], :focus-visible') !== null;
  }

  #becomeDue() {
    if (this.#isDue) return;
    this.#isDue = true;
    const wait = Math.max(0, this.#changedAt + interval - performance.now());
    setTimeout(() => requestAnimationFrame(() => this.#show()), wait);
  }

  #show() {
    this.#isDue = false;
    this.#changedAt = performance.now();
    if (this.#isStale) this.#list.replaceChildren();
    if (this.#isStale || !this.#isHeld) this.#showWaiting();
    this.#isStale = false;
    this.#showNote();
  }

  // Rows that have grown too old become the new ones.
  #showWaiting() {
    const rows = document.createDocumentFragment();
    let tooMany = this.#list.childElementCount + this.#waiting.length - mostRows;
    for (const entry of this.#waiting) {
      const row = tooMany-- > 0 ? this.#list.firstElementChild ?? this.#row.make() : this.#row.make();
      this.#row.fill(row, entry);
      rows.append(row);
    }
    this.#list.append(rows);
    this.#waiting = [];
  }

  #showNote() {
    const notes = [];
    if (this.#waiting.length > 0) notes.push(`${counted(this.#waiting.length)}${this.#waiting.length === mostRows ? ' or more' : ''} new, held back`);
    if (this.#leftOut > 0) notes.push(`${counted(this.#leftOut)} left out, too many at once`);
    const text = notes.join('; ');
    if (this.note.textContent !== text) this.note.textContent = text;
  }
}
