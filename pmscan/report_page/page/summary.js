// The parts of the page that are told once: outcome, scanner, faults, time, calls, settings.
const summary = (() => {
  const {data} = report;

  const addRow = (table, cells) => {
    const row = table.tBodies[0].insertRow();
    for (const {text, isNumber, child, isTrouble} of cells) {
      const cell = row.insertCell();
      cell.className = [isNumber && 'number', isTrouble && 'trouble'].filter(Boolean).join(' ');
      if (child) cell.append(child);
      if (text !== undefined) cell.append(text);
    }
  };
  const swatch = (activity) => element('span', `swatch activity-${activity}`);
  const link = (text, onClick) => {
    const button = element('button', 'link', text);
    button.type = 'button';
    button.addEventListener('click', onClick);
    return button;
  };

  const tellOutcome = () => {
    document.title = `${data.file}: scan report`;
    byId('file').textContent = data.file;
    byId('outcome').textContent = data.outcome.sentence;
    byId('outcome').classList.toggle('trouble', data.outcome.isTrouble);
    byId('notes').append(...data.notes.map((note) => element('li', '', note)));
    if (!data.scanner.length) data.scanner.push(['Scanner', 'the capture does not tell which']);
    for (const [label, value] of data.scanner) {
      byId('scanner').append(element('dt', '', label), element('dd', '', value));
    }
    byId('scanner').append(element('dt', '', 'Conversation'), element('dd', '', sizeText()));
  };
  const sizeText = () => {
    const [sent, received] = data.activities.reduce(
      (sum, row) => [sum[0] + row[3], sum[1] + row[4]], [0, 0]);
    const calls = data.hostCalls.reduce((sum, row) => sum + row[1], 0);
    const transfers = data.exchanges.spans.reduce((sum, count) => sum + count, 0);
    return `${report.counted(calls, 'call')}, ${report.counted(transfers, 'transfer')}, ${report.bytes(sent)} sent, ` +
      `${report.bytes(received)} received` +
      (report.hasTimes ? `, in ${report.duration(report.total)}` : '');
  };

  // Each fault once: what the scanner said, and the calls that failed or never returned.
  const faults = () => {
    const found = [];
    data.calls.forEach((row, i) => {
      for (let k = report.callExchanges[i]; k < report.callExchanges[i + 1]; ++k) {
        if (data.exchanges.troubles[k] === '1') found.push({call: i, exchange: k});
      }
      const call = report.call(i);
      if (call.isFailed || call.isCutOff) found.push({call: i, exchange: -1});
    });
    return found;
  };
  const faultText = ({call, exchange}) => {
    const of = report.call(call);
    if (exchange < 0) {
      const name = of.heading.split(',')[0];
      return `${report.place(of.end)}  ${name} ${of.isCutOff ? 'never returned' : `returned ${of.results}`}`;
    }
    const told = report.exchange(exchange);
    const wrong = told.rows.filter((row) => row[2]).map((row) => `${row[0]}: ${row[1]}`);
    return `${report.place(report.ends[told.firstSpan])}  ` +
      [report.exchangeText(exchange), ...wrong].join('; ') +
      (told.line ? `  [line ${told.line}]` : '');
  };
  const tellFaults = () => {
    const found = faults();
    const most = 200;
    byId('faults-title').textContent = found.length ? `Faults: ${found.length}` : 'Faults: none';
    for (const fault of found.slice(0, most)) {
      const item = element('li');
      item.append(link(faultText(fault), () => show(fault)));
      byId('faults').append(item);
    }
    if (found.length > most) {
      byId('faults').append(element('li', '', `${found.length - most} more; see \u201conly faults\u201d below`));
    }
  };
  const show = ({call, exchange}) => {
    const span = exchange < 0 ? report.callSpans[call + 1] - 1 : report.exchangeSpans[exchange];
    timeline.show(span);
    conversation.show(call, exchange);
  };

  const tellTime = () => {
    const {total} = report;
    data.activities.forEach(([name, spans, time, sent, received], i) => {
      if (!spans) return;
      const share = report.hasTimes ? time / total : 0;
      const piece = element('div', `activity-${i}`);
      piece.style.width = `${share * 100}%`;
      piece.title = `${name}: ${report.duration(time)}`;
      byId('bar').append(piece);
      addRow(byId('activities'), [
        {child: swatch(i), text: name},
        {text: report.hasTimes ? report.duration(time) : '', isNumber: true},
        {text: report.hasTimes ? `${(share * 100).toFixed(1)} %` : '', isNumber: true},
        {text: spans, isNumber: true}, {text: report.bytes(sent), isNumber: true},
        {text: report.bytes(received), isNumber: true}]);
      const item = element('li');
      item.append(swatch(i), name);
      byId('legend').append(item);
    });
    byId('bar').hidden = !report.hasTimes;
    if (!report.hasTimes) byId('time-title').textContent = 'What was said';
    tellLongest();
  };
  const tellLongest = () => {
    byId('longest-title').hidden = !data.longest.length;
    for (const span of data.longest) {
      const item = element('li');
      const text = `${report.duration(data.spans.lengths[span])} at ` +
        `${report.place(report.begins(span))}, ` +
        `${data.activities[data.spans.activities[span]][0]}, up to the ${report.spanText(span)}`;
      item.append(link(text, () => show(
        {call: report.callOfSpan(span), exchange: report.exchangeOfSpan(span)})));
      byId('longest').append(item);
    }
  };

  const tellCalls = () => {
    for (const [name, count, failed, time] of data.hostCalls) {
      addRow(byId('host-calls'), [
        {text: name}, {text: count, isNumber: true},
        {text: failed, isNumber: true, isTrouble: failed > 0},
        {text: report.hasTimes ? report.duration(time) : '', isNumber: true}]);
    }
    byId('host-calls').closest('section').hidden = !data.hostCalls.length;
  };
  const tellSettings = () => {
    for (const [call, member, before, after, byModule] of data.settings) {
      const name = call < 0 ? 'behind the last call' : report.call(call).heading.split(',')[0];
      addRow(byId('settings'), [
        {child: call < 0 ? name : link(name, () => show({call, exchange: -1}))},
        {text: byModule ? 'module' : 'host'}, {text: member}, {text: before}, {text: after}]);
    }
    byId('settings').closest('section').hidden = !data.settings.length;
  };

  return {
    tell() {
      tellOutcome();
      tellFaults();
      tellTime();
      tellCalls();
      tellSettings();
    },
    faults,
  };
})();
