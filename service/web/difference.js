// Where two lists of lines differ.

const MOST_STEPS = 4_000_000;
const CONTEXT = 3;

// How long the longest common part of what stands behind each pair of lines is.
function commonLengths(left, right) {
  const width = right.length + 1;
  const lengths = new Uint32Array((left.length + 1) * width);
  for (let i = left.length - 1; i >= 0; --i) {
    for (let j = right.length - 1; j >= 0; --j) {
      lengths[i * width + j] = left[i] === right[j]
        ? lengths[(i + 1) * width + j + 1] + 1
        : Math.max(lengths[(i + 1) * width + j], lengths[i * width + j + 1]);
    }
  }
  return (i, j) => lengths[i * width + j];
}

// Lines that went and lines that came in the same place are one line that has changed.
function paired(gone, come) {
  const rows = [];
  for (let at = 0; at < Math.max(gone.length, come.length); ++at) {
    if (at < gone.length && at < come.length) rows.push({ kind: "changed", left: gone[at], right: come[at] });
    else if (at < gone.length) rows.push({ kind: "gone", left: gone[at] });
    else rows.push({ kind: "new", right: come[at] });
  }
  return rows;
}

function middleRows(left, right) {
  if (left.length * right.length > MOST_STEPS) return paired(left, right);
  const length = commonLengths(left, right);
  const rows = [];
  let [i, j, gone, come] = [0, 0, [], []];
  while (i < left.length || j < right.length) {
    if (i < left.length && j < right.length && left[i] === right[j]) {
      rows.push(...paired(gone, come), { kind: "same", left: left[i++], right: right[j++] });
      [gone, come] = [[], []];
    } else if (j === right.length || (i < left.length && length(i + 1, j) >= length(i, j + 1))) gone.push(left[i++]);
    else come.push(right[j++]);
  }
  return [...rows, ...paired(gone, come)];
}

// Of a long run of equal lines, those beside a difference stay.
function shortened(rows) {
  const near = new Set();
  rows.forEach((row, at) => {
    if (row.kind !== "same") for (let k = at - CONTEXT; k <= at + CONTEXT; ++k) near.add(k);
  });
  const result = [];
  for (let at = 0; at < rows.length; ++at) {
    if (near.has(at)) {
      result.push(rows[at]);
    } else if (result.at(-1)?.kind === "equal") {
      ++result.at(-1).count;
    } else {
      result.push({ kind: "equal", count: 1 });
    }
  }
  return result;
}

export function compared(left, right) {
  let begin = 0;
  while (begin < Math.min(left.length, right.length) && left[begin] === right[begin]) ++begin;
  let end = 0;
  while (end < Math.min(left.length, right.length) - begin && left.at(-1 - end) === right.at(-1 - end)) ++end;
  const same = (from, to) => left.slice(from, to).map((line) => ({ kind: "same", left: line, right: line }));
  return shortened([...same(0, begin),
    ...middleRows(left.slice(begin, left.length - end), right.slice(begin, right.length - end)),
    ...same(left.length - end, left.length)]);
}
