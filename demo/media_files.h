// Pictures and sounds as files: bitmaps, JPEG and WAV, the same bytes on every machine.
#pragma once

#include "demo/canvas.h"

#include <string>

namespace korvadex::demo {

// A Windows bitmap with 24 bits to a pixel.
std::string Bitmap24(const Canvas& picture);
// A Windows bitmap with a palette of 252 colours, dithered as the liveries of that time were.
std::string Bitmap8(const Canvas& picture);
// A baseline JPEG, full colour resolution; quality from 1 to 100.
std::string Jpeg(const Canvas& picture, int quality);

// An engine that hums at that many turns a second: one second of sound, 8 bits, 22050 Hz, that repeats
// without a seam.
std::string EngineHum(int turnsPerSecond);
// Two tones in turn, as a warning horn gives them; half a second, 8 bits, 11025 Hz.
std::string WarningHorn();

} // namespace korvadex::demo
