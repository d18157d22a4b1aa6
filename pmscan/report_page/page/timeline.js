// Calls, activities, bytes and blocks over time, drawn on a canvas: what is narrower than a pixel is
// added up column by column, so that the drawing costs the same however much there is.
const timeline = (() => {
  const {data, ends, begins, total, spanCount} = report;
  const canvas = byId('timeline');
  const lanes = {
    calls: {top: 24, height: 28, label: 'calls'},
    waits: {top: 60, height: 16, label: 'waits'},
    activities: {top: 84, height: 36, label: 'activity'},
    sent: {top: 128, height: 24, label: 'bytes sent'},
    received: {top: 152, height: 30, label: 'bytes received'},
    blocks: {top: 194, height: 16, label: 'blocks'},
    overview: {top: 226, height: 18, label: 'all'},
  };
  const left = 104;
  const narrowest = 2;  // microseconds, or spans
  let view = {from: 0, to: total};
  let marked = -1;
  let colours = {};

  // Sums up to the end of each span.
  const activityCount = data.activities.length;
  const timeUpTo = data.activities.map(() => new Float64Array(spanCount + 1));
  const bytesUpTo = {w: new Float64Array(spanCount + 1), r: new Float64Array(spanCount + 1)};
  for (let i = 0; i < spanCount; ++i) {
    for (const sums of [...timeUpTo, bytesUpTo.w, bytesUpTo.r]) sums[i + 1] = sums[i];
    timeUpTo[data.spans.activities[i]][i + 1] += ends[i] - begins(i);
    if (bytesUpTo[data.spans.kinds[i]]) bytesUpTo[data.spans.kinds[i]][i + 1] += data.spans.bytes[i];
  }

  const width = () => canvas.clientWidth - left - 8;
  const x = (at) => left + ((at - view.from) / (view.to - view.from)) * width();
  const timeAt = (px) => view.from + ((px - left) / width()) * (view.to - view.from);
  // The span under way at a time.
  const spanAt = (at) => {
    const span = report.lastUpTo(ends, at);
    return Math.min(ends[span] <= at ? span + 1 : span, spanCount - 1);
  };

  const readColours = () => {
    const style = getComputedStyle(document.documentElement);
    for (const name of ['ink', 'quiet', 'line', 'ground', 'paper', 'trouble', 'focus', 'block',
      'activity-0', 'activity-1', 'activity-2', 'activity-3', 'activity-4', 'activity-5']) {
      colours[name] = style.getPropertyValue(`--${name}`).trim();
    }
  };

  const ticks = () => {
    const wanted = (view.to - view.from) / Math.max(width() / 110, 1);
    const power = 10 ** Math.floor(Math.log10(wanted));
    return [1, 2, 5, 10].map((factor) => factor * power).find((step) => step >= wanted);
  };
  const drawAxis = (pen) => {
    const step = ticks();
    const digits = Math.min(Math.max(6 - Math.floor(Math.log10(step)), 0), 6);
    pen.textAlign = 'left';
    const start = report.hasTimes ? data.start : 0;
    const end = start + view.to;
    for (let clock = Math.ceil((start + view.from) / step) * step; clock <= end; clock += step) {
      const at = clock - start;
      pen.fillStyle = colours.line;
      pen.fillRect(x(at), 18, 1, 196);
      pen.fillStyle = colours.quiet;
      pen.fillText(report.place(at, digits), x(at) + 3, 12);
    }
  };
  const drawLabels = (pen) => {
    pen.fillStyle = colours.paper;
    pen.fillRect(0, 0, left, canvas.clientHeight);
    pen.fillStyle = colours.quiet;
    pen.textAlign = 'right';
    for (const {top, height, label} of Object.values(lanes)) {
      pen.fillText(label, left - 8, top + height / 2 + 4);
    }
  };

  // Boxes from left to right; those that are too narrow to be seen are drawn as one.
  const drawBoxes = (pen, lane, boxes) => {
    let drawnTo = -1;
    for (const {begin, end, colour, label, ink} of boxes) {
      const from = Math.max(x(begin), left);
      const to = Math.min(Math.max(x(end), from + 1), left + width());
      if (to <= drawnTo + 0.25 && colour !== colours.trouble) continue;
      pen.fillStyle = colour;
      pen.fillRect(from, lane.top, Math.max(to - from - (to - from > 4 ? 1 : 0), 1), lane.height);
      drawnTo = to;
      if (!label || to - from < 40) continue;
      pen.save();
      pen.beginPath();
      pen.rect(from, lane.top, to - from - 3, lane.height);
      pen.clip();
      pen.fillStyle = ink;
      pen.textAlign = 'left';
      pen.fillText(label, from + 4, lane.top + lane.height / 2 + 4);
      pen.restore();
    }
  };
  function* visibleCalls() {
    for (let i = report.callOfSpan(spanAt(view.from)); i < data.calls.length; ++i) {
      const call = report.call(i);
      if (call.begin > view.to) return;
      const isTrouble = call.isFailed || call.isCutOff;
      yield {begin: call.begin, end: call.end, label: call.heading.split(',')[0],
        colour: isTrouble ? colours.trouble : colours.line, ink: isTrouble ? colours.paper : colours.ink};
    }
  }
  function* visibleBlocks() {
    let k = Math.max(report.lastUpTo(report.exchangeSpans, spanAt(view.from), report.exchangeCount), 0);
    for (; k < report.exchangeCount && begins(report.exchangeSpans[k]) <= view.to; ++k) {
      if (!data.exchanges.blocks[k]) continue;
      const last = report.exchangeSpans[k] + data.exchanges.spans[k] - 1;
      const isTrouble = data.exchanges.troubles[k] === '1';
      yield {begin: begins(report.exchangeSpans[k]), end: ends[last],
        label: String(data.exchanges.blocks[k]), ink: colours.paper,
        colour: isTrouble ? colours.trouble : colours.block};
    }
  }

  // What took a noticeable part of all the time.
  const waits = [];
  for (let i = 0; report.hasTimes && i < spanCount; ++i) {
    if (ends[i] - begins(i) >= total / 200) waits.push(i);
  }
  function* visibleWaits() {
    for (const i of waits) {
      if (ends[i] < view.from || begins(i) > view.to) continue;
      yield {begin: begins(i), end: ends[i], label: report.duration(data.spans.lengths[i]),
        colour: colours.quiet, ink: colours.paper};
    }
  }

  // Wide spans one by one.
  const drawSpans = (pen, first, last) => {
    const {top, height} = lanes.activities;
    for (let i = first; i <= last; ++i) {
      const from = Math.max(x(begins(i)), left);
      const to = Math.min(x(ends[i]), left + width());
      pen.fillStyle = colours[`activity-${data.spans.activities[i]}`];
      pen.fillRect(from, top, Math.max(to - from, 0.5), height);
    }
  };
  // Many spans: the shares of each column of pixels.
  const drawShares = (pen) => {
    const {top, height} = lanes.activities;
    for (let column = 0; column < width(); ++column) {
      const first = spanAt(timeAt(left + column));
      const last = Math.max(spanAt(timeAt(left + column + 1)), first);
      const all = ends[last] - begins(first);
      let y = top;
      for (let i = 0; all > 0 && i < activityCount; ++i) {
        const share = ((timeUpTo[i][last + 1] - timeUpTo[i][first]) / all) * height;
        pen.fillStyle = colours[`activity-${i}`];
        pen.fillRect(left + column, y, 1, share);
        y += share;
      }
    }
  };
  const drawActivities = (pen) => {
    const first = spanAt(view.from);
    const last = spanAt(view.to);
    if (last - first > 2 * width()) drawShares(pen); else drawSpans(pen, first, last);
  };

  // Bytes of each column of pixels; a tenfold of bytes adds the same height.
  const drawBytes = (pen, lane, sums, isDownwards) => {
    const highest = Math.log10(1 + Math.max(sums[spanCount], 9));
    pen.fillStyle = colours.ink;
    let before = sums[report.lastUpTo(ends, view.from) + (ends[0] <= view.from ? 1 : 0)];
    for (let column = 0; column < width(); ++column) {
      const at = timeAt(left + column + 1);
      const upTo = ends[0] <= at ? sums[report.lastUpTo(ends, at) + 1] : 0;
      const height = (Math.log10(1 + upTo - before) / highest) * lane.height;
      if (height > 0) {
        pen.fillRect(left + column, isDownwards ? lane.top : lane.top + lane.height - height, 1, height);
      }
      before = upTo;
    }
  };

  const drawOverview = (pen) => {
    const {top, height} = lanes.overview;
    const scale = width() / total;
    pen.fillStyle = colours.ground;
    pen.fillRect(left, top, width(), height);
    pen.fillStyle = colours.trouble;
    for (const {call, exchange} of troubles) {
      const span = exchange < 0 ? report.callSpans[call + 1] - 1 : report.exchangeSpans[exchange];
      pen.fillRect(left + ends[span] * scale - 1, top, 2, height);
    }
    pen.strokeStyle = colours.focus;
    pen.lineWidth = 2;
    pen.strokeRect(left + view.from * scale, top,
      Math.max((view.to - view.from) * scale, 2), height);
  };
  const drawMark = (pen) => {
    if (marked < 0) return;
    pen.strokeStyle = colours.focus;
    pen.lineWidth = 2;
    const from = x(begins(marked));
    pen.strokeRect(from, 20, Math.max(x(ends[marked]) - from, 2), 194);
  };

  let troubles = [];
  let isDue = false;
  const draw = () => {
    isDue = false;
    const scale = window.devicePixelRatio || 1;
    canvas.width = canvas.clientWidth * scale;
    canvas.height = canvas.clientHeight * scale;
    if (!spanCount || width() <= 0) return;
    const pen = canvas.getContext('2d');
    pen.scale(scale, scale);
    pen.font = '12px system-ui, sans-serif';
    readColours();
    drawAxis(pen);
    drawBoxes(pen, lanes.calls, visibleCalls());
    drawBoxes(pen, lanes.waits, visibleWaits());
    drawActivities(pen);
    drawBytes(pen, lanes.sent, bytesUpTo.w, false);
    drawBytes(pen, lanes.received, bytesUpTo.r, true);
    drawBoxes(pen, lanes.blocks, visibleBlocks());
    drawMark(pen);
    drawLabels(pen);
    drawOverview(pen);
    byId('range').textContent = `${report.place(view.from, 6)} to ${report.place(view.to, 6)}`;
  };
  const redraw = () => {
    if (isDue) return;
    isDue = true;
    requestAnimationFrame(draw);
  };

  const setView = (from, to) => {
    const length = Math.min(Math.max(to - from, Math.min(narrowest, total)), total);
    const begin = Math.min(Math.max(from, 0), total - length);
    view = {from: begin, to: begin + length};
    redraw();
  };
  const zoom = (factor, at = (view.from + view.to) / 2) =>
    setView(at - (at - view.from) * factor, at + (view.to - at) * factor);
  const move = (share) => {
    const by = (view.to - view.from) * share;
    setView(view.from + by, view.to + by);
  };

  return {
    draw, redraw, setView, zoom, move, timeAt, spanAt,
    lanes,
    view: () => view,
    all: () => setView(0, total),
    // Marks a span, and shows it with what is around it.
    show(span) {
      marked = span;
      const length = Math.max((ends[span] - begins(span)) * 4, (view.to - view.from) / 4, narrowest);
      const middle = (ends[span] + begins(span)) / 2;
      const isSeen = begins(span) >= view.from && ends[span] <= view.to;
      if (isSeen && x(ends[span]) - x(begins(span)) > 3) redraw();
      else setView(middle - length / 2, middle + length / 2);
    },
    start() {
      troubles = summary.faults();
      draw();
    },
  };
})();
