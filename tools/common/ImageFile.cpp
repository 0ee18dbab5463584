#include "tools/common/ImageFile.h"

#include <OpenImageIO/imagebuf.h>
#include <OpenImageIO/imagebufalgo.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <new>
#include <string>

#include "tools/common/PendingOutputFile.h"
#include "tools/common/ToolError.h"
#include "tools/common/UserText.h"

namespace Tw::Tools {
namespace {

[[noreturn]] void unreadable(const std::string& path, const std::string& reason) {
    throw ToolError(ExitCode::UnreadableInput, "cannot read " + path + ": " + reason);
}

[[noreturn]] void unwritable(const std::string& path, const std::string& reason) {
    throw ToolError(ExitCode::UnwritableOutput, "cannot write " + path + ": " + reason);
}

// The frames a render runs on start at the origin and fill their picture, so a data window placed
// elsewhere or smaller than its display window is taken as the picture itself.
void placeAtOrigin(OIIO::ImageSpec& spec) {
    spec.x = spec.y = spec.z = 0;
    spec.full_x = spec.full_y = spec.full_z = 0;
    spec.full_width = spec.width;
    spec.full_height = spec.height;
    spec.full_depth = spec.depth;
}

std::unique_ptr<OIIO::ImageOutput> createWriter(const std::string& path) {
    auto writer = OIIO::ImageOutput::create(path);
    if (!writer) {
        OIIO::geterror();  // taken, so that it doesn't turn up in a later message
        unwritable(path, "no image format goes by the extension " +
                             inQuotes(std::filesystem::path(path).extension().string()));
    }
    return writer;
}

// Asked by OpenImageIO as it writes; true stops the writing.
bool cancelRequested(void* cancelFlag, float /*portionDone*/) {
    return static_cast<const std::atomic<bool>*>(cancelFlag)->load(std::memory_order_relaxed);
}

// The bytes of an image's pixels. A count beyond what an address can reach is no allocation to attempt:
// it is out of memory at once.
std::size_t pixelBytes(const OIIO::ImageSpec& spec) {
    const OIIO::imagesize_t bytes = spec.image_bytes();
    if (bytes > static_cast<OIIO::imagesize_t>(std::numeric_limits<std::ptrdiff_t>::max()))
        throw std::bad_alloc();
    return static_cast<std::size_t>(bytes);
}

}  // namespace

FileImage readImageFile(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) unreadable(path, "no such file");
    // Colour as the file stores it: a reader would otherwise multiply straight colour by alpha, and the
    // writer divide it again, which changes the values of every translucent pixel. The image's
    // OIIO::ImageSpec keeps the reader's "oiio:UnassociatedAlpha", which tells the writer the same.
    OIIO::ImageSpec config;
    config.attribute("oiio:UnassociatedAlpha", 1);
    auto reader = OIIO::ImageInput::open(path, &config);
    if (!reader) unreadable(path, OIIO::geterror());
    FileImage image{reader->spec(), {}};
    if (image.spec.deep || image.spec.depth > 1) unreadable(path, "deep and volume images are not supported");
    if (image.spec.width < 1 || image.spec.height < 1 || image.spec.nchannels < 1) {
        unreadable(path, "the file holds no pixels");
    }
    // One data format for every channel, as frames have; the reader converts channels stored otherwise.
    image.spec.channelformats.clear();
    try {
        image.pixels.resize(pixelBytes(image.spec));
    } catch (const std::bad_alloc&) {
        throw ToolError(ExitCode::RenderFailed, "out of memory for " + path + ": " +
                                                    std::to_string(image.spec.width) + " x " +
                                                    std::to_string(image.spec.height) + " pixels of " +
                                                    std::to_string(image.spec.nchannels) + " channels");
    }
    if (!reader->read_image(0, 0, 0, image.spec.nchannels, image.spec.format, image.pixels.data())) {
        unreadable(path, reader->geterror());
    }
    placeAtOrigin(image.spec);
    return image;
}

FileImage resizedImage(const FileImage& image, double scaleX, double scaleY) {
    // The buffer only wraps the pixels for reading; resize writes a new image.
    const OIIO::ImageBuf source(image.spec, const_cast<std::byte*>(image.pixels.data()));
    FileImage resized{image.spec, {}};
    resized.spec.width = std::max(1, static_cast<int>(std::lround(image.spec.width * scaleX)));
    resized.spec.height = std::max(1, static_cast<int>(std::lround(image.spec.height * scaleY)));
    placeAtOrigin(resized.spec);
    const OIIO::ROI size(0, resized.spec.width, 0, resized.spec.height, 0, 1, 0, image.spec.nchannels);
    const OIIO::ImageBuf result = OIIO::ImageBufAlgo::resize(source, "", 0.0f, size);
    resized.pixels.resize(pixelBytes(resized.spec));
    if (result.has_error() || !result.get_pixels(size, resized.spec.format, resized.pixels.data())) {
        throw ToolError(ExitCode::RenderFailed, "cannot downsample: " + result.geterror());
    }
    return resized;
}

void checkImageOutputPath(const std::string& path) {
    createWriter(path);
    checkOutputDirectory(path);
}

void writeImageFile(const std::string& path, const FileImage& image, const std::atomic<bool>* cancelFlag) {
    // Declared first so that it outlives the writer, which closes the file before it is removed.
    PendingOutputFile file(path);
    auto writer = createWriter(path);
    const std::string temporary = file.temporaryPath().string();
    const OIIO::ProgressCallback stopWhenCancelled = cancelFlag ? &cancelRequested : nullptr;
    const bool written = writer->open(temporary, image.spec) &&
                         writer->write_image(image.spec.format, image.pixels.data(), OIIO::AutoStride,
                                             OIIO::AutoStride, OIIO::AutoStride, stopWhenCancelled,
                                             const_cast<std::atomic<bool>*>(cancelFlag)) &&
                         writer->close();
    if (cancelFlag && cancelFlag->load(std::memory_order_relaxed)) {
        throw ToolError(ExitCode::Cancelled, "cancelled");
    }
    if (!written) unwritable(path, writer->geterror());
    file.commit();
}

}  // namespace Tw::Tools
