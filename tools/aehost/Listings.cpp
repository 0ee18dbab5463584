#include "tools/aehost/Listings.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "tools/aehost/LoadedEffect.h"
#include "tools/common/ParameterListing.h"

namespace Tw::Tools::AeHost {

void listEffects(const ListRequest& request, std::ostream& out) {
    const auto bundle = loadBundle(request.bundle);
    std::vector<std::array<std::string, 3>> rows = {{"ENTRY", "SHORT NAME", "EFFECT"}};
    for (const BundleEffect& effect : effectsOf(*bundle)) {
        rows.push_back({effect.entryName, std::string(shortNameOf(effect.entryName)), effect.displayName});
    }
    std::array<std::size_t, 2> widths{};
    for (const auto& row : rows) {
        widths[0] = std::max(widths[0], row[0].size());
        widths[1] = std::max(widths[1], row[1].size());
    }
    for (const auto& row : rows) {
        out << row[0] << std::string(widths[0] - row[0].size() + 2, ' ') << row[1]
            << std::string(widths[1] - row[1].size() + 2, ' ') << row[2] << "\n";
    }
}

void listParameters(const ParamsRequest& request, const Console& console) {
    LoadedEffect loaded(request.bundle, request.effect, console.err);
    Param::Parameters params;
    loaded.setUp(HostSettings{}).describeParameters(params);
    console.out << loaded.effect().entryName << ", parameters in host order from host index 1:\n\n";
    writeParameterTable(console.out, params);
    loaded.reportFaults();
}

}  // namespace Tw::Tools::AeHost
