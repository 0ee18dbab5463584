// The switches of the simulated After Effects host: what real hosts vary and what a caller may provoke.
// The defaults are After Effects on a 13.x interface with four workers, 8-bit worlds whose rows run down
// in memory, full resolution, every suite offered and nothing refused.
#pragma once

#include <cstdint>

#include "host/ae/sdk/AeSdk.h"

namespace Tw::Tools::AeHost {

enum class Application { AfterEffects, PremierePro };

struct HostSettings {
    // After Effects ('FXTC') or Premiere Pro ('PrMr'), which also decides the worlds' component order:
    // ARGB worlds in After Effects, BGRA worlds in Premiere Pro.
    Application application = Application::AfterEffects;
    // What CFBundleGetVersionNumber answers: the major version in the top byte, minor and bug-fix in the
    // next two nibbles, as binary-coded decimals (9.0.2 is 0x09028000, 23.0 is 0x23008000).
    uint32_t bundleVersion = 0x23008000;

    // in_data->version; under 12 the utility callbacks have no iterate_generic.
    A_short apiMajor = 13;
    A_short apiMinor = 28;
    // Workers of iterate_generic, the calling thread being worker 0.
    int workerCount = 4;

    // Bits per channel of every world the host hands over: 8, 16 or 32.
    int depth = 8;
    // Worlds whose rows run up in memory: data is the top row, at the highest address.
    bool negativeRowBytes = false;
    PF_RationalScale downsampleX{1, 1};
    PF_RationalScale downsampleY{1, 1};

    // The Nth call of inter.progress, or of inter.abort, and every later one answers PF_Interrupt_CANCEL;
    // 0 never does.
    int cancelAtProgressCall = 0;
    int cancelAtAbortCall = 0;
    // The Nth allocation (host_new_handle, PF_NewWorld, new_world, NewWorldOfPixelFormat) and every later
    // one is refused; 0 refuses none.
    int refuseAllocationsFrom = 0;

    // A null pica_basicP: no suite at all.
    bool basicSuite = true;
    // The suites the adapter acquires without calling: "AEGP Render Suite" and "AEGP Layer Render Options
    // Suite" under After Effects, "PF Utility Suite" and "Opaque Effect Data Suite" under Premiere Pro.
    bool optionalSuites = true;
    // After Effects' version 2 of "PF Pixel Format Suite" beside Premiere's version 1.
    bool pixelFormatSuite2 = true;
};

}  // namespace Tw::Tools::AeHost
