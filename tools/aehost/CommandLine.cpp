#include "tools/aehost/CommandLine.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <string_view>

#include "tools/common/ToolError.h"
#include "tools/common/UserText.h"

namespace Tw::Tools::AeHost {
namespace {

[[noreturn]] void usageError(const std::string& message) {
    throw ToolError(ExitCode::Usage, message + " (see aehost --help)");
}

// The plain words of a command: its bundle and effect.
std::vector<std::string> wordsOf(std::span<const std::string> arguments, std::size_t count,
                                 std::string_view usage) {
    if (arguments.size() < count) usageError(std::string(usage) + " is missing an argument");
    for (std::size_t i = 0; i < count; ++i) {
        if (arguments[i].starts_with("-")) usageError(std::string(usage) + " is missing an argument");
    }
    return {arguments.begin(), arguments.begin() + static_cast<std::ptrdiff_t>(count)};
}

void expectNothingAfter(std::span<const std::string> rest) {
    if (!rest.empty()) usageError("unexpected argument " + inQuotes(rest.front()));
}

Assignment assignmentOf(std::string_view option, const std::string& value, std::string_view what) {
    const std::size_t equals = value.find('=');
    if (equals == std::string::npos || trimmed(std::string_view(value).substr(0, equals)).empty()) {
        usageError(std::string(option) + " takes " + inQuotes("LABEL=" + std::string(what)) + ", not " +
                   inQuotes(value));
    }
    return {std::string(trimmed(std::string_view(value).substr(0, equals))), value.substr(equals + 1)};
}

// A count from `lowest`, as the switches that pick a call or a number of workers take.
int countOf(std::string_view option, const std::string& value, int lowest) {
    const auto number = parseInteger(value);
    if (!number || *number < lowest || *number > std::numeric_limits<int>::max()) {
        usageError(std::string(option) + " takes a whole number from " + std::to_string(lowest) + ", not " +
                   inQuotes(value));
    }
    return static_cast<int>(*number);
}

// The host's downsampling is a ratio: "1/2", or a decimal that is one, with a denominator up to 64.
std::optional<PF_RationalScale> ratioOf(std::string_view text) {
    const std::size_t slash = text.find('/');
    if (slash != std::string_view::npos) {
        const auto num = parseInteger(text.substr(0, slash));
        const auto den = parseInteger(text.substr(slash + 1));
        if (!num || !den || *num < 1 || *den < *num || *den > std::numeric_limits<A_long>::max())
            return std::nullopt;
        return PF_RationalScale{static_cast<A_long>(*num), static_cast<A_u_long>(*den)};
    }
    const auto value = parseNumber(text);
    if (!value || *value <= 0 || *value > 1) return std::nullopt;
    for (A_u_long den = 1; den <= 64; ++den) {
        const double num = *value * den;
        if (num == static_cast<double>(static_cast<A_long>(num)))
            return PF_RationalScale{static_cast<A_long>(num), den};
    }
    return std::nullopt;
}

void setDownsample(HostSettings& host, const std::string& value) {
    const auto parts = splitAtCommas(value);
    const auto x = ratioOf(parts.front());
    const auto y = ratioOf(parts.back());
    if (parts.size() > 2 || !x || !y) {
        usageError(
            "--downsample takes X or X,Y, each a fraction of full resolution such as 1/2 or 0.25, not " +
            inQuotes(value));
    }
    host.downsampleX = *x;
    host.downsampleY = *y;
}

RenderRequest renderRequest(std::span<const std::string> arguments) {
    const std::vector<std::string> words = wordsOf(arguments, 2, "render BUNDLE EFFECT");
    RenderRequest request;
    request.bundle = words[0];
    request.effect = words[1];
    // Switches that take no value.
    const std::map<std::string_view, std::function<void()>> flags = {
        {"--premiere", [&] { request.host.application = Application::PremierePro; }},
        {"--negative-rowbytes", [&] { request.host.negativeRowBytes = true; }},
        {"--plain", [&] { request.mode = RenderMode::Plain; }},
        {"--reopen", [&] { request.reopen = true; }},
    };
    const std::map<std::string_view, std::function<void(std::string_view, const std::string&)>> options = {
        {"-i", [&](auto, const std::string& value) { request.input = value; }},
        {"-o", [&](auto, const std::string& value) { request.output = value; }},
        {"--set",
         [&](auto name, const std::string& value) {
             request.settings.push_back(assignmentOf(name, value, "VALUE"));
         }},
        {"--layer",
         [&](auto name, const std::string& value) {
             request.layers.push_back(assignmentOf(name, value, "FILE"));
         }},
        {"--depth",
         [&](auto, const std::string& value) {
             const auto depth = parseInteger(value);
             if (!depth || (*depth != 8 && *depth != 16 && *depth != 32))
                 usageError("--depth must be 8, 16 or 32, not " + inQuotes(value));
             request.host.depth = static_cast<int>(*depth);
             request.depthGiven = true;
         }},
        {"--downsample", [&](auto, const std::string& value) { setDownsample(request.host, value); }},
        {"--workers",
         [&](auto name, const std::string& value) { request.host.workerCount = countOf(name, value, 1); }},
        {"--cancel-at-progress",
         [&](auto name, const std::string& value) {
             request.host.cancelAtProgressCall = countOf(name, value, 1);
         }},
        {"--refuse-allocations-from",
         [&](auto name, const std::string& value) {
             request.host.refuseAllocationsFrom = countOf(name, value, 1);
         }},
    };

    const std::span<const std::string> rest = arguments.subspan(2);
    for (std::size_t i = 0; i < rest.size(); ++i) {
        std::string name = rest[i];
        std::optional<std::string> value;
        if (const std::size_t equals = name.find('=');
            name.starts_with("--") && equals != std::string::npos) {
            value = name.substr(equals + 1);
            name.resize(equals);
        }
        if (name == "--input") name = "-i";
        if (name == "--output") name = "-o";
        if (const auto flag = flags.find(name); flag != flags.end() && !value) {
            flag->second();
        } else if (const auto option = options.find(name); option != options.end()) {
            if (!value && i + 1 == rest.size()) usageError(name + " needs a value");
            option->second(name, value ? *value : rest[++i]);
        } else {
            usageError(name.starts_with("-") ? "unknown option " + name
                                             : "unexpected argument " + inQuotes(name));
        }
    }
    if (request.input.empty()) usageError("render needs an input image: -i FILE");
    if (request.output.empty()) usageError("render needs an output image: -o FILE");
    return request;
}

}  // namespace

Request parseCommandLine(std::span<const std::string> arguments) {
    const auto asksForHelp = [](const std::string& word) { return word == "-h" || word == "--help"; };
    if (std::ranges::any_of(arguments, asksForHelp)) return HelpRequest{};
    if (arguments.empty()) usageError("no command given");
    const std::string& command = arguments.front();
    const std::span<const std::string> rest = arguments.subspan(1);
    if (command == "help") return HelpRequest{};
    if (command == "list") {
        const std::vector<std::string> words = wordsOf(rest, 1, "list BUNDLE");
        expectNothingAfter(rest.subspan(1));
        return ListRequest{words[0]};
    }
    if (command == "params") {
        const std::vector<std::string> words = wordsOf(rest, 2, "params BUNDLE EFFECT");
        expectNothingAfter(rest.subspan(2));
        return ParamsRequest{words[0], words[1]};
    }
    if (command == "render") return renderRequest(rest);
    usageError("unknown command " + inQuotes(command));
}

}  // namespace Tw::Tools::AeHost
