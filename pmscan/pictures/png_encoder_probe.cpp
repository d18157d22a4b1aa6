#include "pmscan/pictures/png_encoder_probe.h"

namespace pmscan {
namespace {

constexpr std::uint16_t kSample = 0x0102;
constexpr std::uint16_t kSwappedSample = 0x0201;

bool WriteOnePixel(const ComPointer<IWICImagingFactory>& factory, IStream* stream) {
  ComPointer<IWICBitmapEncoder> encoder;
  ComPointer<IWICBitmapFrameEncode> frame;
  GUID format = GUID_WICPixelFormat16bppGray;
  std::uint16_t sample = kSample;
  return SUCCEEDED(factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, encoder.Receive())) &&
         SUCCEEDED(encoder->Initialize(stream, WICBitmapEncoderNoCache)) &&
         SUCCEEDED(encoder->CreateNewFrame(frame.Receive(), nullptr)) &&
         SUCCEEDED(frame->Initialize(nullptr)) && SUCCEEDED(frame->SetSize(1, 1)) &&
         SUCCEEDED(frame->SetPixelFormat(&format)) &&
         SUCCEEDED(frame->WritePixels(1, sizeof(sample), sizeof(sample),
                                      reinterpret_cast<BYTE*>(&sample))) &&
         SUCCEEDED(frame->Commit()) && SUCCEEDED(encoder->Commit());
}

// 0 when it cannot be read.
std::uint16_t ReadOnePixel(const ComPointer<IWICImagingFactory>& factory, IStream* stream) {
  ComPointer<IWICBitmapDecoder> decoder;
  ComPointer<IWICBitmapFrameDecode> frame;
  std::uint16_t sample = 0;
  if (FAILED(factory->CreateDecoderFromStream(stream, nullptr, WICDecodeMetadataCacheOnDemand,
                                              decoder.Receive())) ||
      FAILED(decoder->GetFrame(0, frame.Receive()))) {
    return 0;
  }
  frame->CopyPixels(nullptr, sizeof(sample), sizeof(sample), reinterpret_cast<BYTE*>(&sample));
  return sample;
}

}  // namespace

bool NeedsSwappedSamples(const ComPointer<IWICImagingFactory>& factory) {
  ComPointer<IStream> stream;
  if (FAILED(CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive()))) return false;
  return WriteOnePixel(factory, stream.Get()) &&
         SUCCEEDED(stream->Seek({}, STREAM_SEEK_SET, nullptr)) &&
         ReadOnePixel(factory, stream.Get()) == kSwappedSample;
}

}  // namespace pmscan
