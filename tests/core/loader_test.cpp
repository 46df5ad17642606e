// Which kernel library libork loads, in child processes: folders holding some
// of the libraries beside libork, ORK_CPU_DETECT and ORK_KERNEL_LIBRARY, and
// the messages printed when a request is refused.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "ork/core.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;
const char* const names[] = {"baseline", "avx2", "avx512"};

struct outcome {
    int exit_code = -1;
    int status = -1, processor = -1, loaded = -1;
    std::string path, err;
};

std::string slurp(const fs::path& p) {
    std::ifstream f(p);
    std::stringstream s;
    s << f.rdbuf();
    return s.str();
}

// A folder with libork and the named kernel libraries (symbolic links: libork
// looks next to the name it was loaded by), removed at the end.
struct folder {
    fs::path dir;
    explicit folder(const std::vector<int>& generations) {
        char tmpl[] = "/tmp/ork-loader-XXXXXX";
        dir = mkdtemp(tmpl);
        const fs::path built = fs::path(ORK_LIBRARY_DIR);
        fs::create_symlink(built / "libork.so", dir / "libork.so");
        for (int g : generations) {
            const std::string file = std::string("libork_") + names[g] + ".so";
            fs::create_symlink(built / file, dir / file);
        }
        std::ofstream(dir / "junk.so") << "not a shared object\n";
    }
    ~folder() { fs::remove_all(dir); }
    std::string lib(const std::string& name) const { return (dir / name).string(); }
};

