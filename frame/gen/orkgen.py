#!/usr/bin/env python3
"""Writes every export family's files from its table, or checks that they are current.

A family is declared once, in a table beside its area (TABLES below lists
them). Each routine of a table names its arguments by role (a flag with its
letters, a dimension, a scalar, an array, a leading dimension, an increment,
a packed triangle, workspace a kernel is handed); from the roles the generator writes

  the public header      the prototypes of libork's checked entries
  the kernel header      the prototypes of the kernel library's other names
  the kernel shims       one flat C-linkage function per kernel export, which
                         unwraps its by-address arguments and calls a template
  the checked entries    libork's entries: the argument tests in argument
                         order with the positions counted here, the quick
                         return, the address-range tests, then a hand-written
                         body that gets the kernel of the loaded library
  the loader binding     the X-list of kernel names libork looks up (a routine
                         with bound=False is a kernel only others call)
  the export lists       exports/baseline/<family>.txt, exports/libork/<family>.txt
  the test manifest      tests/manifest/<family>.txt: every name with its roles;
                         tests/frame/check_tested.py fails for a name no test uses

A routine marked lp64 also gets a 32-bit-integer twin in the kernel library
(ork_blas_lp64_daxpy): its dimensions, counts, increments and leading
dimensions are `const ork_int32 *`, widened into 64-bit temporaries before
it calls the checked entry through its dynamic symbol (libork's entry where
an application links libork, else the kernel library's own name).

A routine that returns a value returns the value-initialised result on a
bad argument and on its quick return (`quick_result` names another).

A routine with an info argument stores the kernel template's value there
(the shim), and libork's entry sets it to minus the position of a bad
argument, or to 0 once the tests have passed (before the quick return). A
routine may name more kernels (`kernels`: range pieces, variants picked by a
flag) that its body takes after its own.

A routine may return a pointer (`returns="void *"`) and give the kernel
header a doc of its own (`kernel_doc`); a family's kernel header may include
the headers of names declared apart (`kernel_header_includes`).

A planned family (one whose kernels are still to be written) is expanded and
counted but writes nothing yet.

  python3 frame/gen/orkgen.py            write every generated file
  python3 frame/gen/orkgen.py --check    fail (listing them) if any is stale
  python3 frame/gen/orkgen.py --list F   print the names of family F
"""
import argparse
import importlib.util
import pathlib
import sys
from dataclasses import dataclass, field

ROOT = pathlib.Path(__file__).resolve().parents[2]

# The tables, in the order their families appear in shared files.
TABLES = [
    "blas/level1/table.py",
    "blas/level2/table.py",
    "blas/level2/triangular_table.py",
    "blas/level3/table.py",
    "blas/lapack/table.py",
    "blas/gemm/table.py",
    "trans/table.py",
    "core/stdblas/table.py",
    "spblas/table.py",
    "xblas/table.py",
]


# ---------------------------------------------------------------- element types
@dataclass(frozen=True)
class Type:
    letter: str  # the BLAS prefix letter
    c: str  # the C type of the public headers
    real: str  # the C type of its real part

    @property
    def complex(self):
        return self.c != self.real


S = Type("s", "float", "float")
D = Type("d", "double", "double")
C = Type("c", "ork_complex8", "float")
Z = Type("z", "ork_complex16", "double")
SD, CZ, SDCZ = (S, D), (C, Z), (S, D, C, Z)
INT = "ork_int"
INT32 = "ork_int32"  # the integers of the lp64_ wrappers
INTEGER_ROLES = ("dim", "count", "ld", "inc", "stride", "index")  # by address, widened by the lp64_ wrappers
ALWAYS = "always"  # array(..., needed=ALWAYS): never null


def pointer(ctype):
    """`ctype *` written as C is: 'float *', 'void **'."""
    return f"{ctype}*" if ctype.endswith("*") else f"{ctype} *"


