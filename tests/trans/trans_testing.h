// Shared by the transposition tests: per element type, libork's entries and
// the names and types of the kernel library's dispatchers and kernels.
#pragma once

#include "testing.h"

namespace ot {

template <class T> struct tr;
#define OT_TR(p, T)                                                                           \
    template <> struct tr<T> {                                                                \
        static constexpr const char* prefix = "ork_trans_ork_" #p;                            \
        static constexpr const char* entry = "ork_trans_" #p;                                 \
        static constexpr auto omatcopy = &ork_trans_##p##omatcopy;                            \
        static constexpr auto omatcopy2 = &ork_trans_##p##omatcopy2;                          \
        static constexpr auto imatcopy = &ork_trans_##p##imatcopy;                            \
        static constexpr auto omatadd = &ork_trans_##p##omatadd;                              \
        using rec = decltype(&ork_trans_ork_##p##omatcopy_rec_n);                             \
        using rec2 = decltype(&ork_trans_ork_##p##omatcopy2_rec_n);                           \
        using inplace = decltype(&ork_trans_ork_##p##imatcopy_mipt_n);                        \
        using sum = decltype(&ork_trans_ork_##p##omatadd_nn);                                 \
        using sum_rec = decltype(&ork_trans_ork_##p##omatadd_rec_nt);                         \
    };
OT_TR(s, float)
OT_TR(d, double)
OT_TR(c, ork_complex8)
OT_TR(z, ork_complex16)
#undef OT_TR

}  // namespace ot
