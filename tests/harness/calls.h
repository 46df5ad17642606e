// Call recording for tests: the routines the kernel library calls back in
// the core layer (the dispatched BLAS entries, the service allocator) and
// the engine's own building blocks called through their exported names are
// defined again in the test program, which the kernel library then binds.
// Each definition records the call while a recorder is active and forwards
// it to the real routine.
//
// A program that uses it is built with ork_test_records_calls(<target>)
// (tests/harness/CMakeLists.txt), which adds calls.cpp and exports the
// program's symbols.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ork_test {

// One call, its arguments in the routine's order, grouped by role.
struct call {
    std::string name;                 // the exported name, "ork_blas_dgemv"
    std::string flags;                // the first character of each flag, as passed
    std::vector<long long> dims;      // sizes (m, n, k, or the byte count of an allocation)
    std::vector<long long> lds;       // leading dimensions
    std::vector<long long> incs;      // increments
    std::vector<double> scalars;      // alpha, beta ...; a complex one as its real and imaginary parts
    std::vector<const void*> arrays;  // addresses of the array arguments (a, x, y; the block freed)
};

// Calls recorded, from any thread, while an instance exists; at most one
// at a time. A test makes one around the call it watches and then reads
// calls() (or the calls of one name).
class recorder {
public:
    recorder();
    ~recorder();
    recorder(const recorder&) = delete;
    recorder& operator=(const recorder&) = delete;

    std::vector<call> calls() const;
    std::vector<call> calls(const std::string& name) const;
    void clear();
};

// "ork_blas_dgemv flags=n dims=5,3 lds=7 incs=1,1 scalars=2,1" for messages.
std::string describe(const call& c);

}  // namespace ork_test
