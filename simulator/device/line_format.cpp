#include "simulator/device/line_format.h"

#include <algorithm>
#include <array>

#include "simulator/page/sampling.h"

namespace simulator {
namespace {

using Samples = std::vector<std::uint16_t>;

// The weights add up to 65536, so that equal channels stay what they are.
std::uint16_t Grey(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
  return static_cast<std::uint16_t>((19595 * red + 38470 * green + 7471 * blue + 32768) >> 16);
}

Samples ColorSamples(const ScanRequest& request, std::span<const std::uint16_t> rgb) {
  const bool blueFirst = request.colorMode == ColorMode::kBlueGreenRed;
  const std::array<std::size_t, 3> order =
      blueFirst ? std::array<std::size_t, 3>{2, 1, 0} : std::array<std::size_t, 3>{0, 1, 2};
  Samples samples(rgb.size());
  for (std::size_t pixel = 0; pixel < rgb.size(); pixel += 3) {
    for (std::size_t i = 0; i < 3; ++i) {
      samples[pixel + i] =
          request.gamma.OnAll(request.gamma.OnChannel(order[i], rgb[pixel + order[i]]));
    }
  }
  return samples;
}

Samples ChannelSamples(const ScanRequest& request, std::span<const std::uint16_t> rgb) {
  const std::size_t channel = static_cast<std::size_t>(request.colorMode) - 1;
  Samples samples(rgb.size() / 3);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const std::uint16_t sample = request.gamma.OnChannel(channel, rgb[3 * i + channel]);
    samples[i] = request.gamma.OnAll(sample);
  }
  return samples;
}

Samples GreySamples(const ScanRequest& request, std::span<const std::uint16_t> rgb) {
  const GammaTables& gamma = request.gamma;
  Samples samples(rgb.size() / 3);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const std::uint16_t* const pixel = &rgb[3 * i];
    samples[i] = gamma.OnAll(Grey(gamma.OnChannel(0, pixel[0]), gamma.OnChannel(1, pixel[1]),
                                  gamma.OnChannel(2, pixel[2])));
  }
  return samples;
}

Samples SamplesOf(const ScanRequest& request, std::span<const std::uint16_t> rgb) {
  if (IsColor(request.colorMode)) return ColorSamples(request, rgb);
  if (request.colorMode == ColorMode::kGrey) return GreySamples(request, rgb);
  return ChannelSamples(request, rgb);
}

std::size_t ChannelsOf(const ScanRequest& request) {
  return IsColor(request.colorMode) ? 3 : 1;
}

// Makes black and white of the samples.
void Screen(const ScanRequest& request, std::uint32_t index, Samples& samples) {
  const std::size_t channels = ChannelsOf(request);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const auto x = request.left + static_cast<std::uint32_t>(i / channels);
    const bool isWhite =
        IsWhite(request.screen, request.threshold, samples[i], x, request.top + index);
    samples[i] = isWhite ? 0xFFFF : 0;
  }
}

void SwapLeftAndRight(std::size_t channels, Samples& samples) {
  std::reverse(samples.begin(), samples.end());
  for (std::size_t i = 0; i + channels <= samples.size(); i += channels) {
    const auto pixel = samples.begin() + static_cast<std::ptrdiff_t>(i);
    std::reverse(pixel, pixel + static_cast<std::ptrdiff_t>(channels));
  }
}

// The samples in the order of the wire: one or three a pixel.
Samples WireSamples(const ScanRequest& request, std::span<const std::uint16_t> rgb,
                    std::uint32_t index) {
  Samples corrected;
  if (request.colorMatrix) {
    corrected.assign(rgb.begin(), rgb.end());
    ApplyMatrix(*request.colorMatrix, corrected);
    rgb = corrected;
  }
  Samples samples = SamplesOf(request, rgb);
  Brighten(request.brightness, samples);
  if (request.bits == 1) Screen(request, index, samples);
  if (request.mirrored) SwapLeftAndRight(ChannelsOf(request), samples);
  return samples;
}

// One sample of a column and line, sharpened by those around it; where none is, by itself.
std::uint16_t SharpenedSample(const Picture& picture, const ScanRequest& request, std::uint32_t x,
                              std::uint32_t y, std::size_t channel) {
  const auto at = [&](std::uint32_t column, std::uint32_t row) -> std::uint32_t {
    return ScannedPixel(picture, request.dotsPerInch, column, row)[channel];
  };
  const std::uint32_t sample = at(x, y);
  if (request.sharpness == 0) return static_cast<std::uint16_t>(sample);
  const std::uint32_t sum =
      at(x > 0 ? x - 1 : 0, y) + at(x + 1, y) + at(x, y > 0 ? y - 1 : 0) + at(x, y + 1);
  return Sharpened(request.sharpness, static_cast<std::uint16_t>(sample), sum);
}

bool PacksNibbles(const ScanRequest& request) {
  return request.packsNibbles && !IsColor(request.colorMode);
}

