// Times mermaid's own parser on each file given: one warm-up parse, then the best of three, parse only
// (no layout, no rendering). Prints "<file> <wall ms> <processor ms>" per file; the processor time is
// that of the whole process, garbage collection included.
import { readFileSync } from 'node:fs';
import { JSDOM } from 'jsdom';

// mermaid expects a browser: jsdom supplies the window and document its modules touch on import.
const dom = new JSDOM('<!DOCTYPE html><body></body>', { pretendToBeVisual: true });
globalThis.window = dom.window;
globalThis.document = dom.window.document;
for (const key of ['DOMParser', 'Element', 'HTMLElement', 'Node', 'navigator', 'getComputedStyle']) {
  if (!(key in globalThis)) globalThis[key] = dom.window[key];
}

const { default: mermaid } = await import('mermaid');
mermaid.initialize({ startOnLoad: false, maxEdges: 1e9, maxTextSize: 1e9 });

for (const file of process.argv.slice(2)) {
  const text = readFileSync(file, 'utf8');
  await mermaid.parse(text);
  let bestWall = Infinity;
  let bestCpu = Infinity;
  for (let run = 0; run < 3; ++run) {
    const cpu = process.cpuUsage();
    const start = process.hrtime.bigint();
    await mermaid.parse(text);
    const wall = Number(process.hrtime.bigint() - start) / 1e6;
    const used = process.cpuUsage(cpu);
    bestWall = Math.min(bestWall, wall);
    bestCpu = Math.min(bestCpu, (used.user + used.system) / 1000);
  }
  console.log(`${file} ${bestWall.toFixed(3)} ${bestCpu.toFixed(3)}`);
}
