// Image files through OpenImageIO: PNG, JPEG, TIFF, OpenEXR, DPX and whatever else it reads. An image is
// kept as the file holds it, in the file's own data format and channels, with colour straight or
// premultiplied as stored, so that writing it back keeps what the render doesn't touch: extra channels,
// the data format, the values of translucent pixels and the metadata.
#pragma once

#include <OpenImageIO/imageio.h>

#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

namespace Tw::Tools {

struct FileImage {
    // As read: size, channels and their names, the alpha channel, the data format, the metadata.
    OIIO::ImageSpec spec;
    // spec.nchannels values per pixel in spec.format, rows from the top.
    std::vector<std::byte> pixels;
};

// Throws ToolError with ExitCode::UnreadableInput, naming the file and the reason. Reading takes no
// cancel flag, since the render and the writing that follow a read both look at it.
FileImage readImageFile(const std::string& path);

// The image resampled to a fraction of its size per axis (at least one pixel), with a filter that suits
// shrinking; the metadata stays.
FileImage resizedImage(const FileImage& image, double scaleX, double scaleY);

// Throws ToolError with ExitCode::UnwritableOutput when no image format goes by the extension of `path`
// or its directory does not exist; called before a render so that it fails early.
void checkImageOutputPath(const std::string& path);

// Writes in the format that the extension of `path` names, in the image's data format where that format
// stores it and the nearest one where not (a float image to PNG becomes 8-bit). The file appears only
// once written whole. Throws ToolError with ExitCode::UnwritableOutput, or ExitCode::Cancelled when
// `cancelFlag` is set while the file is being written, since writing a large image takes long enough
// for a user to give up on it.
void writeImageFile(const std::string& path, const FileImage& image,
                    const std::atomic<bool>* cancelFlag = nullptr);

}  // namespace Tw::Tools