# ---------------------------------------------------------------- argument roles
@dataclass
class Arg:
    """One argument of a routine. `kind` is its role; the role decides its C
    declaration, its test in the checked entry, how a kernel shim unwraps it
    and its word in the manifest."""

    name: str
    kind: str
    ctype: str = INT
    out: bool = False
    letters: str = ""  # flag
    least: str = ""  # ld: the smallest leading dimension
    needed: str = ""  # array: null is bad when this holds
    fits: tuple = ()  # (element C type, count expr[, rows expr]) of the address-range test
    report: str = ""  # name of the argument whose position a range failure reports
    reach: str = ""  # a range condition of its own (phase two): must hold
    by_value: bool = False  # a C-form argument taken by value
    as_given: bool = False  # flag: the kernel template takes the string

    def decl(self, lp64=False):
        if self.kind == "flag":
            return f"const char *{self.name}"
        if self.kind == "work":
            return f"void *{self.name}"
        const = "" if self.out else "const "
        if self.by_value:
            return f"{self.ctype} {self.name}"
        ctype = INT32 if lp64 and self.kind in INTEGER_ROLES else self.ctype
        return f"{const}{pointer(ctype)}{self.name}"

    def unwrap(self):
        """The argument as the kernel templates take it."""
        if self.by_value or self.kind == "work":
            return self.name
        if self.kind == "flag":
            return self.name if self.as_given else f"flag({self.name})"
        if self.kind in INTEGER_ROLES or self.kind in ("size", "given"):
            return f"*{self.name}"
        if self.kind == "scalar":
            return f"*as_elem({self.name})"
        return f"as_elem({self.name})"  # array, packed, result

    def test(self):
        """The C++ condition under which the argument is bad (phase one)."""
        n = self.name
        if self.kind == "flag":
            return f'!check::flag({n}, "{self.letters}")'
        if self.kind == "dim":
            return f"!check::dim({n})"
        if self.kind == "inc":
            return f"!check::inc({n})"
        if self.kind in ("count", "stride"):
            return f"!{n}"
        if self.kind == "ld":
            return f"!check::ld({n}, {self.least})"
        if self.kind in ("scalar", "size", "given", "info"):
            return f"!{n}"
        if self.kind in ("array", "packed") and self.needed == ALWAYS:
            return f"!{n}"
        if self.kind in ("array", "packed") and self.needed:
            return f"!{n} && ({self.needed})"
        return None

    def range_test(self):
        """The address-range condition (phase two, after the quick return)."""
        if self.reach:
            return f"!({self.reach})"
        if not self.fits:
            return None
        t = self.fits[0]
        if self.kind in ("inc", "stride"):
            return f"!ork::core::vector_fits<{t}>({self.fits[1]}, *{self.name})"
        if self.kind == "dim":
            return f"!ork::core::vector_fits<{t}>(*{self.name}, 1)"
        if self.kind == "ld":
            return f"!ork::core::matrix_fits<{t}>({self.fits[1]}, {self.fits[2]}, *{self.name})"
        if self.kind == "packed":
            return f"!ork::core::packed_fits<{t}>({self.fits[1]})"
        raise ValueError(f"{self.name}: no range test for role {self.kind}")

    def word(self):
        w = self.kind
        if self.kind == "flag":
            w += ":" + self.letters
        if self.needed == ALWAYS:
            w += ":" + ALWAYS
        if self.out:
            w += "!"
        return w


def flag(name, letters, as_given=False):
    """A character flag read by its first letter, one of `letters`; the
    kernel template gets the letter, or with `as_given` the string itself
    (to hand on to another routine)."""
    return Arg(name, "flag", letters=letters, as_given=as_given)


def dim(name, elem=None):
    """A dimension (count of rows, columns, elements): at least 0; with
    `elem`, a contiguous vector of that many elements addressable."""
    return Arg(name, "dim", fits=(elem,) if elem else ())


def size(name, ctype="uint64_t"):
    """An unsigned count (rows, columns, a stride in elements): present."""
    return Arg(name, "size", ctype)


def count(name):
    """A count that may be of any sign (0 or less: nothing to do): present."""
    return Arg(name, "count")


def stride(name, elem=None, length=None):
    """An increment that may be 0 (every element the same one): present; with
    `elem`, the vector of `length` elements it steps over addressable."""
    return Arg(name, "stride", fits=(elem, length) if elem else ())


def index(name):
    """An integer the kernel takes as given (a 1-based position, a count of
    pieces): no test."""
    return Arg(name, "index")


