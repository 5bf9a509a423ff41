// SPDX-License-Identifier: Apache-2.0
// Takes a picture: dropped, chosen, or pasted. `onchange` is called when there is another one.
import { readPicture } from './picture.js';

let nextId = 0;

export class PictureInput {
  onchange = () => {};

  // `render` makes of a bitmap what is sent, and draws it: it returns { bytes, image } or { fault }.
  constructor(label, hint, render) {
    this.render = render;
    this.bitmap = null;
    this.name = '';
    this.note = hint;
    this.element = document.createElement('div');
    this.element.className = 'drop';
    this.preview = document.createElement('canvas');
    this.preview.width = this.preview.height = 1;
    this.preview.setAttribute('aria-hidden', 'true');
    this.text = document.createElement('p');
    this.text.id = `picture-${nextId++}`;
    this.text.textContent = hint;
    this.file = document.createElement('input');
    this.file.type = 'file';
    this.file.accept = 'image/*';
    this.file.setAttribute('aria-describedby', this.text.id);
    const choose = document.createElement('label');
    choose.className = 'quiet';
    choose.append(label, this.file);
    this.element.append(this.preview, this.text, choose);
    this.#listen();
  }

  #listen() {
    this.file.addEventListener('change', () => this.take(this.file.files[0]));
    this.element.addEventListener('dragover', (event) => {
      event.preventDefault();
      this.element.classList.add('over');
    });
    this.element.addEventListener('dragleave', () => this.element.classList.remove('over'));
    this.element.addEventListener('drop', (event) => {
      event.preventDefault();
      this.element.classList.remove('over');
      this.take(event.dataTransfer.files[0]);
    });
  }

  async take(file) {
    if (!file) return;
    this.bitmap = await readPicture(file);
    this.name = file.name;
    this.note = this.bitmap ? '' : 'This is no picture that the browser can read.';
    this.onchange();
  }

  // What is sent, null when there is nothing; shows it as well.
  read() {
    if (!this.bitmap) {
      this.text.textContent = this.note;
      return null;
    }
    const { bytes, image, fault } = this.render(this.bitmap);
    this.text.textContent = fault ?? `${this.name}, ${image.width} × ${image.height} pixels`;
    if (fault) return null;
    this.preview.width = image.width;
    this.preview.height = image.height;
    this.preview.getContext('2d').putImageData(image, 0, 0);
    return bytes;
  }

  check() {
    return this.read() === null;
  }
}
