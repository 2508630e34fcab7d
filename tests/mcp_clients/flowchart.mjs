// The scenario every client runs: a flowchart of three elements and two links, listed and exported as SVG.
import assert from 'node:assert/strict';

function structured(result, tool) {
  assert.ok(!result.isError, `${tool} failed: ${JSON.stringify(result.content)}`);
  assert.ok(result.structuredContent, `${tool} returned no structured content`);
  assert.deepEqual(JSON.parse(result.content[0].text), result.structuredContent);
  return result.structuredContent;
}

export async function buildFlowchart(client, label) {
  const { tools } = await client.listTools();
  const names = tools.map((t) => t.name);
  for (const tool of ['add_flow', 'add_link', 'list_items', 'export_document']) {
    assert.ok(names.includes(tool), `${label}: ${tool} is not listed`);
  }
  const call = (name, args) => client.callTool({ name, arguments: args });

  await call('clear_drawing', {});
  structured(await call('setup_drawing', { mode: 'flowchart' }), 'setup_drawing');
  const start = structured(await call('add_flow', { x: 20, y: 10, text: 'Start', shape: 'terminator' }), 'add_flow');
  const work = structured(await call('add_flow', { x: 20, y: 50, text: 'Work', shape: 'process' }), 'add_flow');
  const end = structured(await call('add_flow', { x: 20, y: 90, text: 'End', shape: 'terminator' }), 'add_flow');
  structured(await call('add_link', { from_id: start.id, to_id: work.id }), 'add_link');
  structured(await call('add_link', { from_name: work.name, to_name: end.name }), 'add_link');

  const refused = await call('add_link', { from_id: start.id, to_id: 9999 });
  assert.equal(refused.isError, true, `${label}: a link to a missing element was accepted`);
  assert.equal(refused.content[0].text, 'Error: argument "to_id": no item has the id 9999');

  const listed = structured(await call('list_items', { limit: 10 }), 'list_items');
  assert.equal(listed.total, 5, `${label}: expected 5 items, got ${listed.total}`);
  assert.deepEqual(listed.items.map((i) => i.kind), ['flow', 'flow', 'flow', 'link', 'link']);

  const svg = await call('export_document', { format: 'svg' });
  assert.ok(!svg.isError);
  assert.match(svg.content[0].text, /^<\?xml[\s\S]*<svg[\s\S]*<\/svg>\s*$/);
  console.log(`${label}: flowchart built (${listed.total} items), SVG ${svg.content[0].text.length} bytes`);
}
