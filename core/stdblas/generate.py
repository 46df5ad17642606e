#!/usr/bin/env python3
"""Writes the Fortran-callable BLAS and the CBLAS wrappers and their headers.

core/stdblas/table.py names every Fortran routine; each one's argument list
is libork's entry ork_blas_<routine> as its family table declares it (read
from the public headers for a family not yet on a table), with every integer
argument turned into the Fortran integer of the variant and one hidden
length (size_t) appended per character flag. Its CBLAS rows name each
cblas_ routine's libork entry and wrapper template; the CBLAS argument list
is the entry's in the interface's C form (see Cblas in the table).
Outputs (checked in):
  core/stdblas/fortran.cpp   the wrappers, 32-bit (name_) and 64-bit (name_64_)
  include/ork/fblas.h        their prototypes
  exports/stdblas/libblas_fortran.txt
  core/stdblas/cblas.cpp     the CBLAS wrappers, one line each
  include/ork/cblas.h        their prototypes
  exports/stdblas/cblas.txt
  tests/manifest/cblas.txt   every cblas_ name with its arguments' roles
frame/gen/orkgen.py writes them with every other family's files;
python3 core/stdblas/generate.py [--out DIR] writes these alone.
"""
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "frame/gen"))
import orkgen  # noqa: E402

ROOT = pathlib.Path(__file__).resolve().parents[2]

# Declarations of the hand-written routines (core/stdblas/support.cpp).
SUPPORT = """#ifdef __cplusplus
typedef __complex__ float ork_fcomplex8;
typedef __complex__ double ork_fcomplex16;
#else
typedef float _Complex ork_fcomplex8;
typedef double _Complex ork_fcomplex16;
#endif

/* Non-zero when the first characters of a and b agree ignoring case. */
ork_int32 lsame_(const char *a, const char *b, size_t a_len, size_t b_len);
ork_int32 lsame_64_(const char *a, const char *b, size_t a_len, size_t b_len);
/* Argument error handler: info is the 1-based position of the bad argument of
 * routine srname (blank padded). Prints a message to standard error and
 * returns (the routine then returns having done nothing), or, during a CBLAS
 * call, passes the CBLAS position to cblas_xerbla. Programs may replace it;
 * every report of the library calls it by its dynamic symbol. */
void xerbla_(const char *srname, const ork_int32 *info, size_t srname_len);
void xerbla_64_(const char *srname, const ork_int *info, size_t srname_len);
/* The same with the name given as an array of srname_len characters. */
void xerbla_array_(const char *srname, const ork_int32 *srname_len, const ork_int32 *info, size_t array_len);
void xerbla_array_64_(const char *srname, const ork_int *srname_len, const ork_int *info, size_t array_len);
/* |re(z)| + |im(z)| */
float scabs1_(const ork_complex8 *z);
float scabs1_64_(const ork_complex8 *z);
void scabs1sub_(const ork_complex8 *z, float *result);
void scabs1sub_64_(const ork_complex8 *z, float *result);
"""

VARIANTS = [("", "ork_int32"), ("_64", "ork_int")]
COMPLEX_RETURN = {"ork_complex8": "ork_fcomplex8", "ork_complex16": "ork_fcomplex16"}


def prototypes(names):
    """name -> (return type, [(C type, argument)]) of libork's ork_blas_<name>."""
    orkgen.load_tables()
    protos = {}
    pat = re.compile(r"^(\w+)\s+ork_blas_(\w+)\((.*)\);", re.M)
    for h in sorted((ROOT / "include/ork").glob("*.h")):  # families still written by hand
        for ret, name, params in pat.findall(h.read_text()):
            args = []
            for p in params.split(","):
                m = re.match(r"\s*(.*?)\s*\*?\s*(\w+)\s*$", p)
                typ = p.strip()[: -len(m.group(2))].strip()
                args.append((typ, m.group(2)))
            protos[name] = (ret, args)
    for name in names:
        r = orkgen.find_routine("ork_blas_" + name)
        if r:
            protos[name] = (r.returns, [(a.decl()[: -len(a.name)].strip(), a.name) for a in r.args])
    return protos


