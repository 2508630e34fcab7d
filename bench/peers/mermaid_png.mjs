// Renders Mermaid files with mermaid's own renderer in the system's Chromium, one PNG per file, for a side-
// by-side look at what orvex draws. Usage: node mermaid_png.mjs CHROMIUM OUT_DIR FILE...
import { readFileSync } from 'node:fs';
import { basename, dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { createRequire } from 'node:module';

const here = dirname(fileURLToPath(import.meta.url));
// playwright-core comes from the live-view tests' folder, which already drives this Chromium.
const require = createRequire(join(here, '../../tests/live_view/package.json'));
const { chromium } = require('playwright-core');
const [chromiumPath, outDir, ...files] = process.argv.slice(2);
const browser = await chromium.launch({ executablePath: chromiumPath, args: ['--no-sandbox'] });
const page = await browser.newPage({ deviceScaleFactor: 1 });
await page.setContent('<!DOCTYPE html><body style="background:white"><div id="out"></div></body>');
await page.addScriptTag({ path: join(here, 'node_modules/mermaid/dist/mermaid.min.js') });
for (const file of files) {
  const text = readFileSync(file, 'utf8');
  const svg = await page.evaluate(async (source) => {
    window.mermaid.initialize({ startOnLoad: false });
    const { svg } = await window.mermaid.render('m' + Math.floor(Math.random() * 1e9), source);
    document.getElementById('out').innerHTML = svg;
    return svg.length;
  }, text);
  const out = join(outDir, basename(file).replace(/\.[^.]+$/, '') + '-mermaid.png');
  await page.locator('#out svg').screenshot({ path: out });
  console.log(`${file} -> ${out} (${svg} bytes of SVG)`);
}
await browser.close();
