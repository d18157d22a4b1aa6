// Mouse, touch and keyboard on the timeline.
const timelineInput = (() => {
  const canvas = byId('timeline');
  let dragged = null;

  const spanUnder = (event) => timeline.spanAt(Math.min(Math.max(timeline.timeAt(event.offsetX), 0), report.total));
  const isOnOverview = (event) => event.offsetY >= timeline.lanes.overview.top;

  const tellUnder = (event) => {
    const span = spanUnder(event);
    const length = report.hasTimes ? `${report.duration(report.data.spans.lengths[span])} of ` : '';
    byId('under').textContent = `${report.place(report.ends[span], 6)}: ${length}` +
      `${report.data.activities[report.data.spans.activities[span]][0]}, up to the ${report.spanText(span)}`;
  };
  const showUnder = (event) => {
    if (isOnOverview(event)) return moveTo(event);
    const span = spanUnder(event);
    timeline.show(span);
    conversation.show(report.callOfSpan(span), report.exchangeOfSpan(span));
  };
  const moveTo = (event) => {
    const {from, to} = timeline.view();
    const share = (timeline.timeAt(event.offsetX) - from) / (to - from);
    const middle = share * report.total;
    timeline.setView(middle - (to - from) / 2, middle + (to - from) / 2);
  };

  const press = (event) => {
    dragged = {x: event.offsetX, moved: false};
    canvas.setPointerCapture(event.pointerId);
  };
  const drag = (event) => {
    if (!dragged) return tellUnder(event);
    const by = timeline.timeAt(dragged.x) - timeline.timeAt(event.offsetX);
    if (Math.abs(event.offsetX - dragged.x) < 3 && !dragged.moved) return;
    const {from, to} = timeline.view();
    timeline.setView(from + by, to + by);
    dragged = {x: event.offsetX, moved: true};
  };
  const release = (event) => {
    if (dragged && !dragged.moved) showUnder(event);
    dragged = null;
  };
  const turn = (event) => {
    event.preventDefault();
    timeline.zoom(event.deltaY > 0 ? 1.25 : 0.8, timeline.timeAt(event.offsetX));
  };

  const keys = {
    '+': () => timeline.zoom(0.5), '=': () => timeline.zoom(0.5), '-': () => timeline.zoom(2),
    ArrowLeft: () => timeline.move(-0.25), ArrowRight: () => timeline.move(0.25), Home: timeline.all,
  };

  return {
    start() {
      if (!report.spanCount) return;
      canvas.addEventListener('pointerdown', press);
      canvas.addEventListener('pointermove', drag);
      canvas.addEventListener('pointerup', release);
      canvas.addEventListener('wheel', turn, {passive: false});
      canvas.addEventListener('keydown', (event) => {
        const act = keys[event.key];
        if (!act || event.ctrlKey || event.metaKey || event.altKey) return;
        event.preventDefault();
        act();
      });
      byId('zoom-in').addEventListener('click', () => timeline.zoom(0.5));
      byId('zoom-out').addEventListener('click', () => timeline.zoom(2));
      byId('zoom-all').addEventListener('click', timeline.all);
      byId('earlier').addEventListener('click', () => timeline.move(-0.5));
      byId('later').addEventListener('click', () => timeline.move(0.5));
    },
  };
})();
