#include "capture/trace/trace_packets.h"

#include <doctest/doctest.h>

#include "capture/trace/trace_time.h"
#include "tests/trace/bus_trace.h"

namespace {

using namespace pmddb832::tests;
using capture::PacketTrace;

Bytes FirstOf(const PacketTrace& trace) {
  REQUIRE(!trace.packets.empty());
  const auto bytes = trace.packets.front().bytes.All();
  return {bytes.begin(), bytes.end()};
}

constexpr bool kLittle = false;
constexpr bool kBig = true;

// A pcapng file in the making.
struct Blocks {
  explicit Blocks(bool isBigEndian) : isBig(isBigEndian), file(isBigEndian) {
    Section(isBigEndian);
  }

  void Section(bool isBigEndian) {
    isBig = isBigEndian;
    NumberWriter body(isBig);
    Add(0x0A0D0D0A, body.Put(0x1A2B3C4D, 4).Put(1, 2).Put(0, 2).Put(~0ull, 8).bytes);
  }
  void Interface(std::uint16_t linkType, const Bytes& options = {}) {
    NumberWriter body(isBig);
    Add(1, body.Put(linkType, 2).Put(0, 6).Put(options).bytes);
  }
  void Packet(std::uint32_t interface, std::uint64_t time, const Bytes& data,
              const Bytes& options = {}) {
    NumberWriter body(isBig);
    body.Put(interface, 4).Put(time >> 32, 4).Put(time & 0xFFFFFFFF, 4);
    body.Put(data.size(), 4).Put(data.size() + 10, 4).Put(data);
    body.Put(0, (4 - data.size() % 4) % 4).Put(options);
    Add(6, body.bytes);
  }
  void Add(std::uint32_t type, const Bytes& body) {
    NumberWriter block(isBig);
    block.Put(type, 4).Put(body.size() + 12, 4).Put(body).Put(body.size() + 12, 4);
    file.Put(block.bytes);
  }
  Bytes Option(std::uint16_t code, const Bytes& value) const {
    NumberWriter option(isBig);
    return option.Put(code, 2)
        .Put(value.size(), 2)
        .Put(value)
        .Put(0, (4 - value.size() % 4) % 4)
        .bytes;
  }
  PacketTrace Read() const { return capture::ReadPackets(file.bytes); }

