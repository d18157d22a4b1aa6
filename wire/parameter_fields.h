#pragma once

#include "wire/gamma_codes.h"
#include "wire/named_field.h"
#include "wire/value_names.h"
#include "wire/wire_block.h"

// The parameter blocks of the ESC commands, named after the commands' letters. The commands of one
// byte differ only by what the byte is called.
namespace pmddb832::standard_parameter {

inline constexpr Field<std::uint8_t, 0> kByte;
inline constexpr Field<std::uint8_t, 1> kSecondByte;
inline constexpr Field<std::uint16_t, 0> kFirstWord;
inline constexpr Field<std::uint16_t, 2> kSecondWord;
inline constexpr Field<std::uint16_t, 4> kThirdWord;
inline constexpr Field<std::uint16_t, 6> kFourthWord;

inline constexpr std::array kPrefixes{
    ValueName{'R', "red"},
    ValueName{'G', "green"},
    ValueName{'B', "blue"},
    ValueName{'M', "all channels"},
};
inline constexpr std::array kAutomatic{ValueName{0xFF, "automatic"}};

inline constexpr std::array kArea{
    Named("left", kFirstWord, "pixels"),
    Named("top", kSecondWord, "lines"),
    Named("width", kThirdWord, "pixels"),
    Named("height", kFourthWord, "lines"),
};
inline constexpr std::array kHalftone{Named("halftone code", kByte, FieldShape::kCode)};
inline constexpr std::array kColorMode{NamedChoice("colour mode", kByte, names::kColorModes)};
inline constexpr std::array kBitsPerSample{Named("bits per sample", kByte)};
inline constexpr std::array kZoom{Named("main zoom", kByte, "%"),
                                  Named("sub zoom", kSecondByte, "%")};
inline constexpr std::array kMirror{NamedChoice("mirror", kByte, names::kOnOff)};
inline constexpr std::array kBrightness{Named("brightness", kByte, FieldShape::kSigned)};
inline constexpr std::array kColorCorrection{
    NamedChoice("colour correction", kByte, names::kOnOff)};
inline constexpr std::array kSharpness{Named("sharpness", kByte, FieldShape::kSigned)};
inline constexpr std::array kResolution{Named("main resolution", kFirstWord, "dpi"),
                                        Named("sub resolution", kSecondWord, "dpi")};
inline constexpr std::array kGamma{NamedChoice("gamma code", kByte, names::kGammaCodes)};
inline constexpr std::array kLinesPerBlock{Named("lines per block", kByte)};
inline constexpr std::array kOptionUnit{NamedChoice("option unit", kByte, names::kOptionUnit)};
inline constexpr std::array kParamG{Named("parameter g", kByte)};
inline constexpr std::array kFocus{
    NamedField{"focus position", 0, 1, FieldShape::kPosition, {}, kAutomatic}};
inline constexpr std::array kEnhancement{Named("enhancement", kByte)};
inline constexpr std::array kThreshold{Named("threshold", kByte)};
inline constexpr std::array kTablePrefix{NamedChoice("channel", kByte, kPrefixes)};

}  // namespace pmddb832::standard_parameter
