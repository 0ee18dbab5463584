// `twfx retouch` on the bundled portrait, as a user sees it: skin smoothed, what the skin key leaves out
// kept as it was, and either effect's parameters reachable by their labels.
#include <gmock/gmock.h>

#include <cstdlib>

#include "tests/tools/TwfxFixture.h"

namespace Tw::Tools::Twfx {
namespace TW_FILE_LOCAL {

using ::testing::HasSubstr;

class Retouch : public TwfxFixture {
protected:
    const std::string portrait = TW_SAMPLE_PORTRAIT;

    TestImage<uint8_t> retouched(std::vector<std::string> settings = {}) {
        const RunResult result = twfx({"retouch", "-i", portrait, "-o", file("out.png")}, settings);
        EXPECT_EQ(result.code, 0) << result.err;
        return readImage<uint8_t>(file("out.png"));
    }
};

// The largest change of any component over the pixels of `box` (left, top, width, height) that `select`
// takes from the original, and the mean change over them.
template <class Select>
std::pair<int, double> changes(const TestImage<uint8_t>& before, const TestImage<uint8_t>& after,
                               const int (&box)[4], Select select) {
    int largest = 0;
    long total = 0, count = 0;
    for (int y = box[1]; y < box[1] + box[3]; ++y) {
        for (int x = box[0]; x < box[0] + box[2]; ++x) {
            const std::size_t at = (static_cast<std::size_t>(y) * before.width + x) * before.channels;
            if (!select(&before.values[at])) continue;
            for (int c = 0; c < before.channels; ++c) {
                const int change = std::abs(before.values[at + c] - after.values[at + c]);
                largest = std::max(largest, change);
                total += change;
                ++count;
            }
        }
    }
    return {largest, count ? static_cast<double>(total) / static_cast<double>(count) : 0.0};
}

TEST_F(Retouch, SmoothsTheFaceAndKeepsWhatIsNotSkin) {
    const TestImage<uint8_t> before = readImage<uint8_t>(portrait);
    const TestImage<uint8_t> after = retouched();
    ASSERT_EQ(after.values.size(), before.values.size());
    const auto every = [](const uint8_t*) { return true; };
    const auto dark = [](const uint8_t* p) { return p[0] < 60 && p[1] < 60 && p[2] < 60; };
    const auto blue = [](const uint8_t* p) { return p[2] > p[0] + 40; };
    // The cheeks and forehead change by several levels on average; the black of the helmet, the blue of
    // the flag and the jacket's badge keep their values within a level.
    EXPECT_GT(changes(before, after, {185, 90, 70, 70}, every).second, 2.0);
    EXPECT_LE(changes(before, after, {300, 350, 200, 160}, dark).first, 1);
    EXPECT_LE(changes(before, after, {0, 0, 100, 200}, blue).first, 1);
    EXPECT_LE(changes(before, after, {130, 340, 80, 80}, blue).first, 1);
}

TEST_F(Retouch, SetsEitherEffectsParametersByLabel) {
    const TestImage<uint8_t> plain = retouched();
    EXPECT_NE(retouched({"--set", "Smoothing Amount=60"}).values, plain.values);
    EXPECT_NE(retouched({"--set", "Hue Range=30"}).values, plain.values);
    EXPECT_NE(retouched({"--set", "Presets/Sharpen/Amount=50"}).values, plain.values);
    EXPECT_EQ(retouched({"--set", "Presets/Locked=off", "--set", "Smoothing/Locked=on"}).values,
              plain.values);

    const RunResult ambiguous = twfx({"retouch", "-i", portrait, "-o", file("x.png"), "--set", "Locked=on"});
    EXPECT_EQ(ambiguous.code, 5);
    EXPECT_THAT(ambiguous.err, HasSubstr("write one as Smoothing/Locked, Presets/Locked"));
    const RunResult named = twfx({"retouch", "Smoothing", "-i", portrait, "-o", file("x.png")});
    EXPECT_EQ(named.code, 2);
    EXPECT_THAT(named.err, HasSubstr("retouch takes no effect name"));
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::Twfx
