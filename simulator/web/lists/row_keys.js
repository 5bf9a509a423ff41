// SPDX-License-Identifier: Apache-2.0
// Moves between the rows of a list with the arrow keys, from the newest one on, at which the tabulator key stops.
const summaryOf = (row) => row?.querySelector('summary');

export function moveBetweenRows(list) {
  const scroller = list.parentElement;
  const go = (summary, event) => {
    if (!summary) return;
    event.preventDefault();
    summary.focus();
  };
  scroller.addEventListener('keydown', (event) => {
    if (event.ctrlKey || event.altKey || event.metaKey) return;
    const row = event.target.closest('li');
    if (event.key === 'ArrowUp') go(row ? summaryOf(row.previousElementSibling) : summaryOf(list.lastElementChild), event);
    else if (event.key === 'ArrowDown' && row) go(summaryOf(row.nextElementSibling), event);
    else if (event.key === 'Escape' && row) go(scroller, event);
  });
}
