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
namespace {

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
        static constexpr double kWords[] = {0, 32768, 16384, 65535, 40000, 1};
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
    0x89d14d0f96da0b55u, 0x90de3564690c8cc3u, 0x18f46989207e47ceu, 0xe195a0ed1a51b9beu, 0x1bc637ce572dbe7u,
    0xecdcd0623cb0971du, 0x8b766b0fddaa5c03u, 0x70ad382e3a398378u, 0x9fa9e7c7c069ca03u, 0x2e8688b1312c1889u,
    0x986c4d1018b52fd9u, 0xee8b8a1b80182175u, 0xf695e837dc870a1u,  0x8f46b420e75d0579u, 0xe2e533e85d139e77u,
    0x805b91096645b9e7u, 0x80de9cf9691c4925u, 0xf119487fa92af8e4u, 0x7d5431403365c757u, 0x34334cdb646e4b32u,
    0xc87381e283db57dbu, 0x71d9585ddfbc43d4u, 0xc0a83b67b65ab8a0u, 0xd48f8d319ae04f08u, 0xc1c4e49e466b9554u,
    0xe54fcc38b964c34au, 0x26de665f261c7c79u, 0x40179128aa9c8d73u, 0x71d75f75e50d58cau, 0xb566cd211593870fu,
    0x333c1f1e1ade7214u, 0x658f9f06084d79bfu, 0x7e44c1949ca46561u, 0x21faa4fd5e161a48u, 0xbe20fd12d8c692a6u,
    0x3318f25390da06aau, 0x5a0bcc03d61ea71fu, 0xd093197f73c04c0eu, 0x92c4593c2b45a023u, 0xd8460d485985af3eu,
    0xc06b9df46bd83ea3u, 0x3d9645ffcbc5c5d6u};

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

}  // namespace
}  // namespace Tw::Plugins
