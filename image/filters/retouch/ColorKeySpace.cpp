#include "image/filters/retouch/ColorKeySpace.h"

#include <algorithm>
#include <utility>

namespace Tw::Image {

namespace {

using Single = FloatVector<4>;

Single broadcast(float v) {
    return Single{v, v, v, v};
}

KeyPoint firstLane(const KeyVectors<4>& point) {
    return {point.hue[0], point.chroma[0], point.lightness[0]};
}

}  // namespace

KeyPoint rgbToKeySpace(float r, float g, float b) {
    return firstLane(keySpaceOfLab<4>(labFromEncoded<4>({broadcast(r), broadcast(g), broadcast(b)})));
}

KeyPoint keySpaceOfWhiteRatios(float x, float y, float z) {
    return firstLane(keySpaceOfLab<4>(
        labFromCurves<4>(cubeRoot<4>(broadcast(x)), cubeRoot<4>(broadcast(y)), cubeRoot<4>(broadcast(z)))));
}

SkinKey makeKeyRange(const KeyPoint& a, const KeyPoint& b, const KeyPoint& sigma) {
    SkinKey key{};
    for (int axis = 0; axis < 3; ++axis) {
        key.fgmin[axis] = std::min(a[axis], b[axis]);
        key.fgmax[axis] = std::max(a[axis], b[axis]);
    }
    // More than half a turn between the two hues: the box goes the other way round, from below 0.
    float d = key.fgmax[0] - key.fgmin[0];
    if (!(d >= -0.5f && d <= 0.5f)) d = d < -0.5f ? d + 1.0f : d - 1.0f;
    key.fgmax[0] = key.fgmin[0] + d;
    if (key.fgmax[0] < key.fgmin[0]) std::swap(key.fgmin[0], key.fgmax[0]);
    key.sigma = sigma;
    return key;
}

}  // namespace Tw::Image