def workspace(name):
    """Workspace the caller of a kernel provides (`void *`): no test."""
    return Arg(name, "work", "void", out=True)


def given(name):
    """An integer read as given (a choice between forms): must be present."""
    return Arg(name, "given")


def info(name):
    """The status a routine returns: must be present; the kernel shim stores
    the template's value there, libork's entry 0 or minus a bad position."""
    return Arg(name, "info", out=True)


def scalar(name, ctype):
    """A scalar by address: must be present."""
    return Arg(name, "scalar", ctype)


def array(name, ctype, needed="", out=False):
    """An array: may be null only when `needed` does not hold (ALWAYS: never
    null; an integer array reaches the kernel as it is)."""
    return Arg(name, "array", ctype, out=out, needed=needed)


def ld(name, least, elem=None, rows=None, cols=None, ctype=INT, reach=""):
    """A leading dimension (or a stride) of at least `least`; with `elem`, the
    rows x cols matrix it spans must be addressable (or `reach` hold)."""
    return Arg(name, "ld", ctype, least=least, fits=(elem, rows, cols) if elem else (), reach=reach)


def inc(name, elem=None, length=None, ctype=INT):
    """An increment other than 0; with `elem`, the vector of `length`
    elements it steps over must be addressable."""
    return Arg(name, "inc", ctype, fits=(elem, length) if elem else ())


def packed(name, ctype, order, out=False):
    """A packed triangle of the order named by dimension `order`: null only
    when the order is 0; its n(n+1)/2 elements addressable (a failure is
    reported at the order's position)."""
    return Arg(name, "packed", ctype, out=out, needed=f"*{order} > 0", fits=(ctype, f"*{order}"), report=order)


# ---------------------------------------------------------------- routines
@dataclass
class Routine:
    name: str  # the exported name libork checks (or the kernel's own, kernel-only)
    args: list
    kernel: str = None  # the kernel library's name for it; None: libork only
    checked: bool = True  # libork exports a checked entry under `name`
    bound: bool = True  # libork looks the kernel up (False: only other kernels and tests call it)
    impl: str = ""  # kernel template the shim calls with the unwrapped arguments
    body: str = ""  # libork template that does the work after the checks
    quick: str = ""  # libork returns at once when this holds (after the tests)
    returns: str = "void"
    kernels: tuple = ()  # more kernels libork's body takes after `kernel`
    doc: str = ""  # one line above the prototype (and above its siblings)
    quick_result: str = ""  # what the quick return returns (a value-returning routine); default R{}
    lp64: bool = False  # the kernel library also exports the 32-bit-integer wrapper lp64_name()
    kernel_doc: str = ""  # the doc line in the kernel header, when it differs

    def params(self, lp64=False):
        return ", ".join(a.decl(lp64) for a in self.args)

    def prototype(self, name, lp64=False):
        return f"{pointer(self.returns)[:-1]}{name}({self.params(lp64)});"

    def lp64_name(self):
        """ork_blas_daxpy -> ork_blas_lp64_daxpy"""
        area, rest = self.name.split("_", 2)[1:]
        return f"ork_{area}_lp64_{rest}"


