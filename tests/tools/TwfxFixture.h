// Runs twfx in-process on files in a directory of the test's own, and writes and reads the images the
// tests give it with OpenImageIO directly, so that what the tool does is checked against what is in the
// files.
#pragma once

#include <gtest/gtest.h>

#include <OpenImageIO/imageio.h>

#include <atomic>
#include <filesystem>
#include <string>
#include <vector>

#include "tools/twfx/Twfx.h"

namespace Tw::Tools::Twfx {

struct RunResult {
    int code = 0;
    std::string out;
    std::string err;
};

// An image as a test writes or reads it: size, channels and the values in one component type.
template <class T>
struct TestImage {
    int width = 0;
    int height = 0;
    int channels = 0;
    std::vector<T> values;
};

class TwfxFixture : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // A file name in the test's directory.
    std::string file(const std::string& name) const { return (directory_ / name).string(); }
    // The names of the files in the test's directory, hidden ones included.
    std::vector<std::string> filesPresent() const;

    RunResult twfx(std::vector<std::string> arguments, const std::atomic<bool>* cancelFlag = nullptr,
                   bool progressBar = false) const;
    // The same with `more` arguments after `arguments`.
    RunResult twfx(std::vector<std::string> arguments, const std::vector<std::string>& more) const {
        arguments.insert(arguments.end(), more.begin(), more.end());
        return twfx(arguments);
    }

    // Values are written and read as the file stores them: colour beside alpha is not multiplied by it
    // on the way in nor divided on the way out.
    template <class T>
    static void writeImage(const std::string& path, const TestImage<T>& image,
                           OIIO::TypeDesc fileFormat = OIIO::TypeDescFromC<T>::value()) {
        OIIO::ImageSpec spec(image.width, image.height, image.channels, fileFormat);
        spec.attribute("oiio:UnassociatedAlpha", 1);
        auto output = OIIO::ImageOutput::create(path);
        ASSERT_TRUE(output && output->open(path, spec)) << path;
        ASSERT_TRUE(output->write_image(OIIO::TypeDescFromC<T>::value(), image.values.data()));
        ASSERT_TRUE(output->close());
    }

    // Reads in the component type T, OpenImageIO converting from the file's data format.
    template <class T>
    static TestImage<T> readImage(const std::string& path, OIIO::ImageSpec* spec = nullptr) {
        OIIO::ImageSpec config;
        config.attribute("oiio:UnassociatedAlpha", 1);
        auto input = OIIO::ImageInput::open(path, &config);
        EXPECT_TRUE(input) << path;
        if (!input) return {};
        const OIIO::ImageSpec& read = input->spec();
        TestImage<T> image{read.width, read.height, read.nchannels, {}};
        image.values.resize(static_cast<std::size_t>(image.width) * image.height * image.channels);
        EXPECT_TRUE(
            input->read_image(0, 0, 0, image.channels, OIIO::TypeDescFromC<T>::value(), image.values.data()));
        if (spec) *spec = read;
        return image;
    }

private:
    std::filesystem::path directory_;
};

}  // namespace Tw::Tools::Twfx
