// The conversation as rows of one height, of which only those in sight are in the document.
const conversation = (() => {
  const {data} = report;
  const list = byId('list');
  const rowHeight = 20;
  const fewestToFold = 2;

  // What is unfolded: calls, exchanges, runs of exchanges (by their first one), cycles of calls.
  const open = {call: new Set(), exchange: new Set(), run: new Set(), cycle: new Set()};
  const cycleBehind = new Map(data.cycles.map((cycle, i) => [cycle[0] + cycle[1], i]));
  let onlyFaults = false;
  let rows = [];
  let current = 0;

  const isTroubled = (k) => data.exchanges.troubles[k] === '1';
  const hasTrouble = (i) => report.troubledCalls[i] === 1;

  const isAlike = (a, b) => {
    const {titles, parts, blocks, rows: fields} = data.exchanges;
    const hasSameTitle = blocks[a] !== 0 ? blocks[b] !== 0 : titles[a] === titles[b] && blocks[b] === 0;
    return hasSameTitle && parts[a] === parts[b] && fields[a] < 0 && fields[b] < 0 &&
      isTroubled(a) === isTroubled(b);
  };
  // Behind the last exchange that is like the first one.
  const endOfRun = (first, end) => {
    let k = first + 1;
    while (k < end && isAlike(first, k)) ++k;
    return k;
  };

  const padded = (text, width) => text.padEnd(width - 1) + ' ';
  const add = (kind, place, level, text, extra = {}) => rows.push({kind, place, level, text, ...extra});

  const addWrapped = (place, level, indent, text, most, isTrouble) => {
    for (let rest = text; rest;) {
      let cut = rest.length > most ? rest.lastIndexOf(' ', most) : rest.length;
      if (cut <= 0) cut = most;
      add('detail', place, level, indent + rest.slice(0, cut), {isTrouble});
      rest = rest.slice(cut).trimStart();
    }
  };
  const failures = new Map(data.failures.map((failure) => [failure[0], failure]));
  const addTransfer = (k, span) => {
    const hex = data.spans.hex[span];
    const verb = data.spans.kinds[span] === 'w' ? 'write' : 'read';
    const failure = failures.get(span);
    const asked = failure ? ` of ${failure[1]} asked for${failure[2] && `, result ${failure[2]}`}` : '';
    const head = `${report.place(report.ends[span], 6)}  ${verb} ${data.spans.bytes[span]}${asked}`;
    const untold = data.spans.activities[span] === '4' ? 'picture data' : 'bytes that are not told here';
    const bytes = hex < 0 ? untold : report.text(hex);
    if (bytes.length <= 48) return add('detail', k, 3, `         ${head} : ${bytes}`, {isTrouble: !!failure});
    add('detail', k, 3, `         ${head} :`, {isTrouble: !!failure});
    addWrapped(k, 3, '             ', bytes, 48, false);
  };
  const addExchange = (k) => {
    const told = report.exchange(k);
    const text = told.parts ? padded(told.title, 26) + told.parts : told.title;
    const isOpen = open.exchange.has(k);
    const line = told.isTrouble && told.line ? `  [line ${told.line}]` : '';
    add('exchange', k, 2, `${text}${line}`, {isTrouble: told.isTrouble, isOpen});
    if (!isOpen) return;
    if (text.length > 76) addWrapped(k, 3, '         ', told.parts, 76, told.isTrouble);
    for (const [name, value, isTrouble] of told.rows) {
      addWrapped(k, 3, '         ', padded(name, 30) + value, 76, isTrouble);
    }
    for (let i = 0; i < told.spans; ++i) addTransfer(k, told.firstSpan + i);
  };

  const runText = (first, end) => {
    const blocks = data.exchanges.blocks;
    const which = blocks[first] ? ` (blocks ${blocks[first]} to ${blocks[end - 1]})` : '';
    return `... ${end - first} more like it${which}`;
  };
  const addExchanges = (i) => {
    const end = report.callExchanges[i + 1];
    for (let k = report.callExchanges[i]; k < end;) {
      const behind = endOfRun(k, end);
      addExchange(k);
      const isRun = behind - k - 1 >= fewestToFold;
      if (isRun) {
        const isOpen = open.run.has(k);
        add('run', k, 2, runText(k + 1, behind), {isOpen, isTrouble: isTroubled(k)});
        if (!isOpen) {
          k = behind;
          continue;
        }
      }
      for (++k; k < behind; ++k) addExchange(k);
    }
  };
  const addTroubledExchanges = (i) => {
    for (let k = report.callExchanges[i]; k < report.callExchanges[i + 1]; ++k) {
      if (isTroubled(k)) addExchange(k);
    }
  };

  const addCall = (i) => {
    const told = report.call(i);
    const isOpen = open.call.has(i);
    const end = told.isCutOff ? 'never returned' : told.results && `-> ${told.results}`;
    add('call', i, 1, `${padded(report.place(told.begin), 11)}${told.heading} ${end}`,
      {isTrouble: hasTrouble(i), isOpen});
    if (!isOpen) return;
    if (told.host && !onlyFaults) addWrapped(i, 2, '     ', `settings by the host: ${told.host}`, 84, false);
    if (onlyFaults) addTroubledExchanges(i); else addExchanges(i);
    if (told.module && !onlyFaults) addWrapped(i, 2, '     ', `settings by the module: ${told.module}`, 84, false);
    if (told.isCutOff) add('detail', i, 2, '     the capture ends here, before the call returned', {isTrouble: true});
    else if (told.results) addWrapped(i, 2, '     ', `returned ${told.results}`, 84, told.isFailed);
  };
  // Returns the call behind those that a folded cycle stands for.
  const addCycle = (at) => {
    const [first, calls, repetitions] = data.cycles[cycleBehind.get(at)];
    const isOpen = open.cycle.has(at);
    const behind = first + calls * (repetitions + 1);
    const each = calls > 1 ? ` (${calls} calls each)` : '';
    const last = report.call(behind - 1);
    const text = `... ${repetitions} more like it${each}, until ${report.place(last.begin)}`;
    add('cycle', at, 1, text, {isOpen, isTrouble: hasTrouble(first)});
    return isOpen ? at : behind;
  };
  const build = () => {
    rows = [];
    for (let i = 0; i < data.calls.length;) {
      if (onlyFaults && !hasTrouble(i)) {
        ++i;
        continue;
      }
      if (!onlyFaults && cycleBehind.has(i)) {
        const next = addCycle(i);
        if (next !== i) {
          i = next;
          continue;
        }
      }
      addCall(i++);
    }
    current = Math.min(current, Math.max(rows.length - 1, 0));
    byId('rows').style.height = `${rows.length * rowHeight}px`;
    render();
  };

  const symbol = (row) => (row.isOpen === undefined ? '' : row.isOpen ? '\u25be ' : '\u25b8 ');
  const rowText = (row) => {
    const indent = row.kind === 'exchange' || row.kind === 'run' ? '   ' : '';
    const isMarked = row.isTrouble && row.kind !== 'detail';
    return `${indent}${symbol(row)}${isMarked ? '!! ' : ''}${row.text}`;
  };
  const rowElement = (row, i) => {
    const made = element('div', `row ${row.kind}`, rowText(row));
    made.id = `row-${i}`;
    made.dataset.row = i;
    made.style.top = `${i * rowHeight}px`;
    made.setAttribute('role', 'treeitem');
    made.setAttribute('aria-level', row.level);
    made.setAttribute('aria-setsize', rows.length);
    made.setAttribute('aria-posinset', i + 1);
    if (row.isOpen !== undefined) made.setAttribute('aria-expanded', row.isOpen);
    made.classList.toggle('fold', row.kind === 'run' || row.kind === 'cycle');
    made.classList.toggle('trouble', !!row.isTrouble);
    made.classList.toggle('match', search.isMatch(row));
    made.classList.toggle('current', i === current);
    if (i === current) made.setAttribute('aria-selected', 'true');
    return made;
  };
  const render = () => {
    const first = Math.max(Math.floor(list.scrollTop / rowHeight) - 10, 0);
    const last = Math.min(first + Math.ceil(list.clientHeight / rowHeight) + 20, rows.length);
    const made = [];
    for (let i = first; i < last; ++i) made.push(rowElement(rows[i], i));
    if (rows.length && (current < first || current >= last)) made.push(rowElement(rows[current], current));
    byId('rows').replaceChildren(...made);
    list.setAttribute('aria-activedescendant', `row-${current}`);
  };

  const setCurrent = (i) => {
    current = Math.min(Math.max(i, 0), Math.max(rows.length - 1, 0));
    const top = current * rowHeight;
    if (top < list.scrollTop) list.scrollTop = top;
    if (top + rowHeight > list.scrollTop + list.clientHeight) {
      list.scrollTop = top + rowHeight - list.clientHeight + 4;
    }
    render();
  };
  const toggle = (i, isOpen) => {
    const row = rows[i];
    if (!row || row.isOpen === undefined || row.isOpen === isOpen) return;
    if (row.isOpen) open[row.kind].delete(row.place); else open[row.kind].add(row.place);
    build();
  };

  // Unfolds all that stands around an exchange, or around a call where the exchange is negative.
  const unfoldTo = (call, exchange) => {
    for (const [at, i] of cycleBehind) {
      const [first, calls, repetitions] = data.cycles[i];
      if (call >= at && call < first + calls * (repetitions + 1)) open.cycle.add(at);
    }
    if (exchange < 0) return;
    open.call.add(call);
    const end = report.callExchanges[call + 1];
    for (let k = report.callExchanges[call]; k < exchange;) {
      const behind = endOfRun(k, end);
      if (exchange < behind) open.run.add(k);
      k = behind;
    }
  };

  return {
    build, render, setCurrent, toggle, unfoldTo,
    rows: () => rows, rowText, current: () => current,
    parentOf(i) {
      let parent = i;
      while (parent > 0 && rows[parent].level >= rows[i].level) --parent;
      return parent;
    },
    // Shows an exchange, or the call itself where it is negative.
    show(call, exchange) {
      if (onlyFaults && !(exchange < 0 ? hasTrouble(call) : isTroubled(exchange))) {
        conversation.showOnlyFaults(false);
      }
      unfoldTo(call, exchange);
      build();
      const kind = exchange < 0 ? 'call' : 'exchange';
      const place = exchange < 0 ? call : exchange;
      const found = rows.findIndex((row) => row.kind === kind && row.place === place);
      if (found < 0) return;
      list.scrollTop = found * rowHeight - list.clientHeight / 3;
      setCurrent(found);
    },
    showOnlyFaults(isOn) {
      onlyFaults = isOn;
      byId('only-faults').checked = isOn;
      if (isOn) conversation.openTroubled();
      build();
    },
    openTroubled() {
      data.calls.forEach((call, i) => hasTrouble(i) && open.call.add(i));
    },
    // What is unfolded at first: of a short conversation all calls, of a long one the troubled ones.
    openFirst() {
      const isShort = report.exchangeCount <= 300;
      data.calls.forEach((call, i) => (isShort || hasTrouble(i)) && open.call.add(i));
    },
    openAll() {
      data.calls.forEach((call, i) => open.call.add(i));
      build();
    },
    closeAll() {
      for (const set of Object.values(open)) set.clear();
      list.scrollTop = 0;
      current = 0;
      build();
    },
  };
})();