@dataclass
class Family:
    name: str
    title: str  # what the family holds, for the generated files' first lines
    routines: list = field(default_factory=list)
    planned: bool = False  # expanded and counted, nothing written yet
    # The files' paths: None takes the one every family's follows (derive_paths),
    # "" means the family has no such file.
    public_header: str = None  # the checked entries' prototypes
    kernel_header: str = None  # the kernel-only names' prototypes
    kernel_header_includes: list = field(default_factory=list)  # headers it includes (names declared apart)
    kernel_source: str = None  # the shims
    kernel_includes: list = None
    kernel_prelude: str = ""  # using-declarations and helpers of the shims
    core_source: str = None  # the checked entries
    core_includes: list = None
    core_prelude: str = ""  # using-declarations the entries' expressions need
    binding: str = None  # the loader's X-list
    exports: list = field(default_factory=list)  # names outside the routine form (planned families)
    writer: object = None  # a family with emitters of its own: () -> {path: text}

    def derive_paths(self, table):
        """Fills the paths left as None from the family's name F and its table
        <area>/<prefix>table.py: include/ork/F.h, include/ork/F_kernels.h,
        <area>/<prefix>exports.cpp including <area>/<prefix>entries.h,
        core/F_entries.cpp including core/F.h, and core/kernels_F.h."""
        table = pathlib.PurePosixPath(table)
        area, prefix = table.parent, table.stem.removesuffix("table")
        derived = {
            "public_header": f"include/ork/{self.name}.h",
            "kernel_header": f"include/ork/{self.name}_kernels.h",
            "kernel_source": f"{area}/{prefix}exports.cpp",
            "kernel_includes": [f"{area}/{prefix}entries.h"],
            "core_source": f"core/{self.name}_entries.cpp",
            "core_includes": [f"core/{self.name}.h"],
            "binding": f"core/kernels_{self.name}.h",
        }
        for key, path in derived.items():
            if getattr(self, key) is None:
                setattr(self, key, path)

    def add(self, *routines):
        self.routines.extend(routines)

    def kernel_names(self):
        return [r.kernel for r in self.routines if r.kernel]

    def lp64_names(self):
        return [r.lp64_name() for r in self.routines if r.lp64]

    def bound_names(self):
        return [r.kernel for r in self.routines if r.kernel and r.bound]

    def core_names(self):
        return [r.name for r in self.routines if r.checked]

    def names(self):
        return sorted(set(self.kernel_names()) | set(self.core_names()) | set(self.lp64_names()) | set(self.exports))


FAMILIES = []


def find_routine(name):
    """The routine whose checked entry (or, failing that, kernel) is `name`."""
    for f in FAMILIES:
        for r in f.routines:
            if r.name == name and r.checked:
                return r
    for f in FAMILIES:
        for r in f.routines:
            if r.kernel == name:
                return r
    return None


_LOADING = []  # the table load_tables is running


def family(name, title, **kw):
    f = Family(name, title, **kw)
    if _LOADING:
        f.derive_paths(_LOADING[-1])
    FAMILIES.append(f)
    return f


# ---------------------------------------------------------------- emitters
GENERATED = "generated by frame/gen/orkgen.py from {table}; edit the table, not this file"
WIDTH = 100


def header(f, table, path, routines, intro, kernel_side, lp64=(), includes=()):
    guard = "ORK_" + pathlib.Path(path).stem.upper() + "_H"
    out = [f"/* {intro} ({GENERATED.format(table=table)}). */",
           f"#ifndef {guard}", f"#define {guard}", "", '#include "ork/types.h"']
    out += [f'#include "{i}"' for i in includes]
    out += ["", "ORK_BEGIN_C", ""]
    groups = {}  # by doc line, in order of first appearance
    for r in routines:
        groups.setdefault((kernel_side and r.kernel_doc) or r.doc, []).append(r)
    for doc, rs in groups.items():
        if doc:
            out.append(f"/* {doc} */")
        out += [r.prototype(r.kernel if kernel_side else r.name) for r in rs]
    if lp64:
        out.append("/* with 32-bit integers: widened, then the entry of the same name without lp64_ */")
        out += [r.prototype(r.lp64_name(), lp64=True) for r in lp64]
    out += ["", "ORK_END_C", "", "#endif", ""]
    return "\n".join(out)


def kernel_source(f, table):
    out = [f"// {f.title}: the kernel library's exports, one flat function each ({GENERATED.format(table=table)})."]
    out += [f'#include "{i}"' for i in f.kernel_includes]
    out += ['#include "frame/export.h"', '#include "frame/vector.h"', ""]
    if f.kernel_prelude:
        out += [f.kernel_prelude.strip(), ""]
    for r in f.routines:
        if not r.kernel:
            continue
        status = [a.name for a in r.args if a.kind == "info"]
        call = f"{r.impl}({', '.join(a.unwrap() for a in r.args if a.kind != 'info')})"
        ret = "" if r.returns == "void" else "return "
        if status:
            ret = f"*{status[0]} = "
        out.append(f"ORK_API {r.prototype(r.kernel)[:-1]} {{ {ret}{call}; }}")
    wide = [r for r in f.routines if r.lp64]
    if wide:
        out += ["", "// The 32-bit-integer wrappers: the integers widened, then the entry of the",
                "// same name called through its dynamic symbol (libork's checked one where",
                "// the application links libork)."]
    for r in wide:
        ints = [a for a in r.args if a.kind in INTEGER_ROLES]
        temps = ", ".join(f"{a.name}64 = *{a.name}" for a in ints)
        call = ", ".join(f"&{a.name}64" if a in ints else a.name for a in r.args)
        ret = "" if r.returns == "void" else "return "
        out.append(f"ORK_API {r.prototype(r.lp64_name(), lp64=True)[:-1]} "
                   f"{{ const ork_int {temps}; {ret}{r.name}({call}); }}")
    return "\n".join(out) + "\n"


