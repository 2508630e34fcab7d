#include "host/editor/edit_page.h"

namespace Orvex::Host {

// The page's script. It draws nothing itself: it forwards the person's pointer and keys to the session,
// shows the drawing SVG and the marks the session renders, and builds the panels from the state it sends.
// Pointer moves are coalesced while a request is on its way, so a fast drag never queues stale positions.
std::string_view EditPageScript() {
    static constexpr std::string_view kScript = R"js(
"use strict";
(() => {
  const $ = (id) => document.getElementById(id);
  const token = new URLSearchParams(location.search).get("token") || "";
  const headers = token ? { Authorization: "Bearer " + token } : {};
  const SVGNS = "http://www.w3.org/2000/svg";
  let state = null, catalog = null, zoom = 1, svg = null, overlay = null, drawingVersion = -1;

  function say(text, error) {
    const m = $("message");
    m.textContent = text || "";
    m.className = error ? "error" : "";
  }

  async function api(body) {
    const answer = await fetch("/api", { method: "POST", headers: { ...headers, "Content-Type": "application/json" },
                                         body: JSON.stringify(body) });
    const data = await answer.json().catch(() => ({ error: "HTTP " + answer.status }));
    if (!answer.ok) {
      const error = new Error(data.error || ("HTTP " + answer.status));
      error.data = data;
      throw error;
    }
    return data;
  }
  const run = (body) => api(body).catch((e) => { say(e.message, true); return null; });

  // Requests go out one after another, in order; a pointer move waiting its turn is replaced by a newer one.
  const queue = [];
  let busy = false;
  function send(body) {
    const last = queue[queue.length - 1];
    if (body.op === "pointer" && body.kind === "move" && last && last.op === "pointer" && last.kind === "move") {
      queue[queue.length - 1] = body;
    } else {
      queue.push(body);
    }
    pump();
  }
  // body's data-busy tells scripts that watch the page whether requests are still on their way.
  async function pump() {
    if (busy) return;
    busy = true;
    document.body.dataset.busy = "true";
    while (queue.length) await run(queue.shift());
    busy = false;
    document.body.dataset.busy = "false";
  }

  // [Drawing] The SVG is parsed as XML and stripped of scripts and handlers before it joins the page.
  function clean(root) {
    for (const el of root.querySelectorAll("script, foreignObject")) el.remove();
    for (const el of [root, ...root.querySelectorAll("*")]) {
      for (const attr of [...el.attributes]) {
        const value = attr.value.trim().toLowerCase();
        if (/^on/i.test(attr.name) || value.startsWith("javascript:")) el.removeAttribute(attr.name);
      }
    }
  }
  function parseSvg(text) {
    const doc = new DOMParser().parseFromString(text, "image/svg+xml");
    const root = doc.documentElement;
    if (root.localName !== "svg" || doc.querySelector("parsererror")) throw new Error("the drawing is not valid SVG");
    clean(root);
    return root;
  }
  function mm(length) {
    const m = /^([\d.]+)(mm)?$/.exec(length || "");
    return m ? Number(m[1]) : 100;
  }
  function size() {
    if (!svg) return;
    const px = 96 / 25.4 * zoom;
    svg.style.width = (svg.dataset.mmWidth * px) + "px";
    svg.style.height = (svg.dataset.mmHeight * px) + "px";
    $("zoom").textContent = Math.round(zoom * 100) + "%";
  }
  function showDrawing(text) {
    const root = document.importNode(parseSvg(text), true);
    root.dataset.mmWidth = mm(root.getAttribute("width"));
    root.dataset.mmHeight = mm(root.getAttribute("height"));
    root.removeAttribute("width");
    root.removeAttribute("height");
    root.setAttribute("role", "img");
    root.setAttribute("aria-label", "The drawing");
    overlay = document.createElementNS(SVGNS, "g");
    overlay.id = "overlay";
    root.appendChild(overlay);
    const had = svg !== null;
    $("drawing").replaceChildren(root);
    svg = root;
    hookPointer(root);
    size();
    if (!had) requestAnimationFrame(fit);
  }
  function showOverlay(text) {
    if (!overlay) return;
    const root = parseSvg(`<svg xmlns="${SVGNS}">${text}</svg>`);
    overlay.replaceChildren(...[...root.childNodes].map((n) => document.importNode(n, true)));
  }

  // [Stream] One JSON object a line; the drawing only when it changed.
  async function follow() {
    for (;;) {
      try {
        const answer = await fetch("/stream", { headers, cache: "no-store" });
        if (!answer.ok || !answer.body) throw new Error("HTTP " + answer.status);
        const reader = answer.body.getReader();
        const decoder = new TextDecoder();
        let buffer = "";
        for (;;) {
          const { value, done } = await reader.read();
          if (done) break;
          buffer += decoder.decode(value, { stream: true });
          let end;
          while ((end = buffer.indexOf("\n")) >= 0) {
            const line = buffer.slice(0, end).trim();
            buffer = buffer.slice(end + 1);
            if (line) frame(JSON.parse(line));
          }
        }
        throw new Error("the editor stopped");
      } catch (error) {
        say("Not connected, retrying (" + error.message + ")", true);
        await new Promise((resolve) => setTimeout(resolve, 1000));
      }
    }
  }
  function frame(f) {
    if (f.drawing !== undefined) {
      showDrawing(f.drawing);
      drawingVersion = f.drawing_version;
    }
    if (f.overlay !== undefined) showOverlay(f.overlay);
    if (f.state) showState(f.state);
    document.body.dataset.version = String(f.version);
  }

  // [Pointer] Positions go out in the SVG's own units, with the screen pixels per unit for the pick gap.
  function where(event) {
    const point = svg.createSVGPoint();
    point.x = event.clientX;
    point.y = event.clientY;
    const p = point.matrixTransform(svg.getScreenCTM().inverse());
    const box = svg.viewBox.baseVal;
    const ppu = box && box.width ? svg.getBoundingClientRect().width / box.width : 1;
    return { x: p.x, y: p.y, ppu };
  }
  function pointer(kind, event) {
    const p = where(event);
    $("where").textContent = `${p.x.toFixed(2)}, ${p.y.toFixed(2)} ${state ? state.page.units : ""}`;
    send({ op: "pointer", kind, ...p, shift: event.shiftKey, ctrl: event.ctrlKey || event.metaKey, alt: event.altKey,
           buttons: event.buttons });
  }
  function hookPointer(root) {
    root.addEventListener("pointerdown", (e) => {
      $("canvas").focus({ preventScroll: true });
      if (e.button === 0) { root.setPointerCapture(e.pointerId); pointer("down", e); }
      else if (e.button === 2) pointer("right", e);
      e.preventDefault();
    });
    root.addEventListener("pointermove", (e) => pointer("move", e));
    root.addEventListener("pointerup", (e) => { if (e.button === 0) pointer("up", e); });
    root.addEventListener("dblclick", (e) => pointer("double", e));
    root.addEventListener("contextmenu", (e) => e.preventDefault());
  }

  // [View] Zoom about a point of the canvas; the scroll position keeps that point under the pointer.
  function setZoom(next, cx, cy) {
    next = Math.min(64, Math.max(0.05, next));
    const canvas = $("canvas");
    const r = canvas.getBoundingClientRect();
    cx = cx === undefined ? r.width / 2 : cx;
    cy = cy === undefined ? r.height / 2 : cy;
    const fx = (canvas.scrollLeft + cx) / zoom, fy = (canvas.scrollTop + cy) / zoom;
    zoom = next;
    size();
    canvas.scrollLeft = fx * zoom - cx;
    canvas.scrollTop = fy * zoom - cy;
  }
  function fit() {
    if (!svg) return;
    const canvas = $("canvas");
    const px = 96 / 25.4;
    const w = svg.dataset.mmWidth * px, h = svg.dataset.mmHeight * px;
    zoom = Math.max(0.05, Math.min((canvas.clientWidth - 48) / w, (canvas.clientHeight - 48) / h));
    size();
    canvas.scrollLeft = 0;
    canvas.scrollTop = 0;
  }
  $("canvas").addEventListener("wheel", (e) => {
    if (!(e.ctrlKey || e.metaKey)) return;  // the wheel alone scrolls (pans)
    e.preventDefault();
    const r = $("canvas").getBoundingClientRect();
    setZoom(zoom * Math.pow(1.0015, -e.deltaY), e.clientX - r.left, e.clientY - r.top);
  }, { passive: false });
  $("zoom-in").onclick = () => setZoom(zoom * 1.25);
  $("zoom-out").onclick = () => setZoom(zoom / 1.25);
  $("fit").onclick = fit;

  // [Toolbar]
  function buildTools() {
    const bar = $("tools");
    const names = { select: "Select", lines: "Lines", shapes: "Shapes", texts: "Texts", codes: "Codes",
                    flow: "Flow", dimensions: "Dimensions", modify: "Trim, extend, join" };
    const groups = {};
    for (const tool of catalog.tools) {
      if (!groups[tool.group]) {
        const g = document.createElement("div");
        g.className = "group";
        g.setAttribute("role", "group");
        g.setAttribute("aria-label", names[tool.group] || tool.group);
        const label = document.createElement("span");
        label.className = "name";
        label.textContent = names[tool.group] || tool.group;
        g.append(label);
        bar.append(g);
        groups[tool.group] = g;
      }
      const b = document.createElement("button");
      b.textContent = tool.label;
      b.dataset.tool = tool.name;
      b.title = tool.title + (tool.key ? ` (${tool.key.toUpperCase()})` : "");
      b.setAttribute("aria-pressed", "false");
      b.onclick = () => chooseTool(tool.name);
      groups[tool.group].append(b);
    }
    const shapes = document.createElement("select");
    shapes.id = "flow-shape";
    shapes.setAttribute("aria-label", "Flow element shape");
    for (const s of catalog.flow_shapes) shapes.append(new Option(s, s));
    shapes.onchange = () => chooseTool("flow");
    groups.flow.insertBefore(shapes, groups.flow.querySelector('[data-tool="link"]'));
    const courses = document.createElement("select");
    courses.id = "link-course";
    courses.setAttribute("aria-label", "Link course");
    for (const s of catalog.link_types) courses.append(new Option(s, s));
    courses.onchange = () => chooseTool("link");
    groups.flow.insertBefore(courses, groups.flow.querySelector('[data-tool="poly-link"]'));
    for (const m of catalog.modes) $("page-mode").append(new Option(m, m));
    for (const u of catalog.units) $("page-units").append(new Option(u, u));
  }
  function chooseTool(name) {
    const body = { op: "tool", name };
    if (name === "flow") body.shape = $("flow-shape").value;
    if (name === "link") body.course = $("link-course").value;
    send(body);
  }
  document.querySelectorAll("[data-command]").forEach((b) => b.onclick = () => send({ op: "command", name: b.dataset.command }));
  $("undo").onclick = () => send({ op: "command", name: "undo" });
  $("redo").onclick = () => send({ op: "command", name: "redo" });
  $("grid").onclick = () => send({ op: "settings", grid: !state.grid });
  $("snap").onclick = () => send({ op: "settings", snap: !state.snap });
  $("grid-step").onchange = (e) => send({ op: "settings", grid_step: Number(e.target.value) });

  // [Panels] Rebuilt from the state only when it changed and no field of theirs is being typed into.
  let shownSelection = "", shownLayers = "";
  const typing = (box) => box.contains(document.activeElement) &&
                          ["INPUT", "SELECT", "TEXTAREA"].includes(document.activeElement.tagName);
  function showState(s) {
    state = s;
    document.body.dataset.items = String(s.items);
    document.body.dataset.activeTool = s.tool;
    document.body.dataset.editing = String(s.editing_text);
    for (const b of document.querySelectorAll("button[data-tool]")) b.setAttribute("aria-pressed", String(b.dataset.tool === s.tool));
    if ($("flow-shape")) $("flow-shape").value = s.flow_shape;
    if ($("link-course")) $("link-course").value = s.link_course;
    $("undo").disabled = !s.can_undo;
    $("redo").disabled = !s.can_redo;
    $("grid").setAttribute("aria-pressed", String(s.grid));
    $("snap").setAttribute("aria-pressed", String(s.snap));
    if (document.activeElement !== $("grid-step")) $("grid-step").value = s.grid_step;
    $("step").textContent = s.step;
    $("counts").textContent = `${s.items} item${s.items === 1 ? "" : "s"}${s.modified ? " \u00b7 modified" : ""}` +
                              (s.file ? ` \u00b7 ${s.file}` : "");
    if (s.message) say(s.message, false);
    const sel = JSON.stringify(s.selection);
    if (sel !== shownSelection && !typing($("props"))) { shownSelection = sel; showProps(s.selection); }
    const layers = JSON.stringify(s.layers);
    if (layers !== shownLayers && !typing($("layers"))) { shownLayers = layers; showLayers(s.layers); }
    const page = s.page;
    for (const [id, value] of [["page-mode", page.mode], ["page-units", page.units], ["page-scale", page.scale],
                               ["page-width", page.width], ["page-height", page.height]])
      if (document.activeElement !== $(id)) $(id).value = value;
  }
  function showProps(sel) {
    const box = $("props");
    box.replaceChildren();
    if (!sel.count) { box.textContent = "Nothing selected."; return; }
    const head = document.createElement("div");
    head.style.gridColumn = "1 / -1";
    head.className = "small";
    head.textContent = `${sel.kind} ${sel.name}` + (sel.count > 1 ? ` (+${sel.count - 1} more)` : "");
    box.append(head);
    for (const p of sel.properties) {
      const id = "prop-" + p.name;
      const label = document.createElement("label");
      label.htmlFor = id;
      label.textContent = p.name;
      let input = document.createElement("input");
      input.id = id;
      input.dataset.property = p.name;
      if (p.type === "color") {
        input.type = "color";
        input.value = String(p.value).slice(0, 7).toLowerCase();
      } else if (p.type === "bool") {
        input.type = "checkbox";
        input.checked = !!p.value;
      } else if (p.type === "number") {
        input.type = "number";
        input.step = "any";
        input.value = p.value;
      } else {
        input.type = "text";
        input.value = typeof p.value === "string" ? p.value : JSON.stringify(p.value);
      }
      input.disabled = !p.editable;
      input.onchange = () => {
        shownSelection = "";
        const value = p.type === "bool" ? input.checked : p.type === "number" ? Number(input.value) : input.value;
        send({ op: "property", name: p.name, value });
      };
      box.append(label, input);
    }
  }
  function showLayers(layers) {
    const box = $("layers");
    box.replaceChildren();
    for (const l of layers) {
      const row = document.createElement("div");
      row.className = "layer" + (l.active ? " active" : "");
      const active = document.createElement("input");
      active.type = "radio";
      active.name = "active-layer";
      active.checked = l.active;
      active.setAttribute("aria-label", `Make ${l.name} the active layer`);
      active.onchange = () => send({ op: "layer", action: "activate", index: l.index });
      const name = document.createElement("input");
      name.type = "text";
      name.value = l.name;
      name.setAttribute("aria-label", `Name of layer ${l.index}`);
      name.onchange = () => send({ op: "layer", action: "rename", index: l.index, name: name.value });
      const flag = (text, key, value) => {
        const label = document.createElement("label");
        label.className = "small";
        const box = document.createElement("input");
        box.type = "checkbox";
        box.checked = value;
        box.onchange = () => send({ op: "layer", action: key, index: l.index, value: box.checked });
        label.append(box, text);
        return label;
      };
      const button = (text, action, title) => {
        const b = document.createElement("button");
        b.textContent = text;
        b.title = title;
        b.setAttribute("aria-label", `${title}: ${l.name}`);
        b.onclick = () => send({ op: "layer", action, index: l.index });
        return b;
      };
      row.append(active, name, flag("visible", "visible", l.visible), flag("locked", "locked", l.locked),
                 button("\u2191", "up", "Move up"), button("\u2193", "down", "Move down"), button("\u00d7", "delete", "Delete layer"));
      box.append(row);
    }
  }
  // A field typed into shows the person's value until its change comes back; once the focus leaves, the
  // panel shows the state again, so a refused or undone change does not stay on screen.
  for (const id of ["props", "layers"]) {
    $(id).addEventListener("focusout", () => setTimeout(() => {
      if (id === "props") shownSelection = ""; else shownLayers = "";
      if (state) showState(state);
    }, 0));
  }
  $("layer-add").onclick = () => send({ op: "layer", action: "add" });
  for (const [id, key] of [["page-mode", "mode"], ["page-units", "units"], ["page-scale", "scale"],
                           ["page-width", "width"], ["page-height", "height"]])
    $(id).onchange = (e) => send({ op: "page", [key]: e.target.type === "number" ? Number(e.target.value) : e.target.value });

  // [Files] Saved and exported files land in the files folder; a server without one hands them over as downloads.
  function download(result, name) {
    const part = result && result.content && result.content[0];
    if (!part || (result.structuredContent && result.structuredContent.path)) return;
    const bytes = (b64) => Uint8Array.from(atob(b64), (c) => c.charCodeAt(0));
    const blob = part.type === "text" ? new Blob([part.text], { type: "text/plain" })
               : part.type === "image" ? new Blob([bytes(part.data)], { type: part.mimeType })
               : new Blob([bytes(part.resource.blob)], { type: part.resource.mimeType });
    const a = document.createElement("a");
    a.href = URL.createObjectURL(blob);
    a.download = name;
    a.click();
    setTimeout(() => URL.revokeObjectURL(a.href), 10000);
  }
  async function save(path) {
    const answer = await run({ op: "file", action: "save", path: path || "" });
    if (answer) download(answer.result, "drawing.json");
  }
  $("save").onclick = () => save("");
  $("save-as-button").onclick = () => save($("save-as").value.trim());
  document.querySelectorAll("[data-export]").forEach((b) => b.onclick = async () => {
    const format = b.dataset.export;
    const base = (state && state.file ? state.file.replace(/\.json$/i, "") : "drawing");
    const answer = await run({ op: "file", action: "export", format, path: state && state.files ? `${base}.${format}` : "" });
    if (answer) download(answer.result, `${base.split("/").pop()}.${format}`);
  });
  $("open").onclick = async () => {
    const answer = await run({ op: "file", action: "list" });
    if (!answer) return;
    const list = $("open-list");
    list.replaceChildren(...answer.files.map((f) => new Option(f, f)));
    $("open-note").textContent = answer.root ? "Drawings in the files folder:" : "This editor has no files folder.";
    $("open-dialog").showModal();
    list.focus();
  };
  $("open-dialog").addEventListener("close", () => {
    if ($("open-dialog").returnValue === "open" && $("open-list").value)
      send({ op: "file", action: "open", path: $("open-list").value });
  });
  $("import").onclick = () => { $("diagnostics").replaceChildren(); $("import-dialog").showModal(); $("import-text").focus(); };
  $("import-go").onclick = async (e) => {
    e.preventDefault();
    const list = $("diagnostics");
    list.replaceChildren();
    const show = (diagnostics) => {
      for (const d of diagnostics || []) {
        const li = document.createElement("li");
        const severity = String(d.severity).replace(/^ds/, "").toLowerCase();
        li.className = severity === "error" ? "error" : "";
        li.textContent = `${severity}${d.line ? " line " + d.line : ""}: ${d.message}` + (d.code ? ` (${d.code})` : "");
        list.append(li);
      }
    };
    try {
      const answer = await api({ op: "file", action: "import", text: $("import-text").value, format: $("import-format").value });
      const result = answer.result.structuredContent || {};
      show(result.diagnostics);
      say(`Imported: ${result.items_created} items`, false);
      if (!(result.diagnostics || []).length) $("import-dialog").close();
    } catch (error) {
      const li = document.createElement("li");
      li.className = "error";
      li.textContent = error.message;
      list.append(li);
      show(error.data && error.data.diagnostics);
    }
  };

  // [Keyboard] Shortcuts first; while a text is edited in place, typed characters and editing keys go to it.
  const engineKeys = ["Escape", "Enter", "Delete", "Backspace", "ArrowLeft", "ArrowUp", "ArrowRight", "ArrowDown", "Home", "End"];
  document.addEventListener("keydown", (e) => {
    const target = e.target;
    if (target.closest && target.closest("dialog, input, select, textarea")) return;
    const ctrl = e.ctrlKey || e.metaKey;
    const key = e.key.length === 1 ? e.key.toLowerCase() : e.key;
    const editing = state && state.editing_text;
    const mods = { shift: e.shiftKey, ctrl, alt: e.altKey };
    if (ctrl && key === "z") send({ op: "command", name: e.shiftKey ? "redo" : "undo" });
    else if (ctrl && key === "y") send({ op: "command", name: "redo" });
    else if (ctrl && key === "s") save("");
    else if (ctrl && key === "o") $("open").click();
    else if (ctrl && !editing && ["x", "c", "v"].includes(key)) send({ op: "command", name: { x: "cut", c: "copy", v: "paste" }[key] });
    else if (editing && engineKeys.includes(e.key)) send({ op: "key", key: e.key, ...mods });
    else if (editing && e.key.length === 1 && !ctrl) send({ op: "chars", text: e.key });
    else if (editing) return;
    else if (target.tagName === "BUTTON" && (e.key === "Enter" || e.key === " ")) return;
    else if (engineKeys.includes(e.key) && !(e.key.startsWith("Arrow") && state && !state.selection.count)) send({ op: "key", key: e.key, ...mods });
    else if (e.key.startsWith("Arrow")) {
      const step = 40, dx = { ArrowLeft: -step, ArrowRight: step }[e.key] || 0, dy = { ArrowUp: -step, ArrowDown: step }[e.key] || 0;
      $("canvas").scrollBy(dx, dy);
    } else if (!ctrl && (key === "+" || key === "=")) setZoom(zoom * 1.25);
    else if (!ctrl && key === "-") setZoom(zoom / 1.25);
    else if (!ctrl && key === "0") fit();
    else if (!ctrl && key === "]") send({ op: "command", name: "front" });
    else if (!ctrl && key === "[") send({ op: "command", name: "back" });
    else if (!ctrl && !e.altKey && catalog && catalog.tools.some((t) => t.key === key)) chooseTool(catalog.tools.find((t) => t.key === key).name);
    else return;
    e.preventDefault();
  });

  (async () => {
    try {
      catalog = await api({ op: "catalog" });
      buildTools();
    } catch (error) {
      say("Cannot reach the editor: " + error.message, true);
    }
    follow();
  })();
})();
)js";
    return kScript;
}

}  // namespace Orvex::Host
