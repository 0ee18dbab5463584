#include "tools/aehost/HelpText.h"

namespace Tw::Tools::AeHost {

void writeHelp(std::ostream& out) {
    out << R"(aehost: run an After Effects effect bundle built for Linux, as After Effects or Premiere Pro would

Usage:
  aehost list BUNDLE                  the effects the bundle exports
  aehost params BUNDLE EFFECT         the parameters the effect adds, with kind, default and range
  aehost render BUNDLE EFFECT -i IN -o OUT [options]
  aehost --help

An effect is named by its entry name, with or without "Entry" ("SmoothingEntry", "Smoothing"), in any
case, or by its display name where only one effect has it.

The render sends the effect the host's commands: global setup, parameter setup, sequence setup, then
smart pre-render and smart render (or plain render), with the host's callbacks and suites, and checks
after each command what a real host relies on: suites released, parameters and layers checked in, worlds
disposed of, no write outside a world, no sequence data left unflattened; and it ends with sequence and
global setdown, after which the effect may hold no memory of the host's. Every breach is a protocol
fault.

Render options:
  -i, --input FILE         the image: PNG, JPEG, TIFF, OpenEXR, DPX and others
  -o, --output FILE        where to write; the extension picks the format, the data format and the
                           channels follow the input
  --set "LABEL=VALUE"      a parameter, as in twfx: sliders in their own units (percent sliders in
                           percent), checkboxes on/off, popups by item or number from 0, colours r,g,b
                           from 0 to 1, points x,y as fractions of the frame; a label that occurs twice
                           is written GROUP/LABEL; may be repeated
  --layer "LABEL=FILE"     the image of a layer parameter; may be repeated
  --depth 8|16|32          bits per component of the host's worlds (default: the input file's)
  --premiere               run as Premiere Pro: its application id, BGRA worlds and pixel formats
  --plain                  PF_Cmd_RENDER with the parameter array instead of the smart render
  --negative-rowbytes      worlds whose rows run up in memory
  --reopen                 save the project and open it again before the render: sequence flatten,
                           text values flattened and unflattened through the effect, sequence resetup
  --downsample X[,Y]       render at a fraction of full resolution, each 1/N, N/D or a decimal such as
                           0.5; the input is scaled to it and the output is smaller
  --workers N              workers of iterate_generic, the calling thread among them (default 4)
  --cancel-at-progress N   answer PF_Interrupt_CANCEL from the Nth progress call on
  --refuse-allocations-from N
                           refuse the Nth allocation (handle or world) and every later one

Exit codes:
  0    success
  1    the render failed: the effect answered a command with an error
  2    usage error
  3    unreadable input or layer image
  4    unwritable output
  5    unknown effect or parameter label, or a name that fits more than one effect
  6    a value that is not a number or not one of the items
  7    the bundle can't be loaded
  8    the effect broke the protocol; the faults are listed, and a rendered image is still written
)";
}

}  // namespace Tw::Tools::AeHost
