// The file name of an effect's frei0r plug-in: "tw_" and the effect's entry name, without its "Entry",
// in lower snake case. A host finds a plug-in by this name (ffmpeg's filter_name, MLT's
// "frei0r.tw_smoothing"), so it must stay the same from one release to the next.
//
// The words are those of the display name wherever the display name spells the entry name ("CIE CC" for
// CIECCEntry gives cie_cc, which capitals alone could not tell); otherwise a capital starts a word, and
// so does the last capital of a run that a small letter follows (BalanceRGBEntry gives balance_rgb).
#pragma once

#include <string>
#include <string_view>

namespace Tw::Host::Frei0r {

// "tw_cie_cc" for ("CIECCEntry", "CIE CC"); without the ".so".
std::string pluginFileName(std::string_view entryName, std::string_view displayName);

}  // namespace Tw::Host::Frei0r
