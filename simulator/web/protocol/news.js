// SPDX-License-Identifier: Apache-2.0
// What has come since the last frame of the screen, shown in the next one: of each thing only the newest.
export class News {
  #latest = {};
  #isAsked = false;

  // `show` gets an object of the latest things.
  constructor(show) {
    this.show = show;
  }

  add(things) {
    Object.assign(this.#latest, things);
    if (this.#isAsked) return;
    this.#isAsked = true;
    requestAnimationFrame(() => {
      this.#isAsked = false;
      const latest = this.#latest;
      this.#latest = {};
      this.show(latest);
    });
  }

  forget() {
    this.#latest = {};
  }
}
