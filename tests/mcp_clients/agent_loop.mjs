// An agent's session through the official SDK client over HTTP: two diagrams that land side by side, a
// node changed through the returned id map, a link label attached and carried along, three items arranged
// in one batch that undoes in one step, and a preview of a 50,000-item drawing.
// Usage: node agent_loop.mjs URL FILES_FOLDER (the server's --files-root).
import assert from 'node:assert/strict';
import { writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { Client } from '@modelcontextprotocol/sdk/client/index.js';
import { StreamableHTTPClientTransport } from '@modelcontextprotocol/sdk/client/streamableHttp.js';

const url = new URL(process.argv[2]);
const filesFolder = process.argv[3];
const headers = process.env.ORVEX_MCP_TOKEN ? { Authorization: `Bearer ${process.env.ORVEX_MCP_TOKEN}` } : {};
const client = new Client({ name: 'orvex-agent-loop-test', version: '1.0.0' });
await client.connect(new StreamableHTTPClientTransport(url, { requestInit: { headers } }));

// The SDK checks every structuredContent against the tool's outputSchema; the text must say the same.
async function call(name, args) {
  const result = await client.callTool({ name, arguments: args });
  assert.ok(!result.isError, `${name} failed: ${JSON.stringify(result.content).slice(0, 400)}`);
  return result;
}
async function structured(name, args) {
  const result = await call(name, args);
  assert.ok(result.structuredContent, `${name} returned no structured content`);
  return result.structuredContent;
}
const right = (box) => box.x + box.width;

const { tools } = await client.listTools();
// A guard against growth: every tool carries its own full schemas, annotations and output schema.
const listed = JSON.stringify({ tools }).length;
assert.ok(listed <= 56 * 1024, `tools/list is ${listed} bytes`);
for (const tool of tools) {
  assert.equal(tool.inputSchema.type, 'object', `${tool.name} has no input schema`);
}

await call('clear_drawing', { reset: true });
const first = await structured('load_diagram', {
  text: 'flowchart TD\n  A[Start] --> B{Ready?}\n  B -->|yes| C[Ship]\n  B -->|no| A\n',
});
assert.equal(first.loaded, true);
assert.equal(first.mode, 'replace');
assert.deepEqual(Object.keys(first.nodes).sort(), ['A', 'B', 'C']);
assert.equal(first.edges.length, 3);

const second = await structured('load_diagram', { text: 'flowchart LR\n  X[One] --> Y[Two]\n', mode: 'add' });
assert.equal(second.mode, 'add');
assert.ok(second.bounds.x > right(first.bounds), 'the second diagram overlaps the first');
assert.ok(second.page.width >= right(second.bounds), 'the page does not hold the second diagram');

// A node found through the id map, changed and read back in the tools' own words.
const ready = first.nodes.B;
await structured('modify_item', { id: ready, text: 'Ready to ship today?', fill_color: '#FFEEAA' });
const readBack = (await structured('get_item', { id: ready })).properties;
assert.equal(readBack.text, 'Ready to ship today?');
assert.equal(readBack.fill_color, '#FFEEAA');
assert.equal(readBack.shape, 'decision');

// The label belongs to the link: moving an element it joins carries the label along.
const toShip = first.edges.find((e) => e.from === 'B' && e.to === 'C');
await structured('modify_item', { id: toShip.id, label: 'go' });
const before = (await structured('get_item', { id: toShip.id })).properties;
assert.equal(before.label, 'go');
await structured('modify_item', { id: first.nodes.C, dx: 40 });
const after = (await structured('get_item', { id: toShip.id })).properties;
assert.ok(after.label_at.x > before.label_at.x, 'the label stayed behind its link');

// Three items made, grouped and lined up in one batch; one undo takes the whole batch back.
const count = (await structured('get_drawing_info', {})).items_count;
await structured('begin_update', {});
const made = await structured('add_items', {
  items: [
    { kind: 'rectangle', key: 'r1', x: 10, y: 200, width: 20, height: 10 },
    { kind: 'circle', key: 'c1', cx: 60, cy: 215, radius: 6 },
    { kind: 'text', key: 't1', x: 90, y: 230, text: 'Note' },
  ],
});
const ids = ['r1', 'c1', 't1'].map((k) => made.ids[k]);
if (tools.some((t) => t.name === 'group_items')) {
  const group = await structured('group_items', { ids, title: 'Parts' });
  assert.ok(group.id > 0);
}
const aligned = await structured('align_items', { ids, align: 'top' });
assert.equal(new Set(aligned.items.map((i) => i.y)).size, 1, 'the items are not aligned');
const closed = await structured('end_update', {});
assert.equal(closed.batch_steps, 1);
const undone = await structured('undo', {});
assert.equal(undone.undone, 1);
assert.equal(undone.items_count, count, 'one undo did not take the whole batch back');

// A drawing of 50,000 items still previews: the picture is scaled down to fit.
const template = JSON.parse((await call('save_drawing', {})).content[0].text);
const rectangle = (await structured('add_shape', { kind: 'rectangle', x: 0, y: 0, width: 4, height: 2 })).id;
const withRect = JSON.parse((await call('save_drawing', {})).content[0].text);
const item = withRect.Items.find((i) => i.InID === rectangle);
template.Items = [];
for (let n = 0; n < 50000; n++) {
  const x = (n % 250) * 5;
  const y = Math.floor(n / 250) * 3;
  template.Items.push({ ...item, InID: n + 1, ID: `R${n}`, Points: [{ X: x, Y: y }, { X: x + 4, Y: y + 2 }] });
}
writeFileSync(join(filesFolder, 'big.json'), JSON.stringify(template));
const loaded = await structured('load_drawing', { path: 'big.json' });
assert.equal(loaded.items_count, 50000);
const preview = await call('render_preview', {});
const picture = preview.content.find((c) => c.type === 'image');
assert.ok(picture && picture.mimeType === 'image/png', 'no picture came back');
assert.equal(preview.structuredContent.item_count, 50000);
assert.ok(Math.max(preview.structuredContent.width, preview.structuredContent.height) <= 1600);
const cropped = await call('render_preview', { region: { x: 0, y: 0, width: 50, height: 30 } });
// 50 mm at 96 dpi is 189 pixels, with no more than the pens around it.
assert.ok(Math.abs(cropped.structuredContent.width - 189) <= 3, `cropped to ${cropped.structuredContent.width} px`);

await call('clear_drawing', { reset: true });
console.log(`agent loop: two diagrams, id map, label, batch undo, 50,000-item preview (tools/list ${listed} bytes)`);
await client.close();
