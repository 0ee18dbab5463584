// The plug-ins in the real hosts Debian ships: ffmpeg's frei0r filter and melt's frei0r filters and
// transitions render the bundled portrait, and each frame must be the one twfx renders for the same
// parameter values at 8 bits in BGRA order, byte for byte. Every effect of the registry of the type a
// host runs takes part, so effects added later are tested here without a change: at its defaults, at the
// settings it declares busy, and with every parameter away from its default.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "host/frei0r/PluginFileName.h"
#include "tests/frei0r/HostSettings.h"
#include "tests/support/TestLayer.h"
#include "tools/common/ParameterLabels.h"
#include "tools/common/ParameterValues.h"
#include "tools/twfx/EffectLookup.h"
#include "tools/twfx/Twfx.h"

extern char** environ;

namespace Tw::Host::Frei0r {
namespace TW_FILE_LOCAL {

namespace fs = std::filesystem;

std::string pluginName(const EffectEntry& entry) {
    return pluginFileName(entry.entryName, entry.displayName);
}

// Calls body(entry, description) for every effect whose plug-in is of the frei0r `type`; how many there were.
template <class Body>
int forEachPlugin(int type, Body body) {
    int count = 0;
    for (const EffectEntry& entry : Plugins::effectRegistry<StandaloneHost>()) {
        const PluginDescription plugin(entry);
        if (plugin.pluginType() != type) continue;
        SCOPED_TRACE(entry.entryName);
        ++count;
        body(entry, plugin);
    }
    return count;
}

template <class... More>
std::vector<std::string> joined(std::vector<std::string> first, const More&... more) {
    (first.insert(first.end(), more.begin(), more.end()), ...);
    return first;
}

std::vector<char> fileBytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Empty when the two RGBA frames are equal, else where they first differ.
std::string firstDifference(const std::vector<char>& actual, const std::vector<char>& expected) {
    if (actual.size() != expected.size()) {
        return std::to_string(actual.size()) + " bytes where " + std::to_string(expected.size()) +
               " were expected";
    }
    for (std::size_t i = 0; i < actual.size(); ++i) {
        if (actual[i] != expected[i]) {
            return "pixel " + std::to_string(i / 4) + " component " + std::to_string(i % 4) + ": " +
                   std::to_string(static_cast<unsigned char>(actual[i])) + " where " +
                   std::to_string(static_cast<unsigned char>(expected[i])) + " was expected";
        }
    }
    return {};
}

enum class Settings { Defaults, Busy, Varied };

std::string nameOf(const ::testing::TestParamInfo<Settings>& settings) {
    switch (settings.param) {
        case Settings::Defaults:
            return "Defaults";
        case Settings::Busy:
            return "Busy";
        default:
            return "Varied";
    }
}

class HostsTest : public ::testing::TestWithParam<Settings> {
protected:
    void SetUp() override {
        const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
        std::string name = test->name();
        std::replace(name.begin(), name.end(), '/', '-');
        directory_ = fs::temp_directory_path() / ("tw-frei0r-" + std::to_string(getpid()) + "-" + name);
        fs::remove_all(directory_);
        fs::create_directories(directory_);
        ASSERT_EQ(setenv("FREI0R_PATH", TW_FREI0R_PLUGIN_DIR, 1), 0);
        // The portrait with an alpha channel, so that twfx writes alpha as well and all four components
        // compare.
        ASSERT_EQ(run({TW_FFMPEG, "-v", "error", "-y", "-i", TW_SAMPLE_IMAGE, "-vf", "format=rgba",
                       file("in.png")}),
                  0);
        ASSERT_EQ(decode("in.png", "in.rgba"), 0);
    }
    void TearDown() override {
        if (!HasFailure()) fs::remove_all(directory_);
    }

    // The settings of this run for the effect, as `host` can set them.
    static HostSettings settingsOf(const EffectEntry& entry, const PluginDescription& plugin,
                                   HostProgram host) {
        switch (GetParam()) {
            case Settings::Defaults:
                return HostSettings(plugin);
            case Settings::Busy: {
                Param::Parameters busy;
                Tools::Twfx::defineParameters(entry, busy);
                ::Tw::Test::applySettings(busy, entry.busySettings, entry.displayName);
                return HostSettings(plugin, host, busy);
            }
            default:
                return HostSettings::varied(plugin, host);
        }
    }
    // Whether the settings must change the picture: the defaults of some effects leave it as it is, and
    // so may an effect over further layers when the host fills none of them.
    static bool changesThePicture(const EffectEntry& entry, const PluginDescription& plugin) {
        const bool layersLeftOut = entry.inputs == Plugins::EffectInputs::Layers && plugin.layerInputs() == 0;
        return GetParam() != Settings::Defaults && !layersLeftOut;
    }

