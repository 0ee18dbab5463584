// Seams for running a graph on a compute device. No device context is ever created, so every operation
// that takes one receives null and keeps out of the way: no device is available, every node runs on the
// processor. The types exist so that the node's list of operations stays whole.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace Tw::Image {

struct DeviceContext;
struct DeviceImage;
struct DeviceProgram;

using DeviceImageHolder = std::shared_ptr<DeviceImage>;
using ProgramHolder = std::shared_ptr<DeviceProgram>;

// A node's device program: its lines, name, build options and switches. No filter ships one.
struct DeviceSource {
    std::vector<std::string> lines;
    std::string name;
    std::string options;
    std::vector<std::string> switches;
};

// One named kernel argument: up to four values of one kind.
struct DeviceArgument {
    std::string name;
    int kind = 0;
    float values[4] = {};
};

}  // namespace Tw::Image