def signature(name, ret, args, suffix, fint, result_arg=False):
    """Fortran-side return type, parameter list and the forwarded call."""
    params, call, lengths, locals_ = [], [], [], []
    for typ, arg in args:
        if typ == "const ork_int *":
            params.append(f"const {fint} *{arg}")
            if fint == "ork_int":
                call.append(arg)
            else:
                locals_.append(f"const ork_int {arg}_ = *{arg};")
                call.append(f"&{arg}_")
        else:
            params.append(f"{typ}{'' if typ.endswith('*') else ' '}{arg}")
            call.append(arg)
            if typ == "const char *":
                lengths.append(f"size_t {arg}_len")
    fret = {"ork_int": fint}.get(ret, COMPLEX_RETURN.get(ret, ret))
    if result_arg:
        params.append(f"{fret} *result")
        fret = "void"
    return fret, params + lengths, call, locals_


def fortran_name(name, suffix, sub=False):
    return f"{name}{'sub' if sub else ''}{suffix}_"


def emit(protos):
    from table import CHECKED, LEVEL1, SUBFORMS  # noqa: E402
    decls, defs, names = [], [], []
    for suffix, fint in VARIANTS:
        decls.append(f"\n/* ---- {'32' if not suffix else '64'}-bit integers: name{suffix}_ ---- */")
        defs.append(f"\n// ---- {'32' if not suffix else '64'}-bit integers")
        for name in LEVEL1 + CHECKED:
            ret, args = protos[name]
            for sub in ([False, True] if name in SUBFORMS else [False]):
                fret, params, call, locals_ = signature(name, ret, args, suffix, fint, sub)
                fname = fortran_name(name, suffix, sub)
                names.append(fname)
                proto = f"{fret} {fname}({', '.join(params)})"
                decls.append(proto + ";")
                body = list(locals_)
                if name in CHECKED:
                    body.append(f'const ork::stdblas::fortran_call guard("{name}"{", true" if suffix else ""});')
                inner = f"ork_blas_{name}({', '.join(call)})"
                if ret == "void":
                    body.append(inner + ";")
                else:
                    value = f"ork::stdblas::to_fortran({inner})" if ret in COMPLEX_RETURN else inner
                    if ret == "ork_int":
                        value = f"{fint}({inner})"
                    body.append(f"*result = {value};" if sub else f"return {value};")
                unnamed = [q for q in params if not q.endswith("_len")] + ["size_t"] * (len(params) - len([q for q in params if not q.endswith("_len")]))
                dproto = f"{fret} {fname}({', '.join(unnamed)})"
                defs.append(f"ORK_STDBLAS_API {dproto} {{ {' '.join(body)} }}")
    return decls, defs, names


# The CBLAS header's own declarations: the flag enums, the error flags and handler.
CBLAS_PRELUDE = """#include <stddef.h>
#include "ork/types.h"
ORK_BEGIN_C

typedef enum CBLAS_LAYOUT { CblasRowMajor = 101, CblasColMajor = 102 } CBLAS_LAYOUT;
typedef enum CBLAS_TRANSPOSE { CblasNoTrans = 111, CblasTrans = 112, CblasConjTrans = 113 } CBLAS_TRANSPOSE;
typedef enum CBLAS_UPLO { CblasUpper = 121, CblasLower = 122 } CBLAS_UPLO;
typedef enum CBLAS_DIAG { CblasNonUnit = 131, CblasUnit = 132 } CBLAS_DIAG;
typedef enum CBLAS_SIDE { CblasLeft = 141, CblasRight = 142 } CBLAS_SIDE;
typedef CBLAS_LAYOUT CBLAS_ORDER;
/* i?amax: the 0-based index of the first element of largest |re| + |im|. */
#define CBLAS_INDEX size_t

/* Flags set around an argument-error report: RowMajorStrg (1 when the call
 * was row-major) and CBLAS_CallFromC (1 while a CBLAS call reports through
 * xerbla_). */
extern int RowMajorStrg;
extern int CBLAS_CallFromC;
void cblas_xerbla(int p, const char *rout, const char *form, ...);
"""
CBLAS_EXTRA = ["CBLAS_CallFromC", "RowMajorStrg", "cblas_xerbla"]  # exported beside the wrappers
CBLAS_ENUMS = {"trans": "CBLAS_TRANSPOSE", "uplo": "CBLAS_UPLO", "diag": "CBLAS_DIAG", "side": "CBLAS_SIDE"}
REAL = ("float", "double")


