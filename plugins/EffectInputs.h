#pragma once

namespace Tw::Plugins {

// What an effect reads: its own layer alone, nothing (a generator fills the frame), or further layers
// chosen in layer parameters.
enum class EffectInputs { Filter, Generator, Layers };

}  // namespace Tw::Plugins
