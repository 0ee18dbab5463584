#include "tools/twfx/CommandLine.h"

#include <limits>
#include <string_view>

#include "tools/common/ToolError.h"
#include "tools/common/UserText.h"

namespace Tw::Tools::Twfx {
namespace {

[[noreturn]] void usageError(const std::string& message) {
    throw ToolError(ExitCode::Usage, message + " (see twfx --help)");
}

struct Option {
    std::string name;
    std::string value;
};

// The words after the command: options with their values, and the plain words between them. Every
// option of the tool takes a value, written as the next word or after "=" ("--depth=16"); the next
// word is taken as it is, so a value may itself begin with "-".
struct Arguments {
    std::vector<Option> options;
    std::vector<std::string> words;
};

Arguments readArguments(std::span<const std::string> arguments) {
    Arguments read;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument.size() < 2 || argument.front() != '-') {
            read.words.push_back(argument);
            continue;
        }
        const std::size_t equals = argument.find('=');
        if (equals != std::string::npos) {
            read.options.push_back({argument.substr(0, equals), argument.substr(equals + 1)});
        } else if (i + 1 < arguments.size()) {
            read.options.push_back({argument, arguments[++i]});
        } else {
            usageError(argument + " needs a value");
        }
    }
    return read;
}

// The one effect name a command takes.
std::string effectName(const std::vector<std::string>& words, std::string_view command) {
    if (words.empty()) usageError(std::string(command) + " needs an effect name (twfx list shows them)");
    if (words.size() > 1) usageError("unexpected argument " + inQuotes(words[1]));
    return words.front();
}

template <class Value>
void setOnce(std::optional<Value>& target, Value value, const Option& option) {
    if (target) usageError(option.name + " is given twice");
    target = std::move(value);
}

Assignment assignmentOf(const Option& option, std::string_view what) {
    const std::size_t equals = option.value.find('=');
    if (equals == std::string::npos || trimmed(option.value.substr(0, equals)).empty()) {
        usageError(option.name + " takes " + inQuotes("LABEL=" + std::string(what)) + ", not " +
                   inQuotes(option.value));
    }
    return {std::string(trimmed(option.value.substr(0, equals))), option.value.substr(equals + 1)};
}

int depthOf(const Option& option) {
    const auto depth = parseInteger(option.value);
    if (!depth || (*depth != 8 && *depth != 16 && *depth != 32)) {
        usageError("--depth must be 8, 16 or 32, not " + inQuotes(option.value));
    }
    return static_cast<int>(*depth);
}

ComponentOrder orderOf(const Option& option) {
    if (equalsIgnoringCase(option.value, "argb")) return ComponentOrder::Argb;
    if (equalsIgnoringCase(option.value, "bgra")) return ComponentOrder::Bgra;
    usageError("--order must be argb or bgra, not " + inQuotes(option.value));
}

AlphaMode alphaOf(const Option& option) {
    if (equalsIgnoringCase(option.value, "straight")) return AlphaMode::Straight;
    if (equalsIgnoringCase(option.value, "premultiplied")) return AlphaMode::Premultiplied;
    usageError("--alpha must be straight or premultiplied, not " + inQuotes(option.value));
}

Downsample downsampleOf(const Option& option) {
    const auto parts = splitAtCommas(option.value);
    std::vector<double> factors;
    for (const std::string_view part : parts) {
        const auto factor = parseNumber(part);
        if (!factor || *factor <= 0 || *factor > 1 || parts.size() > 2) {
            usageError("--downsample takes X or X,Y with each factor above 0 and at most 1, not " +
                       inQuotes(option.value));
        }
        factors.push_back(*factor);
    }
    return {factors.front(), factors.back()};
}

// Each worker takes one band of every pass, so far more workers than any machine has only slice the frame
// into empty bands, at a cost for each.
constexpr long long kMostThreads = 1024;

std::uint32_t threadsOf(const Option& option) {
    const auto threads = parseInteger(option.value);
    if (!threads || *threads < 1 || *threads > kMostThreads) {
        usageError("--threads must be a whole number from 1 to " + std::to_string(kMostThreads) + ", not " +
                   inQuotes(option.value));
    }
    return static_cast<std::uint32_t>(*threads);
}

// The largest side --size takes: beyond any frame a host renders.
constexpr long long kLargestSide = 65536;

// "WIDTHxHEIGHT".
FrameSize sizeOf(const Option& option) {
    const std::size_t cross = option.value.find_first_of("xX");
    const auto width = parseInteger(option.value.substr(0, cross));
    const auto height =
        cross == std::string::npos ? std::nullopt : parseInteger(option.value.substr(cross + 1));
    if (!width || !height || *width < 1 || *height < 1 || *width > kLargestSide || *height > kLargestSide) {
        usageError("--size takes WIDTHxHEIGHT, whole numbers from 1 to " + std::to_string(kLargestSide) +
                   " such as 1920x1080, not " + inQuotes(option.value));
    }
    return {static_cast<std::int32_t>(*width), static_cast<std::int32_t>(*height)};
}

