# The extended-precision vector routines (dot, sum, axpby, waxpby) for every
# combination of output and input types, each in two exported forms from one
# row: the C form ork_xblas_BLAS_<name> (enumerations, counts and real
# scalars by value) and the reference form ork_xblas_blas_<name> (every
# argument by address; it dereferences and calls the C form). Planned:
# expanded and counted (tests/frame), written once the kernels exist.
# Read by frame/gen/orkgen.py.
from orkgen import Arg, Routine, family

TYPES = {"s": "float", "d": "double", "c": "ork_complex8", "z": "ork_complex16"}


def value(name, ctype):
    """an argument the C form takes by value"""
    return Arg(name, "value", ctype, by_value=True)


def scalar(name, letter):
    """alpha, beta: by value when real, by address when complex"""
    return value(name, TYPES[letter]) if letter in "sd" else Arg(name, "scalar", TYPES[letter])


def vector(name, letter, out=False):
    return [Arg(name, "array", TYPES[letter], out=out), value("inc" + name, "ork_int")]


def by_address(r):
    """The reference form of C-form routine r: the same arguments, all by address."""
    args = [Arg(a.name, a.kind, a.ctype, out=False, letters=a.letters) if a.by_value else a for a in r.args]
    return Routine(r.name.replace("_BLAS_", "_blas_", 1), args, checked=False,
                   impl=r.name, doc=r.doc + " (every argument by address)")


def routines(op, members, make):
    """op's members: 'ddot_d_s' spells output d, x double, y single; a
    trailing '+x' also exports the _x form with its precision argument."""
    out = []
    for m in members.split():
        forms = [m[:-2], m[:-2] + "_x"] if m.endswith("+x") else [m]
        for name in forms:
            letters = name.split("_")
            outl = letters[0][0]
            ins = [s for s in letters[1:] if s != "x"] or []
            r = Routine(f"ork_xblas_BLAS_{name}", make(outl, ins), checked=False, doc=op)
            if name.endswith("_x"):
                r.args.append(value("prec", "enum blas_prec_type"))
            out += [r, by_address(r)]
    return out


def dot(o, ins):
    x, y = (ins + [o, o])[:2] if ins else (o, o)
    return [value("conj", "enum blas_conj_type"), value("n", "ork_int"), scalar("alpha", o), *vector("x", x),
            scalar("beta", o), *vector("y", y), Arg("r", "array", TYPES[o], out=True)]


def total(o, ins):
    return [value("n", "ork_int"), *vector("x", o), Arg("sum", "array", TYPES[o], out=True)]


def axpby(o, ins):
    x = ins[0] if ins else o
    return [value("n", "ork_int"), scalar("alpha", o), *vector("x", x), scalar("beta", o), *vector("y", o, out=True)]


def waxpby(o, ins):
    x, y = (ins[0], ins[1]) if ins else (o, o)
    return [value("n", "ork_int"), scalar("alpha", o), *vector("x", x), scalar("beta", o), *vector("y", y),
            *vector("w", o, out=True)]


MIXED2 = "d_d_s+x d_s_d+x d_s_s+x c_c_s+x c_s_c+x c_s_s+x z_c_c+x z_c_z+x z_d_d+x z_d_z+x z_z_c+x z_z_d+x"
f = family("xblas", "Extended-precision vector routines", planned=True)
f.add(*routines("r := beta*r + alpha*sum(op(x_i)*y_i)", "sdot_x ddot_x cdot_x zdot_x " +
                " ".join(m.replace("_", "dot_", 1) for m in MIXED2.split()), dot))
f.add(*routines("sum := sum(x_i)", "ssum_x dsum_x csum_x zsum_x", total))
f.add(*routines("y := alpha*x + beta*y", "saxpby_x daxpby_x caxpby_x zaxpby_x daxpby_s+x caxpby_s+x "
                "zaxpby_c+x zaxpby_d+x", axpby))
f.add(*routines("w := alpha*x + beta*y", "swaxpby_x dwaxpby_x cwaxpby_x zwaxpby_x " +
                " ".join(m.replace("_", "waxpby_", 1) for m in MIXED2.split()), waxpby))
f.exports = [r.name for r in f.routines]
