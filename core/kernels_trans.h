// The transposition kernels that libork binds, by exported name.
#pragma once

#include "ork/trans.h"

#define ORK_CORE_KERNELS_TRANS(X)                                                             \
    X(ork_trans_ork_somatcopy) X(ork_trans_ork_domatcopy)                                     \
    X(ork_trans_ork_comatcopy) X(ork_trans_ork_zomatcopy)                                     \
    X(ork_trans_ork_somatcopy2) X(ork_trans_ork_domatcopy2)                                   \
    X(ork_trans_ork_comatcopy2) X(ork_trans_ork_zomatcopy2)                                   \
    X(ork_trans_ork_simatcopy) X(ork_trans_ork_dimatcopy)                                     \
    X(ork_trans_ork_cimatcopy) X(ork_trans_ork_zimatcopy)                                     \
    X(ork_trans_ork_somatadd) X(ork_trans_ork_domatadd)                                       \
    X(ork_trans_ork_comatadd) X(ork_trans_ork_zomatadd)
