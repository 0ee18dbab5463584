#include "tests/aehost/AehostFixture.h"

#include <unistd.h>

#include <sstream>

#include "tools/aehost/Aehost.h"

namespace Tw::Tools::AeHost {

void AehostFixture::SetUp() {
    const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
    directory_ = std::filesystem::temp_directory_path() /
                 ("aehost-" + std::to_string(getpid()) + "-" + test->test_suite_name() + "-" + test->name());
    std::filesystem::remove_all(directory_);
    std::filesystem::create_directories(directory_);
}

void AehostFixture::TearDown() {
    std::filesystem::remove_all(directory_);
}

RunResult AehostFixture::aehost(const std::vector<std::string>& arguments) const {
    std::ostringstream out;
    std::ostringstream err;
    const int code = runAehost(arguments, {out, err});
    return {code, out.str(), err.str()};
}

}  // namespace Tw::Tools::AeHost
