#include "kit/report/page.h"

namespace lintara::kit {

std::string_view ReportStyle() {
    return R"css(
:root {
  color-scheme: light dark;
  --paper: #fbfaf7; --ink: #1e2226; --soft: #5a6068; --line: #dedbd3; --wash: #f2f0ea; --focus: #1d5fbf;
  --closed: #0c6b66; --merged: #3d5ba6; --extended: #a05a00; --open: #737881; --on: #ffffff;
  --depth: #c9dbd8; --support: #0c6b66; --mark: #b3261e;
}
@media (prefers-color-scheme: dark) {
  :root {
    --paper: #15181a; --ink: #e8e6e1; --soft: #a3a9b0; --line: #33383c; --wash: #1d2124; --focus: #8ab8ff;
    --closed: #5cc4b6; --merged: #9db4f5; --extended: #e8ab5b; --open: #9aa1aa; --on: #10181a;
    --depth: #2b4a48; --support: #5cc4b6; --mark: #ff8a80;
  }
}
* { box-sizing: border-box; }
html { -webkit-text-size-adjust: 100%; scroll-padding-top: 3rem; }
body {
  margin: 0; background: var(--paper); color: var(--ink);
  font: 1rem/1.55 system-ui, -apple-system, "Segoe UI", Roboto, "Noto Sans", "Liberation Sans", Arial, sans-serif;
  font-variant-numeric: tabular-nums lining-nums;
}
main, header, footer { max-width: 70rem; margin: 0 auto; padding: 0 1.5rem; }
header { padding-top: 3.25rem; }
.eyebrow { margin: 0; color: var(--soft); font-size: .875rem; letter-spacing: .02em; }
h1 { margin: .2rem 0 .75rem; font-size: clamp(1.6rem, 1.2rem + 1.8vw, 2.35rem); line-height: 1.18; font-weight: 600;
  letter-spacing: -.018em; overflow-wrap: anywhere; }
.lead { max-width: 42rem; margin: 0; font-size: 1.0625rem; }
h2 { margin: 0 0 .3rem; font-size: 1.25rem; line-height: 1.3; font-weight: 600; letter-spacing: -.008em; }
.say { max-width: 42rem; margin: 0 0 1.25rem; color: var(--soft); }
section { margin-top: 3.5rem; }
a { color: inherit; text-underline-offset: .18em; }
:focus-visible { outline: 2px solid var(--focus); outline-offset: 2px; border-radius: 2px; }
.skip { position: absolute; left: -100vw; top: 0; padding: .5rem 1rem; background: var(--paper); }
.skip:focus { left: 1rem; top: 1rem; z-index: 2; }

.key { display: grid; grid-template-columns: repeat(4, minmax(0, 1fr)); gap: 1.25rem 2rem; margin: 2.25rem 0 0;
  padding: 1.25rem 0 0; border-top: 1px solid var(--line); }
.key div { display: flex; flex-direction: column-reverse; justify-content: flex-end; }
.key dt { color: var(--soft); font-size: .9375rem; line-height: 1.4; }
.key dd { margin: 0; font-size: 2rem; line-height: 1.15; font-weight: 500; letter-spacing: -.02em; }
.key small { font-size: 1rem; font-weight: 400; color: var(--soft); letter-spacing: 0; }
.dot { display: inline-block; width: .68em; height: .68em; margin-right: .45em; border-radius: 50%; vertical-align: 0;
  background: var(--c); }
.dot.merged { border-radius: 0; }
.dot.extended { border-radius: 0; transform: rotate(45deg) scale(.88); }
.dot.open { background: none; border: 2px solid var(--c); }
.closed { --c: var(--closed); } .merged { --c: var(--merged); }
.extended { --c: var(--extended); } .open { --c: var(--open); }

table { width: 100%; border-collapse: collapse; }
caption { text-align: left; color: var(--soft); padding-bottom: .5rem; }
th { font-weight: 500; color: var(--soft); font-size: .875rem; text-align: left; vertical-align: bottom; }
th, td { padding: .5rem .75rem .5rem 0; border-bottom: 1px solid var(--line); }
td { vertical-align: middle; }
th:last-child, td:last-child { padding-right: 0; }
.n { text-align: right; white-space: nowrap; }
th.n + th:not(.n), td.n + td:not(.n) { padding-left: .75rem; }
td.name { overflow-wrap: anywhere; min-width: 6rem; }
tbody th { font-size: 1rem; color: var(--ink); font-weight: 400; white-space: nowrap; }

.bar { display: flex; height: 1.6rem; gap: 1px; }
.bar span { display: flex; align-items: center; justify-content: center; min-width: 3px; background: var(--c);
  color: var(--on); font-size: .8125rem; overflow: hidden; -webkit-print-color-adjust: exact; print-color-adjust: exact; }
.bar span.open { background: repeating-linear-gradient(135deg, var(--c) 0 1px, transparent 1px 5px);
  box-shadow: inset 0 0 0 1px var(--c); color: var(--ink); }
.bar span.open b { background: var(--paper); padding: 0 .25em; border-radius: 2px; }
.bar b { font-weight: 500; }
.wide { width: 55%; }
.legend { display: flex; flex-wrap: wrap; gap: .25rem 1.5rem; margin: 0 0 1rem; padding: 0; list-style: none;
  font-size: .9375rem; }
.gain { display: block; height: .55rem; min-width: 2px; background: var(--closed); -webkit-print-color-adjust: exact;
  print-color-adjust: exact; }

.two { display: grid; grid-template-columns: minmax(0, 1fr) minmax(0, 1fr); gap: 3.5rem 3rem; }
.two section { margin-top: 0; }
.two { margin-top: 3.5rem; }
svg { display: block; width: 100%; height: auto; overflow: visible; font: inherit; }
svg text { fill: var(--soft); font-size: 12.5px; }
svg .axis { stroke: var(--line); fill: none; shape-rendering: crispEdges; }
svg .same { stroke: var(--soft); stroke-dasharray: 2 4; fill: none; }
svg .pt { stroke: var(--paper); stroke-width: 1; fill: var(--c); cursor: pointer; }
svg .pt:hover, svg .pt.on { stroke: var(--ink); stroke-width: 2; }
svg .pt.open { fill: none; stroke: var(--c); }
.hint { min-height: 1.55em; margin: .5rem 0 0; font-size: .9375rem; color: var(--soft); overflow-wrap: anywhere; }

.tools { display: flex; flex-wrap: wrap; gap: .75rem 1rem; align-items: center; margin: 0 0 1rem; }
.tools input { font: inherit; color: inherit; background: var(--paper); border: 1px solid var(--soft);
  border-radius: 4px; padding: .4rem .65rem; width: 15rem; max-width: 100%; }
.chips { display: flex; flex-wrap: wrap; gap: .4rem; }
button { font: inherit; color: inherit; background: none; border: 0; padding: 0; cursor: pointer; text-align: inherit; }
.chips button, .more { border: 1px solid var(--line); border-radius: 4px; padding: .38rem .7rem; }
.chips button[aria-pressed="false"] { color: var(--soft); text-decoration: line-through; }
.chips button[aria-pressed="true"] { background: var(--wash); border-color: var(--soft); }
.more { margin-top: 1rem; } .more:hover, .chips button:hover { border-color: var(--ink); }
#table thead th { position: sticky; top: 0; background: var(--paper); z-index: 1; border-bottom-color: var(--soft); }
thead button { font-weight: 500; line-height: 1.3; padding: .35rem 0; white-space: nowrap; }
thead button:hover { color: var(--ink); }
thead button::after { content: ""; display: inline-block; width: .9em; text-align: right; }
[aria-sort="ascending"] button::after { content: "\2191"; } [aria-sort="descending"] button::after { content: "\2193"; }
[aria-sort="ascending"], [aria-sort="descending"] { color: var(--ink); }
#table tbody tr.row { cursor: pointer; } #table tbody tr.row:hover { background: var(--wash); }
#table .pick { padding: .2rem .4rem .2rem 0; min-width: 2.5rem; text-decoration: underline; text-decoration-color: var(--line);
  text-underline-offset: .22em; }
#table tr.opened > * { border-bottom-color: transparent; }
.what { white-space: nowrap; }
.detail > td { padding: .25rem 0 2rem; white-space: normal; }
.detail p { max-width: 44rem; margin: 0 0 1rem; overflow-wrap: anywhere; }
.facts { display: grid; grid-template-columns: repeat(auto-fill, minmax(9.5rem, 1fr)); gap: .75rem 1.5rem; margin: 1.25rem 0 0; }
.facts dt { color: var(--soft); font-size: .875rem; } .facts dd { margin: 0; overflow-wrap: anywhere; }
.plot { touch-action: pan-y; }
.plot .depth { fill: var(--depth); } .plot .support { fill: var(--support); opacity: .85; }
.plot .hole { fill: none; stroke: var(--open); stroke-dasharray: 2 3; } .plot .cursor { stroke: var(--mark); }
.plot .least { fill: var(--mark); }
.swatch { display: inline-block; width: .8em; height: .8em; margin-right: .4em; }

.run { display: grid; grid-template-columns: 9rem minmax(0, 1fr); gap: .5rem 1.5rem; margin: 0; }
.run dt { color: var(--soft); } .run dd { margin: 0; overflow-wrap: anywhere; }
code { font: .9em/1.5 ui-monospace, "SF Mono", Menlo, Consolas, "Liberation Mono", monospace; }
footer { margin-top: 4rem; padding-top: 1rem; padding-bottom: 3rem; color: var(--soft); font-size: .9375rem; }
.hide { position: absolute; width: 1px; height: 1px; overflow: hidden; clip-path: inset(50%); white-space: nowrap; }

@media (max-width: 56rem) { .two { grid-template-columns: minmax(0, 1fr); } .p3 { display: none; } }
@media (max-width: 40rem) {
  main, header, footer { padding-left: 1rem; padding-right: 1rem; }
  header { padding-top: 2rem; } section { margin-top: 2.75rem; }
  .key { grid-template-columns: repeat(2, minmax(0, 1fr)); gap: 1rem 1.25rem; }
  .key dd { font-size: 1.6rem; } .p2 { display: none; } .wide { width: 50%; }
  #table td.name { min-width: 3.5rem; } #table tr.row td { font-size: .9375rem; } #table thead button::after { width: .6em; } .tools label { width: 100%; }
  th, td { padding-right: .5rem; } .tools input { width: 100%; }
  .run { grid-template-columns: minmax(0, 1fr); gap: 0; } .run dd { margin-bottom: .75rem; }
  #table .pick { min-height: 2rem; } .chips button { min-height: 2.5rem; }
}
@media print {
  :root { color-scheme: light; --paper: #fff; --ink: #000; --soft: #444; --line: #bbb; --wash: #fff;
    --closed: #0c6b66; --merged: #3d5ba6; --extended: #a05a00; --open: #666; --on: #fff; --depth: #c9dbd8;
    --support: #0c6b66; --mark: #b3261e; }
  @page { margin: 16mm 14mm; }
  body { font-size: 9.5pt; } main, header, footer { max-width: none; padding-left: 0; padding-right: 0; }
  header { padding-top: 0; } section { margin-top: 1.75rem; } .tools, .more, .skip, .hint { display: none; }
  .p3 { display: table-cell; } #table thead th { position: static; } thead { display: table-header-group; }
  tr, figure, .key, svg { break-inside: avoid; } h2, .say { break-after: avoid; }
  .two { grid-template-columns: 1fr 1fr; } th, td { padding-top: .2rem; padding-bottom: .2rem; }
  .depth, .support, .pt, .dot, .swatch { -webkit-print-color-adjust: exact; print-color-adjust: exact; }
}
@media (prefers-reduced-motion: no-preference) { html { scroll-behavior: smooth; } }
)css";
}

}  // namespace lintara::kit