def core_source(f, table):
    out = [f"// {f.title}: libork's checked entries ({GENERATED.format(table=table)}).",
           "// Each tests its arguments in order and reports the first bad one at its",
           "// position, returns at once when there is nothing to do, tests that the",
           "// arrays it will touch are addressable, then hands over to its body."]
    out += [f'#include "{i}"' for i in ["core/core.h", "core/checks.h"] + f.core_includes]
    out += ["", "namespace check = ork::core::check;", "using ork::core::entry;", ""]
    if f.core_prelude:
        out += [f.core_prelude.strip(), ""]
    for r in f.routines:
        if not r.checked:
            continue
        pos = {a.name: i + 1 for i, a in enumerate(r.args)}
        e = "en" if "e" in pos else "e"  # the entry, named apart from an argument e
        lines = [f"ORK_CORE_API {r.prototype(r.name)[:-1]} {{", f'    const entry {e}("{r.name}");']
        void = r.returns == "void"
        nothing = "" if void else " " + (r.quick_result or f"{r.returns}{{}}")
        status = [a.name for a in r.args if a.kind == "info"]  # failures are reported there too
        report = f"check::fail({e}, {status[0]}, {{}})" if status else f"{e}.fail({{}})"
        fail = f"return (void){report}" if void else f"return {report}, {r.returns}{{{{}}}}"
        for a in r.args:
            t = a.test()
            if t:
                lines.append(f"    if ({t}) {fail.format(pos[a.name])};")
        if status:
            lines.append(f"    *{status[0]} = 0;")
        if r.quick:
            lines.append(f"    if ({r.quick}) return{nothing};")
        for a in r.args:
            t = a.range_test()
            if t:
                lines.append(f"    if ({t}) {fail.format(pos[a.report or a.name])};")
        kernel = ", ".join(f"ork::core::kernels().{k}" for k in (r.kernel,) + tuple(r.kernels)) \
            if r.kernel else "nullptr"
        call = f"{r.body}({e}, {kernel}, {', '.join(a.name for a in r.args)})"
        lines.append(f"    {'' if r.returns == 'void' else 'return '}{call};")
        lines.append("}")
        out += lines
    return "\n".join(out) + "\n"


def binding(f, table):
    macro = f"ORK_CORE_KERNELS_{f.name.upper()}(X)"
    names = f.bound_names()
    out = [f"// {f.title}: the kernels libork looks up in the loaded library ({GENERATED.format(table=table)}).",
           "#pragma once", ""]
    out += [f"#include \"{h.removeprefix('include/')}\"" for h in (f.public_header, f.kernel_header) if h]
    body, line = [], "   "
    for n in names:
        item = f" X({n})"
        if len(line) + len(item) > WIDTH - 2:
            body.append(line)
            line = "   "
        line += item
    body.append(line)
    out += ["", f"#define {macro} \\"] + [b + " \\" for b in body[:-1]] + [body[-1], ""]
    return "\n".join(out)


def export_list(f, table, names, what):
    return "\n".join([f"# {what} of {f.title[0].lower() + f.title[1:]}, one name a line",
                      f"# ({GENERATED.format(table=table)})."] + sorted(names)) + "\n"


