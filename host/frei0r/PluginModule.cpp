#include "host/frei0r/PluginModule.h"

const char* Tw::Host::Frei0r::moduleEntryName() {
    return TW_FREI0R_ENTRY;
}
