// Image files, on any bytes: the bytes as a file of the format that the first byte picks, read through
// OpenImageIO as twfx reads its inputs, placed into a frame of the depth, component order and alpha mode
// that the second byte picks, and written back into the file's channels. Each may be refused with the
// tool's own error; nothing may step outside memory or overflow.
#include <OpenImageIO/imageio.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "tools/common/FrameConversion.h"
#include "tools/common/ImageFile.h"
#include "tools/common/ToolError.h"

namespace {

constexpr std::array<const char*, 6> kExtensions = {".png", ".tif", ".exr", ".jpg", ".dpx", ".bmp"};

// Pictures that claim more than this are left out: they would test the memory of the machine, not the
// code that reads them.
constexpr std::uint64_t kLargestPictureBytes = std::uint64_t{64} << 20;

bool pictureFits(const std::string& path) {
    OIIO::ImageSpec config;
    config.attribute("oiio:UnassociatedAlpha", 1);
    const auto reader = OIIO::ImageInput::open(path, &config);
    OIIO::geterror();
    if (!reader) return true;  // refused by the tool's reader in the same way
    const OIIO::ImageSpec& spec = reader->spec();
    const std::uint64_t pixels =
        static_cast<std::uint64_t>(spec.width) * static_cast<std::uint64_t>(spec.height);
    return spec.width >= 0 && spec.height >= 0 && spec.nchannels >= 0 &&
           pixels <= kLargestPictureBytes / 16 && spec.image_bytes() <= kLargestPictureBytes;
}

}  // namespace

// OpenImageIO's PNG reader keeps a message in a string when libpng reports a failed read, and libpng then
// jumps out past the string's owner: the library leaks it. The unwinder stops at the C++ runtime, built
// without frame pointers, so the leak is known by the runtime's frame that made the string. Our own
// objects that hold strings are reported by their own allocations all the same.
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libstdc++.so\n";
}

// The first byte picks the reader: OpenImageIO need not try every other one on a file its own refuses,
// which would make every run slow.
extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    OIIO::attribute("try_all_readers", 0);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2) return 0;
    static const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("tw-fuzz-image-" + std::to_string(::getpid()));
    std::filesystem::create_directories(folder);
    const std::string path =
        (folder / (std::string("in") + kExtensions[data[0] % kExtensions.size()])).string();
    std::ofstream(path, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(data + 2), static_cast<std::streamsize>(size - 2));
    if (!pictureFits(path)) return 0;

    const int depth = std::array{8, 16, 32}[data[1] % 3];
    const auto order = data[1] & 4 ? Tw::Tools::ComponentOrder::Bgra : Tw::Tools::ComponentOrder::Argb;
    const auto alpha = data[1] & 8 ? Tw::Tools::AlphaMode::Premultiplied : Tw::Tools::AlphaMode::Straight;
    try {
        Tw::Tools::FileImage image = Tw::Tools::readImageFile(path);
        const Tw::Image::PixelFormat format = Tw::Tools::frameFormat(depth, order);
        const Tw::Image::ImageBuffer frame = Tw::Tools::frameFromFile(image, format, alpha);
        // Against a black original, every channel that isn't black counts as changed and is written.
        Tw::Image::ImageBuffer black;
        black.allocate(frame.rect, format);
        black.clear(black.rect);
        Tw::Tools::storeFrame(frame, black, alpha, image);
    } catch (const Tw::Tools::ToolError&) {
    }
    return 0;
}
