// SPDX-License-Identifier: Apache-2.0
// The messages as the server's catalogue has them, and how their bytes are made.
export class Catalogue {
  static async load() {
    return new Catalogue(await (await fetch('catalogue.json')).json());
  }

  constructor(types) {
    this.types = types;
  }

  find(name) {
    return this.types.find((type) => type.name === name);
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

export const isLatin1 = (text) => /^[\u0000-\u00ff]*$/.test(text);

export function latin1(text) {
  return Uint8Array.from(text, (character) => character.charCodeAt(0) & 0xff);
}

export const hexOf = (bytes) => Array.from(bytes, (byte) => byte.toString(16).padStart(2, '0')).join('');

// Bytes of hexadecimal digits, blanks ignored; null when it is something else.
export function bytesOf(hex) {
  const digits = hex.replace(/\s+/g, '');
  if (digits.length % 2 !== 0 || !/^[0-9a-fA-F]*$/.test(digits)) return null;
  return Uint8Array.from({ length: digits.length / 2 }, (_, i) => parseInt(digits.slice(i * 2, i * 2 + 2), 16));
}
