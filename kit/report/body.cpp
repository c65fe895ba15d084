#include "kit/report/page.h"

namespace lintara::kit {

std::string_view ReportBody() {
    return R"html(
<a class="skip" href="#gaps">To the table of gaps</a>
<header>
<p class="eyebrow">Lintara gap report</p>
<h1 id="title"></h1>
<p class="lead" id="lead"></p>
<dl class="key" id="key"></dl>
</header>
<main>
<noscript><p class="lead">This report draws its tables with a script that is part of the file. Please allow scripts, or
read gaps.tsv, which holds the same figures.</p></noscript>
<section aria-labelledby="h-size">
<h2 id="h-size">Outcome by size</h2>
<p class="say">Gaps by their stated length in bases. A closed gap is full, a merged one was none: its contigs overlap or
touch. An extended gap is filled in part.</p>
<ul class="legend" id="legend"></ul>
<table id="sizes"></table>
</section>
<div class="two">
<section aria-labelledby="h-real">
<h2 id="h-real">Stated against real size</h2>
<p class="say">Closed and merged gaps, whose real size is known. On the dotted line both are equal.</p>
<div id="real"></div>
<p class="hint" id="real-hint" role="status"></p>
</section>
<section aria-labelledby="h-rounds">
<h2 id="h-rounds">Rounds</h2>
<p class="say">What each round gained. A round starts from the scaffolds that the one before left.</p>
<table id="rounds"></table>
</section>
</div>
<section aria-labelledby="h-gaps" id="gaps">
<h2 id="h-gaps">Gaps</h2>
<p class="say">Choose a gap to see its evidence: how many reads stand behind each base.</p>
<div class="tools">
<label><span class="hide">Find a scaffold, a gap number or a reason</span>
<input id="find" type="search" placeholder="Scaffold, gap or reason" autocomplete="off"></label>
<div class="chips" id="chips" role="group" aria-label="Outcomes shown"></div>
<span class="say" id="count" role="status" style="margin:0"></span>
</div>
<table id="table"><thead><tr id="head"></tr></thead><tbody id="rows"></tbody></table>
<button class="more" id="more" type="button" hidden></button>
</section>
<section aria-labelledby="h-run">
<h2 id="h-run">This run</h2>
<dl class="run" id="run"></dl>
</section>
</main>
<footer id="foot"></footer>
)html";
}

}  // namespace lintara::kit
