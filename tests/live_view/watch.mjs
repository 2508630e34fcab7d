// Opens the live view in headless Chromium, then acts as an MCP client over HTTP (plain JSON-RPC with
// fetch) and checks that the page shows each change within two seconds of the call that made it.
// Usage: node watch.mjs VIEW_URL MCP_URL CHROMIUM_PATH (the bearer token comes from ORVEX_MCP_TOKEN).
import assert from 'node:assert/strict';
import { chromium } from 'playwright-core';

const [viewUrl, mcpUrl, chromiumPath] = process.argv.slice(2);
const SHOWN_WITHIN_MS = 2000;

let nextId = 0;
async function rpc(method, params) {
  const answer = await fetch(mcpUrl, {
    method: 'POST',
    headers: {
      'Content-Type': 'application/json',
      Accept: 'application/json, text/event-stream',
      Authorization: `Bearer ${process.env.ORVEX_MCP_TOKEN}`,
    },
    body: JSON.stringify({ jsonrpc: '2.0', id: ++nextId, method, params }),
  });
  assert.equal(answer.status, 200, `${method}: HTTP ${answer.status}`);
  const body = await answer.json();
  assert.ok(body.result, `${method}: ${JSON.stringify(body)}`);
  return body.result;
}

async function callTool(name, args) {
  const result = await rpc('tools/call', { name, arguments: args });
  assert.ok(!result.isError, `${name} failed: ${JSON.stringify(result.content)}`);
  return result;
}

// What the page shows: the version and item count it announces, the SVG's elements and its text.
const shown = () => {
  const svg = document.querySelector('#drawing > svg');
  return {
    version: Number(document.body.dataset.version),
    items: Number(document.body.dataset.items),
    svgs: document.querySelectorAll('#drawing > svg').length,
    elements: svg ? svg.querySelectorAll('*').length : 0,
    rects: svg ? svg.querySelectorAll('rect').length : 0,
    text: svg ? svg.textContent : '',
    status: document.getElementById('status').textContent,
  };
};

const browser = await chromium.launch({
  executablePath: chromiumPath,
  args: ['--headless=new', '--no-sandbox', '--disable-gpu', '--disable-dev-shm-usage',
    '--disable-background-networking'],
  timeout: 60000,
});
try {
  const page = await browser.newPage();
  const problems = [];
  page.on('pageerror', (error) => problems.push(`page error: ${error.message}`));
  page.on('console', (message) => {
    if (message.type() === 'error') problems.push(`console: ${message.text()}`);
  });
  // Requests to anywhere but the view's own server would mean the page is not self-contained.
  page.on('request', (request) => {
    if (!request.url().startsWith(viewUrl)) problems.push(`outside request: ${request.url()}`);
  });

  await page.goto(viewUrl);
  await page.waitForFunction(() => Number(document.body.dataset.version) >= 1, null, { timeout: 10000 });
  const first = await page.evaluate(shown);
  assert.equal(first.svgs, 1, 'the page shows no SVG');
  assert.equal(first.items, 0);
  assert.match(first.status, /0 items/);

  const init = await rpc('initialize', {
    protocolVersion: '2025-11-25',
    capabilities: {},
    clientInfo: { name: 'orvex-live-view-test', version: '1.0.0' },
  });
  assert.equal(init.serverInfo.name, 'Orvex-mcp');

  let before = first;
  // Each step: a call, then what the page must show within SHOWN_WITHIN_MS of the call's answer.
  const steps = [
    {
      tool: 'add_shape', args: { kind: 'rectangle', x: 10, y: 10, width: 60, height: 30, fill_color: '#ffcc00' },
      items: 1, check: (now) => assert.ok(now.elements > before.elements, 'no new SVG element'),
    },
    { tool: 'add_shape', args: { kind: 'text', x: 12, y: 50, text: 'Drawn by an agent' }, items: 2, text: 'Drawn by an agent' },
    { tool: 'add_flow', args: { x: 90, y: 10, text: 'Decide', shape: 'decision' }, items: 3, text: 'Decide' },
    {
      tool: 'clear_drawing', args: {}, items: 0,
      check: (now) => assert.ok(!now.text.includes('Decide'), 'the cleared drawing still shows its text'),
    },
  ];
  for (const step of steps) {
    await callTool(step.tool, step.args);
    const called = Date.now();
    await page.waitForFunction(
      ({ version, items, text }) => {
        const svg = document.querySelector('#drawing > svg');
        return Number(document.body.dataset.version) > version && Number(document.body.dataset.items) === items &&
          (!text || (svg !== null && svg.textContent.includes(text)));
      },
      { version: before.version, items: step.items, text: step.text },
      { timeout: SHOWN_WITHIN_MS },
    ).catch(async (error) => {
      throw new Error(`${step.tool}: the page did not follow within ${SHOWN_WITHIN_MS} ms ` +
        `(${JSON.stringify(await page.evaluate(shown))}): ${error.message}`);
    });
    const now = await page.evaluate(shown);
    step.check?.(now);
    assert.equal(now.svgs, 1);
    assert.match(now.status, new RegExp(`Version ${now.version} .* ${step.items} items?`));
    console.log(`live view: ${step.tool} shown after ${Date.now() - called} ms (version ${now.version}, ` +
      `${now.items} items, ${now.elements} SVG elements)`);
    before = now;
  }
  assert.deepEqual(problems, []);
} finally {
  await browser.close();
}