// Runs the probe on the folder's libork with only the given ORK_ variables.
outcome run(const folder& f, std::optional<std::string> detect, std::optional<std::string> library) {
    std::vector<std::string> env;
    for (char** e = environ; *e; ++e)
        if (std::string(*e).rfind("ORK_", 0) != 0) env.emplace_back(*e);
    if (detect) env.push_back("ORK_CPU_DETECT=" + *detect);
    if (library) env.push_back("ORK_KERNEL_LIBRARY=" + *library);
    std::vector<char*> envp;
    for (auto& e : env) envp.push_back(e.data());
    envp.push_back(nullptr);

    const fs::path out = f.dir / "out.txt", err = f.dir / "err.txt";
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_addopen(&actions, 2, err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    std::string probe = ORK_LOADER_PROBE, core = f.lib("libork.so");
    char* argv[] = {probe.data(), core.data(), nullptr};
    pid_t pid;
    outcome o;
    if (posix_spawn(&pid, argv[0], &actions, nullptr, argv, envp.data()) != 0) return o;
    posix_spawn_file_actions_destroy(&actions);
    int ws = 0;
    waitpid(pid, &ws, 0);
    o.exit_code = WIFEXITED(ws) ? WEXITSTATUS(ws) : 128 + WTERMSIG(ws);
    std::istringstream line(slurp(out));
    std::string word;
    line >> word >> o.status >> word >> o.processor >> word >> o.loaded;
    std::getline(line >> std::ws, o.path);
    o.err = slurp(err);
    return o;
}

int lines(const std::string& s) { return int(std::count(s.begin(), s.end(), '\n')); }

// What this processor runs, asked of a child with no override.
int supported() {
    static const int g = [] {
        folder all({0, 1, 2});
        return run(all, std::nullopt, std::nullopt).processor;
    }();
    return g;
}

TEST(Loader, PicksTheBestPresentGenerationTheProcessorRuns) {
    const int top = supported();
    ASSERT_GE(top, ORK_CPU_BASELINE);
    struct row {
        std::vector<int> present;
        std::optional<std::string> detect;
        int loaded;      // generation expected; -2: the supported one
        int needs;       // lowest supported generation the row makes sense on
    };
    const row rows[] = {
        {{0, 1, 2}, std::nullopt, -2, 0},
        {{0, 1, 2}, "", -2, 0},  // empty is unset
        {{0, 1, 2}, "0", 0, 0},
        {{0, 1, 2}, "1", 1, 1},
        {{0, 1, 2}, "2", 2, 2},
        {{0}, std::nullopt, 0, 0},          // only the baseline was built
        {{0, 2}, "1", 0, 1},                // no avx2 library: the next one down
        {{0, 1}, std::nullopt, 1, 1},       // no avx512 library
        {{0, 2}, std::nullopt, -2, 0},      // on an avx2 machine: the baseline
    };
    for (const row& r : rows) {
        if (r.needs > top) continue;  // the processor cannot run what the row asks
        folder f(r.present);
        const outcome o = run(f, r.detect, std::nullopt);
        int want = r.loaded == -2 ? top : r.loaded;
        if (r.loaded == -2 && r.present.size() == 2 && top == ORK_CPU_AVX2) want = ORK_CPU_BASELINE;
        SCOPED_TRACE("ORK_CPU_DETECT=" + r.detect.value_or("(unset)") + ", libraries " + std::to_string(r.present.size()));
        EXPECT_EQ(o.exit_code, 0);
        EXPECT_EQ(o.status, 0);
        EXPECT_EQ(o.loaded, want);
        EXPECT_EQ(o.path, f.lib(std::string("libork_") + names[want] + ".so"));
        EXPECT_EQ(o.err, "");  // a missing library of a generation is no error
    }
}

// Anything but 0, 1 or 2 is refused in one line that says what detection
// gives instead; so is a generation above what the processor runs.
TEST(Loader, UnknownOrUnrunnableGenerationsAreRefused) {
    const int top = supported();
    folder f({0, 1, 2});
    const std::string detected = std::to_string(top) + " (" + ork_cpu_generation_name(top) + ")";
    for (const char* v : {"2000000", "-1", "1x", "3", "avx2", " ", "0x1", "99999999999999999999"}) {
        const outcome o = run(f, std::string(v), std::nullopt);
        EXPECT_EQ(o.exit_code, 0) << v;
        EXPECT_EQ(o.loaded, top) << v;
        EXPECT_EQ(o.err, "ork: ORK_CPU_DETECT=" + std::string(v) +
                             " is not a known processor generation (0 baseline, 1 avx2, 2 avx512); using the "
                             "detected one, " + detected + "\n")
            << v;
    }
    if (top < ORK_CPU_AVX512) {
        const outcome o = run(f, std::to_string(top + 1), std::nullopt);
        EXPECT_EQ(o.loaded, top);
        EXPECT_EQ(lines(o.err), 1) << o.err;
        EXPECT_NE(o.err.find("asks for more than this processor"), std::string::npos) << o.err;
    } else {
        std::printf("note: this processor runs every generation; ORK_CPU_DETECT above it is not tried\n");
    }
}

// ORK_KERNEL_LIBRARY is tried first; a file that is missing, is not a
// library, lacks the kernels or serves a generation above the processor's is
// refused with its reason and the best present library serves instead.
TEST(Loader, RequestedLibraryRefusedFallsBack) {
    const int top = supported();
    folder f({0, 1, 2});
    if (top >= ORK_CPU_AVX2) {
        const outcome o = run(f, std::nullopt, f.lib("libork_avx2.so"));
        EXPECT_EQ(o.loaded, ORK_CPU_AVX2);
        EXPECT_EQ(o.err, "");
        // the processor taken as avx2: the avx512 library is refused before
        // any of its kernels runs
        const outcome r = run(f, "1", f.lib("libork_avx512.so"));
        EXPECT_EQ(r.exit_code, 0);
        EXPECT_EQ(r.loaded, ORK_CPU_AVX2);
        EXPECT_EQ(r.err, "ork: the kernel library " + f.lib("libork_avx512.so") +
                             " serves processor generation 2 (avx512), which this processor lacks\n"
                             "ork: using the kernel library " + f.lib("libork_avx2.so") + " instead\n");
    }
    const outcome b = run(f, "0", f.lib("libork_avx2.so"));
    EXPECT_EQ(b.loaded, ORK_CPU_BASELINE);
    EXPECT_NE(b.err.find("serves processor generation 1 (avx2), which this processor lacks"), std::string::npos) << b.err;

    struct row {
        std::string library, reason;
    };
    const std::string libc_path = "/lib/x86_64-linux-gnu/libc.so.6";
    const row rows[] = {
        {f.lib("missing.so"), "ork: cannot load the kernel library " + f.lib("missing.so") + ": "},
        {f.lib("junk.so"), "ork: cannot load the kernel library " + f.lib("junk.so") + ": "},
        {libc_path, "ork: the kernel library " + libc_path + " does not export dll_cpu_version\n"},
    };
    for (const row& r : rows) {
        const outcome o = run(f, std::nullopt, r.library);
        EXPECT_EQ(o.exit_code, 0) << r.library;
        EXPECT_EQ(o.loaded, top) << r.library;
        EXPECT_EQ(o.err.rfind(r.reason, 0), 0u) << o.err;
        EXPECT_EQ(lines(o.err), 2) << o.err;
        const std::string instead = "ork: using the kernel library " + f.lib(std::string("libork_") + names[top] + ".so") + " instead\n";
        EXPECT_TRUE(o.err.size() >= instead.size() && o.err.compare(o.err.size() - instead.size(), instead.size(), instead) == 0)
            << o.err;
    }
}

// With no kernel library next to libork, ork_init reports message 4 with
// every file it tried, the requested one first.
TEST(Loader, NothingLoadableNamesEveryFileTried) {
    const int top = supported();
    folder f({});
    std::string tried;
    for (int g = top; g >= 0; --g) tried += (tried.empty() ? "" : ", ") + f.lib(std::string("libork_") + names[g] + ".so");
    const outcome o = run(f, std::nullopt, std::nullopt);
    EXPECT_EQ(o.exit_code, 0);
    EXPECT_EQ(o.status, 4);
    EXPECT_EQ(o.loaded, -1);
    EXPECT_EQ(o.err, "ork: no usable kernel library was found; tried " + tried + "\n");

    const outcome r = run(f, std::nullopt, f.lib("junk.so"));
    EXPECT_EQ(r.status, 4);
    EXPECT_NE(r.err.find("ork: no usable kernel library was found; tried " + f.lib("junk.so") + ", " + tried + "\n"),
              std::string::npos)
        << r.err;
}

}  // namespace
