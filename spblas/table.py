# The sparse kernels: every combination of type, format, base, operation,
# matrix kind, triangle, diagonal, dense layout and task that exists, spelled
# by the naming grammar, plus the auxiliary exports; each also with 32-bit
# integers behind lp64_. Planned: expanded and counted (tests/frame), written
# once the kernels exist. Read by frame/gen/orkgen.py.
from orkgen import family

PREFIX = "ork_spblas_"
REAL, CPLX = "sd", "cz"

# The letters the grammar gives each KIND: UPLO l/u except for g and d,
# DIAG n/u except for g and a.
UPLO = {"g": "_", "s": "lu", "h": "lu", "t": "lu", "a": "lu", "d": "_"}
DIAG = {"g": "_", "s": "nu", "h": "nu", "t": "nu", "a": "_", "d": "nu"}

MV_PAR, MV_SEQ = "mvout_par", "mvout_seq"
MM_PAR, MM_SEQ = "mmout_par", "mmout_seq"
SV_SEQ, SM_PAR, SM_SEQ = "svout_seq", "smout_par", "smout_seq"
GEMV_PAR = "gemvout_par"
TRI = [MV_PAR, MM_PAR, SV_SEQ, SM_PAR]

# (format, bases, ops, kinds, tasks for s/d, tasks for c/z); a task list may
# hold (task, types, bases) where a task exists for fewer types or bases.
COMBINATIONS = [
    ("csr", "01", "n", "g", [MV_PAR, MM_PAR, (GEMV_PAR, "d", "1")], [MV_PAR, MM_PAR]),
    ("csr", "01", "n", "sa", [MV_PAR, MM_PAR], [MV_PAR, MM_PAR]),
    ("csr", "01", "n", "h", [], [MV_PAR, MM_PAR]),
    ("csr", "01", "n", "t", TRI, TRI),
    ("csr", "01", "n", "d", [MV_SEQ, MM_SEQ, SV_SEQ, SM_PAR], [MV_SEQ, MM_SEQ, SV_SEQ, SM_PAR]),
    ("csr", "01", "t", "g", [MV_SEQ, MM_PAR], [MV_SEQ, MM_PAR]),
    ("csr", "01", "t", "t", [MV_SEQ, MM_PAR, SV_SEQ, SM_PAR], [MV_SEQ, MM_PAR, SV_SEQ, SM_PAR]),
    ("csr", "01", "t", "h", [], [MV_PAR, MM_PAR]),
    ("csr", "01", "c", "g", [], [MV_SEQ, MM_PAR]),
    ("csr", "01", "c", "t", [], [MV_SEQ, MM_PAR, SV_SEQ, SM_PAR]),
    ("csr", "01", "c", "sa", [], [MV_PAR, MM_PAR]),
    ("csr", "01", "c", "d", [], [MV_SEQ, MM_SEQ, SV_SEQ, SM_PAR]),
    ("csr", "01", "s", "g", [], [MV_PAR, MM_PAR]),
    ("csr", "01", "s", "t", [], TRI),
    ("coo", "01", "n", "gsa", [MV_PAR, MM_PAR], [MV_PAR, MM_PAR]),
    ("coo", "01", "n", "h", [], [MV_PAR, MM_PAR]),
    ("coo", "01", "n", "t", TRI, TRI),
    ("coo", "01", "n", "d", [MV_SEQ, MM_PAR, SV_SEQ, SM_PAR], [MV_SEQ, MM_PAR, SV_SEQ, SM_PAR]),
    ("coo", "01", "s", "gsa", [], [MV_PAR, MM_PAR]),
    ("coo", "01", "s", "t", [SM_PAR], TRI),
    ("coo", "01", "s", "d", [], [MV_SEQ, MM_PAR, SV_SEQ, SM_PAR]),
    ("dia", "1", "n", "gsa", [MV_PAR, MM_PAR], [MV_PAR, MM_PAR]),
    ("dia", "1", "nt", "t", TRI, TRI),
    ("dia", "1", "n", "d", [MV_PAR, MM_PAR, SV_SEQ, SM_SEQ], [MV_PAR, MM_PAR, SV_SEQ, SM_SEQ]),
    ("dia", "1", "n", "h", [], [MV_PAR, MM_PAR]),
    ("dia", "1", "t", "ga", [MV_PAR, MM_PAR], [MV_PAR, MM_PAR]),
    ("dia", "1", "t", "h", [], [MV_PAR, MM_PAR]),
    # conjugate-transposed: as the n rows, complex only
    ("dia", "1", "c", "gsa", [], [MV_PAR, MM_PAR]),
    ("dia", "1", "c", "t", [], TRI),
    ("dia", "1", "c", "d", [], [MV_PAR, MM_PAR, SV_SEQ, SM_SEQ]),
    ("bsr", "1", "n", "g", [GEMV_PAR], [GEMV_PAR]),
    ("bsr", "01", "n", "s", [MV_PAR], [MV_PAR]),  # diagonal n only (below)
]


