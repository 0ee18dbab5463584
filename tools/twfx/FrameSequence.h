// Numbered image sequences: a file name holds the frame number as a printf-style "%04d" (or "%d" for no
// padding), as in "shot.%04d.exr".
#pragma once

#include <string>
#include <string_view>

namespace Tw::Tools::Twfx {

bool hasFramePattern(std::string_view path);

// `path` with every frame pattern replaced by `frame`, zero-padded to the pattern's width.
std::string pathOfFrame(std::string_view path, int frame);

}  // namespace Tw::Tools::Twfx
