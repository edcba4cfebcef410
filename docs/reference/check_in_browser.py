"""Looks at the reference in a browser: check_in_browser.py <HTML folder> <program of Chromium>

- Text can be read, on a light ground and on a dark one: its contrast is at least 4.5 (WCAG 2.1).
- No page is wider than its window.
- A fold has a summary of its own.
- A name typed into the search field is two clicks away from where it is explained, or one.
Says what is wrong, one line for each finding, and ends with 1 if there is any.
"""

import html
import json
import pathlib
import re
import subprocess
import sys
import tempfile

PAGES = ["index.html", "gallery.html", "kit.html", "recipes.html", "roles.html", "terminals.html", "coming_from.html",
         "stream/index.html", "stream/group__hueline__cursor.html", "stream/group__hueline__themes.html",
         "classic/group__hueline__string__color.html", "classic/classkestry_1_1Hueline.html",
         "kit/group__hueline__kit__style.html", "kit/classkestry_1_1kit_1_1line.html", "copy_8cpp-example.html"]
# Where to type, what, and a part of where it leads to.
SEARCHES = [("index.html", "red", "kit/group__hueline__kit__style"), ("index.html", "truncate", "kit/group__hueline__kit__text"),
            ("index.html", "cup", "stream/"), ("index.html", "gallery", "gallery.html"),
            ("stream/index.html", "multi_progress", "kit/"), ("kit/index.html", "HexDump", "classic/"),
            ("kit/index.html", "HexDump", "stream/"), ("classic/index.html", "colorize", "stream/")]
SCHEMES = {"dark": 0, "light": 1} # as Chromium numbers them

SCRIPT = """
const sleep = ms => new Promise(r => setTimeout(r, ms));
const found = [];
const frame = document.getElementById('page');
async function open(url) {
    const loaded = new Promise(r => frame.onload = r);
    frame.src = url;
    await loaded;
    await sleep(50);
    return frame.contentWindow;
}
const parts = c => c.match(/[\\d.]+/g).map(Number);
const linear = c => (c /= 255) <= 0.03928 ? c / 12.92 : Math.pow((c + 0.055) / 1.055, 2.4);
const luminance = ([r, g, b]) => 0.2126 * linear(r) + 0.7152 * linear(g) + 0.0722 * linear(b);
function ground(win, element) {
    for (; element; element = element.parentElement) {
        const c = parts(win.getComputedStyle(element).backgroundColor);
        if (c.length === 3 || c[3] > 0.5) return c;
    }
    return [255, 255, 255];
}
function contrast(win, element) {
    const [a, b] = [luminance(parts(win.getComputedStyle(element).color)), luminance(ground(win, element))];
    return (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05);
}
async function look(url) {
    const win = await open(url), doc = win.document;
    const seen = new Set();
    for (const element of doc.querySelectorAll('p, li, th, td, a, code, pre, span, h1, h2, dt, dd, .caption, summary')) {
        const has_text = [...element.childNodes].some(n => n.nodeType === 3 && n.data.trim());
        if (!has_text || !element.getClientRects().length || element.closest('object')) continue;
        const ratio = contrast(win, element), what = element.tagName + '.' + element.className;
        if (ratio < 4.5 && !seen.has(what)) {
            seen.add(what);
            found.push(`${url}: hard to read, ${ratio.toFixed(1)}: ${what}: ${element.textContent.trim().slice(0, 40)}`);
        }
    }
    const extra = doc.documentElement.scrollWidth - doc.documentElement.clientWidth;
    if (extra > 1) found.push(`${url}: ${extra} pixels wider than its window`);
    for (const fold of doc.querySelectorAll('details'))
        if (!fold.querySelector(':scope > summary')) found.push(`${url}: a fold without a summary`);
}
async function search(url, name, wanted) {
    const win = await open(url);
    win.document.getElementById('MSearchField').value = name;
    win.setTimeout('searchBox.Search()', 0); // its addresses are those of its page
    for (let i = 0; i < 40; ++i) {
        await sleep(50);
        const results = win.frames.MSearchResults && win.frames.MSearchResults.document;
        if (!results || !results.querySelector('.SRResult')) continue;
        const shown = [...results.querySelectorAll('.SRResult')].filter(r => r.style.display === 'block');
        const entry = shown.find(r => r.querySelector('.SRSymbol').textContent.toLowerCase() === name.toLowerCase());
        if (!entry) continue;
        const links = [...entry.querySelectorAll('a')].filter(a => !a.href.startsWith('javascript:'));
        if (links.some(a => a.href.includes(wanted))) return;
    }
    found.push(`${url}: a search for ${name} does not lead to ${wanted}`);
}
(async () => {
    try {
        for (const url of PAGES) await look(TOP + url);
        for (const [url, name, wanted] of SEARCHES) await search(TOP + url, name, wanted);
    } catch (e) { found.push('the check failed: ' + e); }
    document.getElementById('found').textContent = JSON.stringify(found);
})();
"""


def findings(folder, browser, scheme):
    values = {"TOP": folder.as_uri() + "/", "PAGES": PAGES, "SEARCHES": SEARCHES}
    constants = "".join(f"const {name} = {json.dumps(value)};\n" for name, value in values.items())
    with tempfile.TemporaryDirectory() as temporary:
        page = pathlib.Path(temporary) / "check.html"
        page.write_text('<iframe id="page" width="1280" height="900"></iframe><pre id="found"></pre>'
                        f"<script>{constants}{SCRIPT}</script>", encoding="utf-8")
        run = subprocess.run(
            [browser, "--headless", "--no-sandbox", "--disable-gpu", "--allow-file-access-from-files",
             f"--user-data-dir={temporary}/profile", f"--blink-settings=preferredColorScheme={SCHEMES[scheme]}",
             "--virtual-time-budget=120000", "--dump-dom", page.as_uri()],
            capture_output=True, text=True, timeout=180, check=False)
    said = re.search(r'<pre id="found">(.*?)</pre>', run.stdout, re.DOTALL)
    if said is None or not said.group(1):
        return [f"{browser} has not come to an end: {run.stderr.strip()[-300:]}"]
    return [f"{scheme}: {finding.replace(folder.as_uri() + '/', '')}" for finding in json.loads(html.unescape(said.group(1)))]


def main(folder, browser):
    found = [finding for scheme in SCHEMES for finding in findings(folder.resolve(), browser, scheme)]
    for finding in found:
        print(finding, file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main(pathlib.Path(sys.argv[1]), sys.argv[2]))
