// A fuzz target without libFuzzer: every file of the directories given goes through the target once.
// The tests build each target so, with the sanitizers of their build, and replay its corpus, so that an
// input that once failed fails the tests again; `make fuzz` runs the same targets under libFuzzer to
// look for new ones.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
// Defined by the targets that set something up once.
extern "C" [[gnu::weak]] int LLVMFuzzerInitialize(int* argc, char*** argv);

int main(int argc, char** argv) {
    if (LLVMFuzzerInitialize) LLVMFuzzerInitialize(&argc, &argv);
    int replayed = 0;
    for (int i = 1; i < argc; ++i) {
        std::vector<std::filesystem::path> inputs;
        for (const auto& entry : std::filesystem::directory_iterator(argv[i]))
            if (entry.is_regular_file()) inputs.push_back(entry.path());
        std::sort(inputs.begin(), inputs.end());
        for (const std::filesystem::path& input : inputs) {
            // Named before it runs, so that the input of a crash is the last line shown.
            std::printf("%s\n", input.c_str());
            std::fflush(stdout);
            std::ifstream file(input, std::ios::binary);
            const std::vector<char> bytes{std::istreambuf_iterator<char>(file),
                                          std::istreambuf_iterator<char>()};
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
            ++replayed;
        }
    }
    std::printf("%d inputs replayed\n", replayed);
    return replayed > 0 ? 0 : 1;
}
