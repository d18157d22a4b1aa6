#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace pmddb832::models {

// A member of the settings record: its type and its byte offset.
template <class T>
struct Field {
  std::size_t offset;
};

inline constexpr Field<std::uint32_t> kCommandLevel{0};
inline constexpr Field<char> kLevelLetter{4}, kLevelDigit{5}, kLevelEnd{6};
inline constexpr std::size_t kModelName = 8;
inline constexpr Field<std::uint32_t> kDocFeedOption{16};
inline constexpr Field<std::uint16_t> kAreaCount{24};
inline constexpr Field<std::uint32_t> kBedWidth{28}, kBedHeight{32};
inline constexpr Field<std::uint32_t> kOptionWidth{36}, kOptionHeight{40};
inline constexpr Field<std::uint16_t> kLevelGroup{80}, kHalftoneInfo{82};
inline constexpr Field<std::uint16_t> kMinResolution{84}, kBaseResolution{86}, kMaxResolution{88};
inline constexpr Field<std::uint16_t> kScanInfoVariant{164}, kDropoutChannel{172};
inline constexpr Field<std::uint32_t> kPixelType{176};
inline constexpr Field<std::uint16_t> kZoom{184}, kResolution{186};
inline constexpr Field<double> kOriginX{208}, kOriginY{216};
inline constexpr Field<std::uint8_t> kInvertMono{226};
inline constexpr Field<std::int32_t> kBrightness{228}, kHalftoneIndex{240}, kSharpness{244};
inline constexpr Field<std::uint16_t> kGamma{250};
inline constexpr Field<std::uint8_t> kParamG{252};
inline constexpr Field<std::uint32_t> kAltColorMode{256};
inline constexpr Field<std::uint16_t> kWhitePadding{260};
inline constexpr Field<std::uint8_t> kScanSource{264};
inline constexpr Field<std::uint32_t> kCustomGamma{268}, kColorCorrection{276};
inline constexpr Field<std::uint32_t> kHalftoneOverride{280}, kOptionS{284}, kMirrorImage{288};
inline constexpr Field<std::uint32_t> kKeepPaper{296}, kPreviewMode{300}, kMonoScan{312};
inline constexpr std::size_t kGammaTableB = 316, kGammaTableG = 572, kGammaTableR = 828;
inline constexpr std::size_t kColorMatrix = 1340;
inline constexpr Field<std::uint8_t> kOptionParam{1404};
inline constexpr Field<std::uint8_t> kMainStatusBit5{1434}, kMainStatusBit4{1435};
inline constexpr Field<std::uint16_t> kRangeEnabled{1568}, kRangeMin{1570}, kRangeMax{1572};
inline constexpr Field<std::uint32_t> kAreaWidthPx{1576}, kAreaHeightPx{1580};
inline constexpr Field<std::uint32_t> kAreaLeftPx{1584}, kAreaTopPx{1588};
inline constexpr Field<std::uint16_t> kThresholdT{1600};
inline constexpr Field<std::uint8_t> kCustomGammaCode{1602};
inline constexpr Field<void*> kProgressWindow{1784};
inline constexpr std::size_t kProductNameReply = 1792;
inline constexpr std::size_t kModelId = 1816;
inline constexpr Field<void*> kDeviceInterface{1840};
inline constexpr Field<std::uint32_t> kUseDeviceInterface{1852};
inline constexpr Field<std::uint16_t> kMaxResolutionCopy{1860}, kMinResolutionCopy{1862};
inline constexpr Field<std::uint16_t> kBaseResolutionCopy{1864};
inline constexpr Field<std::uint32_t> kFeederStatusExtra{1868};

inline constexpr std::size_t kRecordBytes = 1872;

// The settings record, as bytes: record[kZoom] reads a member, record.Set(kZoom, 100) writes it.
class Record {
 public:
  template <class T>
  T operator[](Field<T> field) const {
    T value;
    std::memcpy(&value, &bytes[field.offset], sizeof(T));
    return value;
  }
  template <class T, class Value>
  void Set(Field<T> field, Value value) {
    const T stored = static_cast<T>(value);
    std::memcpy(&bytes[field.offset], &stored, sizeof(T));
  }
  // Copies a text with its terminating zero, as far as the member reaches.
  void SetText(std::size_t offset, const char* text, std::size_t width) {
    for (std::size_t i = 0; i < width; ++i) {
      bytes[offset + i] = static_cast<std::uint8_t>(text[i]);
      if (text[i] == '\0') return;
    }
  }
  const char* Text(std::size_t offset) const {
    return reinterpret_cast<const char*>(&bytes[offset]);
  }

  bool operator==(const Record&) const = default;

  std::array<std::uint8_t, kRecordBytes> bytes{};
};

}  // namespace pmddb832::models
