"""What is built, by CMake, by Android.bp and by Android.mk, and where they differ."""

import json
import re
import subprocess
import tempfile
from dataclasses import dataclass, field
from pathlib import Path

SHIPPED = ("interface", "service", "operations", "driver", "settings", "client")
# CMake's names of what a tree calls otherwise; the others only have "lib" in front.
LIBRARIES = {"maker::conversion": "libzyl-kwo-zylcs-conv", "platform::media": "libmedia",
             "platform::properties": "libcutils"}
# What only CMake's build asks of the sources, and what only a tree's says.
STRICTER = {"-Werror", "-Wconversion", "-Wold-style-cast", "-Wshadow", "-Wthread-safety-beta",
            "-Wc++17-extensions", "-Wc++20-extensions", "-std=c++14"}
LENIENT = {"-Wno-error"}
# What is there in every tree. From API 26 on it is libaudioclient that has AudioSystem.
PLATFORM = {"libbinder", "libcutils", "liblog", "libmedia", "libutils"}
RENAMED = {"libaudioclient": "libmedia"}


@dataclass
class Module:
    kind: str = ""
    sources: set = field(default_factory=set)
    flags: set = field(default_factory=set)
    libraries: set = field(default_factory=set)
    multilib: set = field(default_factory=set)
    init_rc: set = field(default_factory=set)
    exported: set = field(default_factory=set)


def in_blueprint(root):
    kinds = {"cc_binary": "EXECUTABLE", "cc_library_shared": "SHARED_LIBRARY",
             "cc_library_static": "STATIC_LIBRARY", "cc_prebuilt_library_shared": "PREBUILT"}
    blueprint = re.sub(r"//.*", "", (root / "Android.bp").read_text())
    bodies = {}
    for kind, body in re.findall(r"^(\w+) \{\n(.*?)^\}", blueprint, re.S | re.M):
        lists = {key: re.findall(r'"([^"]*)"', text) for key, text
                 in re.findall(r"^    (\w+): (\[[^\]]*\]|\"[^\"]*\")", body, re.M)}
        bodies[lists["name"][0]] = (kind, lists)

    def words(name, *keys):
        _, lists = bodies[name]
        own = {word for key in keys for word in lists.get(key, [])}
        return own.union(*(words(other, *keys) for other in lists.get("defaults", [])))

    def sources(name):
        for pattern in words(name, "srcs"):
            found = [str(path.relative_to(root)) for path in root.glob(pattern)]
            yield from found or [pattern]

    return {name: Module(kinds[kind], set(sources(name)), words(name, "cflags", "cppflags"),
                         {RENAMED.get(library, library)
                          for library in words(name, "shared_libs", "static_libs")},
                         words(name, "compile_multilib"), words(name, "init_rc"),
                         words(name, "export_include_dirs"))
            for name, (kind, _) in bodies.items() if kind in kinds}


# Stands for what a tree's make includes: prints what is set, a variable a line, or clears it. What a
# module has generated is made.
RULE = """all: $(LOCAL_ADDITIONAL_DEPENDENCIES)
$(foreach v,$(sort $(filter LOCAL_%,$(.VARIABLES))),$(if $(strip $($(v))),$(info $(v) $($(v)))))
$(info BUILD {kind})
"""
CLEAR = ("$(foreach v,$(filter-out LOCAL_PATH,$(filter LOCAL_%,$(.VARIABLES))),$(eval $(v) :=))\n"
         "LOCAL_ADDITIONAL_DEPENDENCIES :=\n")
KINDS = ("EXECUTABLE", "SHARED_LIBRARY", "STATIC_LIBRARY", "PREBUILT")


def read_by_make(root, level):
    """The lines that the rules print for a tree of the API level."""
    with tempfile.TemporaryDirectory() as rules:
        tree = [f"PLATFORM_SDK_VERSION := {level}", f"CLEAR_VARS := {rules}/CLEAR",
                f"my-dir = {root}", f"local-generated-sources-dir = {rules}/gen", "all:", *(f"BUILD_{kind} := {rules}/{kind}" for kind in KINDS),
                f"include {root}/Android.mk"]
        Path(rules, "CLEAR").write_text(CLEAR)
        for kind in KINDS:
            Path(rules, kind).write_text(RULE.replace("{kind}", kind))
        made = subprocess.run(["make", "-r", "-s", "-f", "-", "--warn-undefined-variables"],
                              input="\n".join(tree), capture_output=True, text=True, check=True)
    if made.stderr:
        raise ValueError(f"Android.mk: {made.stderr}")
    return [line.split() for line in made.stdout.splitlines() if line]


