// Prints a digest of every effect's output on the test frame, at its defaults and busy settings, at every
// depth and order, one line each: the builds for other architectures must print the same lines as this
// machine's (CompareDigests.cmake).
#include <cstdint>
#include <cstdio>
#include <exception>

#include "tests/registry/EffectRender.h"

namespace {

using namespace Tw;

// FNV-1a over the output's pixels, row by row.
uint64_t digestOf(const Image::ImageBuffer& image) {
    uint64_t hash = 0xcbf29ce484222325u;
    const auto rowBytes = static_cast<std::size_t>(image.rect.width()) * 4 * (image.depth() / 8);
    for (int32_t y = image.rect.top; y < image.rect.bottom; ++y) {
        const auto* row = reinterpret_cast<const unsigned char*>(image.pixelAddress(image.rect.left, y));
        for (std::size_t i = 0; i < rowBytes; ++i)
            hash = (hash ^ row[i]) * 0x100000001b3u;
    }
    return hash;
}

}  // namespace

int main() try {
    for (const Test::RegistryEntry& effect : Plugins::effectRegistry<Test::StandaloneHost>()) {
        for (const auto settings : {Test::EffectSettings::Defaults, Test::EffectSettings::Busy}) {
            for (const Image::PixelFormat format : Test::kEveryFormat) {
                Test::EffectRender render(effect, settings, format);
                Image::ImageBuffer output;
                const int32_t code = render.run(output, Test::kTestFrame);
                std::printf("%s %s %s %d %016llx\n", std::string(effect.shortName()).c_str(),
                            Test::nameOf(settings), Test::formatText(format).c_str(), code,
                            static_cast<unsigned long long>(digestOf(output)));
            }
        }
    }
    return 0;
} catch (const std::exception& e) {
    std::fprintf(stderr, "effect_digests: %s\n", e.what());
    return 1;
}