  bool isBig;
  NumberWriter file;
};

TEST_CASE("pcap: packets of either byte order and either resolution of time") {
  const Bytes little{0xD4, 0xC3, 0xB2, 0xA1, 2, 0, 4,   0, 0, 0, 0, 0, 0,    0,
                     0,    0,    0,    0,    4, 0, 249, 0, 0, 0, 3, 0, 0,    0,
                     5,    0,    0,    0,    2, 0, 0,   0, 9, 0, 0, 0, 0xAA, 0xBB};
  const PacketTrace first = capture::ReadPackets(little);
  CHECK(first.packets[0].linkType == 249);
  CHECK(first.packets[0].microseconds == 3'000'005);
  CHECK(FirstOf(first) == Bytes{0xAA, 0xBB});
  const Bytes big{0xA1, 0xB2, 0x3C, 0x4D, 0, 2, 0, 4, 0, 0,    0,    0, 0, 0, 0, 0, 0, 4, 0, 0,   0,
                  0,    0,    220,  0,    0, 0, 3, 0, 0, 0x1F, 0xFF, 0, 0, 0, 1, 0, 0, 0, 9, 0xCC};
  const PacketTrace second = capture::ReadPackets(big);
  CHECK(second.packets[0].linkType == 220);
  CHECK(second.packets[0].microseconds == 3'000'008);
  CHECK(FirstOf(second) == Bytes{0xCC});
}

TEST_CASE("pcap: a packet that the file has no bytes for ends the trace") {
  BusTrace trace(249, false);
  const std::size_t whole = trace.File().size();
  trace.AddWrite({0x1B, '@'}, 10);
  for (std::size_t size = whole; size < whole + 16 + 29; ++size) {
    CAPTURE(size);
    const Bytes part(trace.File().begin(),
                     trace.File().begin() + static_cast<std::ptrdiff_t>(size));
    const PacketTrace read = capture::ReadPackets(part);
    CHECK(read.packets.size() == 1);
    CHECK(read.isCut == (size > whole));
  }
}

TEST_CASE("pcapng: packets of either byte order, with the link type of their interface") {
  for (const bool isBig : {kLittle, kBig}) {
    CAPTURE(isBig);
    Blocks blocks(isBig);
    blocks.Interface(1);
    blocks.Interface(249, blocks.Option(2, {'u', 's', 'b'}));
    blocks.Packet(1, 0x100000002, {7, 8, 9});
    const PacketTrace read = blocks.Read();
    CHECK(read.packets[0].linkType == 249);
    CHECK(read.packets[0].microseconds == 0x100000002);
    CHECK(FirstOf(read) == Bytes{7, 8, 9});
    CHECK_FALSE(read.isCut);
  }
}

TEST_CASE("pcapng: a section has a byte order and interfaces of its own") {
  Blocks blocks(kLittle);
  blocks.Interface(249);
  blocks.Packet(0, 1, {1});
  blocks.Section(kBig);
  blocks.Packet(0, 2, {2});
  blocks.Interface(220);
  blocks.Packet(0, 3, {3});
  const PacketTrace read = blocks.Read();
  REQUIRE(read.packets.size() == 2);
  CHECK(read.packets[1].linkType == 220);
  CHECK(read.packets[1].bytes.IsBigEndian());
}

TEST_CASE("pcapng: blocks that are not known are skipped") {
  Blocks blocks(kLittle);
  blocks.Add(0xBAD, {1, 2, 3, 4});
  blocks.Interface(249);
  blocks.Add(4, Bytes(40));
  blocks.Packet(0, 1, {1});
  CHECK(blocks.Read().packets.size() == 1);
}

TEST_CASE("pcapng: comments and lost packets are taken from the options") {
  Blocks blocks(kLittle);
  blocks.Interface(249);
  Bytes options = blocks.Option(1, {'h', 'i'});
  const Bytes lost = blocks.Option(4, {5, 0, 0, 0, 0, 0, 0, 0});
  options.insert(options.end(), lost.begin(), lost.end());
  blocks.Packet(0, 1, {1, 2, 3, 4, 5}, options);
  const PacketTrace read = blocks.Read();
  CHECK(read.packets[0].comment == "hi");
  CHECK(read.lost == 5);
}

TEST_CASE("pcapng: statistics of an interface tell lost packets") {
  Blocks blocks(kBig);
  blocks.Interface(249);
  NumberWriter statistics(kBig);
  statistics.Put(0, 12).Put(blocks.Option(5, {0, 0, 0, 0, 0, 0, 0, 9}));
  blocks.Add(5, statistics.bytes);
  CHECK(blocks.Read().lost == 9);
}

TEST_CASE("pcapng: simple packets and those of old files") {
  Blocks blocks(kLittle);
  blocks.Interface(249);
  blocks.Add(3, {2, 0, 0, 0, 0xAA, 0xBB, 0, 0});
  blocks.Add(2, {0, 0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0xCC, 0, 0, 0});
  const PacketTrace read = blocks.Read();
  CHECK(FirstOf(read) == Bytes{0xAA, 0xBB});
  CHECK(read.packets[1].microseconds == 4);
  CHECK(read.packets[1].bytes.Size() == 1);
}

TEST_CASE("pcapng: no length is believed") {
  for (const Bytes& length : {Bytes{0, 0, 0, 0}, Bytes{8, 0, 0, 0}, Bytes{13, 0, 0, 0},
                              Bytes{0xFC, 0xFF, 0xFF, 0xFF}, Bytes{0xFF, 0xFF, 0xFF, 0xFF}}) {
    Blocks blocks(kLittle);
    blocks.Interface(249);
    blocks.file.Put(Bytes{6, 0, 0, 0}).Put(length).Put(Bytes(40));
    const PacketTrace read = blocks.Read();
    CHECK(read.packets.empty());
    CHECK(read.isCut);
  }
  Blocks blocks(kLittle);
  blocks.Interface(249);
  NumberWriter packet(kLittle);
  blocks.Add(6, packet.Put(0, 12).Put(0xFFFFFFF0, 4).Put(0, 4).Put(Bytes{1, 2, 3, 4}).bytes);
  CHECK(FirstOf(blocks.Read()) == Bytes{1, 2, 3, 4});
}

TEST_CASE("a time counts in powers of ten or two, from an offset") {
  using capture::Microseconds;
  CHECK(Microseconds(1'500'000, {6, 0}) == 1'500'000);
  CHECK(Microseconds(1'500'000'999, {9, 0}) == 1'500'000);
  CHECK(Microseconds(15, {1, 0}) == 1'500'000);
  CHECK(Microseconds(3, {0x81, 0}) == 1'500'000);
  CHECK(Microseconds((7ull << 50) | (1ull << 49), {0x80 | 50, 0}) == 7'500'000);
  CHECK(Microseconds(250, {2, 10}) == 12'500'000);
  CHECK(Microseconds(20'000'000, {6, ~0ull}) == 19'000'000);
  CHECK(Microseconds(~0ull, {127, 0}) == 0);
  CHECK(Microseconds(~0ull, {0xFF, 0}) == 0);
}

TEST_CASE("a file that is no trace is refused with its first bytes") {
  const auto reason = [](const Bytes& file) {
    try {
      capture::ReadPackets(file);
    } catch (const capture::TraceError& error) {
      return std::string(error.what());
    }
    return std::string("taken");
  };
  CHECK(reason({'p', 'm', 'd', 'd'}).find("begins with 70 6D 64 64.") != std::string::npos);
  CHECK(reason({}).find("came 0 bytes.") != std::string::npos);
}

}  // namespace
