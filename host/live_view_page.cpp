#include "host/live_view_page.h"

namespace Orvex::Host {

// The script long-polls /drawing.svg with the version it shows and swaps in each newer drawing as inline
// SVG, so the page follows a change as soon as it is published. The SVG is parsed as XML and stripped of
// scripts and event handlers before it joins the page: the page shows the drawing and runs nothing of it.
// body carries data-version and data-items for scripts that watch the page.
std::string_view LiveViewPage() {
    static constexpr std::string_view kPage = R"html(<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Orvex live view</title>
<link rel="icon" href="data:,">
<style>
html, body { margin: 0; height: 100%; background: #e9e9e9; color: #222; font: 13px system-ui, sans-serif; }
#status { position: fixed; top: 0; left: 0; right: 0; height: 26px; line-height: 26px; padding: 0 12px;
          background: #2f3640; color: #eee; white-space: nowrap; overflow: hidden; text-overflow: ellipsis; }
#status.offline { background: #a33; }
#drawing { position: absolute; top: 26px; left: 0; right: 0; bottom: 0; overflow: auto; padding: 16px;
           box-sizing: border-box; }
#drawing > svg { display: block; margin: 0 auto; max-width: 100%; height: auto; background: #fff;
                 box-shadow: 0 1px 4px rgba(0, 0, 0, .3); }
</style>
</head>
<body data-version="0" data-items="0">
<div id="status">Connecting&hellip;</div>
<div id="drawing"></div>
<script>
"use strict";
(() => {
  const status = document.getElementById("status");
  const box = document.getElementById("drawing");
  let version = 0;

  function show(text, offline) {
    status.textContent = text;
    status.className = offline ? "offline" : "";
  }

  function clean(root) {
    for (const el of root.querySelectorAll("script, foreignObject")) el.remove();
    for (const el of [root, ...root.querySelectorAll("*")]) {
      for (const attr of [...el.attributes]) {
        const value = attr.value.trim().toLowerCase();
        if (/^on/i.test(attr.name) || value.startsWith("javascript:")) el.removeAttribute(attr.name);
      }
    }
  }

  function present(text, headers) {
    const doc = new DOMParser().parseFromString(text, "image/svg+xml");
    const root = doc.documentElement;
    if (root.localName !== "svg" || doc.querySelector("parsererror")) throw new Error("the drawing is not valid SVG");
    clean(root);
    box.replaceChildren(document.importNode(root, true));
    version = Number(headers.get("X-Drawing-Version")) || 0;
    const items = Number(headers.get("X-Drawing-Items")) || 0;
    document.body.dataset.version = String(version);
    document.body.dataset.items = String(items);
    show(`Version ${version} \u00b7 ${items} item${items === 1 ? "" : "s"} \u00b7 updated ` +
         new Date().toLocaleTimeString(), false);
  }

  async function follow() {
    for (;;) {
      try {
        const answer = await fetch("/drawing.svg?after=" + version, { cache: "no-store" });
        if (answer.status === 200) {
          present(await answer.text(), answer.headers);
        } else if (answer.status !== 204) {
          throw new Error("HTTP " + answer.status);
        }
      } catch (error) {
        show("Not connected, retrying (" + error.message + ")", true);
        await new Promise((resolve) => setTimeout(resolve, 1000));
      }
    }
  }

  follow();
})();
</script>
</body>
</html>
)html";
    return kPage;
}

}  // namespace Orvex::Host
