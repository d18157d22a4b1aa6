#include "tests/standard/standard_fixture.h"

#include <algorithm>

namespace pmddb832::tests::standard {
namespace {

constexpr std::uint8_t kEsc = 0x1B;

std::vector<std::string> Split(std::string_view commands) {
  std::vector<std::string> parts;
  while (!commands.empty()) {
    const std::string_view part = commands.substr(0, commands.find(", "));
    if (!part.empty()) parts.emplace_back(part);
    commands.remove_prefix(std::min(part.size() + 2, commands.size()));
  }
  return parts;
}

Bytes Esc(char letter) {
  return {kEsc, static_cast<std::uint8_t>(letter)};
}

}  // namespace

std::string Replaced(std::string text, std::string_view part, std::string_view by) {
  const std::size_t place = text.find(part);
  REQUIRE(place != std::string::npos);
  return text.replace(place, part.size(), by);
}

Bytes Reply::Header() const {
  return Bytes{0x02, status} + Short(static_cast<std::uint32_t>(data.size()));
}

Bytes Identity(std::string_view level) {
  return Text(level) + FromHex("52 32 00 52 64 00 41 E8 03 78 05");
}

Bytes IdentityOf(std::string_view level, const std::vector<std::uint16_t>& resolutions) {
  Bytes identity = Text(level);
  for (const std::uint16_t resolution : resolutions) {
    identity = identity + Bytes{0x52} + Short(resolution);
  }
  return identity + FromHex("41 E8 03 78 05");
}

Bytes Product(std::string_view name) {
  return Fill(8, 0xEE) + Text(name);
}

Bytes Status(std::uint8_t main, std::uint8_t feeder, std::uint8_t transparencyUnit) {
  return Bytes{main, feeder} + FromHex("20 03 14 05") + Bytes{transparencyUnit} +
         FromHex("90 01 F4 01");
}

namespace {

std::string PlainUpload(std::string_view level) {
  const std::string area = ", R 64 00 64 00, H 64 64, A 00 00 00 00 10 00 04 00";
  if (level == "B3") return "C 00, D 08, B 01, Z 02, L 00, M 00" + area;
  if (level == "B4") return "C 00, D 08, B 01, Z 02, L 00, M 00, Q 00, g 00" + area;
  if (level == "B5") return "C 00, D 08, B 01, Z 02, L 00, M 00, K 00, Q 00, g 00" + area;
  if (level == "A5") return "C 00, D 08, B 01, s 00, Z 02, L 00, K 00, Q 00, g 00" + area;
  return "C 00, D 08, B 01, s 00, Z 02, L 00, M 00, K 00, Q 00, g 00" + area;
}

}  // namespace

std::string UploadOf(std::string_view level, std::string_view changes) {
  std::string upload = ", " + PlainUpload(level);
  for (const std::string& change : Split(changes)) {
    CAPTURE(change);
    const bool leavesOut = change[0] == '-';
    const std::size_t place = upload.find(", " + change.substr(leavesOut ? 1 : 0, 1));
    REQUIRE(place != std::string::npos);
    const std::size_t end = std::min(upload.find(',', place + 1), upload.size());
    upload.replace(place, end - place, leavesOut ? "" : ", " + change);
  }
  return upload.substr(2);
}

StandardScanner::StandardScanner(std::string_view openLevel, const Bytes& status) {
  level = openLevel;
  REQUIRE(Open(Identity(openLevel), status) == 1);
}

void StandardScanner::AnswerProbe() {
  device.Expect(Esc('I')).Reply({0x02, 0x00, 0x02, 0x00}).Reply(Text("B4"));
}

void StandardScanner::AnswerIdentification(const Bytes& identity, const Bytes& status,
                                           const Bytes& product) {
  AnswerReset();
  Answer('?', {product});
  Answer('I', {identity});
  if (identity[1] != '3') AnswerStatus(status);
  Answer('?', {product});
}

void StandardScanner::Answer(char letter, const standard::Reply& reply) {
  device.Expect(Esc(letter)).Reply(reply.Header()).Reply(reply.data);
}

void StandardScanner::AnswerStatus(const Bytes& status) {
  Answer('f', {status});
}

void StandardScanner::AcceptUpload(std::string_view commands) {
  device.Expect(Esc('F')).Reply({0x02, 0x00, 0x00, 0x00});
  for (const std::string& command : Split(commands)) {
    device.ExpectBlock(kEsc, command[0], FromHex(command.substr(1)));
  }
}

void StandardScanner::AnswerStart(const Bytes& header) {
  if (level != "B3") AnswerStatus();
  device.Expect(Esc('G')).Reply(header);
}

void StandardScanner::SendLines(const Bytes& lines) {
  device.Reply(lines).Expect({0x06});
}

void StandardScanner::SendBlock(const Bytes& header, const Bytes& lines) {
  device.Reply(header);
  SendLines(lines);
}

void StandardScanner::SendLastBlock(const Bytes& header, const Bytes& lines) {
  device.Reply(header).Reply(lines);
}

std::uint32_t StandardScanner::Open(const Bytes& identity, const Bytes& status,
                                    const Bytes& product) {
  optionFitted = status.size() > 6 && ((status[1] | status[6]) & 0x80) != 0;
  AnswerProbe();
  AnswerIdentification(identity, status, product);
  return PMOpenScanner(&settings);
}

void StandardScanner::Upload(std::string_view commands) {
  InitAcquire();
  AcceptUpload(commands);
  device.FailNextWrite();
  const bool asksUnit = optionFitted && settings.scanSource != 0;
  const bool blockMode = level != "B3";
  // Lines per block that cannot be sent do not matter: next comes the status.
  if (blockMode && !asksUnit) device.FailNextWrite();
  CHECK(Acquire(4096).record.status == kFailed);
  const std::uint32_t code = asksUnit ? 7 : (blockMode ? 22 : 9);
  CHECK(PMGetScanError() == code);
}

std::uint32_t StandardScanner::FailingUpload(std::string_view commands) {
  InitAcquire();
  AcceptUpload(commands);
  CHECK(Acquire(4096).record.status == kFailed);
  return PMGetScanError();
}

void StandardScanner::StartScan(const Bytes& header, std::uint8_t linesPerBlock,
                                std::uint32_t outputFormat) {
  StartScanOf(UploadOf(level), header, linesPerBlock, outputFormat);
}

void StandardScanner::StartScanOf(std::string_view upload, const Bytes& header,
                                  std::uint8_t linesPerBlock, std::uint32_t outputFormat) {
  InitAcquire(outputFormat);
  AcceptUpload(upload);
  if (linesPerBlock != 0) device.ExpectBlock(kEsc, 'd', {linesPerBlock});
  AnswerStart(header);
}

void StandardScanner::DeliverFirstLine() {
  StartScan(BlockHeader(0x00, 16, 1), 1);
  SendLines(Fill(16, 1));
  Acquire(16);
}

void StandardScanner::StartWithoutUpload(const Bytes& header, std::uint32_t outputFormat) {
  InitAcquire(outputFormat);
  device.Expect(Esc('F')).FailNextRead();
  device.FailNextWrite();  // ESC d
  AnswerStart(header);
}

Band StandardScanner::ScanPage(std::uint32_t outputFormat) {
  StartScan(BlockHeader(0x20, 16, 4), 4, outputFormat);
  device.Reply(Ramp(0, 64));
  return Acquire(64);
}

Bytes BlockHeader(std::uint8_t status, std::uint16_t lineBytes, std::uint16_t lines) {
  return Bytes{0x02, status} + Short(lineBytes) + Short(lines);
}

}  // namespace pmddb832::tests::standard
