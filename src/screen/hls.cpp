// The colour editor's integer conversion between red-green-blue and
// hue-luminance-saturation. Rounding is done in integers throughout, so the
// scales show the same numbers for the same colour every time.
#include "screen/colours.h"

#include <algorithm>

namespace {

constexpr int kHlsMax = 240;
constexpr int kRgbMax = 255;
// Grey has no hue; it shows as this one.
constexpr int kUndefinedHue = kHlsMax * 2 / 3;

int HueToChannel(int n1, int n2, int hue)
{
    if (hue < 0) hue += kHlsMax;
    if (hue > kHlsMax) hue -= kHlsMax;
    if (hue < kHlsMax / 6) return n1 + ((n2 - n1) * hue + kHlsMax / 12) / (kHlsMax / 6);
    if (hue < kHlsMax / 2) return n2;
    if (hue < kHlsMax * 2 / 3) return n1 + ((n2 - n1) * (kHlsMax * 2 / 3 - hue) + kHlsMax / 12) / (kHlsMax / 6);
    return n1;
}

int ToRgbScale(int channel) { return std::clamp((channel * kRgbMax + kHlsMax / 2) / kHlsMax, 0, kRgbMax); }

} // namespace

HlsColour RgbToHls(COLORREF rgb)
{
    int r = GetRValue(rgb), g = GetGValue(rgb), b = GetBValue(rgb);
    int high = std::max({r, g, b}), low = std::min({r, g, b});
    HlsColour hls{kUndefinedHue, ((high + low) * kHlsMax + kRgbMax) / (2 * kRgbMax), 0};
    if (high == low) return hls;
    int spread = high - low;
    if (hls.Luminance <= kHlsMax / 2) hls.Saturation = (spread * kHlsMax + (high + low) / 2) / (high + low);
    else
        hls.Saturation = (spread * kHlsMax + (2 * kRgbMax - high - low) / 2) / (2 * kRgbMax - high - low);
    auto delta = [&](int channel) { return ((high - channel) * (kHlsMax / 6) + spread / 2) / spread; };
    if (r == high) hls.Hue = delta(b) - delta(g);
    else if (g == high) hls.Hue = kHlsMax / 3 + delta(r) - delta(b);
    else hls.Hue = kHlsMax * 2 / 3 + delta(g) - delta(r);
    if (hls.Hue < 0) hls.Hue += kHlsMax;
    if (hls.Hue > kHlsMax) hls.Hue -= kHlsMax;
    return hls;
}

COLORREF HlsToRgb(HlsColour hls)
{
    int hue = hls.Hue, lum = hls.Luminance, sat = hls.Saturation;
    if (sat == 0) {
        int grey = std::clamp(lum * kRgbMax / kHlsMax, 0, kRgbMax);
        return RGB(grey, grey, grey);
    }
    int high = lum <= kHlsMax / 2 ? (lum * (kHlsMax + sat) + kHlsMax / 2) / kHlsMax
                                  : lum + sat - (lum * sat + kHlsMax / 2) / kHlsMax;
    int low = 2 * lum - high;
    return RGB(ToRgbScale(HueToChannel(low, high, hue + kHlsMax / 3)), ToRgbScale(HueToChannel(low, high, hue)),
               ToRgbScale(HueToChannel(low, high, hue - kHlsMax / 3)));
}
