// Drives the editor page in headless Chromium with real pointer and keyboard events, then checks the saved
// drawing holds exactly what was drawn, and that an agent's change over MCP shows in the open page.
// Usage: node edit.mjs EDITOR_URL MCP_URL DRAWING_JSON CHROMIUM_PATH SHOTS_DIR [EDIT_URL EDIT_JSON]
// (the bearer token comes from ORVEX_MCP_TOKEN; the optional pair is a plain `orvex edit` to smoke-test).
import assert from 'node:assert/strict';
import { readFileSync, existsSync, mkdirSync } from 'node:fs';
import { chromium } from 'playwright-core';

const [editorUrl, mcpUrl, drawingPath, chromiumPath, shots, editUrl, editJson] = process.argv.slice(2);
mkdirSync(shots, { recursive: true });
const SHOWN_WITHIN_MS = 1000;

let nextId = 0;
async function callTool(name, args) {
  const answer = await fetch(mcpUrl, {
    method: 'POST',
    headers: { 'Content-Type': 'application/json', Accept: 'application/json, text/event-stream',
               Authorization: `Bearer ${process.env.ORVEX_MCP_TOKEN}` },
    body: JSON.stringify({ jsonrpc: '2.0', id: ++nextId, method: 'tools/call', params: { name, arguments: args } }),
  });
  assert.equal(answer.status, 200);
  const body = await answer.json();
  assert.ok(body.result && !body.result.isError, `${name}: ${JSON.stringify(body)}`);
  return body.result;
}

// Where a point of the drawing (in its unit) is on the screen now.
async function at(page, x, y) {
  return page.evaluate(([x, y]) => {
    const svg = document.querySelector('#drawing > svg');
    const p = svg.createSVGPoint();
    p.x = x;
    p.y = y;
    const q = p.matrixTransform(svg.getScreenCTM());
    return { x: q.x, y: q.y };
  }, [x, y]);
}

// What a step waits for, checked in the page (the page's policy allows no evaluated strings, so the checks
// live in this one function and are picked by name).
function shows({ version, kind, arg }) {
  const body = document.body.dataset;
  if (body.busy === 'true' || Number(body.version) <= version) return false;
  const el = (css) => document.querySelector(css);
  switch (kind) {
    case 'any': return true;
    case 'items': return Number(body.items) === arg;
    case 'editing': return body.editing === String(arg);
    case 'tool': return body.activeTool === arg;
    case 'element': return el(arg) !== null;
    case 'value': return el(arg[0]) !== null && el(arg[0]).value === arg[1];
    case 'not-value': return el(arg[0]) !== null && el(arg[0]).value !== arg[1];
    case 'pressed': return el(arg).getAttribute('aria-pressed') === 'true';
    case 'message': return el('#message').textContent.includes(arg);
    default: throw new Error(`no check ${kind}`);
  }
}

// Runs an action, then waits until the page has sent all its requests and shows a newer frame that passes
// the check.
async function act(page, what, action, kind = 'any', arg = null) {
  const version = await page.evaluate(() => Number(document.body.dataset.version));
  await action();
  await page.waitForFunction(shows, { version, kind, arg }, { timeout: 5000 })
    .catch(async (error) => {
      await page.screenshot({ path: `${shots}/failed-${what.replace(/\W+/g, '-')}.png` });
      const now = await page.evaluate(() => ({ ...document.body.dataset, props: document.querySelector('#props').innerHTML.slice(0, 600), active: document.activeElement.id }));
      (await import('node:fs')).writeFileSync(`${shots}/requests.log`, sentLog.join('\n'));
      throw new Error(`${what}: ${error.message}; page ${JSON.stringify(now)}; status: ${await page.textContent('#status')}`);
    });
}

async function drag(page, from, to, { shot } = {}) {
  const a = await at(page, ...from);
  const b = await at(page, ...to);
  await page.mouse.move(a.x, a.y);
  await page.mouse.down();
  await page.mouse.move((a.x + b.x) / 2, (a.y + b.y) / 2, { steps: 4 });
  await page.mouse.move(b.x, b.y, { steps: 4 });
  if (shot) {
    await page.waitForFunction(() => document.body.dataset.busy !== 'true');
    await page.waitForTimeout(100);
    await page.screenshot({ path: `${shots}/${shot}.png` });
  }
  await page.mouse.up();
}

const sentLog = [];
const items = () => Number(document.body.dataset.items);

