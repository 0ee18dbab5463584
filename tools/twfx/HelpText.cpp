#include "tools/twfx/HelpText.h"

namespace Tw::Tools::Twfx {

void writeHelp(std::ostream& out) {
    out << R"(twfx: render Tesselworks effects on image files

Usage:
  twfx list                          the effects
  twfx params EFFECT [--save FILE]   an effect's parameters; --save writes them as a preset
  twfx render EFFECT -i IN -o OUT [options]
  twfx render GENERATOR --size WIDTHxHEIGHT -o OUT [options]
                                     a generator ("Ramp", "Gradient") paints a frame of that size
                                     (8-bit unless --depth says otherwise); with -i instead it paints
                                     a frame of the input's size and place
  twfx retouch -i IN -o OUT [options]
                                     the whole skin retouch: "Smoothing" on a copy of the image and
                                     "Presets" mixing that copy into it where colours are skin; --set
                                     takes either effect's labels ("Smoothing Amount=40", "Hue Range=12"),
                                     and a label both have the effect's name first ("Presets/Locked");
                                     `twfx params SkinRetouch` lists them
  twfx --help | --version

An effect is named by its display name ("Balance RGB") or its short name ("BalanceRGB"), in any case.

Render and retouch options:
  -i, --input FILE       the image: PNG, JPEG, TIFF, OpenEXR, DPX and others, 8-bit, 16-bit or float
  -o, --output FILE      where to write; the extension picks the format, the data format and the
                         channels follow the input; the file appears only when the render succeeds
  --size WIDTHxHEIGHT    a generator's frame, without -i: whole numbers from 1 to 65536
  --set "LABEL=VALUE"    a parameter, as a host shows it: sliders in their own units (percent sliders
                         in percent), checkboxes on/off, popups by item or number from 0, colours
                         r,g,b from 0 to 1, points x,y as fractions of the frame; a label that occurs
                         twice is written GROUP/LABEL; may be repeated
  --preset FILE          values saved by `twfx params EFFECT --save FILE`, applied before any --set
  --layer "LABEL=FILE"   the image of a layer parameter; may be repeated
  --depth 8|16|32        bits per component of the render (default: the input file's)
  --order argb|bgra      component order of the frames (default argb)
  --alpha straight|premultiplied
                         what the effect sees beside alpha: colour as the file stores it (default,
                         so that an effect at neutral settings gives back the file unchanged), or
                         colour multiplied by alpha, as After Effects hands over its layers; the
                         tool multiplies on the way in and divides again on the way out (a file
                         that already stores premultiplied colour, like OpenEXR, goes as it is)
  --downsample X[,Y]     render at a fraction of full resolution, each in (0, 1]; the output is smaller
  --threads N            worker threads, 1 to 1024 (default: one per processor)
  --frames A-B           render a sequence: IN and OUT hold the frame number as %04d (or %d)

A progress bar shows on standard error when it is a terminal; Ctrl-C cancels the render.

Exit codes:
  0    success
  1    the render failed, or there is not memory enough for an image
  2    usage error
  3    unreadable input, layer image or preset
  4    unwritable output
  5    unknown effect or parameter label, or an effect name that fits more than one effect
  6    a value that is not a number or not one of the items
  130  cancelled
)";
}

}  // namespace Tw::Tools::Twfx
