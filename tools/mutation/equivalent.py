"""Reads the list of changes that change nothing that a test could see (equivalent.txt)."""


def read(path):
    """The reason of each, by the change's key."""
    reasons = {}
    for number, block in blocks(path):
        head, *lines = block
        file, _, function = head.partition(": ")
        old = tuple(line[2:].strip() for line in lines if line.startswith("- "))
        new = tuple(line[2:].strip() for line in lines if line.startswith("+ "))
        reason = " ".join(line.strip() for line in lines if not line.startswith(("- ", "+ ")))
        if not reason or not old + new:
            raise SystemExit(f"{path}:{number}: a file, what changes in it, and the reason")
        reasons[file.rstrip(":"), function, old, new] = reason
    return reasons


def blocks(path):
    """The paragraphs but for those of remarks, and the line in which each begins."""
    block = []
    lines = path.read_text(encoding="utf-8").splitlines()
    for number, line in enumerate([*lines, ""], 1):
        if line.strip():
            block.append(line)
        elif block:
            if not block[0].startswith("#"):
                yield number - len(block), block
            block = []


def show(change):
    """As the list has it."""
    return "\n".join([f"{change.file}: {change.function}".rstrip(),
                      *(f"- {line}" for line in change.old), *(f"+ {line}" for line in change.new)])
