// Setting a parameter from the text a user types, in the units a host shows: sliders in their own units
// (percent sliders in percent, "50" or "50%"), integer sliders as whole numbers, checkboxes as on/off,
// true/false or 1/0, popups by item name or 0-based number, colours as "r,g,b" in 0..1, points as "x,y"
// fractions of the frame, text as it is.
#pragma once

#include <ostream>
#include <string_view>

#include "host/param/Parameters.h"

namespace Tw::Tools {

namespace Param = ::Tw::Host::Param;

// Sets the record at `index` through the list's clamping setters. A number outside the accepted range
// is set to the nearest bound, as a host's control would, with a warning on `warnings`. Throws ToolError
// with ExitCode::BadValue for text that is no value of the record's kind, and ExitCode::Usage for a
// record that takes no value from the command line (layers take theirs from --layer). A non-empty
// `origin` ("look.preset:4") heads the messages and warnings, for text that comes from a file.
void setParameterFromText(Param::Parameters& params, int index, std::string_view text, std::ostream& warnings,
                          std::string_view origin = {});

}  // namespace Tw::Tools
