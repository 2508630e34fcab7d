// Writes the Mermaid diagrams that ship inside the installed npm packages into a folder, one file each:
// every example of @mermaid-js/examples and every ```mermaid block of the mermaid package's READMEs.
// Usage: node mermaid_corpus.mjs OUT_DIR
import { mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { dirname, join } from 'node:path';

const out = process.argv[2];
mkdirSync(out, { recursive: true });
const { diagramData } = await import('@mermaid-js/examples');
let count = 0;
for (const kind of diagramData)
  kind.examples.forEach((example, i) => {
    writeFileSync(join(out, `examples_${kind.id}_${i + 1}.mmd`), example.code.trim() + '\n');
    ++count;
  });

const require = createRequire(import.meta.url);
const mermaidDir = dirname(require.resolve('mermaid/package.json'));
for (const readme of ['README.md', 'README.zh-CN.md']) {
  const text = readFileSync(join(mermaidDir, readme), 'utf8');
  const blocks = [...text.matchAll(/```mermaid\r?\n([\s\S]*?)```/g)].map((m) => m[1]);
  blocks.forEach((code, i) => {
    writeFileSync(join(out, `readme_${readme.replace(/\W+/g, '_')}_${i + 1}.mmd`), code.trim() + '\n');
    ++count;
  });
}
console.error(`mermaid_corpus: ${count} diagrams from the npm packages`);
