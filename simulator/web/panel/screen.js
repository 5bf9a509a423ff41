// SPDX-License-Identifier: Apache-2.0
// One of the three screens: its pixels on a canvas, and its texts for those who listen.
import { panel } from '../protocol/catalogue.js';
import { lettered } from './lettering.js';

const width = panel.screen_width;
const height = panel.screen_height;
const highestIntensity = panel.highest_intensity;
// A panel whose light never goes out: so many levels are left at intensity 0.
const darkest = 21;

// As the server's pictures do it: widened to 8 bits, then dimmed by (intensity + 21) / (highest + 21), halves rounded up.
function dimmed(value, intensity) {
  const divisor = highestIntensity + darkest;
  return Math.floor((value * (Math.min(intensity, highestIntensity) + darkest) + divisor / 2) / divisor);
}

export class Screen {
  constructor(id) {
    this.id = id;
    this.pixels = new Uint16Array(width * height);
    this.lines = [];
    this.element = this.#build();
    this.#context = this.canvas.getContext('2d');
    this.#image = this.#context.createImageData(width, height);
    this.setIntensity(highestIntensity);
    new ResizeObserver(() => this.#fit()).observe(this.glass);
    matchMedia(`(resolution: ${devicePixelRatio}dppx)`).addEventListener('change', () => this.#fit());
  }

  // Called when the canvas has changed.
  ondrawn = () => {};

  #context;
  #image;
  #firstOld = height;
  #endOfOld = 0;
  #five = new Uint8Array(32);
  #six = new Uint8Array(64);

  #build() {
    const figure = document.createElement('figure');
    figure.className = 'bezel';
    this.glass = document.createElement('div');
    this.glass.className = 'glass';
    this.canvas = document.createElement('canvas');
    this.canvas.width = width;
    this.canvas.height = height;
    this.canvas.id = `screen-${this.id}`;
    this.canvas.setAttribute('role', 'img');
    this.canvas.setAttribute('aria-label', `Screen ${this.id}`);
    this.canvas.setAttribute('aria-describedby', `screen-${this.id}-text`);
    this.description = document.createElement('p');
    this.description.id = `screen-${this.id}-text`;
    this.description.className = 'unseen';
    this.description.textContent = 'No text.';
    this.enlarge = document.createElement('button');
    this.enlarge.type = 'button';
    this.enlarge.className = 'enlarge';
    this.enlarge.setAttribute('aria-label', `Enlarge screen ${this.id}`);
    this.glass.append(this.canvas, this.enlarge, this.description);
    const caption = document.createElement('figcaption');
    caption.append(lettered(`SCREEN ${this.id}`, { height: 8, stroke: 1.1, spacing: 0.55 }));
    caption.setAttribute('aria-hidden', 'true');
    figure.append(this.glass, caption);
    return figure;
  }

  // The largest size at which every pixel is the same whole number of the display's.
  #fit() {
    const ratio = devicePixelRatio || 1;
    const scale = Math.max(1, Math.floor((this.glass.clientWidth * ratio) / width));
    this.canvas.style.width = `${(scale * width) / ratio}px`;
    this.canvas.style.height = `${(scale * height) / ratio}px`;
  }

  setIntensity(intensity) {
    for (let i = 0; i < 32; ++i) this.#five[i] = dimmed((i << 3) | (i >> 2), intensity);
    for (let i = 0; i < 64; ++i) this.#six[i] = dimmed((i << 2) | (i >> 4), intensity);
    this.#takeOld(0, height);
    this.draw();
  }

  // Keeps the pixels until draw().
  takeRows(firstRow, pixels) {
    this.pixels.set(pixels, firstRow * width);
    this.#takeOld(firstRow, firstRow + pixels.length / width);
  }

  clear() {
    this.pixels.fill(0);
    this.#takeOld(0, height);
    this.draw();
  }

  // These rows of the canvas are old.
  #takeOld(first, end) {
    this.#firstOld = Math.min(this.#firstOld, first);
    this.#endOfOld = Math.max(this.#endOfOld, end);
  }

  // Draws what has come since the last time.
  draw() {
    const first = this.#firstOld;
    const end = this.#endOfOld;
    if (first >= end) return;
    const { data } = this.#image;
    let to = first * width * 4;
    for (let from = first * width; from < end * width; ++from) {
      const pixel = this.pixels[from];
      data[to++] = this.#five[pixel >> 11];
      data[to++] = this.#six[(pixel >> 5) & 63];
      data[to++] = this.#five[pixel & 31];
      data[to++] = 255;
    }
    this.#context.putImageData(this.#image, 0, 0, 0, first, width, end - first);
    this.#firstOld = height;
    this.#endOfOld = 0;
    this.ondrawn();
  }

  // Returns what has changed, as sentences.
  showTexts(lines) {
    const changes = [];
    if (lines.length === 0 && this.lines.length > 0) changes.push(`Screen ${this.id} is clear.`);
    lines.forEach((line, i) => {
      if (line !== (this.lines[i] ?? '')) changes.push(`Screen ${this.id}, line ${i}: ${line.trim() || 'blank'}.`);
    });
    this.lines = lines;
    const spoken = lines.map((line, i) => (line.trim() ? `Line ${i}: ${line.trim()}.` : '')).filter(Boolean);
    const description = spoken.join(' ') || 'No text.';
    if (this.description.textContent !== description) this.description.textContent = description;
    return changes;
  }
}
