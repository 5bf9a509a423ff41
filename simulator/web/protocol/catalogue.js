// SPDX-License-Identifier: Apache-2.0
// What the server says of the panel and of the messages, and how the bytes of a message are made.
import { latin1 } from './bytes.js';

class Catalogue {
  constructor(types) {
    this.types = types;
  }

  find(name) {
    return this.types.find((type) => type.name === name);
  }

  // Whether a message in network order, without its length, is of this type.
  isA(name, bytes) {
    return bytes.length >= 4 && new DataView(bytes.buffer, bytes.byteOffset).getUint32(0) === this.find(name).opcode;
  }

  // The message in network order, without its length. `values` has the fields by name; `rest` is what follows the head
  // (a text, bytes, or ids), which is also counted here.
  encode(name, values, rest) {
    const type = this.find(name);
    const tail = this.#tail(type, rest);
    const bytes = new Uint8Array(type.head_size + tail.bytes.length);
    const view = new DataView(bytes.buffer);
    type.fields.forEach((field, i) => {
      const isCount = type.counted !== 'nothing' && i === type.fields.length - 1;
      const value = i === 0 ? type.opcode : isCount ? tail.count : values[field.name] ?? 0;
      if (field.kind === 'bytes') bytes.set(value, field.offset);
      else if (field.width === 1) view.setUint8(field.offset, value);
      else if (field.kind === 'signed') view.setInt32(field.offset, value);
      else view.setUint32(field.offset, value);
    });
    bytes.set(tail.bytes, type.head_size);
    return bytes;
  }

  // The values and what follows the head of a message of this type; what is missing reads as zero.
  decode(name, message) {
    const type = this.find(name);
    const bytes = new Uint8Array(Math.max(message.length, type.head_size));
    bytes.set(message);
    const view = new DataView(bytes.buffer);
    const values = {};
    for (const { name: field, kind, offset, width } of type.fields) {
      if (kind === 'bytes') values[field] = bytes.slice(offset, offset + width);
      else if (width === 1) values[field] = view.getUint8(offset);
      else values[field] = kind === 'signed' ? view.getInt32(offset) : view.getUint32(offset);
    }
    return { values, rest: this.#rest(type, bytes.subarray(type.head_size)) };
  }

  #rest(type, tail) {
    if (type.counted === 'text') return String.fromCharCode(...tail.subarray(0, -1));
    if (type.counted !== 'ids') return tail;
    const view = new DataView(tail.buffer, tail.byteOffset);
    return Array.from({ length: Math.floor(tail.length / 4) }, (_, i) => view.getUint32(i * 4));
  }

  #tail(type, rest) {
    switch (type.counted) {
      case 'text': {
        const bytes = latin1(rest ?? '');
        return { bytes: Uint8Array.of(...bytes, 0), count: bytes.length + 1 };
      }
      case 'image':
        return { bytes: rest ?? new Uint8Array(), count: rest?.length ?? 0 };
      case 'ids': {
        const bytes = new Uint8Array((rest ?? []).length * 4);
        const view = new DataView(bytes.buffer);
        (rest ?? []).forEach((id, i) => view.setUint32(i * 4, id));
        return { bytes, count: (rest ?? []).length };
      }
      default:
        return { bytes: rest ?? new Uint8Array(), count: 0 };
    }
  }
}

const answer = await (await fetch('catalogue.json')).json();

// The panel's dimensions, and the port on which a daemon usually listens.
export const panel = answer.panel;
export const catalogue = new Catalogue(answer.messages);
