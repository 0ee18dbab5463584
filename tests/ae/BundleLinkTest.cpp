// The bundle as a file: it needs nothing beyond the C++ runtime, libm and libc, and it shows the host its
// entry points and nothing else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#include "host/standalone/Host.h"
#include "plugins/EffectRegistry.h"

namespace Tw::Tools::AeHost {
namespace TW_FILE_LOCAL {

// What `command` writes on standard output; fails the test if it can't run.
std::string outputOf(const std::string& command) {
    const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(command.c_str(), "r"), &pclose);
    if (!pipe) {
        ADD_FAILURE() << "cannot run " << command;
        return {};
    }
    std::string text;
    char buffer[4096];
    while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, pipe.get()))
        text.append(buffer, count);
    return text;
}

TEST(BundleLink, ItNeedsOnlyTheRuntimeLibraries) {
    std::set<std::string> allowed = {"libstdc++.so.6",       "libm.so.6",    "libgcc_s.so.1", "libc.so.6",
                                     "ld-linux-x86-64.so.2", "ld-linux.so.2"};
    // A sanitised build brings its runtimes along.
    if (TW_SANITIZED_BUILD) allowed.insert({"libasan.so.8", "libubsan.so.1", "libtsan.so.2"});
    const std::string dynamic = outputOf("readelf -d '" TW_AE_BUNDLE_PATH "'");
    const std::regex needed(R"(\(NEEDED\)\s+Shared library: \[([^\]]+)\])");
    int count = 0;
    for (auto it = std::sregex_iterator(dynamic.begin(), dynamic.end(), needed); it != std::sregex_iterator();
         ++it) {
        EXPECT_TRUE(allowed.count((*it)[1])) << "the bundle needs " << (*it)[1];
        ++count;
    }
    EXPECT_GT(count, 0) << dynamic;

    // What the loader actually brings in, indirect dependencies included; this machine's loader can tell
    // only for a bundle built for it.
    if (!TW_NATIVE_BUILD) return;
    const std::string loaded = outputOf("ldd '" TW_AE_BUNDLE_PATH "'");
    std::istringstream lines(loaded);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string name;
        words >> name;
        if (name.empty()) continue;
        const std::string file = name.substr(name.rfind('/') + 1);
        EXPECT_TRUE(allowed.count(file) || file.rfind("linux-vdso.so", 0) == 0) << "ldd lists " << line;
    }
}

TEST(BundleLink, ItExportsExactlyTheEntryPoints) {
    std::set<std::string> expected;
    for (const auto& entry : Plugins::effectRegistry<Host::Standalone::Host>())
        expected.insert(entry.entryName);
    // Symbols the linker itself defines in every shared object.
    const std::set<std::string> fromTheLinker = {"_init", "_fini", "__bss_start", "_edata", "_end"};
    const std::string symbols = outputOf("nm -D --defined-only '" TW_AE_BUNDLE_PATH "'");
    std::set<std::string> functions;
    std::istringstream lines(symbols);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string address, type, name;
        words >> address >> type >> name;
        if (name.empty() || fromTheLinker.count(name)) continue;
        const std::string bare = name.substr(0, name.find('@'));
        if (type == "A" && bare.empty()) continue;
        EXPECT_EQ(type, "T") << name << " is exported as " << type;
        functions.insert(bare);
    }
    EXPECT_EQ(functions, expected) << symbols;
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::AeHost