// "A-B", or "A" for one frame.
FrameRange framesOf(const Option& option) {
    const std::size_t dash = option.value.find('-');
    const auto first = parseInteger(option.value.substr(0, dash));
    const auto last = dash == std::string::npos ? first : parseInteger(option.value.substr(dash + 1));
    constexpr long long kMaxFrame = std::numeric_limits<int>::max();
    if (!first || !last || *first < 0 || *last < *first || *last > kMaxFrame) {
        usageError("--frames takes FIRST-LAST, frame numbers from 0 with FIRST <= LAST, not " +
                   inQuotes(option.value));
    }
    return {static_cast<int>(*first), static_cast<int>(*last)};
}

ParamsRequest paramsRequest(const Arguments& arguments) {
    ParamsRequest request{effectName(arguments.words, "params"), std::nullopt};
    for (const Option& option : arguments.options) {
        if (option.name != "--save") usageError("params takes no option " + option.name);
        setOnce(request.presetToSave, option.value, option);
    }
    return request;
}

// `render EFFECT ...`, or `retouch ...`, which renders the whole skin retouch with the same options.
RenderRequest renderRequest(const Arguments& arguments, std::string_view command) {
    RenderRequest request;
    if (command == "retouch") {
        if (!arguments.words.empty()) usageError("retouch takes no effect name, only options");
        request.effect = "SkinRetouch";
    } else {
        request.effect = effectName(arguments.words, "render");
    }
    std::optional<std::string> input, output;
    std::optional<ComponentOrder> order;
    std::optional<AlphaMode> alpha;
    std::optional<std::uint32_t> threads;
    std::optional<Downsample> downsample;
    for (const Option& option : arguments.options) {
        const std::string& name = option.name;
        if (name == "-i" || name == "--input") {
            setOnce(input, option.value, option);
        } else if (name == "-o" || name == "--output") {
            setOnce(output, option.value, option);
        } else if (name == "--set") {
            request.settings.push_back(assignmentOf(option, "VALUE"));
        } else if (name == "--layer") {
            request.layers.push_back(assignmentOf(option, "FILE"));
        } else if (name == "--preset") {
            setOnce(request.preset, option.value, option);
        } else if (name == "--depth") {
            setOnce(request.depth, depthOf(option), option);
        } else if (name == "--order") {
            setOnce(order, orderOf(option), option);
        } else if (name == "--alpha") {
            setOnce(alpha, alphaOf(option), option);
        } else if (name == "--downsample") {
            setOnce(downsample, downsampleOf(option), option);
        } else if (name == "--threads") {
            setOnce(threads, threadsOf(option), option);
        } else if (name == "--size") {
            setOnce(request.size, sizeOf(option), option);
        } else if (name == "--frames") {
            setOnce(request.frames, framesOf(option), option);
        } else {
            usageError("unknown option " + name);
        }
    }
    // Whether the effect can do without an input is for the effect to say, once it is found.
    if (!input && !request.size) {
        usageError(std::string(command) +
                   " needs an input image: -i FILE (a generator takes --size instead)");
    }
    if (input && request.size) {
        usageError("--size is for a generator without -i; with -i the frame is the input's");
    }
    if (!output) usageError(std::string(command) + " needs an output image: -o FILE");
    request.input = input.value_or("");
    request.output = *output;
    request.order = order.value_or(ComponentOrder::Argb);
    request.alpha = alpha.value_or(AlphaMode::Straight);
    request.threads = threads.value_or(0);
    request.downsample = downsample.value_or(Downsample{});
    return request;
}

}  // namespace

Request parseCommandLine(std::span<const std::string> arguments) {
    for (const std::string& argument : arguments) {
        if (argument == "-h" || argument == "--help") return HelpRequest{};
    }
    if (arguments.empty()) usageError("no command given");
    const std::string& command = arguments.front();
    const Arguments rest = readArguments(arguments.subspan(1));
    if (command == "help") return HelpRequest{};
    if (command == "--version") return VersionRequest{};
    if (command == "list") {
        if (!rest.words.empty() || !rest.options.empty()) usageError("list takes no arguments");
        return ListRequest{};
    }
    if (command == "params") return paramsRequest(rest);
    if (command == "render" || command == "retouch") return renderRequest(rest, command);
    usageError("unknown command " + inQuotes(command));
}

}  // namespace Tw::Tools::Twfx
