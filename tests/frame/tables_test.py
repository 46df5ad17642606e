#!/usr/bin/env python3
"""The family tables: generated files current, and the planned families'
expansions counted against what they must hold."""
import pathlib
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "frame/gen"))
import orkgen  # noqa: E402

orkgen.load_tables()
FAMILIES = {f.name: f for f in orkgen.FAMILIES}


class Tables(unittest.TestCase):
    def test_generated_files_are_current(self):
        self.assertEqual(orkgen.main(["--check"]), 0, "a table changed without running frame/gen/orkgen.py")

    def test_sparse_grammar(self):
        # The combination table read literally, each KIND with the UPLO and
        # DIAG letters the grammar gives it (g: __, s/h/t: l|u x n|u,
        # a: l|u _, d: _ n|u), gives 1,609 kernels, not the 1,521 once
        # quoted: no reading of the table gives that figure (the per-format
        # figures quoted with it, 705/472/324/20, are each a multiple of 8
        # short of these), so the full reading is exported.
        f = FAMILIES["spblas"]
        self.assertEqual(f.grammar_by_format, {"csr": 737, "coo": 504, "dia": 348, "bsr": 20})
        self.assertEqual((f.grammar_count, f.auxiliary_count), (1609, 165))
        names = f.names()
        self.assertEqual(len(names), 3548)
        self.assertEqual(len(names), len(set(names)))
        plain = [n for n in names if not n.startswith("ork_spblas_lp64_")]
        self.assertEqual(sorted("ork_spblas_lp64_" + n[len("ork_spblas_"):] for n in plain),
                         sorted(set(names) - set(plain)))
        for n in ["ork_spblas_dcsr1ng__f__mvout_par", "ork_spblas_dcsr0ntlnc__mvout_par",
                  "ork_spblas_zcsr1thuuf__mmout_par", "ork_spblas_dcsr1ng__f__gemvout_par",
                  "ork_spblas_dcoo0stlnc__smout_par", "ork_spblas_cbsr0nslnf__mvout_par",
                  "ork_spblas_lp64_ork_dcsrcoo", "ork_spblas_find_diag_par_uu"]:
            self.assertIn(n, names)
        for n in ["ork_spblas_scsr1ng__f__gemvout_par", "ork_spblas_dcsr0ng__c__gemvout_par",
                  "ork_spblas_ddia0ng__c__mvout_par", "ork_spblas_dcsr1nhlnf__mvout_par",
                  "ork_spblas_zbsr0nslnc__mvout_par", "ork_spblas_ddcsrcoo"]:
            self.assertNotIn(n, names)

    def test_extended_precision_forms(self):
        f = FAMILIES["xblas"]
        names = f.names()
        c_form = [n for n in names if "_BLAS_" in n]
        self.assertEqual(len(c_form), 72)  # dot 28, sum 4, axpby 12, waxpby 28
        self.assertEqual(sorted(n.replace("_BLAS_", "_blas_") for n in c_form), sorted(set(names) - set(c_form)))
        self.assertNotIn("ork_xblas_BLAS_ddot", names)  # same-type routines only as _x
        for n in ["ork_xblas_BLAS_zdot_z_c_x", "ork_xblas_BLAS_daxpby_s", "ork_xblas_blas_zwaxpby_d_z_x"]:
            self.assertIn(n, names)
        by_name = {r.name: r for r in f.routines}
        for n in c_form:
            ref = by_name[n.replace("_BLAS_", "_blas_")]
            self.assertEqual([a.name for a in ref.args], [a.name for a in by_name[n].args])
            self.assertTrue(all("*" in a.decl() for a in ref.args), ref.prototype(ref.name))

    def test_every_name_declared_once(self):
        seen = {}
        for f in orkgen.FAMILIES:
            for n in f.names():
                self.assertNotIn(n, seen, f"{n} in {f.name} and {seen.get(n)}")
                seen[n] = f.name


if __name__ == "__main__":
    unittest.main()
