// The two exceptions every part of the system throws.
//
// Tw::Exception carries a place and a text joined by ": ", which is what a user reads in the host's
// message. Tw::Interrupted is empty: it only unwinds a render that the host asked to stop, and the host's
// abort code says why.
#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace Tw {

class Exception : public std::runtime_error {
public:
    Exception(std::string_view place, std::string_view text)
        : std::runtime_error(std::string(place) + ": " + std::string(text)) {}
};

struct Interrupted {};

}  // namespace Tw
