// Every checked entry of every family manifest, called by name with empty
// dimensions: all arguments good reports nothing and touches no array (they
// are null, or zeros where one is never null); each argument spoilt in turn (null, or a bad value for its role)
// reports exactly that argument's position under the entry's own name.
#include <dlfcn.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "ork/core.h"

namespace {

struct report {
    std::string routine;
    int position = 0, count = 0;
};
thread_local report seen;
void record(const char* routine, int position) {
    seen.routine = routine;
    seen.position = position;
    ++seen.count;
}

struct entry {
    std::string name;
    std::vector<std::string> roles;
};

std::vector<entry> checked_entries() {
    std::vector<entry> out;
    for (const auto& file : std::filesystem::directory_iterator(ORK_SOURCE_DIR "/tests/manifest")) {
        std::ifstream in(file.path());
        for (std::string line; std::getline(in, line);) {
            if (line.empty() || line[0] == '#') continue;
            std::istringstream words(line);
            entry e;
            std::string where, role;
            words >> e.name >> where;
            if (where != "core" && where != "core+kernel") continue;
            while (words >> role) e.roles.push_back(role);
            out.push_back(e);
        }
    }
    return out;
}

constexpr std::size_t max_args = 16;
using args_t = std::array<void*, max_args>;

// Every argument of a checked entry is an address, so the entry is called
// through a function of as many address arguments (the x86-64 convention
// passes them alike whatever they point to; a value returned is ignored).
template <std::size_t... I>
void call_n(void* f, const args_t& a, std::index_sequence<I...>) {
    reinterpret_cast<void (*)(decltype(I, (void*)nullptr)...)>(f)(a[I]...);
}
template <std::size_t N = 0>
void call(void* f, std::size_t n, const args_t& a) {
    if constexpr (N <= max_args) {
        if (n == N) return call_n(f, a, std::make_index_sequence<N>{});
        return call<N + 1>(f, n, a);
    }
}

// Storage for one call: good values for every role, and the bad ones.
struct values {
    alignas(16) unsigned char zeros[64] = {};
    std::int64_t zero = 0, one = 1, minus_one = -1, status = 0;
    char letters[max_args][2] = {};  // one flag per argument
    const char* unknown = "?";
};

// The good value of a role ("flag:NTC", "dim", "ld", "array!" ...); false
// for a role this test does not know.
bool good(values& v, std::size_t i, const std::string& role, void*& out) {
    const std::string kind = role.substr(0, role.find_first_of(":!"));
    if (kind == "flag") {
        v.letters[i][0] = role[5];
        out = v.letters[i];
    } else if (kind == "dim" || kind == "size" || kind == "index" || kind == "count" || kind == "given") out = &v.zero;
    else if (kind == "info") out = &v.status;
    else if (kind == "ld" || kind == "inc" || kind == "stride") out = &v.one;
    else if (kind == "scalar" || role.find(":always") != std::string::npos) out = v.zeros;
    else if (kind == "array" || kind == "packed") out = nullptr;
    else return false;
    return true;
}

// The bad values of a role (none for arrays: null is allowed when empty).
std::vector<void*> bad(values& v, const std::string& role) {
    const std::string kind = role.substr(0, role.find_first_of(":!"));
    if (kind == "flag") return {nullptr, const_cast<char*>(v.unknown)};
    if (kind == "dim") return {nullptr, &v.minus_one};
    if (kind == "ld" || kind == "inc") return {nullptr, &v.zero};
    if (kind == "size" || kind == "scalar" || kind == "count" || kind == "stride" || kind == "given" || kind == "info")
        return {nullptr};
    if (role.find(":always") != std::string::npos) return {nullptr};  // an array never null
    return {};
}

TEST(Manifest, EveryCheckedEntryReportsEachBadArgumentAtItsPosition) {
    const auto entries = checked_entries();
    ASSERT_FALSE(entries.empty());
    ork_error_handler before = ork_set_thread_error_handler(record);
    int calls = 0;
    std::vector<std::string> unknown;
    for (const entry& e : entries) {
        void* f = dlsym(RTLD_DEFAULT, e.name.c_str());
        ASSERT_NE(f, nullptr) << e.name << " is not exported by libork";
        ASSERT_LE(e.roles.size(), max_args) << e.name;
        values v;
        args_t args{};
        bool known = true;
        for (std::size_t i = 0; i < e.roles.size(); ++i) known = known && good(v, i, e.roles[i], args[i]);
        if (!known) {
            unknown.push_back(e.name);
            continue;
        }
        seen = {};
        call(f, e.roles.size(), args);
        EXPECT_EQ(seen.count, 0) << e.name << " reported position " << seen.position << " for good arguments";
        for (std::size_t i = 0; i < e.roles.size(); ++i)
            for (void* b : bad(v, e.roles[i])) {
                args_t spoilt = args;
                spoilt[i] = b;
                seen = {};
                call(f, e.roles.size(), spoilt);
                ++calls;
                EXPECT_EQ(seen.count, 1) << e.name << " argument " << i + 1 << " (" << e.roles[i] << ")";
                EXPECT_EQ(seen.position, int(i + 1)) << e.name << " argument " << i + 1 << " (" << e.roles[i] << ")";
                EXPECT_EQ(seen.routine, e.name);
            }
    }
    ork_set_thread_error_handler(before);
    // every entry must be exercised: a new role needs its values here
    EXPECT_TRUE(unknown.empty()) << unknown.size() << " entries with roles this test does not know, e.g. "
                                 << unknown.front();
    std::printf("%zu checked entries, %d spoilt calls\n", entries.size(), calls);
}

}  // namespace
