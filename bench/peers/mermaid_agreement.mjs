// Reads each diagram file given with mermaid's own parser and prints, one JSON line per file, what its
// diagram database holds: the nodes, the links, the containers, which nodes carry a style, and the class
// members. Files mermaid refuses, or of kinds outside the graph-like ones, are printed with "skip".
// Usage: node mermaid_agreement.mjs FILE...
import { readFileSync } from 'node:fs';
import { JSDOM } from 'jsdom';

// mermaid expects a browser: jsdom supplies the window and document its modules touch on import.
const dom = new JSDOM('<!DOCTYPE html><body></body>', { pretendToBeVisual: true });
globalThis.window = dom.window;
globalThis.document = dom.window.document;
for (const key of ['DOMParser', 'Element', 'HTMLElement', 'Node', 'Option', 'navigator', 'getComputedStyle']) {
  if (!(key in globalThis)) globalThis[key] = dom.window[key];
}

const { default: mermaid } = await import('mermaid');
mermaid.initialize({ startOnLoad: false, maxEdges: 1e9, maxTextSize: 1e9 });

const values = (m) => (m instanceof Map ? [...m.values()] : Object.values(m ?? {}));
const hasStyle = (list) => Array.isArray(list) && list.some((s) => String(s).trim() !== '');

function flowchart(db) {
  const styled = (v) => hasStyle(v.styles) || (v.classes ?? []).some((c) => c !== 'default');
  const vertices = values(db.getVertices());
  // A "style" or "class" line naming a subgraph adds a vertex of that name to the database; it is drawn as
  // the subgraph's own style, not as a node.
  const subgraphs = db.getSubGraphs();
  const groupIds = new Set(subgraphs.map((g) => g.id));
  const nodes = vertices.filter((v) => !groupIds.has(v.id)).map((v) => ({ id: v.id, styled: styled(v) }));
  const links = db.getEdges().map((e) => [e.start, e.end]);
  const groups = subgraphs.map((g) => {
    const vertex = vertices.find((v) => v.id === g.id);
    return {
      id: g.id,
      members: [...g.nodes],
      styled: (g.classes ?? []).some((c) => c !== 'default') || (vertex !== undefined && styled(vertex)),
    };
  });
  return { nodes, links, groups, members: {} };
}

function classDiagram(db) {
  const nodes = [];
  const members = {};
  for (const c of values(db.getClasses())) {
    nodes.push({ id: c.id, styled: hasStyle(c.styles) || (c.cssClasses ?? '').trim() !== '' && c.cssClasses !== 'default' });
    members[c.id] = (c.members ?? []).length + (c.methods ?? []).length;
  }
  for (const n of db.getNotes?.() ?? []) nodes.push({ id: `note:${n.class ?? ''}`, styled: false, note: true });
  const links = db.getRelations().map((r) => [r.id1, r.id2]);
  const groups = values(db.getNamespaces?.() ?? new Map()).map((ns) => ({
    id: ns.id,
    members: values(ns.classes ?? new Map()).map((c) => c.id),
  }));
  return { nodes: nodes.filter((n) => !n.note), links, groups, members };
}

// State diagrams: the layout data the renderer draws from (states, containers, transitions).
function stateDiagram(db) {
  if (typeof db.extract === 'function' && typeof db.getRootDocV2 === 'function') db.extract(db.getRootDocV2());
  const data = db.getData();
  const nodes = [];
  const groups = [];
  for (const n of data.nodes) {
    if (n.shape === 'note' || n.shape === 'noteGroup' || String(n.id).includes('----note')) continue;
    if (n.isGroup) groups.push({ id: n.id, parent: n.parentId ?? '' });
    else nodes.push({ id: n.id, styled: hasStyle(n.cssStyles) || hasStyle(n.cssCompiledStyles), parent: n.parentId ?? '' });
  }
  for (const g of groups) g.members = nodes.filter((n) => n.parent === g.id).map((n) => n.id);
  const links = data.edges.filter((e) => !String(e.id).includes('note')).map((e) => [e.start, e.end]);
  return { nodes, links, groups, members: {} };
}

function erDiagram(db) {
  const nodes = [];
  const members = {};
  for (const [name, e] of db.getEntities()) {
    nodes.push({ id: e.alias && e.alias !== '' ? name : name, styled: hasStyle(e.cssStyles) });
    members[name] = (e.attributes ?? []).length;
  }
  const byId = new Map([...db.getEntities()].map(([name, e]) => [e.id, name]));
  const links = db.getRelationships().map((r) => [byId.get(r.entityA) ?? r.entityA, byId.get(r.entityB) ?? r.entityB]);
  return { nodes, links, groups: [], members };
}

const readers = { flowchart, 'flowchart-v2': flowchart, flowchart_elk: flowchart, classDiagram, class: classDiagram,
  stateDiagram, 'state': stateDiagram, er: erDiagram, erDiagram };

for (const file of process.argv.slice(2)) {
  const text = readFileSync(file, 'utf8');
  try {
    const diagram = await mermaid.mermaidAPI.getDiagramFromText(text);
    const read = readers[diagram.type];
    if (!read) {
      console.log(JSON.stringify({ file, skip: `kind ${diagram.type}` }));
      continue;
    }
    console.log(JSON.stringify({ file, kind: diagram.type, ...read(diagram.db) }));
  } catch (error) {
    console.log(JSON.stringify({ file, skip: `mermaid refuses it: ${String(error.message ?? error).split('\n')[0]}` }));
  }
}
