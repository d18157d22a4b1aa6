#pragma once

#include "wire/gamma_codes.h"
#include "wire/named_field.h"
#include "wire/value_names.h"
#include "wire/wire_block.h"

namespace pmddb832 {

// Sent behind FS "W". Bytes without a field stay 0.
using ParameterBlock = std::array<std::uint8_t, 64>;

namespace parameter {

inline constexpr Field<std::uint32_t, 0> kMainResolution;  // dots per inch
inline constexpr Field<std::uint32_t, 4> kSubResolution;   // dots per inch
inline constexpr Field<std::uint32_t, 8> kAreaLeft;        // pixels at the scan resolution
inline constexpr Field<std::uint32_t, 12> kAreaTop;
inline constexpr Field<std::uint32_t, 16> kAreaWidth;
inline constexpr Field<std::uint32_t, 20> kAreaHeight;
inline constexpr Field<std::uint8_t, 24> kColorMode;
inline constexpr Field<std::uint8_t, 25> kBitsPerSample;
inline constexpr Field<std::uint8_t, 26> kOptionUnit;
inline constexpr Field<std::uint8_t, 27> kParamG;
inline constexpr Field<std::uint8_t, 28> kLinesPerBlock;
inline constexpr Field<std::uint8_t, 29> kGammaCode;
inline constexpr Field<std::uint8_t, 30> kBrightness;
inline constexpr Field<std::uint8_t, 31> kColorCorrection;
inline constexpr Field<std::uint8_t, 32> kHalftone;
inline constexpr Field<std::uint8_t, 33> kModeOverride;
inline constexpr Field<std::uint8_t, 34> kEnhancement;
inline constexpr Field<std::uint8_t, 35> kSharpness;
inline constexpr Field<std::uint8_t, 36> kMirror;
inline constexpr Field<std::uint8_t, 37> kOptionParam;

inline constexpr std::array kFields{
    Named("main resolution", kMainResolution, "dpi"),
    Named("sub resolution", kSubResolution, "dpi"),
    Named("area left", kAreaLeft, "pixels"),
    Named("area top", kAreaTop, "lines"),
    Named("area width", kAreaWidth, "pixels"),
    Named("area height", kAreaHeight, "lines"),
    NamedChoice("colour mode", kColorMode, names::kColorModes),
    Named("bits per sample", kBitsPerSample),
    NamedChoice("option unit", kOptionUnit, names::kOptionUnit),
    Named("parameter g", kParamG),
    Named("lines per block", kLinesPerBlock),
    NamedChoice("gamma code", kGammaCode, names::kGammaCodes),
    Named("brightness", kBrightness, FieldShape::kSigned),
    NamedChoice("colour correction", kColorCorrection, names::kOnOff),
    Named("halftone code", kHalftone, FieldShape::kCode),
    Named("mode override", kModeOverride, FieldShape::kCode),
    Named("enhancement", kEnhancement),
    Named("sharpness", kSharpness, FieldShape::kSigned),
    NamedChoice("mirror", kMirror, names::kOnOff),
    Named("option parameter", kOptionParam, FieldShape::kCode),
};

}  // namespace parameter
}  // namespace pmddb832
