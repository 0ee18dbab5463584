#include "tests/tools/TwfxFixture.h"

#include <algorithm>
#include <sstream>

namespace Tw::Tools::Twfx {

// A directory per test, since CTest runs tests side by side.
void TwfxFixture::SetUp() {
    const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
    directory_ = std::filesystem::path(::testing::TempDir()) /
                 ("twfx-" + std::string(test->test_suite_name()) + "-" + test->name());
    std::filesystem::remove_all(directory_);
    std::filesystem::create_directories(directory_);
}

void TwfxFixture::TearDown() {
    std::filesystem::remove_all(directory_);
}

std::vector<std::string> TwfxFixture::filesPresent() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory_))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

RunResult TwfxFixture::twfx(std::vector<std::string> arguments, const std::atomic<bool>* cancelFlag,
                            bool progressBar) const {
    std::ostringstream out, err;
    const Console console{out, err, progressBar, cancelFlag};
    const int code = runTwfx(arguments, console);
    return {code, out.str(), err.str()};
}

}  // namespace Tw::Tools::Twfx
