// What an engine reports of its blocking and workspace.
#pragma once

#include "blas/gemm/pieces.h"

namespace ork::gemm {

// The blocking of engine E for an m x n x k product: info[0] = kb (depth of
// a full depth block), info[1] = mb (rows of a full row block, whole packed
// groups), info[2] = nb (columns of a column block for this n).
template <class T, class E>
void blk_info(idx m, idx n, idx k, idx* info) {
    info[0] = E::kb;
    info[1] = E::mb(m, n, k);
    info[2] = E::nb(n);
}

// The workspace engine E takes for m x n x k: returns the block to release
// (null, and null regions, when memory is exhausted) and its three regions.
template <class T, class E>
void* get_bufs(idx m, idx n, idx k, T** pa, T** pb, void** scratch) {
    workspace<T> w = E::take(m, n, k);
    const bool got = w.block != nullptr;
    *pa = got ? w.a : nullptr;
    *pb = got ? w.b : nullptr;
    *scratch = got ? w.scratch : nullptr;
    return w.block;
}

}  // namespace ork::gemm
