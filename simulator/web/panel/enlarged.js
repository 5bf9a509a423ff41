// SPDX-License-Identifier: Apache-2.0
// A screen as large as the window has room for, until Escape or a click; it goes on showing what is new.
export class Enlarged {
  #dialog = document.getElementById('enlarged');
  #canvas = this.#dialog.querySelector('canvas');
  #screen = null;

  constructor() {
    this.#dialog.addEventListener('click', () => this.#dialog.close());
    this.#dialog.addEventListener('close', () => {
      this.#screen.ondrawn = () => {};
      this.#screen = null;
    });
  }

  open(screen) {
    const { width, height } = screen.canvas;
    this.#screen = screen;
    this.#canvas.width = width;
    this.#canvas.height = height;
    const pixel = 1 / (devicePixelRatio || 1);
    const room = Math.min(innerWidth - 32, innerHeight - 90);
    const scale = Math.max(1, Math.floor(room / (width * pixel)));
    this.#canvas.style.width = `${scale * width * pixel}px`;
    this.#dialog.setAttribute('aria-label', `Screen ${screen.id}, enlarged`);
    screen.ondrawn = () => this.#canvas.getContext('2d').drawImage(screen.canvas, 0, 0);
    screen.ondrawn();
    this.#dialog.showModal();
  }
}
