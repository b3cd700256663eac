# The handbook as a site (scripts/handbook), with Sphinx, MyST for Markdown and the theme Furo: its
# search works in pages that are opened as files, and its pages request nothing from elsewhere.
import json
import re

from docutils import nodes

project = "Tarnwick"
html_title = "Tarnwick"
extensions = ["myst_parser"]
myst_heading_anchors = 4
source_suffix = {".md": "markdown"}
highlight_language = "none"
suppress_warnings = ["misc.highlighting_failure"]  # blocks with "..."
html_theme = "furo"
html_favicon = "../desktop/icons/48.png"
html_copy_source = False
html_show_sourcelink = False
html_show_copyright = False


def addNavigation(app, docname, source):
    """The sections of index.md, and the pages in their lists, are the navigation."""
    if docname != "index":
        return
    for section in re.split(r"^## ", source[0], flags=re.MULTILINE)[1:]:
        caption = section.splitlines()[0]
        pages = re.findall(r"^- \[([^]]+)\]\(([\w-]+)\.md\)", section, flags=re.MULTILINE)
        entries = "\n".join(f"{title} <{page}>" for title, page in pages)
        source[0] += f"\n```{{toctree}}\n:hidden:\n:caption: {caption}\n\n{entries}\n```\n"


def isJson(text):
    try:
        return isinstance(json.loads(text), dict)
    except ValueError:
        return False


def nameLanguages(app, tree):
    """Blocks of code in Markdown name no language: episodes are C++ for the colours."""
    for block in tree.findall(nodes.literal_block):
        text = block.astext()
        if text.startswith("$ "):
            block["language"] = "console"
        elif re.search(r"^(//|#include|float\d?|half\d?|struct|void|kernel|constant) ", text):
            block["language"] = "cpp"
        elif isJson(text):
            block["language"] = "json"


def showGallery(app, tree, docname):
    """The sheet of the episodes becomes a gallery of pages, which scripts/handbook makes beside it."""
    frame = (
        '<iframe src="gallery/index.html" title="The episodes of this repository" loading="lazy" '
        'style="width: 100%; height: 36em; border: 0; border-radius: 12px"></iframe>'
    )
    if app.config.live_gallery:
        for image in list(tree.findall(nodes.image)):
            if image["uri"] == "gallery.png":
                image.replace_self(nodes.raw("", frame, format="html"))


def setup(app):
    app.add_config_value("live_gallery", False, "env")
    app.connect("source-read", addNavigation)
    app.connect("doctree-read", nameLanguages)
    app.connect("doctree-resolved", showGallery)
    return {"parallel_read_safe": True}