def cblas_roles(row, protos):
    """[(role, C element type, name, out)] of the libork routine behind a CBLAS row:
    role flag, int, scalar or array, from the routine's family table (or, for a
    family still declared by hand, from its header: alpha and beta are scalars)."""
    if row.callee:
        return list(row.args)
    routine = row.routine or row.name
    r = orkgen.find_routine("ork_blas_" + routine)
    if r:
        role = {"flag": "flag", "scalar": "scalar", "array": "array", "packed": "array"}
        role.update({k: "int" for k in orkgen.INTEGER_ROLES})
        return [(role[a.kind], a.ctype, a.name, a.out) for a in r.args]
    out = []
    for typ, name in protos[routine][1]:
        elem = typ.removeprefix("const ").rstrip("* ")
        kind = {"const char *": "flag", "const ork_int *": "int"}.get(typ)
        kind = kind or ("scalar" if name in ("alpha", "beta") else "array")
        out.append((kind, elem, name, not typ.startswith("const")))
    return out


def cblas_param(role, elem, name, out):
    """The argument's declaration in the interface and the expression handed on."""
    if role == "flag":
        return f"{next(v for k, v in CBLAS_ENUMS.items() if name.startswith(k))} {name}", name
    if role == "int":
        return f"const int {name}", name
    const = "" if out else "const "
    if role == "scalar" and elem in REAL:
        return f"const {elem} {name}", f"&{name}"
    if elem in REAL:
        return f"{const}{elem} *{name}", name
    return f"{const}void *{name}", f"as<{elem}>({name})"


def emit_cblas(protos):
    """The CBLAS prototypes by heading, the one-line wrappers and the manifest rows."""
    from table import CBLAS  # noqa: E402
    decls, defs, rows, group = [], [], [], None
    for row in CBLAS:
        if row.group != group:
            group = row.group
            decls.append(f"/* ---- {group} ---- */")
        routine = row.routine or row.name
        ret = row.returns or protos[routine][0]
        roles = cblas_roles(row, protos)
        params, passed = zip(*(cblas_param(*a) for a in roles)) if roles else ((), ())
        params, passed = list(params), list(passed)
        callee = row.callee or f"ork_blas_{routine}"
        if row.wrapper:
            # the wrappers report flag i (0-based) at CBLAS position i + 2, after the layout
            flags = [role == "flag" for role, _, _, _ in roles]
            assert flags == sorted(flags, reverse=True), f"cblas_{row.name}: flags must come first"
            targs = ", ".join((callee,) + tuple(row.targs))
            body = f'{row.wrapper}<{targs}>("cblas_{row.name}", layout, {", ".join(passed)});'
            params.insert(0, "CBLAS_LAYOUT layout")
            ret = "void"
        else:
            ints = [name for role, _, name, _ in roles if role == "int"]
            call = f"{callee}({', '.join(f'&{p}_' if p in ints else p for p in passed)})"
            body = "".join(f"const ork_int {n}_ = {n}; " for n in ints)
            if ret in COMPLEX_RETURN:  # the _sub form
                result = routine[1:]
                params.append(f"void *{result}")
                body += f"*as<{ret}>({result}) = {call};"
                ret = "void"
            elif ret == "ork_int":
                ret = "CBLAS_INDEX"
                body += f"return zero_based({call});"
            else:
                body += f"{'' if ret == 'void' else 'return '}{call};"
        proto = f"{ret} cblas_{row.name}({', '.join(params)})"
        decls.append(proto + ";")
        defs.append(f"ORK_STDBLAS_API {proto} {{ {body} }}")
        words = ["layout"] * bool(row.wrapper) + [role + "!" * out for role, _, _, out in roles]
        words += ["array!"] * (len(params) > len(words))  # the _sub form's result
        rows.append(" ".join([f"cblas_{row.name}", "cblas"] + words))
    return decls, defs, rows


