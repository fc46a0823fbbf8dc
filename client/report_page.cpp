#include "client/report_page.h"

namespace {

constexpr char kHead[] = R"html(<!doctype html>
<html lang="en"><head><meta charset="utf-8"><title>zyl_kwo_service report</title>
<meta name="viewport" content="width=device-width, initial-scale=1">
<style>
:root { --ink: #1d2733; --soft: #66758a; --line: #dde3ea; --paper: #f5f7fa; --card: #fff;
        --accent: #1f6feb; --good: #1a7f4b; --bad: #c9252d; }
* { box-sizing: border-box; }
body { margin: 0; background: var(--paper); color: var(--ink);
       font: 15px/1.45 system-ui, "Segoe UI", Roboto, "Helvetica Neue", Arial, sans-serif; }
main { max-width: 1120px; margin: 0 auto; padding: 28px 24px 60px; }
h1 { font-size: 26px; margin: 0; } h2 { font-size: 17px; margin: 0 0 14px; }
header { display: flex; justify-content: space-between; align-items: baseline; flex-wrap: wrap;
         gap: 8px; margin-bottom: 18px; }
.soft { color: var(--soft); } .bad { color: var(--bad); } .good { color: var(--good); }
section { background: var(--card); border: 1px solid var(--line); border-radius: 10px;
          padding: 18px 20px; margin-bottom: 18px; }
.tiles { display: grid; grid-template-columns: repeat(auto-fit, minmax(150px, 1fr)); gap: 12px;
         margin-bottom: 18px; }
.tile { background: var(--card); border: 1px solid var(--line); border-radius: 10px;
        padding: 12px 16px; }
.tile b { display: block; font-size: 21px; font-weight: 600; overflow-wrap: anywhere; }
table { border-collapse: collapse; width: 100%; font-size: 14px; }
th { text-align: left; color: var(--soft); font-weight: 500; }
th, td { padding: 4px 10px 4px 0; border-bottom: 1px solid var(--line); vertical-align: top; }
td.n, th.n { text-align: right; } .scroll { overflow-x: auto; }
td { font-variant-numeric: tabular-nums; overflow-wrap: anywhere; }
code { font-family: ui-monospace, "DejaVu Sans Mono", Consolas, monospace; font-size: 13px; }
.maps { display: grid; grid-template-columns: repeat(auto-fit, minmax(290px, 1fr)); gap: 20px; }
canvas { width: 100%; image-rendering: pixelated; border: 1px solid var(--line); display: block;
         border-radius: 4px; cursor: crosshair; }
.small { font-size: 12px; margin: 8px 0 3px; }
.legend { height: 10px; border-radius: 3px; margin: 14px 0 2px; }
.ends { display: flex; justify-content: space-between; font-size: 12px; color: var(--soft); }
#at { min-height: 1.5em; font-size: 13px; margin-top: 10px; }
svg text { font: 12px system-ui, sans-serif; fill: var(--soft); }
</style></head><body><main id="page"></main>
<script>
const data = )html";

constexpr char kScript[] = R"html(;
const page = document.getElementById("page");
function make(parent, tag, attributes, text) {
  const svg = ["svg", "path", "line", "circle", "text", "rect"].includes(tag);
  const node = svg ? document.createElementNS("http://www.w3.org/2000/svg", tag)
                   : document.createElement(tag);
  for (const [key, value] of Object.entries(attributes || {})) node.setAttribute(key, value);
  if (text !== undefined) node.textContent = text;
  return parent.appendChild(node);
}
const onOff = (value) => value === undefined ? "–" : value ? "on" : "off";
const bytes = (text) => Uint8Array.from(atob(text), (c) => c.charCodeAt(0));
const hex = (n, width) => "0x" + n.toString(16).padStart(width, "0");
function word(block, p) {
  let n = 0;
  for (let i = Math.min(p.size, 4) - 1; i >= 0; --i) n = n * 256 + (block[p.offset + i] || 0);
  return n;
}
const state = data.state;
const blocks = data.blocks.map((b) => {
  const found = bytes(b.found), expected = b.expected ? bytes(b.expected) : null;
  let differing = 0;
  if (expected) found.forEach((byte, i) => { differing += byte !== expected[i] ? 1 : 0; });
  return { ...b, found, expected, differing };
});

const header = make(page, "header");
make(header, "h1", {}, "Headphone and speaker effect");
make(header, "span", { class: "soft" }, data.taken);
const tiles = make(page, "div", { class: "tiles" });
const tile = (name, value, style) => {
  const box = make(tiles, "div", { class: "tile" });
  make(box, "span", { class: "soft" }, name);
  make(box, "b", { class: style || "" }, value);
};
tile("Generation", state.generation);
tile("Effect", onOff(state.effect), state.effect ? "good" : "");
tile("Stereo mode", state.stereo === undefined ? "–" : state.stereo);
tile("Equaliser", onOff(state.geq), state.geq ? "good" : "");
tile("Active route", state.route);
const checked = blocks.filter((b) => b.expected), wrong = checked.filter((b) => b.differing);
tile("DSP blocks", checked.length === 0 ? "not checked" : wrong.length ? wrong.length + " differ"
     : checked.length + " as set", wrong.length ? "bad" : checked.length ? "good" : "");

function drawEqualiser(gains) {
  const section = make(page, "section");
  make(section, "h2", {}, "Equaliser" + (state.geq ? "" : " (switched off)"));
  const W = 1000, H = 300, left = 56, right = 16, top = 12, bottom = 40, low = -15, high = 18;
  const x = (band) => left + (W - left - right) * (band + 0.5) / gains.length;
  const y = (dB) => top + (H - top - bottom) * (high - Math.max(low, Math.min(high, dB))) / (high - low);
  const svg = make(section, "svg", { viewBox: `0 0 ${W} ${H}`, width: "100%", role: "img" });
  for (let dB = low; dB <= high; dB += 3) {
    make(svg, "line", { x1: left, x2: W - right, y1: y(dB), y2: y(dB),
                        stroke: dB === 0 ? "#8b99ab" : "#e6ebf1" });
    if (dB % 6 === 0) make(svg, "text", { x: left - 8, y: y(dB) + 4, "text-anchor": "end" },
                           (dB > 0 ? "+" : "") + dB + " dB");
  }
  const dBs = gains.map((gain) => gain > 0 ? 20 * Math.log10(gain / 4096) : low);
  const colour = state.geq ? "#1f6feb" : "#9aa7b8";
  let path = `M${x(0)},${y(dBs[0])}`;
  for (let i = 1; i < dBs.length; ++i) {
    const middle = (x(i - 1) + x(i)) / 2;
    path += ` C${middle},${y(dBs[i - 1])} ${middle},${y(dBs[i])} ${x(i)},${y(dBs[i])}`;
  }
  make(svg, "path", { d: `${path} L${x(dBs.length - 1)},${y(0)} L${x(0)},${y(0)} Z`,
                      fill: colour, "fill-opacity": 0.12 });
  make(svg, "path", { d: path, fill: "none", stroke: colour, "stroke-width": 2.5 });
  dBs.forEach((dB, i) => {
    make(svg, "circle", { cx: x(i), cy: y(dB), r: 4.5, fill: "#fff", stroke: colour,
                          "stroke-width": 2.5 });
    make(svg, "text", { x: x(i), y: H - 22, "text-anchor": "middle" }, "band " + i);
    make(svg, "text", { x: x(i), y: H - 6, "text-anchor": "middle" },
         (dB > 0.05 ? "+" : "") + dB.toFixed(1) + " dB");
  });
}
if (state.gains) drawEqualiser(state.gains);

function drawState() {
  const section = make(page, "section");
  make(section, "h2", {}, "Properties");
  const table = make(section, "table");
  const row = (key, value) => {
    const line = make(table, "tr");
    make(line, "th", {}, key);
    make(line, "td", {}, typeof value === "boolean" ? onOff(value)
         : Array.isArray(value) ? value.join("  ") : value);
  };
  for (const [key, value] of Object.entries(state)) {
    if (value === null || typeof value !== "object" || Array.isArray(value)) row(key, value);
    else for (const [part, inner] of Object.entries(value)) {
      row(key + "." + part, key === "mask" ? hex(inner, 8) : inner);
    }
  }
}
drawState();
)html";

