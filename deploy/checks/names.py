"""Names that the sources must do without, as the platform of API 24 does."""

import re

from .tables import rows

FOLDERS = "interface", "service", "operations", "driver", "settings", "client", "examples"


def check(root):
    lacking = re.compile(rf"\b({'|'.join(word for row in rows('api24-lacks') for word in row)})\b")
    sources = [path for folder in FOLDERS for path in (root / folder).rglob("*.*")]
    for path in sorted(path for path in sources if path.suffix in (".h", ".cpp")):
        for number, line in enumerate(path.read_text().splitlines(), 1):
            for name in lacking.findall(line.split("//")[0]):
                yield f"{path.relative_to(root)}:{number}: API 24 has no {name}"
