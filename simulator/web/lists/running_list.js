// SPDX-License-Identifier: Apache-2.0
// A list that grows at its end and forgets its beginning. It follows its end unless the reader has scrolled away.
const mostRows = 500;
const nearTheEnd = 24;

export class RunningList {
  #list;
  #scroller;
  #leftOut;
  #pause;
  #held = [];
  #leftOutCount = 0;

  // `name` is that of the list's elements; `rowOf` makes a row of an entry.
  constructor(name, rowOf) {
    this.#list = document.getElementById(name);
    this.#scroller = this.#list.parentElement;
    this.#leftOut = document.getElementById(`${name}-left-out`);
    this.#pause = document.getElementById(`${name}-pause`);
    this.rowOf = rowOf;
    this.#pause.addEventListener('click', () => this.#togglePause());
  }

  add(entries, leftOut) {
    this.#leftOutCount += leftOut;
    this.#held.push(...entries);
    if (this.#held.length > mostRows) this.#held.splice(0, this.#held.length - mostRows);
    this.#leftOut.textContent = this.#leftOutCount > 0 ? `${this.#leftOutCount.toLocaleString('en')} left out, too many at once` : '';
    if (!this.isPaused) this.#show();
  }

  clear() {
    this.#held = [];
    this.#leftOutCount = 0;
    this.#leftOut.textContent = '';
    this.#list.replaceChildren();
  }

  get isPaused() {
    return this.#pause.getAttribute('aria-pressed') === 'true';
  }

  #togglePause() {
    this.#pause.setAttribute('aria-pressed', String(!this.isPaused));
    if (!this.isPaused) this.#show();
  }

  #show() {
    const { scrollHeight, scrollTop, clientHeight } = this.#scroller;
    const follows = scrollHeight - scrollTop - clientHeight < nearTheEnd;
    this.#list.append(...this.#held.map(this.rowOf));
    this.#held = [];
    while (this.#list.childElementCount > mostRows) this.#list.firstElementChild.remove();
    if (follows) this.#scroller.scrollTop = this.#scroller.scrollHeight;
  }
}
