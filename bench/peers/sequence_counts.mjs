// Mermaid's own parser on sequence files: the count of messages, notes, fragments and activations each
// holds, as "<file> messages notes fragments activations" (or "<file> error <message>"). The counts to
// compare with `orvex parse` (bench/peers/sequence_counts.sh).
import { readFileSync } from 'node:fs';
import { JSDOM } from 'jsdom';

const dom = new JSDOM('<!DOCTYPE html><body></body>', { pretendToBeVisual: true });
globalThis.window = dom.window;
globalThis.document = dom.window.document;
for (const key of ['DOMParser', 'Element', 'HTMLElement', 'Node', 'navigator', 'getComputedStyle', 'Option']) {
  if (!(key in globalThis)) globalThis[key] = dom.window[key];
}
const { default: mermaid } = await import('mermaid');
mermaid.initialize({ startOnLoad: false });

for (const file of process.argv.slice(2)) {
  try {
    const diagram = await mermaid.mermaidAPI.getDiagramFromText(readFileSync(file, 'utf8'));
    const db = diagram.db;
    const L = db.LINETYPE;
    const counts = { messages: 0, notes: 0, fragments: 0, activations: 0 };
    const starts = new Set(Object.entries(L).filter(([k]) => k.endsWith('_START') && k !== 'ACTIVE_START').map(([, v]) => v));
    const signals = new Set(['SOLID', 'DOTTED', 'SOLID_CROSS', 'DOTTED_CROSS', 'SOLID_OPEN', 'DOTTED_OPEN',
      'SOLID_POINT', 'DOTTED_POINT', 'BIDIRECTIONAL_SOLID', 'BIDIRECTIONAL_DOTTED'].map((k) => L[k]));
    for (const m of db.getMessages()) {
      if (signals.has(m.type)) counts.messages++;
      else if (m.type === L.NOTE) counts.notes++;
      else if (starts.has(m.type)) counts.fragments++;
      else if (m.type === L.ACTIVE_START) counts.activations++;
    }
    console.log(`${file} ${counts.messages} ${counts.notes} ${counts.fragments} ${counts.activations}`);
  } catch (e) {
    console.log(`${file} error ${String(e.message || e).split('\n')[0]}`);
  }
}