def files():
    """path -> text of the generated files."""
    sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
    from table import CBLAS, CHECKED, LEVEL1  # noqa: E402
    protos = prototypes(LEVEL1 + CHECKED + [r.routine or r.name for r in CBLAS if not r.callee])
    decls, defs, names = emit(protos)
    cdecls, cdefs, crows = emit_cblas(protos)
    cnames = [r.split()[0] for r in crows]
    note = "generated by core/stdblas/generate.py from the family tables; do not edit"
    return {
        "core/stdblas/cblas.cpp":
            f"// The CBLAS over libork's entries, one line each ({note}).\n"
            '#include "core/stdblas/cblas.h"\n\n'
            "using namespace ork::stdblas::cblas;\n\n" + "\n".join(cdefs) + "\n",
        "include/ork/cblas.h":
            f"/* The C interface to the BLAS (CBLAS) of libblas.so.3 and libcblas.so.3 ({note}):\n"
            " * integers are int, scalars of the real routines by value and of the complex\n"
            " * ones by address, matrices in row-major or column-major layout. Argument\n"
            " * errors go to cblas_xerbla with the 1-based position of the bad argument\n"
            " * (the layout is argument 1), which prints it to standard error and ends the\n"
            " * process with exit(-1), as the reference CBLAS does; a program may replace\n"
            " * cblas_xerbla with its own, and the call returns having done nothing when\n"
            " * that one returns. */\n"
            "#ifndef ORK_CBLAS_H\n#define ORK_CBLAS_H\n" + CBLAS_PRELUDE + "\n" + "\n".join(cdecls)
            + "\n\nORK_END_C\n#endif\n",
        "exports/stdblas/cblas.txt":
            "# Names of libcblas.so.3, and of libblas.so.3 besides its Fortran routines: the\n"
            f"# CBLAS interface, its error handler and its two flags\n# ({note}).\n"
            + "\n".join(sorted(cnames + CBLAS_EXTRA)) + "\n",
        "tests/manifest/cblas.txt":
            "# The CBLAS of libblas.so.3 and libcblas.so.3: every cblas_ name, where it is\n"
            "# exported (cblas: both libraries) and its arguments' roles in order (layout,\n"
            "# flag, int, scalar, array; ! written)\n"
            f"# ({note}).\n" + "\n".join(sorted(crows)) + "\n",
        "core/stdblas/fortran.cpp":
            f"// The Fortran-callable BLAS over libork's entries ({note}).\n"
            '#include "core/stdblas/stdblas.h"\n' + "\n".join(defs) + "\n",
        "include/ork/fblas.h":
            f"/* The Fortran BLAS interface of libblas.so.3 over libork ({note}).\n"
            " * Integers are Fortran INTEGER: 32-bit for name_, 64-bit for name_64_.\n"
            " * Every argument is by address; each character flag adds a hidden length\n"
            " * (size_t) at the end, in flag order. Complex functions return the C99\n"
            " * complex value, as gfortran does. */\n"
            "#ifndef ORK_FBLAS_H\n#define ORK_FBLAS_H\n"
            '#include "ork/types.h"\n'
            "ORK_BEGIN_C\n" + SUPPORT + "\n".join(decls) + "\nORK_END_C\n#endif\n",
        "exports/stdblas/libblas_fortran.txt":
            f"# Fortran names of libblas.so.3 ({note}).\n" + "\n".join(sorted(names)) + "\n",
    }


def main():
    # --out DIR writes the files under DIR instead of the repository
    out = pathlib.Path(sys.argv[sys.argv.index("--out") + 1]) if "--out" in sys.argv else ROOT
    for path, text in files().items():
        (out / path).parent.mkdir(parents=True, exist_ok=True)
        (out / path).write_text(text)


if __name__ == "__main__":
    main()
