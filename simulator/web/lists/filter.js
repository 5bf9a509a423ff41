// SPDX-License-Identifier: Apache-2.0
// Which rows a list shows: those that have every word of the filter, in any order, small or capital.
export const matches = (text, filter) => {
  if (filter === '') return true;
  const lower = text.toLowerCase();
  return filter.split(/\s+/).every((word) => lower.includes(word));
};
