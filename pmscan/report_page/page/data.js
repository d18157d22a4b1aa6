'use strict';

// What pmscan told of the capture, made ready to be looked up.
const report = (() => {
  const data = JSON.parse(document.getElementById('data').textContent);
  const text = (place) => data.strings[place];
  const spanCount = data.spans.kinds.length;

  // Where each span ends: microseconds from the end of the first one; without times, so many spans.
  const ends = new Float64Array(spanCount);
  let now = 0;
  for (let i = 0; i < spanCount; ++i) ends[i] = now += data.spans.lengths[i];
  const hasTimes = now > 0;
  if (!hasTimes) for (let i = 0; i < spanCount; ++i) ends[i] = i + 1;
  const total = spanCount ? ends[spanCount - 1] : 0;
  const begins = (span) => (span ? ends[span - 1] : 0);

  // The first span of each call and of each exchange, and the first exchange of each call; one more
  // of each marks the end.
  const callSpans = new Int32Array(data.calls.length + 1);
  const callExchanges = new Int32Array(data.calls.length + 1);
  data.calls.forEach((call, i) => {
    callSpans[i + 1] = callSpans[i] + call[5];
    callExchanges[i + 1] = callExchanges[i] + call[6];
  });
  const exchangeCount = data.exchanges.titles.length;
  const exchangeSpans = new Int32Array(exchangeCount + 1);
  const exchangeCalls = new Int32Array(exchangeCount);
  data.calls.forEach((call, i) => {
    let span = callSpans[i] + (call[4] & 4 ? 0 : 1);
    for (let k = callExchanges[i]; k < callExchanges[i + 1]; ++k) {
      exchangeSpans[k] = span;
      exchangeCalls[k] = i;
      span += data.exchanges.spans[k];
    }
  });
  exchangeSpans[exchangeCount] = spanCount;

  // 1 for a call that failed, that never returned, or in which something went wrong.
  const troubledCalls = new Uint8Array(data.calls.length);
  for (let k = 0; k < exchangeCount; ++k) {
    if (data.exchanges.troubles[k] === '1') troubledCalls[exchangeCalls[k]] = 1;
  }
  data.calls.forEach((call, i) => {
    if (call[4] & 3) troubledCalls[i] = 1;
  });

  // The last place of a sorted row whose number is not above the value.
  const lastUpTo = (row, value, count = row.length) => {
    let low = 0;
    let high = count - 1;
    while (low < high) {
      const middle = (low + high + 1) >> 1;
      if (row[middle] <= value) low = middle; else high = middle - 1;
    }
    return low;
  };

  const call = (i) => {
    const [heading, results, host, module, flags] = data.calls[i];
    return {
      heading: flags & 4 ? 'outside the host\u2019s calls' : text(heading),
      results: text(results), host: text(host), module: text(module),
      isFailed: (flags & 1) !== 0, isCutOff: (flags & 2) !== 0,
      // A call begins where its first span ends; transfers outside of calls with their own.
      begin: flags & 4 ? begins(callSpans[i]) : ends[callSpans[i]],
      end: ends[callSpans[i + 1] - 1],
    };
  };
  const exchange = (k) => ({
    title: text(data.exchanges.titles[k]), parts: text(data.exchanges.parts[k]),
    block: data.exchanges.blocks[k], isTrouble: data.exchanges.troubles[k] === '1',
    line: data.exchanges.lines[k],
    rows: data.exchanges.rows[k] < 0 ? [] : data.rows[data.exchanges.rows[k]],
    firstSpan: exchangeSpans[k], spans: data.exchanges.spans[k],
  });
  const exchangeText = (k) => {
    const {title, parts} = exchange(k);
    return parts ? `${title}, ${parts}` : title;
  };

  // The exchange that a span belongs to; -1 for the begin or the end of a call.
  const exchangeOfSpan = (span) => {
    const kind = data.spans.kinds[span];
    return kind === 'w' || kind === 'r' ? lastUpTo(exchangeSpans, span, exchangeCount) : -1;
  };
  const callOfSpan = (span) => lastUpTo(callSpans, span, data.calls.length);

  const seconds = (microseconds, digits = 3) => `${(microseconds / 1e6).toFixed(digits)} s`;
  // A length of time with three digits that count.
  const duration = (microseconds) => {
    if (microseconds >= 1e6) return `${(microseconds / 1e6).toPrecision(4)} s`;
    if (microseconds >= 1e3) return `${(microseconds / 1e3).toPrecision(3)} ms`;
    return `${Math.round(microseconds)} \u00b5s`;
  };
  const place = (at, digits = 3) => (hasTimes ? seconds(data.start + at, digits) : `entry ${Math.round(at)}`);
  const bytes = (count) => (count < 1e4 ? `${count} B`
    : count < 1e7 ? `${(count / 1e3).toFixed(0)} kB` : `${(count / 1e6).toFixed(1)} MB`);

  const counted = (count, noun) => `${count} ${noun}${count === 1 ? '' : 's'}`;

  // What a span ends with, as one line.
  const spanText = (span) => {
    const kind = data.spans.kinds[span];
    const of = call(callOfSpan(span));
    if (kind === 'b') return `begin of ${of.heading}`;
    if (kind === 'e') return `end of ${of.heading.split(',')[0]}`;
    return `${kind === 'w' ? 'write' : 'read'} of ${counted(data.spans.bytes[span], 'byte')}: ` +
      exchangeText(exchangeOfSpan(span));
  };

  return {data, text, spanCount, ends, begins, hasTimes, total, callSpans, callExchanges,
    exchangeSpans, exchangeCalls, exchangeCount, troubledCalls, lastUpTo, call, exchange, exchangeText,
    exchangeOfSpan, callOfSpan, duration, place, bytes, counted, spanText};
})();

// An element with a class and a text; the text is never taken for markup.
const element = (name, className, text) => {
  const made = document.createElement(name);
  if (className) made.className = className;
  if (text !== undefined) made.textContent = text;
  return made;
};
const byId = (id) => document.getElementById(id);
