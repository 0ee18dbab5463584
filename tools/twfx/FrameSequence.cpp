#include "tools/twfx/FrameSequence.h"

#include <regex>

#include "tools/common/UserText.h"

namespace Tw::Tools::Twfx {
namespace {

const std::regex& framePattern() {
    static const std::regex pattern("%(0[1-9][0-9]?)?d");
    return pattern;
}

}  // namespace

bool hasFramePattern(std::string_view path) {
    return std::regex_search(path.begin(), path.end(), framePattern());
}

std::string pathOfFrame(std::string_view path, int frame) {
    std::string result;
    auto rest = path.begin();
    for (std::regex_iterator<std::string_view::const_iterator>
             match(path.begin(), path.end(), framePattern()),
         end;
         match != end; ++match) {
        // The pattern allows two digits at most, so the width always reads.
        const std::size_t width =
            (*match)[1].matched ? static_cast<std::size_t>(*parseInteger((*match)[1].str())) : 0;
        std::string number = std::to_string(frame);
        if (number.size() < width) number.insert(0, width - number.size(), '0');
        result.append(rest, (*match)[0].first).append(number);
        rest = (*match)[0].second;
    }
    return result.append(rest, path.end());
}

}  // namespace Tw::Tools::Twfx