const browser = await chromium.launch({
  executablePath: chromiumPath,
  args: ['--headless=new', '--no-sandbox', '--disable-gpu', '--disable-dev-shm-usage', '--disable-background-networking'],
  timeout: 60000,
});
try {
  const page = await browser.newPage({ viewport: { width: 1400, height: 900 } });
  const problems = [];
  page.on('pageerror', (error) => problems.push(`page error: ${error.message}`));
  page.on('console', (m) => { if (m.type() === 'error') problems.push(`console: ${m.text()}`); });
  const origin = new URL(editorUrl).origin;
  page.on('request', (r) => { if (r.url().endsWith('/api')) sentLog.push(r.postData()); });
  page.on('request', (r) => { if (!r.url().startsWith(origin) && !r.url().startsWith('blob:')) problems.push(`outside request: ${r.url()}`); });

  await page.goto(editorUrl);
  await page.waitForSelector('#drawing > svg');
  await page.waitForSelector('[data-tool="rectangle"]');

  // A larger paper, and a 5 mm grid shown and snapped to.
  await act(page, 'paper width', async () => { await page.fill('#page-width', '200'); await page.press('#page-width', 'Tab'); });
  await act(page, 'paper height', async () => { await page.fill('#page-height', '150'); await page.press('#page-height', 'Tab'); });
  await act(page, 'grid step', async () => { await page.fill('#grid-step', '5'); await page.press('#grid-step', 'Tab'); });
  await act(page, 'grid', () => page.click('#grid'), 'pressed', '#grid');
  assert.equal(await page.getAttribute('#snap', 'aria-pressed'), 'true');
  await page.click('#fit');

  // A rectangle by dragging; the rubber box and the snap mark show while the button is down.
  await page.click('[data-tool="rectangle"]');
  await act(page, 'rectangle', () => drag(page, [10.3, 9.8], [39.8, 30.2], { shot: '1-rubber' }), 'items', 1);

  // Moved with snapping, by its bottom edge: the grabbed point lands on the grid.
  await page.focus('#canvas');
  await page.keyboard.press('v');
  await act(page, 'select', async () => { const p = await at(page, 25, 30); await page.mouse.click(p.x, p.y); },
    'element', '#overlay .handle');
  await page.screenshot({ path: `${shots}/2-selected.png` });
  await act(page, 'move', () => drag(page, [25, 30], [36.4, 42.2]));
  // Resized by its bottom-right handle.
  await act(page, 'resize', () => drag(page, [50, 40], [61, 52], { shot: '3-resize' }));

  // A text typed in place.
  await page.focus('#canvas');
  await page.keyboard.press('t');
  await act(page, 'text box', () => drag(page, [10, 70], [80, 82]), 'editing', true);
  await act(page, 'typing', () => page.keyboard.type('Hello Orvex'), 'element', '#overlay .caret');
  await page.screenshot({ path: `${shots}/4-typing.png` });
  await act(page, 'end of typing', () => page.keyboard.press('Enter'), 'editing', false);

  // Two flow elements and a link between them.
  // Choosing a shape chooses the flow tool.
  await act(page, 'flow tool', () => page.selectOption('#flow-shape', 'process'), 'tool', 'flow');
  await act(page, 'first flow', () => drag(page, [100, 20], [130, 40]), 'items', 3);
  await page.selectOption('#flow-shape', 'decision');
  await act(page, 'second flow', () => drag(page, [160, 20], [190, 40]), 'items', 4);
  await page.click('[data-tool="link"]');
  await act(page, 'link', () => drag(page, [130, 30], [160, 30], { shot: '5-link' }), 'items', 5);

  // The rectangle's colour in the property panel, then undone and redone from the keyboard.
  await page.focus('#canvas');
  await page.keyboard.press('v');
  await act(page, 'select rectangle', async () => { const p = await at(page, 20, 35); await page.mouse.click(p.x, p.y); },
    'element', '#prop-Color');
  assert.match(await page.textContent('#props'), /rectangle/);
  await act(page, 'colour', () => page.fill('#prop-Color', '#ff0000'), 'value', ['#prop-Color', '#ff0000']);
  await page.screenshot({ path: `${shots}/6-colour.png` });
  await page.focus('#canvas');
  await act(page, 'undo', () => page.keyboard.press('Control+z'), 'not-value', ['#prop-Color', '#ff0000']);
  await act(page, 'redo', () => page.keyboard.press('Control+y'), 'value', ['#prop-Color', '#ff0000']);
  await act(page, 'save', () => page.keyboard.press('Control+s'), 'message', 'saved');

  // The saved drawing holds exactly what was drawn.
  const saved = JSON.parse(readFileSync(drawingPath, 'utf8'));
  const kinds = saved.Items.map((i) => i.Type);
  assert.deepEqual(kinds, [6, 10, 17, 17, 18], `item kinds ${JSON.stringify(kinds)}`);
  const [rect, text, flowA, flowB, link] = saved.Items;
  assert.deepEqual(rect.Points, [{ X: 20, Y: 20 }, { X: 60, Y: 50 }], `rectangle ${JSON.stringify(rect.Points)}`);
  assert.deepEqual(rect.Color, { R: 255, G: 0, B: 0, A: 255 });
  assert.equal(text.Text, 'Hello Orvex');
  assert.equal(flowA.FlowType, 1, 'the first flow element is a process');
  assert.equal(flowB.FlowType, 4, 'the second flow element is a decision');
  assert.equal(link.FromID, flowA.InID);
  assert.equal(link.ToID, flowB.InID);
  console.log('editor: the saved drawing holds the rectangle, the text, two flow elements and their link');

  // An agent's text appears in the open page.
  const before = await page.evaluate(() => Number(document.body.dataset.version));
  await callTool('add_shape', { kind: 'text', x: 100, y: 70, text: 'Written by an agent' });
  const called = Date.now();
  await page.waitForFunction((v) => Number(document.body.dataset.version) > v &&
    document.querySelector('#drawing > svg').textContent.includes('Written by an agent'), before, { timeout: SHOWN_WITHIN_MS });
  console.log(`editor: the agent's text shown after ${Date.now() - called} ms`);
  assert.equal(await page.evaluate(items), 6);
  await page.screenshot({ path: `${shots}/7-agent.png` });
  assert.deepEqual(problems, []);

  if (editUrl) {
    // `orvex edit` serves the same page on its own document.
    const other = await browser.newPage({ viewport: { width: 1000, height: 700 } });
    await other.goto(editUrl);
    await other.waitForSelector('[data-tool="ellipse"]');
    await other.waitForSelector('#drawing > svg');
    await other.click('[data-tool="ellipse"]');
    await act(other, 'ellipse', () => drag(other, [10, 10], [60, 40]), 'items', 1);
    await act(other, 'save', () => other.click('#save'), 'message', 'saved');
    assert.ok(existsSync(editJson), 'orvex edit did not save');
    assert.deepEqual(JSON.parse(readFileSync(editJson, 'utf8')).Items.map((i) => i.Type), [9]);
    console.log('editor: orvex edit drew and saved an ellipse');
  }
} finally {
  await browser.close();
}
