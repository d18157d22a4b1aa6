#include "tests/extended/extended_fixture.h"

#include <utility>

namespace pmddb832::tests::extended {
namespace {

constexpr std::size_t kWidePixels = 16000;

}  // namespace

Bytes Identity() {
  return FromHex(
             "42 38 EE EE 64 00 00 00 19 00 00 00 80 0C 00 00"
             "EE EE EE EE E8 03 00 00 78 05 00 00 20 03 00 00"
             "14 05 00 00 90 01 00 00 F4 01 00 00 00 EE") +
         Text("SCANNER QM-8700 ") + Fill(18, 0xEE);
}

Bytes Status(std::uint8_t main, std::uint8_t feeder, std::uint8_t transparencyUnit) {
  return Bytes{main, feeder, transparencyUnit} + Fill(13, 0xEE);
}

Bytes ParameterBlock() {
  return FromHex(
      "64 00 00 00 64 00 00 00 00 00 00 00 00 00 00 00"
      "10 00 00 00 04 00 00 00 00 08 00 00 FE 02 00 00"
      "01 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"
      "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00");
}

Bytes Header(std::uint32_t blockBytes, std::uint32_t fullBlocks, std::uint32_t lastBlockBytes) {
  return Bytes{0x02, 0x00} + Word(blockBytes) + Word(fullBlocks) + Word(lastBlockBytes);
}

Bytes WideLine(std::uint8_t value) {
  return Fill(kWidePixels, value);
}

void ExtendedScanner::AnswerProbe() {
  device.Expect({0x1B, 0x49}).Reply({0x02, 0x02, 0x02, 0x00}).Reply(Text("B8"));
}

void ExtendedScanner::AnswerIdentity(Bytes identity) {
  device.Expect({0x1C, 0x49}).Reply(std::move(identity));
}

void ExtendedScanner::AnswerStatus(Bytes status) {
  device.Expect({0x1C, 0x46}).Reply(std::move(status));
}

void ExtendedScanner::AcceptParameters(Bytes block) {
  device.Expect({0x1C, 0x57}).Reply({0x06}).Expect(std::move(block)).Reply({0x06});
}

void ExtendedScanner::AnswerStart(Bytes header) {
  AnswerStatus();
  device.Expect({0x1C, 0x47}).Reply(std::move(header));
}

void ExtendedScanner::SendBlock(Bytes data) {
  device.Reply(std::move(data) + Bytes{0x00}).Expect({0x06});
}

void ExtendedScanner::SendLastBlock(Bytes data) {
  device.Reply(std::move(data) + Bytes{0x00});
}

std::uint32_t ExtendedScanner::Open(Bytes identity, Bytes status) {
  AnswerProbe();
  AnswerReset();
  AnswerIdentity(std::move(identity));
  AnswerStatus(std::move(status));
  return PMOpenScanner(&settings);
}

void ExtendedScanner::OpenFeeder(std::uint8_t feederFlags) {
  REQUIRE(Open(With(Identity(), 44, {feederFlags}), Status(0, 0x80)) == 1);
  settings.scanSource = 1;
}

void ExtendedScanner::StartScan(Bytes parameters, Bytes header, std::uint32_t hostPixelType) {
  InitAcquire(hostPixelType);
  AcceptParameters(std::move(parameters));
  AnswerStart(std::move(header));
}

Band ExtendedScanner::ScanPage(std::uint32_t hostPixelType) {
  StartScan(ParameterBlock(), Header(0, 0, 64), hostPixelType);
  SendLastBlock(Ramp(0, 64));
  return Acquire(64);
}

Bytes ExtendedScanner::AskForWideLines(std::uint8_t lines) {
  settings.resolution = 1600;
  settings.areaWidthPx = kWidePixels;
  settings.areaHeightPx = lines;
  const Bytes block = With(ParameterBlock(), 0, FromHex("40 06 00 00 40 06 00 00"));
  return With(With(block, 16, {0x80, 0x3E, 0x00, 0x00, lines}), 28, {0x04});
}

void ParameterScanner::CheckParameters(const Bytes& block, std::uint32_t hostPixelType) {
  InitAcquire(hostPixelType);
  AcceptParameters(block);
  AnswerStatus(Status(0x02));
  CheckAcquireFails(0x10000, 43);
}

void ParameterScanner::CheckParameters(const Bytes& block) {
  CheckParameters(block, settings.pixelType);
}

void ParameterScanner::CheckRefused() {
  InitAcquire(settings.pixelType);
  CheckAcquireFails(0x20000, 22);
}

void CheckParameters(const std::vector<ParameterRow>& rows, const Bytes& identity,
                     const Bytes& status) {
  for (const ParameterRow& row : rows) {
    CAPTURE(row.settings);
    ParameterScanner scanner(identity, status);
    scanner.Set(row.settings);
    scanner.CheckParameters(With(ParameterBlock(), row.changes));
  }
}

}  // namespace pmddb832::tests::extended
