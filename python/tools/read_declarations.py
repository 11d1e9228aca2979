"""Reads the declarations of the numeric functions: read_declarations.py OUTPUT HEADER...

A header is the contract of its functions: what it says in front of a declaration becomes the
docstring, and the declared names become the names of the arguments. The output is one DECLARATION
for each function, for inclusion in C++. Reference arguments of numbers are results that follow the
value; a struct of numbers that a function returns is results without a value.
"""

import re
import sys
from pathlib import Path

DECLARATION = re.compile(
    r"(?P<comment>(?:^//[^\n]*\n)+)"
    r"(?:inline )?(?P<type>\w+) (?P<name>\w+)\(\s*(?P<arguments>[^()]*)\)[;\s]",
    re.MULTILINE,
)
STRUCT = re.compile(
    r"(?P<comment>(?:^//[^\n]*\n)+)"
    r"struct (?P<name>\w+) \{\n(?P<fields>(?:  double \w+;[^\n]*\n)+)\};",
    re.MULTILINE,
)
# Left out: where a refusal is put, and who watches a search.
UNSEEN = ("Refusal&", "SearchObserver&")
REFERENCES = ("int&", "double&")


def arguments_of(text):
    names, results = [], []
    for argument in filter(None, (part.strip() for part in text.split(","))):
        kind, name = argument.rsplit(" ", 1)
        if kind in UNSEEN:
            continue
        (results if kind in REFERENCES else names).append(name)
    return names, results


def docstring_of(comment):
    lines = [line[2:].removeprefix(" ") for line in comment.splitlines()]
    return "\n".join(lines).strip()


def literal(text):
    escaped = text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n")
    return f'"{escaped}"'


def declarations(text):
    structs = {match["name"]: match for match in STRUCT.finditer(text)}
    for match in DECLARATION.finditer(text):
        if match["type"] not in ("double", "bool", "void", *structs):
            continue
        names, results = arguments_of(match["arguments"])
        doc = docstring_of(match["comment"])
        if result := structs.get(match["type"]):
            results = re.findall(r"double (\w+);", result["fields"])
            doc = docstring_of(result["comment"]) + "\n\n" + doc
        yield match["name"], names, results, doc


def main(output, *headers):
    lines = ["// Made by python/tools/read_declarations.py; do not edit."]
    for header in sorted(headers):
        previous = None
        for name, names, results, doc in declarations(Path(header).read_text(encoding="utf-8")):
            if doc.startswith("The same "):
                doc = f"{doc}\n\n(The same as {previous}.)"
            previous = name
            lines.append(
                f"DECLARATION({name}, {literal(' '.join(names))}, {literal(' '.join(results))},\n"
                f"            {literal(doc)})"
            )
    Path(output).write_text("\n".join(lines) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
