// The pages as the scanner sent them, with the borders of blocks and bands laid over.
const pages = (() => {
  const {data} = report;
  const sum = (numbers) => numbers.reduce((all, one) => all + one, 0);
  const linesOf = (page) =>
    Math.max(page.height, page.hostLines, sum(page.bands), sum(page.blocks.map((block) => block[0])));
  // The lines behind which a piece ends, but for the last one.
  const borders = (pieces) => {
    let line = 0;
    return pieces.map((lines) => line += lines).slice(0, -1);
  };

  const caption = (page, i) => {
    const size = page.width ? `${page.width} x ${page.height} pixels` : 'size not told';
    const broken = page.blocks.filter((block) => block[2]).length;
    const facts = [size, page.dotsPerInch && `${page.dotsPerInch} dpi`, page.form,
      `${report.counted(sum(page.blocks.map((block) => block[0])), 'line')} in ` +
        `${report.counted(page.blocks.length, 'block')} of the scanner`,
      page.bands.length && `${sum(page.bands)} in ${report.counted(page.bands.length, 'band')} of the host`,
      broken && `${broken} with an error`,
      page.isWhole ? '' : 'not whole',
      page.image ? '' : 'no picture to show'];
    return `Page ${i + 1}: ${facts.filter(Boolean).join(', ')}`;
  };

  // Borders that lie closer than so many pixels cannot be told apart.
  const closest = 2;
  const drawDense = (pen, colour) => {
    pen.globalAlpha = 0.3;
    pen.fillStyle = colour;
    pen.fillRect(0, 0, pen.canvas.width, pen.canvas.height);
    pen.globalAlpha = 1;
  };
  // Blocks that came with an error are shaded.
  const drawErrors = (pen, lines, blocks, colour) => {
    pen.fillStyle = colour;
    let line = 0;
    for (const [count, , hasError] of blocks) {
      const from = (line / lines) * pen.canvas.height;
      line += count;
      if (hasError) pen.fillRect(0, from, pen.canvas.width, (line / lines) * pen.canvas.height - from);
    }
  };
  const drawBorders = (pen, lines, pieces, colour, dash) => {
    pen.strokeStyle = colour;
    if (pieces.length * closest > pen.canvas.height) return drawDense(pen, colour);
    pen.setLineDash(dash);
    for (const line of borders(pieces)) {
      const y = Math.round((line / lines) * pen.canvas.height) + 0.5;
      pen.beginPath();
      pen.moveTo(0, y);
      pen.lineTo(pen.canvas.width, y);
      pen.stroke();
    }
  };
  const drawOver = (sheet, page) => {
    const canvas = sheet.querySelector('canvas');
    const scale = window.devicePixelRatio || 1;
    canvas.width = canvas.clientWidth * scale;
    canvas.height = canvas.clientHeight * scale;
    const pen = canvas.getContext('2d');
    const style = getComputedStyle(document.documentElement);
    const colour = (name) => style.getPropertyValue(`--${name}`).trim();
    pen.lineWidth = Math.max(scale, 1);
    const lines = linesOf(page);
    if (byId('show-blocks').checked) {
      drawErrors(pen, lines, page.blocks, colour('error'));
      drawBorders(pen, lines, page.blocks.map((block) => block[0]), colour('border-block'), [2, 2]);
    }
    if (byId('show-bands').checked) drawBorders(pen, lines, page.bands, colour('border-band'), [6, 3]);
  };
  const draw = () => {
    for (const sheet of byId('pages').querySelectorAll('.sheet')) {
      drawOver(sheet, data.pages[sheet.dataset.page]);
    }
  };

  const sheetOf = (page, i) => {
    const sheet = element('div', 'sheet');
    const lines = linesOf(page);
    sheet.dataset.page = i;
    sheet.style.aspectRatio = `${page.width} / ${lines}`;
    sheet.style.setProperty('--ratio', page.width / lines);
    if (page.image) {
      const image = element('img');
      image.src = page.image;
      image.alt = `Page ${i + 1}`;
      image.style.height = `${(page.imageLines / lines) * 100}%`;
      image.classList.toggle('small', page.width < 300);
      sheet.append(image);
    }
    sheet.append(element('canvas'));
    return sheet;
  };
  const figureOf = (page, i) => {
    const figure = element('figure', 'page');
    if (page.width && linesOf(page)) {
      figure.append(sheetOf(page, i));
      const enlarge = element('button', 'screen', 'Enlarge');
      enlarge.type = 'button';
      enlarge.setAttribute('aria-pressed', 'false');
      enlarge.addEventListener('click', () => {
        enlarge.setAttribute('aria-pressed', figure.classList.toggle('large'));
        draw();
      });
      figure.append(enlarge);
    }
    figure.append(element('figcaption', '', caption(page, i)));
    return figure;
  };

  return {
    draw,
    start() {
      byId('pages-section').hidden = !data.pages.length;
      byId('pages').append(...data.pages.map(figureOf));
      byId('show-bands').addEventListener('change', draw);
      byId('show-blocks').addEventListener('change', draw);
      draw();
    },
  };
})();