    std::string file(const std::string& name) const { return (directory_ / name).string(); }
    std::vector<char> frame(const std::string& name) const { return fileBytes(directory_ / name); }

    // Runs the program with its output in a log file of the test's directory; its exit status, which
    // fails the test unless it is 0.
    int run(const std::vector<std::string>& arguments) {
        const int code = runQuietly(arguments);
        if (code != 0) ADD_FAILURE() << arguments[0] << " ended with " << code << ":\n" << lastLog();
        return code;
    }

    // The same without failing the test: the exit status, 128 and the signal for a program that ended
    // on one, and kStalled for one stopped after kTimeLimit.
    int runQuietly(const std::vector<std::string>& arguments) {
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        // melt takes keys from a terminal on its standard input.
        posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&actions, 1, file("log-" + std::to_string(++runs_) + ".txt").c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0644);
        posix_spawn_file_actions_adddup2(&actions, 1, 2);
        std::vector<char*> argv;
        for (const std::string& argument : arguments)
            argv.push_back(const_cast<char*>(argument.c_str()));
        argv.push_back(nullptr);
        pid_t pid;
        const int spawned = posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        if (spawned != 0) {
            ADD_FAILURE() << arguments[0] << " did not start";
            return -1;
        }
        int status = 0;
        const auto giveUp = std::chrono::steady_clock::now() + kTimeLimit;
        while (waitpid(pid, &status, WNOHANG) == 0) {
            if (std::chrono::steady_clock::now() > giveUp) {
                kill(pid, SIGKILL);
                waitpid(pid, &status, 0);
                return kStalled;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }

    std::string lastLog() const {
        const std::vector<char> log = fileBytes(directory_ / ("log-" + std::to_string(runs_) + ".txt"));
        return std::string(log.begin(), log.end());
    }

    // The file's first frame as raw RGBA.
    int decode(const std::string& image, const std::string& raw) {
        return run({TW_FFMPEG, "-v", "error", "-y", "-i", file(image), "-f", "rawvideo", "-pix_fmt", "rgba",
                    file(raw)});
    }

    // twfx's frame of the effect with the settings, at 8 bits in BGRA order, as raw RGBA; a generator's
    // of the portrait's size, with no input. twfx runs in this process: starting the program, which loads
    // every image library there is, costs more than the render.
    std::vector<char> twfxFrame(const EffectEntry& entry, const HostSettings& settings,
                                const std::vector<std::string>& extra = {}) {
        const bool generator = entry.inputs == Plugins::EffectInputs::Generator;
        const std::vector<std::string> command = {"render",
                                                  std::string(entry.shortName()),
                                                  generator ? "--size" : "-i",
                                                  generator ? "512x512" : file("in.png"),
                                                  "-o",
                                                  file("twfx.png"),
                                                  "--depth",
                                                  "8",
                                                  "--order",
                                                  "bgra"};
        std::ostringstream out, err;
        const int code = Tools::Twfx::runTwfx(joined(command, settings.twfxOptions(), extra), {out, err});
        if (code != 0) {
            ADD_FAILURE() << "twfx ended with " << code << ":\n" << err.str();
            return {};
        }
        if (decode("twfx.png", "twfx.rgba") != 0) return {};
        return frame("twfx.rgba");
    }

    // melt's first frame of the producers, filters or transitions in `services`, with the settings'
    // properties, at the portrait's size and rate, as raw RGBA. The services run for two frames: melt can
    // stop its consumer before the last frame is written, and under load that loses a one-frame render.
    std::vector<char> meltFrame(const std::vector<std::string>& services, const HostSettings& settings) {
        // melt crashes on a profile without a description.
        std::ofstream(file("profile"))
            << "description=portrait\nwidth=512\nheight=512\nprogressive=1\nframe_rate_num=25\n"
               "frame_rate_den=1\nsample_aspect_num=1\nsample_aspect_den=1\n"
               "display_aspect_num=1\ndisplay_aspect_den=1\ncolorspace=709\n";
        const std::vector<std::string> consumer = {"-consumer", "avformat:" + file("melt.rgba"), "f=rawvideo",
                                                   "pix_fmt=rgba", "real_time=0"};
        const std::vector<std::string> command =
            joined({TW_MELT, "-profile", file("profile")}, services, settings.meltProperties(), consumer);
        // melt itself, with or without our plug-ins, now and then ends without writing a frame or stalls,
        // the more often the busier the machine: such a run is tried again.
        const std::size_t frameBytes = fs::file_size(directory_ / "in.rgba");
        for (int attempt = 1;; ++attempt) {
            fs::remove(directory_ / "melt.rgba");
            const int code = runQuietly(command);
            std::vector<char> rendered = frame("melt.rgba");
            if (code == 0 && rendered.size() >= frameBytes) {
                rendered.resize(frameBytes);
                return rendered;
            }
            if (attempt == 3) {
                ADD_FAILURE() << "melt gave no frame in three runs; the last ended with " << code << ":\n"
                              << lastLog();
                return {};
            }
        }
    }

private:
    static constexpr auto kTimeLimit = std::chrono::seconds(120);
    static constexpr int kStalled = -2;

    fs::path directory_;
    int runs_ = 0;
};

TEST_P(HostsTest, FfmpegRendersEveryFilterAsTwfxDoes) {
    const std::vector<char> input = frame("in.rgba");
    const int filters =
        forEachPlugin(F0R_PLUGIN_TYPE_FILTER, [&](const EffectEntry& entry, const PluginDescription& plugin) {
            const HostSettings settings = settingsOf(entry, plugin, HostProgram::Ffmpeg);
            const std::string params = settings.ffmpegParams();
            const std::string filter = "frei0r=filter_name=" + pluginName(entry) +
                                       (params.empty() ? "" : ":filter_params=" + params) + ",format=rgba";
            ASSERT_EQ(run({TW_FFMPEG, "-v", "error", "-y", "-i", file("in.png"), "-vf", filter, "-f",
                           "rawvideo", file("ffmpeg.rgba")}),
                      0);
            const std::vector<char> rendered = frame("ffmpeg.rgba");
            EXPECT_EQ(firstDifference(rendered, twfxFrame(entry, settings)), "");
            if (changesThePicture(entry, plugin)) {
                EXPECT_NE(rendered, input) << "the settings leave the picture as it was";
            }
        });
    EXPECT_GT(filters, 0);
}

// The plug-ins' defaults and the busy settings are the host's to pass on, which ffmpeg shows above; what
// melt adds is its own way of setting each parameter, which the varied settings reach every one of.
TEST_P(HostsTest, MeltRendersEveryFilterAsTwfxDoes) {
    if (GetParam() != Settings::Varied) GTEST_SKIP() << "melt sets every parameter in the varied settings";
    const std::vector<char> input = frame("in.rgba");
    forEachPlugin(F0R_PLUGIN_TYPE_FILTER, [&](const EffectEntry& entry, const PluginDescription& plugin) {
        const HostSettings settings = settingsOf(entry, plugin, HostProgram::Melt);
        const std::vector<char> rendered =
            meltFrame({file("in.png"), "in=0", "out=1", "-filter", "frei0r." + pluginName(entry)}, settings);
        EXPECT_EQ(firstDifference(rendered, twfxFrame(entry, settings)), "");
        if (changesThePicture(entry, plugin)) {
            EXPECT_NE(rendered, input);
        }
    });
}

// A source is ffmpeg's frei0r_src, at the portrait's size. It refuses to start without filter_params,
// which may be empty.
TEST_P(HostsTest, FfmpegRendersEverySourceAsTwfxDoes) {
    const int sources =
        forEachPlugin(F0R_PLUGIN_TYPE_SOURCE, [&](const EffectEntry& entry, const PluginDescription& plugin) {
            const HostSettings settings = settingsOf(entry, plugin, HostProgram::Ffmpeg);
            const std::string source =
                "frei0r_src=size=512x512:framerate=1:filter_name=" + pluginName(entry) +
                ":filter_params=" + settings.ffmpegParams();
            ASSERT_EQ(run({TW_FFMPEG, "-v", "error", "-y", "-f", "lavfi", "-i", source, "-frames:v", "1",
                           "-vf", "format=rgba", "-f", "rawvideo", file("ffmpeg.rgba")}),
                      0);
            EXPECT_EQ(firstDifference(frame("ffmpeg.rgba"), twfxFrame(entry, settings)), "");
        });
    EXPECT_GT(sources, 0);
}

// A source is a producer in melt.
TEST_P(HostsTest, MeltRendersEverySourceAsTwfxDoes) {
    forEachPlugin(F0R_PLUGIN_TYPE_SOURCE, [&](const EffectEntry& entry, const PluginDescription& plugin) {
        const HostSettings settings = settingsOf(entry, plugin, HostProgram::Melt);
        const std::vector<char> rendered =
            meltFrame({"frei0r." + pluginName(entry), "in=0", "out=1"}, settings);
        EXPECT_EQ(firstDifference(rendered, twfxFrame(entry, settings)), "");
    });
}

// A mixer2 is a transition: the lower track is the effect's own layer, the upper one its layer parameter.
TEST_P(HostsTest, MeltRendersEveryTwoLayerMixerAsATransitionAsTwfxDoes) {
    ASSERT_EQ(run({TW_FFMPEG, "-v", "error", "-y", "-i", TW_SAMPLE_IMAGE, "-vf", "hflip,format=rgba",
                   file("top.png")}),
              0);
    ASSERT_EQ(decode("top.png", "top.rgba"), 0);
    const int mixers = forEachPlugin(F0R_PLUGIN_TYPE_MIXER2, [&](const EffectEntry& entry,
                                                                 const PluginDescription& plugin) {
        const HostSettings settings = settingsOf(entry, plugin, HostProgram::Melt);
        const std::vector<char> rendered = meltFrame(
            {"-track", file("in.png"), "in=0", "out=1", "-track", file("top.png"), "in=0", "out=1",
             "-transition", "frei0r." + pluginName(entry), "in=0", "out=1", "a_track=0", "b_track=1"},
            settings);
        Param::Parameters params;
        params.records = plugin.defaultRecords();
        const auto layer = std::find_if(params.records.begin(), params.records.end(), [](const auto& record) {
            return record.kind == Param::ParamKind::Layer;
        });
        const std::string key = Tools::parameterKey(params, static_cast<int>(layer - params.records.begin()));
        const std::vector<char> expected =
            twfxFrame(entry, settings, {"--layer", key + "=" + file("top.png")});
        EXPECT_EQ(firstDifference(rendered, expected), "");
        // "Color Presets" shows a layer that no mixer fills: the frame it passes on is its own.
        if (changesThePicture(entry, plugin) && expected != twfxFrame(entry, settings)) {
            EXPECT_NE(rendered, frame("in.rgba"));
            EXPECT_NE(rendered, frame("top.rgba"));
        }
    });
    if (mixers == 0) GTEST_SKIP() << "the registry has no effect over two layers";
}

// The whole retouch as an editor sets it up in MLT: "Smoothing" on the upper track's copy of the frame,
// and "Presets" the transition that takes that track as its "Key Source". twfx retouch is the same frame.
TEST_P(HostsTest, MeltRetouchesAsTwfxRetouchDoes) {
    if (GetParam() != Settings::Defaults) GTEST_SKIP() << "the retouch runs at its defaults";
    const PluginDescription presets(effectNamed("PresetsEntry"));
    const std::vector<char> rendered =
        meltFrame({"-track", file("in.png"), "in=0", "out=1", "-track", file("in.png"), "in=0", "out=1",
                   "-filter", "frei0r.tw_smoothing", "-transition", "frei0r.tw_presets", "in=0", "out=1",
                   "a_track=0", "b_track=1"},
                  HostSettings(presets));
    const std::vector<std::string> retouch = {"retouch", "-i", file("in.png"), "-o",  file("twfx.png"),
                                              "--depth", "8",  "--order",      "bgra"};
    std::ostringstream out, err;
    ASSERT_EQ(Tools::Twfx::runTwfx(retouch, {out, err}), 0) << err.str();
    ASSERT_EQ(decode("twfx.png", "twfx.rgba"), 0);
    EXPECT_EQ(firstDifference(rendered, frame("twfx.rgba")), "");
    EXPECT_NE(rendered, frame("in.rgba"));
}

INSTANTIATE_TEST_SUITE_P(Settings, HostsTest,
                         ::testing::Values(Settings::Defaults, Settings::Busy, Settings::Varied), nameOf);

}  // namespace TW_FILE_LOCAL
}  // namespace Tw::Host::Frei0r
