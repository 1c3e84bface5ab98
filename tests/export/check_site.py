#!/usr/bin/python3
"""Checks an exported site as a browser would read it.

Every .html file under the folder must parse as HTML5 without a single
parse error (html5lib in strict mode); every relative href and src must
name a file of the export. Prints one line per page, "PATH<TAB>TEXT", the
page's visible text with white space collapsed, for the caller to check.
Problems go to stderr, and the exit status is 1 when there were any.
"""
import os
import sys
from urllib.parse import urlsplit, unquote

import html5lib

def main(root):
    problems = []
    for folder, _, files in os.walk(root):
        for name in sorted(files):
            if not name.endswith(".html"):
                continue
            path = os.path.join(folder, name)
            relative = os.path.relpath(path, root)
            with open(path, "rb") as f:
                data = f.read()
            parser = html5lib.HTMLParser(strict=True, namespaceHTMLElements=False)
            try:
                tree = parser.parse(data, transport_encoding="utf-8")
            except Exception as error:  # html5lib raises ParseError in strict mode
                problems.append(f"{relative}: not well-formed HTML5: {error}")
                continue
            for element in tree.iter():
                for attribute in ("href", "src"):
                    target = element.get(attribute)
                    if not target:
                        continue
                    parts = urlsplit(target)
                    if parts.scheme or parts.netloc or target.startswith("#"):
                        continue
                    resolved = os.path.normpath(os.path.join(folder, unquote(parts.path)))
                    if not resolved.startswith(os.path.abspath(root)) and not os.path.abspath(resolved).startswith(os.path.abspath(root)):
                        problems.append(f"{relative}: {attribute} leaves the export: {target}")
                    elif not os.path.isfile(resolved):
                        problems.append(f"{relative}: {attribute} names no file of the export: {target}")
            body = tree.find("body")
            text = " ".join("".join(body.itertext()).split()) if body is not None else ""
            print(f"{relative}\t{text}")
    for problem in problems:
        print(problem, file=sys.stderr)
    return 1 if problems else 0

if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