def in_makefile(root, level):
    modules, said = {}, {}
    for key, *words in read_by_make(root, level):
        if key != "BUILD":
            said[key] = {word.replace(f"{root}/", "").replace(str(root), ".") for word in words}
            continue

        def take(*keys):
            return set().union(*(said.pop("LOCAL_" + key, set()) for key in keys))

        [name] = take("MODULE")
        if name in modules:
            raise ValueError(f"Android.mk: {name} twice")
        take("PATH", "CLANG", "MODULE_CLASS", "MODULE_SUFFIX")
        modules[name] = Module(words[0], take("SRC_FILES"), take("CFLAGS", "CPPFLAGS"),
                               take("SHARED_LIBRARIES", "STATIC_LIBRARIES"), take("MULTILIB"),
                               take("INIT_RC"), take("EXPORT_C_INCLUDE_DIRS"))
        take("C_INCLUDES", "ADDITIONAL_DEPENDENCIES")
        if said:
            raise ValueError(f"Android.mk: {name}: not of API 24: {' '.join(said)}")
    return modules


def in_cmake(root, commands):
    """By what CMake compiles, and by what its targets say that they link."""
    modules = {}
    built_in = Path(commands).parents[2]
    for entry in json.loads(Path(commands).read_text()):
        source = entry["file"].removeprefix(f"{built_in}/")
        if source.startswith(tuple(folder + "/" for folder in SHIPPED)):
            target = re.search(r" -o \S*/(\S+)\.dir/", entry["command"]).group(1)
            module = modules.setdefault(target, Module())
            module.sources.add(source)
            module.flags.update(re.findall(
                r" (-W(?!l,)[\w+-]+|-fno-(?:exceptions|rtti)|-std=\S+)", entry["command"]))
    for folder in SHIPPED:
        lists = root / folder / "CMakeLists.txt"
        text = lists.read_text() if lists.exists() else ""
        for target, libraries in re.findall(r"target_link_libraries\((\S+)([^)]*)\)", text):
            modules[target].libraries = {
                LIBRARIES.get(name, "lib" + name.removeprefix("platform::"))
                for name in re.findall(r"[\w:]+", libraries)
                if not re.fullmatch(r"PUBLIC|PRIVATE|zyl::.*", name)}
    return modules


def needed(target, modules, targets):
    """What the target links, and what is linked into it with that."""
    for library in target.libraries:
        yield library
        if modules.get(library, Module()).kind == "STATIC_LIBRARY":
            yield from needed(targets[library.removeprefix("lib")], modules, targets)


def compare_with_cmake(name, module, target, libraries):
    if module.sources != target.sources:
        yield f"{name}: not in both CMake and Android.bp: {module.sources ^ target.sources}"
    flags = module.flags ^ (target.flags - STRICTER | LENIENT)
    if flags or not STRICTER <= target.flags:
        yield f"{name}: other flags by CMake: {flags | STRICTER - target.flags}"
    if not libraries <= module.libraries:
        yield f"{name}: without {libraries - module.libraries}, which CMake links"


def check(root, commands):
    blueprint, makefile = in_blueprint(root), in_makefile(root, 24)
    if makefile != in_makefile(root, 25) or in_makefile(root, 26):
        yield "Android.mk: not for API 24 and 25 alone"
    known = PLATFORM | {name for name, module in blueprint.items() if module.kind != "EXECUTABLE"}
    for name in sorted(blueprint.keys() | makefile.keys()):
        old = makefile.get(name, Module())
        new = blueprint.get(name, Module())
        if old.flags:
            old.flags ^= {"-std=gnu++14"}
        for aspect, value in vars(new).items():
            if value != getattr(old, aspect):
                yield f"{name}: {aspect}: {value} by Android.bp, {getattr(old, aspect)} by Android.mk"
        if not new.libraries <= known:
            yield f"{name}: no such library: {new.libraries - known}"
    targets = in_cmake(root, commands)
    own = {name.removeprefix("lib"): module for name, module in blueprint.items()
           if module.kind != "PREBUILT"}
    if own.keys() != targets.keys():
        yield f"of CMake or Android.bp alone: {own.keys() ^ targets.keys()}"
    static = {name for name, module in blueprint.items() if module.kind == "STATIC_LIBRARY"}
    for name in own.keys() & targets.keys():
        # A static library is linked by whoever links it.
        libraries = (targets[name].libraries - static if own[name].kind == "STATIC_LIBRARY"
                     else set(needed(targets[name], blueprint, targets)))
        yield from compare_with_cmake(name, own[name], targets[name], libraries)
