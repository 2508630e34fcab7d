#include <string>

#include "host/editor/edit_page.h"

namespace Orvex::Host {

namespace {

// The markup and style. Controls are real buttons, inputs and selects so that the keyboard reaches them in
// order, and sizes are in rem so that the page stays usable when the browser zooms it.
constexpr std::string_view kHead = R"html(<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Orvex editor</title>
<link rel="icon" href="data:,">
<style>
:root { --bar: #f4f5f7; --line: #c9ced6; --accent: #0a6cff; --text: #1d2330; font-size: 14px; }
* { box-sizing: border-box; }
html, body { margin: 0; height: 100%; color: var(--text); font: 1rem system-ui, sans-serif; }
body { display: flex; flex-direction: column; }
/* Zoomed in, the bars scroll within part of the window so that the drawing keeps the rest. */
header { background: var(--bar); border-bottom: 1px solid var(--line); padding: .25rem .4rem; max-height: 40vh;
         overflow-y: auto; flex-shrink: 0; }
.bar { display: flex; flex-wrap: wrap; gap: .25rem .6rem; align-items: center; }
.bar + .bar { margin-top: .25rem; }
.group { display: flex; flex-wrap: wrap; gap: .15rem; align-items: center; padding-right: .5rem;
         border-right: 1px solid var(--line); }
.group:last-child { border-right: 0; }
.group > .name { font-size: .75rem; color: #5a6372; margin-right: .2rem; text-transform: uppercase; }
button, select, input { font: inherit; color: inherit; }
button { background: #fff; border: 1px solid var(--line); border-radius: .25rem; padding: .15rem .45rem;
         cursor: pointer; min-height: 1.9rem; }
button:hover { border-color: #8d96a5; }
button[aria-pressed="true"] { background: var(--accent); border-color: var(--accent); color: #fff; }
button:disabled { opacity: .45; cursor: default; }
:focus-visible { outline: 3px solid #ffb000; outline-offset: 1px; }
select, input[type=text], input[type=number] { border: 1px solid var(--line); border-radius: .25rem;
         padding: .15rem .3rem; min-height: 1.9rem; background: #fff; }
input[type=number] { width: 5.5rem; }
main { flex: 1; display: flex; min-height: 50vh; }
#canvas { flex: 1; overflow: auto; background: #e3e6ea; position: relative; min-width: 0; }
#canvas:focus-visible { outline-offset: -3px; }
#drawing { padding: 1.5rem; width: max-content; min-width: 100%; }
#drawing > svg { display: block; background: #fff; box-shadow: 0 1px 4px rgba(0,0,0,.35); touch-action: none;
                 user-select: none; }
aside { width: 20rem; overflow: auto; border-left: 1px solid var(--line); background: var(--bar); padding: .4rem; }
aside section { margin-bottom: .8rem; }
aside h2 { font-size: .95rem; margin: .2rem 0 .4rem; }
.props { display: grid; grid-template-columns: minmax(6rem, auto) 1fr; gap: .25rem .4rem; align-items: center; }
.props label { font-size: .85rem; overflow-wrap: anywhere; }
.props input[type=text], .props input[type=number] { width: 100%; }
.layer { display: flex; flex-wrap: wrap; gap: .2rem; align-items: center; padding: .2rem 0;
         border-bottom: 1px solid var(--line); }
.layer input[type=text] { flex: 1; min-width: 6rem; }
.layer.active { background: #dde9ff; }
.small { font-size: .8rem; color: #5a6372; }
#status { background: #2f3640; color: #eee; padding: .2rem .6rem; display: flex; gap: 1rem; flex-wrap: wrap; }
#status .error { color: #ffb3b3; }
dialog { border: 1px solid var(--line); border-radius: .4rem; max-width: min(50rem, 95vw); }
dialog textarea { width: min(45rem, 88vw); height: 16rem; font: .9rem monospace; }
#diagnostics li.error { color: #b00020; }
@media (max-width: 60rem) { main { flex-direction: column; } #canvas { flex: none; height: 45vh; } aside { width: auto; border-left: 0;
         border-top: 1px solid var(--line); max-height: 40vh; } }
</style>
</head>
<body data-version="0" data-items="0" data-active-tool="" data-editing="false">
<header>
<div class="bar" id="tools" role="toolbar" aria-label="Drawing tools"></div>
<div class="bar" role="toolbar" aria-label="Actions">
 <div class="group" role="group" aria-label="History">
  <button id="undo" title="Undo (Ctrl+Z)">Undo</button><button id="redo" title="Redo (Ctrl+Y)">Redo</button>
 </div>
 <div class="group" role="group" aria-label="Clipboard">
  <button data-command="cut" title="Cut (Ctrl+X)">Cut</button><button data-command="copy" title="Copy (Ctrl+C)">Copy</button>
  <button data-command="paste" title="Paste (Ctrl+V)">Paste</button><button data-command="delete" title="Delete (Del)">Delete</button>
 </div>
 <div class="group" role="group" aria-label="Arrange">
  <button data-command="front" title="Bring to front (])">Front</button><button data-command="back" title="Send to back ([)">Back</button>
  <button data-command="rotate-left" title="Rotate left">&#x27f2;</button><button data-command="rotate-right" title="Rotate right">&#x27f3;</button>
 </div>
 <div class="group" role="group" aria-label="View">
  <button id="zoom-out" title="Zoom out (-)">&minus;</button><span id="zoom" aria-live="polite">100%</span>
  <button id="zoom-in" title="Zoom in (+)">+</button><button id="fit" title="Fit the drawing (0)">Fit</button>
  <button id="grid" aria-pressed="false" title="Show the grid">Grid</button>
  <button id="snap" aria-pressed="true" title="Snap to grid and to points">Snap</button>
  <label class="small">step <input id="grid-step" type="number" min="0.01" step="any" aria-label="Grid step"></label>
 </div>
 <div class="group" role="group" aria-label="File">
  <button id="open" title="Open a drawing (Ctrl+O)">Open&hellip;</button><button id="save" title="Save (Ctrl+S)">Save</button>
  <input id="save-as" type="text" placeholder="file.json" aria-label="Save as file name" size="12">
  <button id="save-as-button">Save as</button>
  <button data-export="svg">SVG</button><button data-export="png">PNG</button><button data-export="pdf">PDF</button>
  <button id="import" title="Import a Mermaid or PlantUML text">Import&hellip;</button>
 </div>
</div>
</header>
<main>
<div id="canvas" tabindex="0" aria-label="Drawing: use the pointer, or the keys the engine's editor takes">
 <div id="drawing"></div>
</div>
<aside aria-label="Panels">
 <section aria-labelledby="props-title"><h2 id="props-title">Properties</h2><div id="props" class="props"></div></section>
 <section aria-labelledby="layers-title"><h2 id="layers-title">Layers</h2><div id="layers"></div>
  <button id="layer-add">Add layer</button></section>
 <section aria-labelledby="page-title"><h2 id="page-title">Page</h2>
  <div class="props">
   <label for="page-mode">Mode</label><select id="page-mode"></select>
   <label for="page-units">Units</label><select id="page-units"></select>
   <label for="page-scale">Scale 1:</label><input id="page-scale" type="number" min="1" step="1">
   <label for="page-width">Paper width</label><input id="page-width" type="number" min="0" step="any">
   <label for="page-height">Paper height</label><input id="page-height" type="number" min="0" step="any">
  </div>
 </section>
</aside>
</main>
<div id="status" role="status"><span id="step"></span><span id="message" aria-live="polite"></span><span id="where"></span><span id="counts"></span></div>
<dialog id="open-dialog" aria-labelledby="open-title"><form method="dialog">
 <h2 id="open-title">Open a drawing</h2>
 <p class="small" id="open-note"></p>
 <select id="open-list" size="8" aria-label="Drawings" style="min-width: 20rem"></select>
 <p><button value="open" id="open-go">Open</button> <button value="cancel">Cancel</button></p>
</form></dialog>
<dialog id="import-dialog" aria-labelledby="import-title"><form method="dialog">
 <h2 id="import-title">Import a diagram</h2>
 <p><label>Language <select id="import-format"><option value="auto">detect</option><option value="mermaid">Mermaid</option>
  <option value="plantuml">PlantUML</option></select></label></p>
 <textarea id="import-text" aria-label="Diagram text" spellcheck="false"></textarea>
 <ul id="diagnostics" aria-live="polite"></ul>
 <p><button value="import" id="import-go">Import</button> <button value="cancel">Close</button></p>
</form></dialog>
<script>
)html";

constexpr std::string_view kTail = R"html(
</script>
</body>
</html>
)html";

}  // namespace

std::string_view EditPage() {
    static const std::string kPage = std::string(kHead) + std::string(EditPageScript()) + std::string(kTail);
    return kPage;
}

}  // namespace Orvex::Host
