# site.py FOLDER: each link and each file of the site's pages exists, each anchor too, and no page
# loads anything from elsewhere. The search finds a function and a word of the tutorial.
import re
import sys
from html.parser import HTMLParser
from pathlib import Path
from urllib.parse import unquote, urlsplit

site = Path(sys.argv[1]).resolve()
loading = {("script", "src"), ("img", "src"), ("link", "href"), ("iframe", "src"), ("source", "src")}


class Page(HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.anchors, self.links, self.loads = set(), [], []
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name == "id":
                self.anchors.add(value)
            elif (tag, name) in loading:
                self.loads.append(value)
            elif name == "href":
                self.links.append(value)


pages = {path: Page(path) for path in site.rglob("*.html")}
faults = []
for path, page in pages.items():
    for address in page.loads + page.links:
        parts = urlsplit(address)
        if parts.scheme or parts.netloc:
            if address in page.loads and parts.scheme != "data":
                faults.append(f"{path.name} loads {address}")
            continue
        target = (path.parent / unquote(parts.path)).resolve() if parts.path else path
        if not target.exists():
            faults.append(f"{path.name} points at {address}")
        elif parts.fragment and target in pages and unquote(parts.fragment) not in pages[target].anchors:
            faults.append(f"{path.name} points at {address}")
for sheet in list(site.rglob("*.css")) + list(site.rglob("*.js")):
    for address in re.findall(r"""(?:url\(["']?|@import ["'])(https?:[^)"']+)""", sheet.read_text()):
        faults.append(f"{sheet.name} loads {address}")

index = (site / "searchindex.js").read_text(encoding="utf-8")
for word in ("smoothstep", "moon", "simd_prefix_exclusive_sum"):
    if word not in index:
        faults.append(f"The search does not find {word}.")
if len(pages) < 25 or sum(len(page.links) for page in pages.values()) < 1000:
    faults.append("Pages or links are missing.")
print("\n".join(faults))
sys.exit(bool(faults))
