// Finds calls and exchanges by their words, in any case, and exchanges by the bytes of their
// transfers as well.
const search = (() => {
  const {data} = report;
  let wanted = '';
  let hits = [];  // [call, exchange], the exchange -1 for the call itself; in their order
  let place = -1;
  let exchangeTexts = null;
  let callTexts = null;

  // Made when something is searched for the first time.
  const prepare = () => {
    if (exchangeTexts) return;
    const small = data.strings.map((text) => text.toLowerCase());
    const fields = data.rows.map((rows) => rows.map((row) => `${row[0]} ${row[1]}`).join(', ').toLowerCase());
    const {titles, parts, rows} = data.exchanges;
    exchangeTexts = titles.map((title, k) =>
      `${small[title]} ${small[parts[k]]}${rows[k] < 0 ? '' : `, ${fields[rows[k]]}`}`);
    callTexts = data.calls.map((call) =>
      call.slice(0, 4).map((text) => small[text]).join(' '));
  };

  // 1 for each exchange with a transfer of these bytes.
  const withBytes = (text) => {
    const found = new Uint8Array(report.exchangeCount);
    if (!/^[0-9a-f]{2}( [0-9a-f]{2})*$/i.test(text)) return found;
    const bytes = text.toUpperCase();
    const matches = data.strings.map((one) => one.includes(bytes));
    for (let span = 0; span < report.spanCount; ++span) {
      const hex = data.spans.hex[span];
      if (hex >= 0 && matches[hex]) found[report.exchangeOfSpan(span)] = 1;
    }
    return found;
  };

  const collect = () => {
    hits = [];
    if (!wanted) return;
    prepare();
    const bytes = withBytes(wanted);
    for (let i = 0; i < data.calls.length; ++i) {
      if (callTexts[i].includes(wanted)) hits.push([i, -1]);
      for (let k = report.callExchanges[i]; k < report.callExchanges[i + 1]; ++k) {
        if (bytes[k] || exchangeTexts[k].includes(wanted)) hits.push([i, k]);
      }
    }
  };
  const tell = () => {
    byId('found').textContent = !wanted ? ''
      : !hits.length ? 'not found' : `${place + 1} of ${hits.length}`;
  };
  const go = (to) => {
    if (!hits.length) return;
    place = (to + hits.length) % hits.length;
    tell();
    conversation.show(...hits[place]);
  };

  // Shows the first place with the words.
  const find = (text) => {
    wanted = text.trim().replace(/\s+/g, ' ').toLowerCase();
    collect();
    place = -1;
    tell();
    if (hits.length) go(0); else conversation.render();
  };

  return {
    find,
    isMatch: (row) => wanted !== '' && conversation.rowText(row).toLowerCase().includes(wanted),
    start() {
      byId('search').addEventListener('input', (event) => find(event.target.value));
      byId('search').addEventListener('keydown', (event) => {
        if (event.key === 'Enter') go(place + (event.shiftKey ? -1 : 1));
      });
      byId('next').addEventListener('click', () => go(place + 1));
      byId('previous').addEventListener('click', () => go(place - 1));
    },
  };
})();
