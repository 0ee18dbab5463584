// Runs aehost in-process on files in a directory of the test's own, against the bundle this build makes
// or the faulty one the tests build beside it.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace Tw::Tools::AeHost {

struct RunResult {
    int code = 0;
    std::string out;
    std::string err;
};

class AehostFixture : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    std::string file(const std::string& name) const { return (directory_ / name).string(); }
    bool exists(const std::string& name) const { return std::filesystem::exists(directory_ / name); }
    RunResult aehost(const std::vector<std::string>& arguments) const;

    static constexpr const char* kBundle = TW_AE_BUNDLE_PATH;
    static constexpr const char* kFaultyBundle = TW_FAULTY_BUNDLE_PATH;
    static constexpr const char* kPortrait = TW_SAMPLES_DIR "/astronaut.png";

private:
    std::filesystem::path directory_;
};

}  // namespace Tw::Tools::AeHost