def manifest(f, table):
    out = [f"# {f.title}: every exported name, where it is exported (core: libork checks it,",
           "# kernel: the kernel libraries; kernel-of:E the kernel behind libork's entry E;",
           "# lp64-of:E the kernel libraries' 32-bit-integer wrapper of E)",
           "# and its arguments' roles",
           f"# ({GENERATED.format(table=table)})."]
    rows = {}
    for r in f.routines:
        words = " ".join(a.word() for a in r.args)
        if r.checked:
            rows[r.name] = f"{r.name} {'core+kernel' if r.kernel == r.name else 'core'} {words}"
        if r.kernel and (r.kernel != r.name or not r.checked):
            rows[r.kernel] = f"{r.kernel} {'kernel-of:' + r.name if r.checked else 'kernel'} {words}"
        if r.lp64:
            rows[r.lp64_name()] = f"{r.lp64_name()} lp64-of:{r.name} {words}"
    return "\n".join(out + [rows[k] for k in sorted(rows)]) + "\n"


def outputs(f, table):
    """path -> text of every file family f generates."""
    files = {}
    if f.planned:
        return files
    if f.writer:
        return f.writer()
    public = [r for r in f.routines if r.checked]
    kernel_only = [r for r in f.routines if r.kernel and (not r.checked or r.kernel != r.name)]
    if f.public_header:
        files[f.public_header] = header(f, table, f.public_header, public,
                                        f"{f.title}: libork's checked entries (the kernel libraries define the "
                                        "names they share with it as unchecked kernels)", False)
    if f.kernel_header:
        files[f.kernel_header] = header(f, table, f.kernel_header, kernel_only,
                                        f"{f.title}: names of the kernel libraries only; unchecked", True,
                                        [r for r in f.routines if r.lp64], f.kernel_header_includes)
    if f.kernel_source:
        files[f.kernel_source] = kernel_source(f, table)
    if f.core_source:
        files[f.core_source] = core_source(f, table)
    if f.binding:
        files[f.binding] = binding(f, table)
    files[f"exports/baseline/{f.name}.txt"] = export_list(f, table, f.kernel_names() + f.lp64_names(),
                                                          "Kernel-library exports")
    files[f"exports/libork/{f.name}.txt"] = export_list(f, table, f.core_names(), "libork's exports")
    files[f"tests/manifest/{f.name}.txt"] = manifest(f, table)
    return files


# ---------------------------------------------------------------- driver
_OWNER = {}


def load_tables():
    """Runs every table once; answers family name -> table path."""
    if _OWNER:
        return _OWNER
    sys.modules.setdefault("orkgen", sys.modules[__name__])
    owner = _OWNER
    for rel in TABLES:
        before = len(FAMILIES)
        found = importlib.util.spec_from_file_location(rel.replace("/", "_")[:-3], ROOT / rel)
        _LOADING.append(rel)
        try:
            found.loader.exec_module(importlib.util.module_from_spec(found))
        finally:
            _LOADING.pop()
        for f in FAMILIES[before:]:
            owner[f.name] = rel
    return owner


def main(argv=None):
    ap = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    ap.add_argument("--check", action="store_true", help="compare instead of writing")
    ap.add_argument("--list", metavar="FAMILY", help="print the names of one family")
    ap.add_argument("--prototypes", metavar="FAMILY", help="print the C prototypes of one family's routines")
    args = ap.parse_args(argv)
    owner = load_tables()
    if args.list or args.prototypes:
        want = args.list or args.prototypes
        fam = [f for f in FAMILIES if f.name == want]
        if not fam:
            sys.exit(f"no family {want}; known: {' '.join(f.name for f in FAMILIES)}")
        if args.list:
            print("\n".join(fam[0].names()))
        else:
            print("\n".join(r.prototype(r.name if r.checked or not r.kernel else r.kernel) for r in fam[0].routines))
        return 0
    seen, stale = {}, []
    for f in FAMILIES:
        for name in f.names():
            if name in seen:
                sys.exit(f"{name} is declared by both {seen[name]} and {f.name}")
            seen[name] = f.name
        for path, text in outputs(f, owner[f.name]).items():
            target = ROOT / path
            if args.check:
                if not target.exists() or target.read_text() != text:
                    stale.append(path)
            else:
                target.parent.mkdir(parents=True, exist_ok=True)
                if not target.exists() or target.read_text() != text:
                    target.write_text(text)
    if stale:
        print("stale generated files (run python3 frame/gen/orkgen.py):\n  " + "\n  ".join(stale))
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
