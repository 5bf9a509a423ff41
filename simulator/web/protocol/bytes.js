// SPDX-License-Identifier: Apache-2.0
// Bytes as texts have them, and as people read them.
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
