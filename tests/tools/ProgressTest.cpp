// The progress bar: only on a terminal, throttled, and always ending its line.
#include <gmock/gmock.h>

#include <sstream>

#include "tests/tools/TwfxFixture.h"
#include "tools/twfx/ProgressBar.h"

namespace Tw::Tools::Twfx {
namespace TW_FILE_LOCAL {

using ::testing::HasSubstr;

TEST(ProgressBar, HoldsBackDrawingsWithinTheIntervalButNotTheLast) {
    std::ostringstream stream;
    {
        ProgressBar bar(stream, true, std::chrono::hours(1));
        bar.show(0.25, "a");
        bar.show(0.5, "b");
        bar.show(1.0, "c");
    }
    const std::string drawn = stream.str();
    EXPECT_THAT(drawn, HasSubstr(" 25% a"));
    EXPECT_THAT(drawn, ::testing::Not(HasSubstr("50%")));
    EXPECT_THAT(drawn, HasSubstr("[" + std::string(30, '#') + "] 100% c"));
    EXPECT_EQ(drawn.back(), '\n');
}

class ProgressOfARender : public TwfxFixture {};

TEST_F(ProgressOfARender, ShowsOnlyWhenStandardErrorIsATerminal) {
    writeImage<uint8_t>(file("in.png"), {2, 2, 3, std::vector<uint8_t>(12, 100)});
    const std::vector<std::string> render = {"render", "Balance",       "-i",    file("in.png"),
                                             "-o",     file("out.png"), "--set", "Gamma=2"};
    EXPECT_EQ(twfx(render).err, "");
    const RunResult shown = twfx(render, nullptr, true);
    EXPECT_EQ(shown.code, 0);
    EXPECT_THAT(shown.err, HasSubstr("100%"));
}

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Tools::Twfx
