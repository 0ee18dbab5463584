// tw_frei0r_place ENTRY MODULE FOLDER: copies the built plug-in module of the effect ENTRY into FOLDER
// under the effect's plug-in file name (tw_cie_cc.so for CIECCEntry). The name comes from the registry,
// which the build only has once the effects are compiled; so the build places each module after linking
// it, and the folder is what hosts and the tests load from and what installing copies.
#include <exception>
#include <filesystem>
#include <iostream>

#include "host/frei0r/PluginDescription.h"
#include "host/frei0r/PluginFileName.h"

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: tw_frei0r_place ENTRY MODULE FOLDER\n";
        return 2;
    }
    try {
        namespace fs = std::filesystem;
        const auto& effect = Tw::Host::Frei0r::effectNamed(argv[1]);
        const fs::path folder(argv[3]);
        const fs::path target =
            folder / (Tw::Host::Frei0r::pluginFileName(effect.entryName, effect.displayName) + ".so");
        // Copied beside the target and renamed over it, so that a host never loads half a module.
        const fs::path partial = fs::path(target).concat(".partial");
        fs::create_directories(folder);
        fs::copy_file(argv[2], partial, fs::copy_options::overwrite_existing);
        fs::rename(partial, target);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "tw_frei0r_place: " << error.what() << "\n";
        return 1;
    }
}
