// "Blend" bit for bit: each mode's output over frames of pseudo-random pixels, at every depth, in both
// component orders and at two opacities, in every processor variant, against digests recorded from the
// kernels. The formula tests compare values, under which -0 equals 0; these digests also hold signs of
// zero, infinities, subnormals, 16-bit values above white and rows longer than any block a kernel works
// in, at places where only one input has pixels as well as where both do. A NaN counts as one value:
// which NaN an operation with two NaN operands gives depends on the order in which the compiler puts them.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <ios>
#include <limits>

#include "host/standalone/Host.h"
#include "image/graph/KernelDispatch.h"
#include "plugins/BlendPlugin.h"
#include "tests/support/BareHost.h"

namespace Tw::Plugins {
namespace TW_FILE_LOCAL {

using Image::fourCC;
using Image::ImageBuffer;
using Image::PixelFormat;
using StandaloneHost = Tw::Host::Standalone::Host;

// A component value of `depth`: one time in four a value where arithmetic turns, else any in range.
class ComponentSource {
public:
    double next(int depth) {
        constexpr double inf = std::numeric_limits<double>::infinity();
        static constexpr double kBytes[] = {0, 255, 128, 127, 1};
        // Above white no further than its results stay within the integers the stores convert through,
        // beyond which processors differ.
        static constexpr double kWords[] = {0, 32768, 16384, 36000, 1};
        static constexpr double kFloats[] = {0, -0.0, 1, 0.5, 2, -0.3, 1e-40, 1e30, inf, -inf, NAN};
        const uint32_t pick = draw();
        const bool notable = pick % 4 == 0;
        switch (depth) {
            case 8:
                return notable ? kBytes[draw() % std::size(kBytes)] : draw() % 256;
            case 16:
                return notable ? kWords[draw() % std::size(kWords)] : draw() % 32769;
            default:
                return notable ? kFloats[draw() % std::size(kFloats)] : draw() % 15001 / 10000.0 - 0.25;
        }
    }

private:
    uint32_t draw() { return (state = state * 1103515245u + 12345u) >> 8; }
    uint32_t state = 2024;
};

ImageBuffer randomImage(const Image::PixelRect& rect, PixelFormat format, ComponentSource& source) {
    ImageBuffer image;
    image.allocate(rect, format);
    const int depth = Image::formatDepth(format);
    Image::dispatchLayout(image, [&](auto layout) {
        using T = typename decltype(layout)::Component;
        for (int y = rect.top; y < rect.bottom; ++y)
            for (int x = rect.left; x < rect.right; ++x)
                for (int c = 0; c < 4; ++c)
                    reinterpret_cast<T*>(image.pixelAddress(x, y))[c] = static_cast<T>(source.next(depth));
    });
    return image;
}

constexpr uint32_t kQuietNan = 0x7fc00000u;

// FNV-1a over the bytes of every component, each NaN as the one quiet NaN.
void addToDigest(uint64_t& digest, const ImageBuffer& image) {
    const bool isFloat = Image::formatDepth(image.pixelFormat()) == 32;
    const auto rowBytes = static_cast<std::size_t>(image.rect.width() * image.bytesPerPixel());
    for (int y = image.rect.top; y < image.rect.bottom; ++y) {
        const auto* row = reinterpret_cast<const unsigned char*>(image.pixelAddress(image.rect.left, y));
        for (std::size_t i = 0; i < rowBytes; i += 4) {
            unsigned char bytes[4];
            std::memcpy(bytes, row + i, 4);
            float value;
            std::memcpy(&value, bytes, 4);
            if (isFloat && std::isnan(value)) std::memcpy(bytes, &kQuietNan, 4);
            for (const unsigned char byte : bytes)
                digest = (digest ^ byte) * 0x100000001b3u;
        }
    }
}

// By mode number, 0 "Normal" to 41 "Behind".
constexpr std::array<uint64_t, Image::kBlendModeCount> kRecordedDigests = {
    0xd599f76bb7ce8fb5u, 0x60dcc51dae3c60a0u, 0x422c028c16e8fca7u, 0x8816f022cfbd5ed8u, 0x11973ee273f53e3fu,
    0xd19d1d9cd9aa4ee7u, 0x2759fa47bbb98384u, 0x89bcddde3aacce26u, 0xc12e065cd3e498bau, 0x762085e72989d9e4u,
    0xc06ff1115fa2674eu, 0x5f72bf1fd07e8802u, 0x8cf42798453edee7u, 0xdf2ccd77b3b5d46u,  0xf62f574e422d4480u,
    0x1c5d665e9a0b1673u, 0x6ca38bf23d9cab5bu, 0x60fb38cf0ca0ce3au, 0x3975905206915983u, 0x81f848cf207f6980u,
    0x5a33eff116dfc4cbu, 0xfb6a729e6573665u,  0x439e5c3c70d86d4eu, 0xdf96d4ce1b54418u,  0xd00eb3154e2676feu,
    0xdf1e7e00e52d0a9eu, 0x29c352cd671853c6u, 0x7e27e0cafa979c22u, 0x3de273aa1a8fb62u,  0x916c5e0a8f61eb8u,
    0x86c963dce6dc0321u, 0x4e9912fc1b3e2fa5u, 0x53fa5b8c609a48e9u, 0x274d49656dd8d3c3u, 0xf3c8dc00c44b329bu,
    0xc6df1f5d627f8336u, 0x2388ac4b237ebd10u, 0x3b74bd57cdd65354u, 0xacceba16b7fe82eu,  0x3e8172146eed523du,
    0x7c43e5efd6c5c021u, 0x9e9bb4ad21b9920u};

TEST(BlendBits, EveryModeGivesItsRecordedBitsInEveryVariant) {
    const PixelFormat formats[] = {fourCC("argb"), fourCC("ae16"), fourCC("ae32"),
                                   fourCC("bgra"), fourCC("Bgra"), fourCC("BGra")};
    const Image::CpuFeatures variants[] = {~0u, ~Image::CpuFeature::kAvx2,
                                           ~(Image::CpuFeature::kAvx2 | Image::CpuFeature::kSse41), 0u};
    ComponentSource source;
    std::array<ImageBuffer, std::size(formats)> bases, tops;
    for (std::size_t i = 0; i < std::size(formats); ++i) {
        bases[i] = randomImage({0, 0, 300, 4}, formats[i], source);
        tops[i] = randomImage({-5, 1, 290, 6}, formats[i], source);
    }
    for (const auto variant : variants) {
        for (int mode = 0; mode < Image::kBlendModeCount; ++mode) {
            uint64_t digest = 0xcbf29ce484222325u;
            for (std::size_t i = 0; i < std::size(formats); ++i) {
                for (const float opacity : {1.0f, 0.6f}) {
                    ::Tw::Test::BareHost host;
                    host.featureMask = variant;
                    host.threadCount = 1;
                    Image::FilterLayer<StandaloneHost> base(&bases[i]), top(&tops[i]);
                    Image::BlendFilter<StandaloneHost> node(base, top, mode, opacity);
                    ImageBuffer out;
                    out.allocate({-5, 0, 300, 6}, formats[i]);
                    Image::prepareGraph<StandaloneHost>(node, host, out);
                    addToDigest(digest, out);
                }
            }
            EXPECT_EQ(digest, kRecordedDigests[static_cast<std::size_t>(mode)])
                << "mode " << mode << " variant " << std::hex << variant << " digest 0x" << digest;
        }
    }
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Plugins
