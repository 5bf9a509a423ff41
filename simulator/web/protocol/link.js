// SPDX-License-Identifier: Apache-2.0
// The WebSocket to the server. It comes back by itself when the server has gone and come again.
import { catalogue, panel } from './catalogue.js';

const firstDelay = 250;
const longestDelay = 4000;
const rowsOfAScreen = 1;

export class Link {
  onopen = () => {};
  onlost = () => {};
  onrows = () => {};
  onupdate = () => {};
  onanswer = () => {};
  onnotsent = () => {};

  #socket = null;
  #delay = firstDelay;
  #pingsSent = [];

  open() {
    const socket = new WebSocket(`ws://${location.host}/live`);
    socket.binaryType = 'arraybuffer';
    socket.addEventListener('message', (event) => this.#take(event.data));
    socket.addEventListener('close', () => {
      this.#pingsSent = [];
      this.onlost();
      setTimeout(() => this.open(), this.#delay);
      this.#delay = Math.min(this.#delay * 2, longestDelay);
    });
    this.#socket = socket;
  }

  // A message in network order, without its length. Returns whether it could be sent.
  send(bytes) {
    if (this.#socket?.readyState !== WebSocket.OPEN) {
      this.onnotsent('There is no connection to the simulator.');
      return false;
    }
    if (catalogue.isA('BMS_Ping', bytes)) this.#pingsSent.push(performance.now());
    this.#socket.send(bytes);
    return true;
  }

  #take(data) {
    if (data instanceof ArrayBuffer) {
      const [kind, screen, firstRow, rowCount] = new Uint8Array(data, 0, 4);
      if (kind === rowsOfAScreen) this.onrows(screen, firstRow, this.#pixels(data, rowCount));
      return;
    }
    const update = JSON.parse(data);
    if (update.program !== undefined) {
      this.#delay = firstDelay;
      this.onopen(update);
    } else if (update.answer !== undefined) {
      const sent = this.#pingsSent.shift();
      this.onanswer(update.answer, sent === undefined ? null : performance.now() - sent);
    } else if (update.not_sent !== undefined) {
      this.onnotsent(update.not_sent);
    } else {
      this.onupdate(update);
    }
  }

  #pixels(data, rowCount) {
    const view = new DataView(data, 4);
    const pixels = new Uint16Array(rowCount * panel.screen_width);
    for (let i = 0; i < pixels.length; ++i) pixels[i] = view.getUint16(i * 2, true);
    return pixels;
  }
}
