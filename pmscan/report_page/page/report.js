// Puts the page together, and fits it to the window, the colours and the printer.
(() => {
  const list = byId('list');
  const mostPrinted = 2000;

  const rowOf = (event) => event.target.closest('.row');
  const listKeys = {
    ArrowDown: () => conversation.setCurrent(conversation.current() + 1),
    ArrowUp: () => conversation.setCurrent(conversation.current() - 1),
    PageDown: () => conversation.setCurrent(conversation.current() + 20),
    PageUp: () => conversation.setCurrent(conversation.current() - 20),
    Home: () => conversation.setCurrent(0),
    End: () => conversation.setCurrent(conversation.rows().length - 1),
    ArrowRight: () => conversation.toggle(conversation.current(), true),
    ArrowLeft: () => {
      const row = conversation.rows()[conversation.current()];
      if (row && row.isOpen) conversation.toggle(conversation.current(), false);
      else conversation.setCurrent(conversation.parentOf(conversation.current()));
    },
    Enter: () => conversation.toggle(conversation.current()),
    ' ': () => conversation.toggle(conversation.current()),
  };
  const startList = () => {
    list.addEventListener('scroll', conversation.render);
    list.addEventListener('click', (event) => {
      const row = rowOf(event);
      if (!row) return;
      conversation.setCurrent(Number(row.dataset.row));
      conversation.toggle(Number(row.dataset.row));
    });
    list.addEventListener('keydown', (event) => {
      const act = listKeys[event.key];
      if (!act || event.ctrlKey || event.metaKey || event.altKey || !conversation.rows().length) return;
      event.preventDefault();
      act();
    });
    byId('only-faults').addEventListener('change', (event) => conversation.showOnlyFaults(event.target.checked));
    byId('open-all').addEventListener('click', conversation.openAll);
    byId('close-all').addEventListener('click', conversation.closeAll);
  };

  const beforePrint = () => {
    document.documentElement.classList.add('printing');
    const rows = conversation.rows();
    byId('printed').replaceChildren(...rows.slice(0, mostPrinted).map((row) =>
      element('div', row.isTrouble ? 'trouble' : '', conversation.rowText(row))));
    if (rows.length > mostPrinted) {
      byId('printed').append(element('div', '', `... and ${rows.length - mostPrinted} more lines; fold what is not wanted`));
    }
    timeline.draw();
    pages.draw();
  };
  const afterPrint = () => {
    document.documentElement.classList.remove('printing');
    byId('printed').replaceChildren();
    timeline.draw();
    pages.draw();
  };

  summary.tell();
  conversation.openFirst();
  search.start();
  conversation.build();
  startList();
  timeline.start();
  timelineInput.start();
  pages.start();
  window.addEventListener('resize', () => {
    timeline.redraw();
    pages.draw();
    conversation.render();
  });
  window.addEventListener('beforeprint', beforePrint);
  window.addEventListener('afterprint', afterPrint);
  matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => {
    timeline.redraw();
    pages.draw();
  });
})();