constexpr char kBlockScript[] = R"html(
const ramp = [[13, 8, 66], [84, 15, 109], [150, 38, 103], [210, 68, 70], [246, 125, 21],
              [250, 193, 39], [252, 255, 164]];
function tint(byte) {
  const place = byte / 255 * (ramp.length - 1), i = Math.min(ramp.length - 2, Math.floor(place));
  return ramp[i].map((c, k) => Math.round(c + (ramp[i + 1][k] - c) * (place - i)));
}
const hint = "Point at a byte to see where it is and what it holds.";
// The last byte of any parameter is not far from the start; that part is shown enlarged as well.
const head = Math.max(...data.parameters.map((p) => p.offset + p.size));
function drawMap(box, block, across, count, at) {
  const canvas = make(box, "canvas");
  canvas.width = across; canvas.height = Math.ceil(count / across);
  const context = canvas.getContext("2d");
  const image = context.createImageData(across, canvas.height);
  block.found.slice(0, count).forEach((byte, i) => {
    const differs = block.expected && byte !== block.expected[i];
    image.data.set([...(differs ? [0, 229, 255] : tint(byte)), 255], 4 * i);
  });
  context.putImageData(image, 0, 0);
  const cell = (position, size, cells) =>
      Math.min(cells - 1, Math.max(0, Math.floor(position / size * cells)));
  canvas.onmousemove = (event) => {
    const offset = cell(event.offsetX, canvas.clientWidth, across) +
                   across * cell(event.offsetY, canvas.clientHeight, canvas.height);
    if (offset >= count) return;
    const p = data.parameters.find((p) => offset >= p.offset && offset < p.offset + p.size);
    const found = block.found[offset], should = block.expected ? block.expected[offset] : found;
    at.textContent = `${block.name}, offset ${offset}: ${hex(found, 2)}` + (p ? `, ${p.name}` : "") +
        (should === found ? "" : `, should be ${hex(should, 2)}`);
  };
  canvas.onmouseleave = () => { at.textContent = hint; };
}
function drawMaps() {
  const section = make(page, "section");
  make(section, "h2", {}, "The DSP's blocks, byte by byte");
  const maps = make(section, "div", { class: "maps" });
  const at = document.createElement("div");
  for (const block of blocks) {
    const box = make(maps, "div");
    make(box, "b", {}, block.name + " ");
    make(box, "code", { class: "soft" }, block.file);
    make(box, "div", { class: !block.expected ? "soft" : block.differing ? "bad" : "good" },
         !block.expected ? "not checked" : block.differing
         ? block.differing + " bytes are not as they should be" : "as it should be");
    make(box, "div", { class: "soft small" }, `the first ${head} bytes, with the parameters`);
    drawMap(box, block, 32, Math.min(head, block.found.length), at);
    make(box, "div", { class: "soft small" }, `all ${block.found.length} bytes`);
    drawMap(box, block, 256, block.found.length, at);
  }
  const stops = ramp.map((c) => `rgb(${c})`).join(",");
  make(section, "div", { class: "legend", style: `background:linear-gradient(90deg,${stops})` });
  const ends = make(section, "div", { class: "ends" });
  make(ends, "span", {}, "0x00");
  make(ends, "span", {}, "bright cyan: not as it should be");
  make(ends, "span", {}, "0xff");
  at.id = "at"; at.className = "soft"; at.textContent = hint;
  section.appendChild(at);
}
function drawParameters() {
  const section = make(page, "section");
  make(section, "h2", {}, "Parameters");
  const table = make(make(section, "div", { class: "scroll" }), "table");
  const head = make(table, "tr");
  for (const name of ["name", "id"]) make(head, "th", {}, name);
  for (const name of ["offset", "size", ...blocks.map((b) => b.name)]) {
    make(head, "th", { class: "n" }, name);
  }
  for (const p of data.parameters) {
    const row = make(table, "tr");
    make(row, "td", {}, p.name);
    make(make(row, "td"), "code", {}, hex(p.id, 8));
    make(row, "td", { class: "n" }, p.offset);
    make(row, "td", { class: "n" }, p.size);
    for (const block of blocks) {
      const found = word(block.found, p), should = block.expected ? word(block.expected, p) : found;
      const cell = make(row, "td", { class: found === should ? "n" : "n bad" }, found);
      if (found !== should) make(cell, "div", {}, "should be " + should);
    }
  }
  for (const block of blocks) {
    if (block.unknown) make(section, "p", { class: "soft" }, block.name + ": " + block.unknown);
  }
}
drawMaps();
drawParameters();
</script></body></html>
)html";

}  // namespace

ExitStatus makeReportPage(Session& session, std::string* page) {
    std::string data;
    const ExitStatus status = makeReportData(session, &data);
    *page = std::string(kHead) + data + kScript + kBlockScript;
    return status;
}
