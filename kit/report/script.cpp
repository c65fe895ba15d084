#include "kit/report/page.h"

namespace lintara::kit {

std::string_view ReportScript() {
    return R"js(
"use strict";
(() => {
const data = JSON.parse(document.getElementById("data").textContent);
const OUTCOMES = ["closed", "merged", "extended", "open"];
const CLASSES = [[0, 1, "1 (may touch)"], [2, 50, "2 to 50"], [51, 150, "51 to 150"], [151, 500, "151 to 500"],
  [501, 1499, "501 to 1,499"], [1500, Infinity, "1,500 and more"]];
const PAGE = 200;
const gaps = data.gaps;
const $ = id => document.getElementById(id);
const num = v => v === null || v === undefined || v === "" ? "\u2013" : typeof v === "number" ?
  v.toLocaleString("en", {maximumFractionDigits: 1}) : String(v);
const plural = (n, one, many) => num(n) + " " + (n === 1 ? one : many || one + "s");
const sum = (list, f) => list.reduce((a, g) => a + f(g), 0);

/* el("td", {class: "n"}, child, ...): text never becomes markup. */
function el(tag, attributes, ...children) {
  const svg = /^(svg|g|path|line|circle|rect|text|title|desc|polygon)$/.test(tag);
  const node = svg ? document.createElementNS("http://www.w3.org/2000/svg", tag) : document.createElement(tag);
  for (const [key, value] of Object.entries(attributes || {})) {
    if (value === null || value === undefined) continue;
    node.setAttribute(key, value);
  }
  for (const child of children.flat()) if (child !== null && child !== undefined) node.append(child);
  return node;
}
const dot = outcome => el("span", {class: "dot " + outcome, "aria-hidden": "true"});

function head() {
  const count = o => gaps.filter(g => g.outcome === o).length;
  const filled = sum(gaps, g => Math.max(0, g.filled)), left = sum(gaps, g => g.open);
  const done = count("closed") + count("merged");
  $("title").textContent = data.title;
  document.title = data.title + " \u2013 Lintara gap report";
  $("lead").textContent = !gaps.length ? "These scaffolds have no gap." :
    `${num(done)} of ${plural(gaps.length, "gap")} ${done === 1 ? "is" : "are"} closed or merged. ` +
    `${plural(filled, "base")} ${filled === 1 ? "was" : "were"} filled in; ${plural(left, "base")} ${left === 1 ? "stays" : "stay"} N.`;
  const words = {closed: "closed", merged: "merged", extended: "extended", open: "open"};
  for (const o of OUTCOMES) {
    const share = gaps.length ? Math.round(100 * count(o) / gaps.length) : 0;
    $("key").append(el("div", null, el("dt", null, dot(o), words[o]),
      el("dd", null, num(count(o)), " ", el("small", null, share + " %"))));
  }
}

/* Makes the headers of a small table sort its rows: by number where the cells hold one in data-v, else by their text. */
function sortable(table) {
  const body = table.querySelector("tbody"), heads = [...table.querySelectorAll("thead th")];
  const value = (row, i) => { const c = row.children[i]; return c.dataset.v === undefined ? c.textContent : +c.dataset.v; };
  heads.forEach((th, i) => {
    if (!th.textContent || th.querySelector(".hide")) return;
    const button = el("button", {type: "button"}, th.textContent);
    th.textContent = "";
    th.append(button);
    button.addEventListener("click", () => {
      const down = th.getAttribute("aria-sort") === "ascending";
      for (const other of heads) other.removeAttribute("aria-sort");
      th.setAttribute("aria-sort", down ? "descending" : "ascending");
      const list = [...body.children].sort((a, b) => {
        const u = value(a, i), v = value(b, i);
        return (down ? -1 : 1) * (typeof u === "number" ? u - v : u.localeCompare(v, "en", {numeric: true}));
      });
      body.append(...list);
    });
  });
}

function sizes() {
  for (const o of OUTCOMES) $("legend").append(el("li", null, dot(o), o));
  const body = el("tbody");
  for (const [from, to, name] of CLASSES) {
    const here = gaps.filter(g => g.stated >= from && g.stated <= to);
    if (!here.length) continue;
    const bar = el("div", {class: "bar", role: "img", "aria-label":
      OUTCOMES.map(o => here.filter(g => g.outcome === o).length + " " + o).join(", ")});
    for (const o of OUTCOMES) {
      const n = here.filter(g => g.outcome === o).length;
      if (n) bar.append(el("span", {class: o, style: `flex: ${n} 1 0`, title: n + " " + o}, el("b", null, num(n))));
    }
    const done = here.filter(g => g.outcome === "closed" || g.outcome === "merged").length / here.length;
    const filled = sum(here, g => Math.max(0, g.filled)), left = sum(here, g => g.open);
    body.append(el("tr", null, el("th", {scope: "row", "data-v": from}, name),
      el("td", {class: "n", "data-v": here.length}, num(here.length)), el("td", {class: "wide", "data-v": done}, bar),
      el("td", {class: "n p2", "data-v": filled}, num(filled)), el("td", {class: "n p2", "data-v": left}, num(left))));
  }
  $("sizes").append(el("thead", null, el("tr", null, el("th", {scope: "col"}, "Stated length"),
    el("th", {scope: "col", class: "n"}, "Gaps"), el("th", {scope: "col"}, "Outcome"),
    el("th", {scope: "col", class: "n p2"}, "Bases filled"), el("th", {scope: "col", class: "n p2"}, "N left"))), body);
  sortable($("sizes"));
}

function rounds() {
  const last = Math.max(0, data.rounds.length, ...gaps.map(g => g.round));
  const rows = [];
  for (let r = 1; r <= last; r++) {
    const here = gaps.filter(g => g.round === r);
    const told = data.rounds.find(x => x.round === r) || {};
    rows.push({r, done: here.filter(g => g.outcome === "closed" || g.outcome === "merged").length,
      part: here.filter(g => g.outcome === "extended").length,
      bases: typeof told.filled_bases === "number" ? told.filled_bases : sum(here, g => Math.max(0, g.filled))});
  }
  const most = Math.max(1, ...rows.map(x => x.bases));
  if (!rows.length) { $("rounds").append(el("caption", null, "No round was run.")); return; }
  $("rounds").append(el("thead", null, el("tr", null, el("th", {scope: "col"}, "Round"),
    el("th", {scope: "col", class: "n"}, "Closed or merged"), el("th", {scope: "col", class: "n"}, "Extended"),
    el("th", {scope: "col", class: "n"}, "Bases"), el("th", {scope: "col", style: "width: 30%"},
      el("span", {class: "hide"}, "Bases, drawn")))),
    el("tbody", null, rows.map(x => el("tr", null, el("th", {scope: "row", "data-v": x.r}, num(x.r)),
      el("td", {class: "n", "data-v": x.done}, num(x.done)), el("td", {class: "n", "data-v": x.part}, num(x.part)),
      el("td", {class: "n", "data-v": x.bases}, num(x.bases)),
      el("td", null, x.bases ? el("span", {class: "gain", "aria-hidden": "true",
        style: `width: ${100 * x.bases / most}%`}) : null)))));
  sortable($("rounds"));
}

/* Both axes logarithmic; sizes of 0 and less share the lowest line. */
function real() {
  const box = $("real"), shown = gaps.filter(g => g.outcome === "closed" || g.outcome === "merged");
  box.textContent = "";
  if (!shown.length) { $("real-hint").textContent = "No gap was closed, so no real size is known."; return; }
  const width = Math.max(260, Math.min(560, box.clientWidth || 480)), height = Math.round(width * .78);
  const L = 54, R = 12, T = 10, B = 46, zero = height - B;
  const top = Math.max(10, ...shown.map(g => Math.max(g.stated, g.filled))), decades = Math.log10(top) + .08;
  const floor = zero - 34;
  const x = v => L + (width - L - R) * Math.log10(Math.max(1, v)) / decades;
  const y = v => v < 1 ? zero - 10 : floor - (floor - T) * Math.log10(v) / decades;
  const svg = el("svg", {viewBox: `0 0 ${width} ${height}`, role: "img", "aria-label":
    `Real size of ${plural(shown.length, "gap")} against the stated one; the table of gaps holds the figures.`});
  svg.append(el("path", {class: "axis", d: `M${L} ${T}V${zero}H${width - R}`}));
  for (let d = 0; d < decades; d++) {
    const v = 10 ** d;
    svg.append(el("text", {x: x(v), y: zero + 18, "text-anchor": "middle"}, num(v)),
      el("text", {x: L - 8, y: y(v) + 4, "text-anchor": "end"}, num(v)),
      el("path", {class: "axis", d: `M${x(v)} ${zero}v4M${L} ${y(v)}h-4`}));
  }
  svg.append(el("text", {x: L - 8, y: y(0) + 4, "text-anchor": "end"}, "\u2264 0"),
    el("path", {class: "axis", "stroke-dasharray": "1 3", d: `M${L} ${zero - 22}H${width - R}`}),
    el("path", {class: "same", d: `M${x(1)} ${y(1)}L${x(top)} ${y(top)}`}),
    el("text", {x: width - R, y: height - 8, "text-anchor": "end"}, "stated length, bases"),
    el("text", {x: L + 8, y: T + 8}, "real size, bases"));
  for (const g of shown) {
    const cx = x(g.stated), cy = y(g.filled), a = {class: "pt " + g.outcome, "data-gap": g.gap};
    svg.append(g.outcome === "merged" ? el("rect", {...a, x: cx - 4, y: cy - 4, width: 8, height: 8}) :
      el("circle", {...a, cx, cy, r: 4.5}));
  }
  box.append(svg);
  svg.addEventListener("pointerover", event => {
    const g = byId.get(+event.target.dataset.gap);
    if (!g) return;
    $("real-hint").textContent = `Gap ${g.gap} in ${g.scaffold}: stated ${num(g.stated)}, real ` +
      (g.filled > 0 ? num(g.filled) : g.filled < 0 ? `${num(g.filled)} (the contigs overlap)` : "0 or less");
  });
  svg.addEventListener("click", event => { if (event.target.dataset.gap) show(+event.target.dataset.gap); });
}

/* The table of gaps. Only the first rows are laid out; "more" adds to them, printing shows all. */
const byId = new Map(gaps.map(g => [g.gap, g]));
const COLUMNS = [
  ["gap", "Gap", 1, ""], ["scaffold", "Scaffold", 0, "name"], ["start", "Position", 1, "n p3"],
  ["stated", "Stated", 1, "n"], ["outcome", "Outcome", 0, "what"], ["filled", "Filled", 1, "n"],
  ["open", "N left", 1, "n p2"], ["round", "Round", 1, "n p3"], ["strategy", "Strategy", 0, "p3"],
  ["reads", "Reads", 1, "n p2"], ["least", "Least support", 1, "n p2"], ["mean", "Mean", 1, "n p3"]];
let sortKey = "gap", sortDown = false, limit = PAGE, opened = null;
const off = new Set();

function matching() {
  const word = $("find").value.trim().toLowerCase();
  const order = {closed: 0, merged: 1, extended: 2, open: 3};
  const value = g => sortKey === "outcome" ? order[g.outcome] : g[sortKey];
  const list = gaps.filter(g => !off.has(g.outcome) && (!word || String(g.gap) === word ||
    g.scaffold.toLowerCase().includes(word) || g.reason.toLowerCase().includes(word)));
  return list.sort((a, b) => {
    const u = value(a), v = value(b);
    if (u === null || v === null) return u === v ? a.gap - b.gap : u === null ? 1 : -1;
    const c = typeof u === "number" ? u - v : String(u).localeCompare(String(v), "en", {numeric: true});
    return (sortDown ? -c : c) || a.gap - b.gap;
  });
}

function columns() {
  for (const [key, name, , kind] of COLUMNS) {
    const button = el("button", {type: "button"}, name);
    button.addEventListener("click", () => {
      sortDown = sortKey === key ? !sortDown : false;
      sortKey = key;
      rows();
    });
    $("head").append(el("th", {scope: "col", class: kind, "data-key": key}, button));
  }
  for (const o of OUTCOMES) {
    const n = gaps.filter(g => g.outcome === o).length;
    const button = el("button", {type: "button", "aria-pressed": "true", "data-outcome": o}, dot(o), `${o} ${num(n)}`);
    button.addEventListener("click", () => {
      off.has(o) ? off.delete(o) : off.add(o);
      button.setAttribute("aria-pressed", String(!off.has(o)));
      rows();
    });
    $("chips").append(button);
  }
  $("find").addEventListener("input", rows);
  $("more").addEventListener("click", () => { limit += 5 * PAGE; rows(); });
  let kept = 0;
  addEventListener("beforeprint", () => { kept = limit; limit = Infinity; rows(); });
  addEventListener("afterprint", () => { limit = kept; rows(); });
}

function rows() {
  const list = matching(), body = $("rows");
  for (const th of $("head").children) {
    if (th.dataset.key === sortKey) th.setAttribute("aria-sort", sortDown ? "descending" : "ascending");
    else th.removeAttribute("aria-sort");
  }
  body.textContent = "";
  for (const g of list.slice(0, limit)) {
    const button = el("button", {type: "button", class: "pick", "aria-expanded": String(opened === g.gap),
      "aria-label": `Gap ${g.gap}, show its support`}, num(g.gap));
    const cells = {gap: button, outcome: [dot(g.outcome), g.outcome], start: `${num(g.start)}\u2013${num(g.end)}`,
      round: g.round || "\u2013", strategy: g.strategy === "none" ? "\u2013" : g.strategy};
    const row = el("tr", {class: "row" + (opened === g.gap ? " opened" : ""), id: "row-" + g.gap},
      COLUMNS.map(([key, , , kind]) => el("td", {class: kind, "data-key": key}, cells[key] ?? num(g[key]))));
    row.addEventListener("click", () => toggle(g.gap));
    body.append(row);
    if (opened === g.gap) body.append(detail(g));
  }
  $("count").textContent = list.length === gaps.length ? plural(gaps.length, "gap") :
    `${num(list.length)} of ${plural(gaps.length, "gap")}`;
  $("more").hidden = list.length <= limit;
  $("more").textContent = `Show ${num(Math.min(5 * PAGE, list.length - limit))} more`;
  for (const pt of document.querySelectorAll("#real .pt")) pt.classList.toggle("on", +pt.dataset.gap === opened);
}

function toggle(id) {
  const before = $("row-" + id).getBoundingClientRect().top;
  opened = opened === id ? null : id;
  history.replaceState(null, "", opened === null ? location.pathname + location.search : "#gap-" + id);
  rows();
  const row = $("row-" + id);
  scrollBy({top: row.getBoundingClientRect().top - before, behavior: "instant"});
  row.querySelector(".pick").focus({preventScroll: true});
}

/* Opens a gap from elsewhere on the page; filters that hide it are taken back. */
function show(id) {
  if (!byId.has(id)) return;
  opened = id;
  if (!matching().some(g => g.gap === id)) {
    off.clear();
    $("find").value = "";
    for (const chip of $("chips").children) chip.setAttribute("aria-pressed", "true");
  }
  limit = Math.max(limit, matching().findIndex(g => g.gap === id) + 1);
  rows();
  $("row-" + id).scrollIntoView({block: "center"});
  $("row-" + id).querySelector(".pick").focus({preventScroll: true});
}

function detail(g) {
  const cell = el("td", {colspan: COLUMNS.length});
  const text = g.reason ? g.reason.charAt(0).toUpperCase() + g.reason.slice(1) : "";
  if (text) cell.append(el("p", null, /[.!?]$/.test(text) ? text : text + "."));
  cell.append(plot(g));
  const facts = [["Scaffold", g.scaffold], ["In the original", `${num(g.start)}\u2013${num(g.end)}`],
    ["In filled.fa", g.places.length ? g.places.map(p => `${num(p[0])}\u2013${num(p[1])}`).join(", ") : null],
    ["Stated length", num(g.stated)], ["Bases filled", num(g.filled)], ["N left", num(g.open)],
    ["Strategy", g.strategy === "none" ? null : g.strategy], ["Round", g.round || null],
    ["Reads assigned", num(g.reads)], ["Least support", g.least === null ? null : num(g.least)],
    ["Mean support", g.mean === null ? null : num(g.mean)]];
  cell.append(el("dl", {class: "facts"}, facts.filter(f => f[1] !== null).map(([k, v]) =>
    el("div", null, el("dt", null, k), el("dd", null, String(v))))));
  return el("tr", {class: "detail"}, cell);
}

/* Steps of reads that agree (support) in front of all reads (depth); bases without a column are a dashed box. */
function plot(g) {
  const c = data.columns[g.gap];
  if (!c || !c.s.length) {
    return el("p", {class: "hint"}, g.filled > 0 ? "No consensus columns were kept for this gap." :
      g.outcome === "merged" ? "Nothing was filled in: the contigs meet, so there are no columns to show." :
      "Nothing was filled in, so there are no columns to show.");
  }
  const width = Math.max(280, Math.min(1072, $("table").clientWidth || 800)), height = 190;
  const L = 40, R = 8, T = 12, B = 40, n = c.s.length, top = Math.max(4, ...c.d, ...c.s);
  const x = i => L + (width - L - R) * i / n, y = v => height - B - (height - B - T) * v / top;
  const area = values => {
    let d = "";
    for (let i = 0; i < n; i++) if (values[i] >= 0) {
      if (i === 0 || values[i - 1] < 0) d += `M${x(i).toFixed(1)} ${y(0)}`;
      d += `V${y(values[i]).toFixed(1)}H${x(i + 1).toFixed(1)}`;
      if (i === n - 1 || values[i + 1] < 0) d += `V${y(0)}Z`;
    }
    return d;
  };
  const svg = el("svg", {viewBox: `0 0 ${width} ${height}`, class: "plot", role: "slider", tabindex: "0",
    "aria-label": `Support along gap ${g.gap}`, "aria-valuemin": 1, "aria-valuemax": n, "aria-valuenow": 1});
  svg.append(el("path", {class: "depth", d: area(c.d)}), el("path", {class: "support", d: area(c.s)}));
  for (let i = 0; i < n; i++) if (c.s[i] < 0) {
    let k = i;
    while (k + 1 < n && c.s[k + 1] < 0) k++;
    svg.append(el("rect", {class: "hole", x: x(i), y: T + .5, width: Math.max(2, x(k + 1) - x(i)), height: height - B - T - 1}));
    i = k;
  }
  const unit = [1, 2, 5, 10, 20, 50, 100, 200, 500, 1000, 2000].find(u => top / u <= 4) || 5000;
  for (let v = 0; v <= top; v += unit)
    svg.append(el("text", {x: L - 8, y: y(v) + 4, "text-anchor": "end"}, num(v)),
      el("path", {class: "axis", d: `M${L} ${y(v)}H${width - R}`}));
  const bases = n * c.step;
  const tick = [10, 20, 50, 100, 200, 500, 1000, 2000, 5000, 10000].find(u => bases / u <= width / 90) || 20000;
  for (let b = tick; b < c.length; b += tick)
    svg.append(el("text", {x: x(b / c.step), y: height - B + 18,
      "text-anchor": x(b / c.step) > width - R - 24 ? "end" : "middle"}, num(b)),
      el("path", {class: "axis", d: `M${x(b / c.step)} ${height - B}v4`}));
  svg.append(el("text", {x: L, y: height - B + 18, "text-anchor": "middle"}, "1"),
    el("text", {x: width - R, y: height - 5, "text-anchor": "end"}, "base of the fill"));
  let least = -1;
  for (let i = 0; i < n; i++) if (c.s[i] >= 0 && (least < 0 || c.s[i] < c.s[least])) least = i;
  const cursor = el("path", {class: "cursor", d: ""});
  svg.append(cursor, el("circle", {class: "least", cx: x(least + .5), cy: y(c.s[least]), r: 3.5}));
  const hint = el("p", {class: "hint", role: "status"});
  const key = el("ul", {class: "legend"},
    el("li", null, el("span", {class: "swatch", style: "background: var(--support)"}), "reads that show the base"),
    el("li", null, el("span", {class: "swatch", style: "background: var(--depth)"}), "all reads over it"),
    el("li", null, el("span", {class: "swatch", style: "background: var(--mark); border-radius: 50%"}),
      `least: ${num(c.s[least])}`), c.s.some(v => v < 0) ? el("li", null, "dashed: no column was kept") : null);
  let at = -1;
  const move = i => {
    at = Math.max(0, Math.min(n - 1, i));
    const from = at * c.step + 1, to = Math.min(c.length, from + c.step - 1);
    const where = from === to ? `Base ${num(from)}` : `Bases ${num(from)} to ${num(to)}`;
    const words = c.s[at] < 0 ? `${where}: no column was kept` : c.step === 1 ?
      `${where}: ${num(c.s[at])} of ${plural(c.d[at], "read")} ${c.s[at] === 1 ? "shows" : "show"} it` :
      `${where}: at least ${num(c.s[at])} of ${plural(c.d[at], "read")}`;
    cursor.setAttribute("d", `M${x(at + .5)} ${T}V${height - B}`);
    svg.setAttribute("aria-valuenow", at + 1);
    svg.setAttribute("aria-valuetext", words);
    hint.textContent = words;
  };
  const pointer = event => {
    const box = svg.getBoundingClientRect();
    move(Math.floor(((event.clientX - box.left) * width / box.width - L) / (width - L - R) * n));
  };
  svg.addEventListener("pointermove", pointer);
  svg.addEventListener("pointerdown", pointer);
  svg.addEventListener("click", event => event.stopPropagation());
  svg.addEventListener("keydown", event => {
    const by = {ArrowRight: 1, ArrowUp: 1, ArrowLeft: -1, ArrowDown: -1, PageUp: 20, PageDown: -20}[event.key];
    if (by) move(at < 0 ? 0 : at + by);
    else if (event.key === "Home") move(0);
    else if (event.key === "End") move(n - 1);
    else return;
    event.preventDefault();
  });
  hint.textContent = "Point at the chart, or focus it and use the arrow keys.";
  return el("div", null, key, svg, hint);
}

function run() {
  const add = (name, ...what) => $("run").append(el("dt", null, name), el("dd", null, what));
  if (data.version) add("Program", "lintara-kit " + data.version);
  add("Commands", "run.json beside this file holds the commands, versions, times and peak memory.");
  add("Tables", "gaps.tsv, filled.bed, filled.agp and columns.tsv.gz beside this file hold the same figures.");
  $("foot").textContent = "Positions are 0-based and half-open, as in BED.";
}

head(); sizes(); rounds(); run(); columns(); real(); rows();
addEventListener("keydown", event => {
  if (event.key === "Escape" && opened !== null && event.target !== $("find")) toggle(opened);
});
let timer = 0, seen = innerWidth;
addEventListener("resize", () => {
  if (innerWidth === seen) return;
  seen = innerWidth;
  clearTimeout(timer);
  timer = setTimeout(() => { real(); rows(); }, 120);
});
const linked = () => { const m = /^#gap-(\d+)$/.exec(location.hash); if (m) show(+m[1]); };
addEventListener("hashchange", linked);
linked();
})();
)js";
}

}  // namespace lintara::kit