def grammar_names():
    """The grammar kernels with 64-bit integers, as (format, name)."""
    out = []
    for fmt, bases, ops, kinds, real_tasks, cplx_tasks in COMBINATIONS:
        for types, tasks in ((REAL, real_tasks), (CPLX, cplx_tasks)):
            for t in types:
                for task in tasks:
                    task, only_types, only_bases = task if isinstance(task, tuple) else (task, types, bases)
                    if t not in only_types:
                        continue
                    for base in bases:
                        if base not in only_bases:
                            continue
                        for op in ops:
                            for kind in kinds:
                                diags = "n" if fmt == "bsr" and kind == "s" else DIAG[kind]
                                for uplo in UPLO[kind]:
                                    for diag in diags:
                                        # the layout follows the base, but the
                                        # 0-based symmetric BSR kernels are f
                                        layout = "f" if base == "1" or (fmt == "bsr" and kind == "s") else "c"
                                        out.append((fmt, f"{PREFIX}{t}{fmt}{base}{op}{kind}{uplo}{diag}{layout}__{task}"))
    return out


def auxiliary_names():
    """The auxiliary exports with 64-bit integers."""
    per_type = ["{t}zeros", "{t}ones", "{t}neones", "{t}zerocheck", "{t}split_par", "{t}split_sym_par",
                "{t}skymmgk", "{t}skymmkk", "{t}skymmsk", "{t}skysvk",
                "{t}mcsradd_notr", "{t}mcsradd_tr", "{t}mcsradd_gloc", "{t}mcsr_notr", "{t}mcsr_trans",
                "{t}mcsr_trnnz", "{t}multcsr_tr", "{t}sortrow",
                "{t}bsrbv", "{t}bsr_gauss", "{t}bsr_invdiag", "{t}bsc_gauss",
                "cspblas_{t}bsrbv", "{t}bsc_cspblas_gauss", "{t}bsr_cspblas_gauss", "{t}bsr_cspblas_invdiag"]
    per_type += [f"{{t}}bsrmm{k}" for k in ("gen", "sym", "skew", "tr", "diag")]
    per_type += [f"cspblas_{{t}}bsrmm{k}" for k in ("gen", "sym", "skew", "tr", "diag")]
    names = [n.format(t=t) for t in REAL + CPLX for n in per_type]
    tri = ["ln", "lu", "un", "uu"]
    names += [f"find_diag_par_{x}" for x in tri]
    names += [f"scoofill_coo2csr_data_{x}" for x in tri] + [f"scoofill_0coo2csr_data_{x}" for x in tri]
    names += ["dcsrsymmvs", "dcscgss", "ork_ildlt_sv"]
    names += [f"ork_{c}" for c in ("dcsrcoo", "dcsrcsc", "dcsrbsr", "dcsrdia", "dcsrsky", "ddnscsr")]
    return [PREFIX + n for n in names]


def lp64(name):
    return name.replace(PREFIX, PREFIX + "lp64_", 1)


grammar = [n for _, n in grammar_names()]
aux = auxiliary_names()
f = family("spblas", "Sparse kernels", planned=True,
           exports=grammar + aux + [lp64(n) for n in grammar + aux])
f.grammar_by_format = {fmt: sum(1 for g, _ in grammar_names() if g == fmt) for fmt in ("csr", "coo", "dia", "bsr")}
f.grammar_count, f.auxiliary_count = len(grammar), len(aux)
