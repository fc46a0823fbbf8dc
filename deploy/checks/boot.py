"""The files that init, ueventd and the permissions of a phone read: by the keywords and users of API 24,
and by those of a newer platform."""

import re
import sys
from pathlib import Path
from xml.etree import ElementTree

from .tables import rows

# Whom the emulated phone knows, as API 24 does.
API24_USERS = Path(__file__).resolve().parents[2] / "lab/image/root/etc/users"
NEWER_USERS = Path("/usr/include/android/private/android_filesystem_config.h")
SERVICE_MANAGER_TAKES = range(1, 10000)


def api24():
    keywords = {(section, word): (int(least), int(most))
                for section, word, least, most in rows("api24-init")}
    users = dict(line.split() for line in API24_USERS.read_text().splitlines())
    return "API 24", keywords, {name: int(number) for name, number in users.items()}


def newer(init_source):
    """The same by the platform's own tables, as C++ has them."""
    keywords = {}
    for section, file in ("service", "service_parser.cpp"), ("on", "builtins.cpp"):
        table = re.findall(r'\{"([\w.]+)",\s*\{(\d+),\s*([^,]+),', (init_source / file).read_text())
        for word, least, most in table:
            keywords[section, word] = (int(least), int(most) if most.isdigit() else sys.maxsize)
    users = re.findall(r"^#define AID_(\w+) (\d+)\b", NEWER_USERS.read_text(), re.M)
    if len(keywords) < 40 or len(users) < 40:
        sys.exit("deploy/check: the newer platform's tables look different")
    return "a newer platform", keywords, {name.lower(): int(number) for name, number in users}


def lines_of(path):
    for number, line in enumerate(path.read_text().splitlines(), 1):
        words = line.split("#")[0].split()
        if words:
            yield f"{path.name}:{number}", words


def check_rc(path, platform):
    name, keywords, users = platform
    section = None
    for where, (word, *arguments) in lines_of(path):
        if word in ("service", "on"):
            section = word
            fits = len(arguments) >= (2 if word == "service" else 1)
        else:
            least, most = keywords.get((section, word), (1, 0))
            fits = least <= len(arguments) <= most
        if not fits:
            yield f"{where}: not for {name}: {word} {' '.join(arguments)}"
        people = {"user": arguments, "group": arguments, "mkdir": arguments[2:]}.get(word, [])
        for person in people:
            if person not in users and not person.isdigit():
                yield f"{where}: unknown to {name}: {person}"


def check_ueventd(path, platform):
    name, _, users = platform
    for where, words in lines_of(path):
        if not re.fullmatch(r"/dev/\S+ 0[0-7]{3} \S+ \S+", " ".join(words)):
            yield f"{where}: not for {name}: {' '.join(words)}"
        for person in words[2:]:
            if person not in users:
                yield f"{where}: unknown to {name}: {person}"


def check_agreement(deploy, users):
    """That the files mean the same user, and that it reaches its directory and the DSP."""
    said = {words[0]: words[1:] for _, words in lines_of(deploy / "zyl_kwo_service.rc")}
    [(_, node)] = lines_of(deploy / "ueventd.zyl.rc")
    user = said["user"][0]
    number = users.get(user) or (int(user) if user.isdigit() else None)
    if number not in SERVICE_MANAGER_TAKES:
        yield f"zyl_kwo_service.rc: the service manager registers nothing for {user}"
    if said["mkdir"][2] != user:
        yield "zyl_kwo_service.rc: the directory is not the service's"
    if node[3] not in said["group"]:
        yield "ueventd.zyl.rc: the service's groups do not reach the DSP"
    for grant in ElementTree.parse(deploy / "zyl_kwo_service.xml").iter("assign-permission"):
        if grant.get("uid") != user:
            yield f"zyl_kwo_service.xml: {grant.get('uid')} is not the service's user"


def check(root, init_source):
    deploy = root / "deploy"
    for platform in api24(), newer(init_source):
        yield from check_rc(deploy / "zyl_kwo_service.rc", platform)
        yield from check_ueventd(deploy / "ueventd.zyl.rc", platform)
        yield from check_agreement(deploy, platform[2])
