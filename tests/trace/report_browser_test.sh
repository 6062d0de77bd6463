#!/usr/bin/env bash
# The trace report as a browser shows it: headless Chromium loads the page
# from a file with the network off; the page must log nothing to the console
# (a request for anything outside the page is refused there, and says so),
# and every chart must be drawn: present, with drawn shapes, and with a
# rendered box of non-zero size.
# Usage: report_browser_test.sh SYNTHETIC-TRACE-WRITER HOST-ZORVO-TRACE
set -euo pipefail
writer=$1 tool=$2
browser=$(type -P chromium || type -P chromium-browser || true)
[ -n "$browser" ] || { echo "chromium is not installed: run scripts/install-deps.sh"; exit 1; }
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

"$writer" 100000 "$dir/t.trace"
"$tool" report "$dir/t.trace" -o "$dir/report.html" --cache-size 32K --cache-ways 8
grep -q '<svg' "$dir/report.html"
if grep -Eq '(src|href)="(https?:)?//' "$dir/report.html"; then
  echo "the report refers to something outside itself"; exit 1
fi

# The check runs in the page after it has been laid out and writes its
# verdict into the document, which Chromium then prints.
cat >"$dir/check.js" <<'JS'
window.addEventListener("load", () => {
  const problems = [];
  const charts = [...document.querySelectorAll("svg.chart")];
  const ids = charts.map((c) => c.id);
  for (const want of ["address-plot", "bytes-plot", "footprint-plot", "cache-plot", "strides-0"])
    if (!ids.includes(want)) problems.push("missing " + want);
  for (const c of charts) {
    const box = c.getBBox();
    const shapes = c.querySelectorAll("path, rect, line");
    const drawn = [...c.querySelectorAll("path")].every((p) => p.getAttribute("d").length > 0);
    if (box.width <= 0 || box.height <= 0 || shapes.length === 0 || !drawn)
      problems.push(c.id + " is empty");
  }
  const out = document.createElement("pre");
  out.id = "browser-check";
  out.textContent = problems.length ? "FAIL " + problems.join("; ") : "OK " + charts.length + " charts";
  document.body.appendChild(out);
});
JS
# A script after the end of the page still runs, as part of its body.
{ cat "$dir/report.html"; echo "<script>"; cat "$dir/check.js"; echo "</script>"; } >"$dir/checked.html"

timeout 120 "$browser" --headless --no-sandbox --disable-gpu --no-first-run \
  --disable-background-networking --disable-component-update --disable-sync \
  --user-data-dir="$dir/profile" --enable-logging=stderr --v=0 \
  --dump-dom "file://$dir/checked.html" >"$dir/dom" 2>"$dir/log"
verdict=$(grep -o '<pre id="browser-check">[^<]*' "$dir/dom" | sed 's/.*>//' || true)
echo "browser: ${verdict:-no verdict}"
if grep -E 'CONSOLE|Uncaught|Content Security Policy' "$dir/log"; then
  echo "the page logged to the console"; exit 1
fi
[[ $verdict == OK* ]]
