// PixelRect: the rectangle every region of the system is expressed in.
//
// Right and bottom are exclusive; coordinates are those of the frame being rendered and may be negative.
// Two sentinels matter: the infinite rectangle (no limit, as produced by generators) and the empty default
// (never set). Any rectangle with right <= left or bottom <= top is empty. Width and height are meaningful
// only for finite, non-empty rectangles, so callers test those first.
#pragma once

#include <algorithm>
#include <cstdint>

namespace Tw::Image {

struct PixelRect {
    static constexpr int32_t kMin = INT32_MIN;
    static constexpr int32_t kMax = INT32_MAX;

    int32_t left = kMax;
    int32_t top = kMax;
    int32_t right = kMin;
    int32_t bottom = kMin;

    static constexpr PixelRect infinite() { return {kMin, kMin, kMax, kMax}; }
    static constexpr PixelRect empty() { return {}; }

    constexpr bool isInfinite() const {
        return left == kMin && top == kMin && right == kMax && bottom == kMax;
    }
    constexpr bool isEmpty() const { return right <= left || bottom <= top; }

    // Measured in 64 bits so that no sentinel overflows; narrowed because pixel loops use int.
    constexpr int width() const { return static_cast<int>(int64_t{right} - left); }
    constexpr int height() const { return static_cast<int>(int64_t{bottom} - top); }

    // Infinite operands leave the other one; the result may be inverted, which counts as empty.
    constexpr PixelRect intersect(const PixelRect& other) const {
        if (isInfinite()) return other;
        if (other.isInfinite()) return *this;
        return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
                std::min(bottom, other.bottom)};
    }

    // The bounding box of both; an infinite operand makes the result infinite.
    constexpr PixelRect extend(const PixelRect& other) const {
        if (isInfinite() || other.isInfinite()) return infinite();
        return {std::min(left, other.left), std::min(top, other.top), std::max(right, other.right),
                std::max(bottom, other.bottom)};
    }

    constexpr bool contains(const PixelRect& inner) const {
        return isInfinite() ||
               (inner.left >= left && inner.right <= right && inner.top >= top && inner.bottom <= bottom);
    }

    // Grown by `dx` and `dy` on each side. Edges are held to the range of a coordinate, so that no margin
    // overflows one; an infinite rectangle stays infinite.
    constexpr PixelRect grown(int64_t dx, int64_t dy) const {
        if (isInfinite()) return *this;
        return {limited(left - dx), limited(top - dy), limited(right + dx), limited(bottom + dy)};
    }

    // Moved by `dx` and `dy`, edges held to the range of a coordinate.
    constexpr PixelRect translated(int64_t dx, int64_t dy) const {
        return {limited(left + dx), limited(top + dy), limited(right + dx), limited(bottom + dy)};
    }

    friend constexpr bool operator==(const PixelRect&, const PixelRect&) = default;

private:
    static constexpr int32_t limited(int64_t coordinate) {
        return static_cast<int32_t>(std::clamp<int64_t>(coordinate, kMin, kMax));
    }
};

}  // namespace Tw::Image