void Append1Bit(const Samples& samples, std::vector<std::uint8_t>& target) {
  for (std::size_t first = 0; first < samples.size(); first += 8) {
    unsigned byte = 0;
    for (std::size_t i = first; i < std::min(first + 8, samples.size()); ++i) {
      byte |= (samples[i] >> 15 & 1U) << (7 - (i - first));
    }
    target.push_back(static_cast<std::uint8_t>(byte));
  }
}

// `channels` is 1 or 3.
void Append4Bits(const Samples& samples, std::size_t channels, std::vector<std::uint8_t>& target) {
  for (std::size_t first = 0; first < samples.size(); first += 2 * channels) {
    for (std::size_t i = 0; i < 3; ++i) {
      const std::size_t left = first + i % channels;
      const std::size_t right = left + channels;
      const unsigned low = right < samples.size() ? samples[right] >> 12 : 0U;
      target.push_back(static_cast<std::uint8_t>((samples[left] >> 8 & 0xF0) | low));
    }
  }
}

// Two pixels a byte, the high `bits` bits of each sample in the high bits of its half.
void AppendNibbles(const Samples& samples, std::uint8_t bits, std::vector<std::uint8_t>& target) {
  const unsigned mask = 0xF0U << (4 - bits) & 0xF0U;
  for (std::size_t i = 0; i < samples.size(); i += 2) {
    const unsigned left = samples[i] >> 8 & mask;
    const unsigned right = i + 1 < samples.size() ? samples[i + 1] >> 8 & mask : 0U;
    target.push_back(static_cast<std::uint8_t>(left | right >> 4));
  }
}

void AppendPlanes(const Samples& rgb, std::uint8_t bits, std::vector<std::uint8_t>& target) {
  Samples plane(rgb.size() / 3);
  for (std::size_t channel = 0; channel < 3; ++channel) {
    for (std::size_t i = 0; i < plane.size(); ++i) plane[i] = rgb[3 * i + channel];
    if (bits == 1) {
      Append1Bit(plane, target);
    } else {
      AppendNibbles(plane, bits, target);
    }
  }
}

void Append8Bits(const Samples& samples, std::vector<std::uint8_t>& target) {
  for (const std::uint16_t sample : samples) {
    target.push_back(static_cast<std::uint8_t>(sample >> 8));
  }
}

void AppendWide(const Samples& samples, std::uint8_t bits, std::vector<std::uint8_t>& target) {
  const unsigned mask = 0xFFFFU << (16 - bits);
  for (const std::uint16_t sample : samples) {
    target.push_back(static_cast<std::uint8_t>(sample & mask));
    target.push_back(static_cast<std::uint8_t>(sample >> 8));
  }
}

void AppendSamples(const ScanRequest& request, const Samples& samples,
                   std::vector<std::uint8_t>& target) {
  switch (request.bits) {
    case 1:
      return Append1Bit(samples, target);
    case 4:
      if (PacksNibbles(request)) return AppendNibbles(samples, 4, target);
      return Append4Bits(samples, IsColor(request.colorMode) ? 3 : 1, target);
    case 8:
      return Append8Bits(samples, target);
    default:
      return AppendWide(samples, request.bits, target);
  }
}

}  // namespace

std::uint32_t LineBytes(const ScanRequest& request) {
  const std::uint32_t oneBit = (request.width + 7) / 8;
  const std::uint32_t nibbles = (request.width + 1) / 2;
  if (request.colorMode == ColorMode::kPlanes) return 3 * (request.bits == 1 ? oneBit : nibbles);
  if (request.bits == 1) return oneBit;
  if (request.bits == 4) return PacksNibbles(request) ? nibbles : request.width * 2;
  return request.width * (IsColor(request.colorMode) ? 3 : 1) * (request.bits > 8 ? 2 : 1);
}

void AppendLine(const ScanRequest& request, std::span<const std::uint16_t> rgb,
                std::vector<std::uint8_t>& target, std::uint32_t index) {
  const std::size_t end = target.size() + LineBytes(request);
  const Samples samples = WireSamples(request, rgb, index);
  if (request.colorMode == ColorMode::kPlanes) {
    AppendPlanes(samples, request.bits, target);
  } else {
    AppendSamples(request, samples, target);
  }
  target.resize(end);
}

std::vector<std::uint8_t> ScannedArea(const Picture& picture, const ScanRequest& request) {
  std::vector<std::uint8_t> area;
  Samples rgb;
  for (std::uint32_t y = 0; y < request.height; ++y) {
    rgb.clear();
    for (std::uint32_t x = 0; x < request.width; ++x) {
      for (std::size_t channel = 0; channel < 3; ++channel) {
        rgb.push_back(
            SharpenedSample(picture, request, request.left + x, request.top + y, channel));
      }
    }
    AppendLine(request, rgb, area, y);
  }
  return area;
}

}  // namespace simulator
