#!/usr/bin/env python3
"""Keeps what the documents quote equal to its source.

A code block behind a line `<!-- quote FILE -->` is that file, behind `<!-- quote FILE: NAME -->` what stands in it
between the lines `// quote: NAME` and `// quote end` (or `# quote: ...`), without the indentation they share.

Usage: quotes.py [--write]   looks through README.md and docs/**/*.md; --write puts the source's lines into them
"""
import pathlib
import re
import sys
import textwrap

ROOT = pathlib.Path(__file__).resolve().parent.parent
MARK = re.compile(r"^<!-- quote (?P<file>[^\s:]+)(?:: (?P<name>\w+))? -->\n```(?P<kind>\w*)\n(?P<text>.*?)^```$", re.M | re.S)


def source(file, name):
    text = (ROOT / file).read_text()
    if name:
        region = re.search(rf"^ *(?://|#) quote: {name}\n(.*?)^ *(?://|#) quote end$", text, re.M | re.S)
        if not region:
            sys.exit(f"{file} holds no lines between \"quote: {name}\" and \"quote end\"")
        text = textwrap.dedent(region[1])
    return re.sub(r"^ *(?://|#) quote(?:: \w+| end)\n", "", text, flags=re.M)


def main():
    write, count, wrong = "--write" in sys.argv, 0, []
    for page in [ROOT / "README.md", *sorted((ROOT / "docs").rglob("*.md"))]:
        text = page.read_text()
        marks = len(re.findall(r"^<!-- quote ", text, re.M))
        count += marks

        def fresh(match):
            nonlocal marks
            marks -= 1
            return f"{match[0][:match.start('text') - match.start()]}{source(match['file'], match['name'])}```"

        now = MARK.sub(fresh, text)
        if marks:
            sys.exit(f"{page.relative_to(ROOT)}: a quote without a code block right behind its line")
        if now != text:
            wrong.append(str(page.relative_to(ROOT)))
            if write:
                page.write_text(now)
    if wrong and not write:
        sys.exit(f"differ from their sources: {', '.join(wrong)}; docs/quotes.py --write brings them up to date")
    if not count:
        sys.exit("no document quotes anything: has the form of the marks changed?")
    print(f"{count} quotes" + (f", written: {', '.join(wrong)}" if wrong else ""))


main()
