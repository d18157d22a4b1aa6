#include "capture/trace/scanner_endpoints.h"

#include <algorithm>
#include <map>
#include <string>

#include "capture/file/number_text.h"
#include "wire/command_table.h"

namespace capture {
namespace {

constexpr std::size_t kMostListed = 8;

// How much an endpoint was used, and how much of that was the protocol.
struct Use {
  std::uint64_t ofProtocol = 0;  // commands, or reads right behind one
  std::uint64_t packets = 0;

  // NOLINTNEXTLINE(modernize-use-nullptr) It sees the zero that the compiler compares with.
  auto operator<=>(const Use&) const = default;
};

struct Device {
  std::map<std::uint8_t, Use> out;
  std::map<std::uint8_t, Use> in;
  bool isAnswerNext = false;

  void Take(const UsbPacket& packet) {
    Use& use = (packet.IsIn() ? in : out)[packet.endpoint];
    ++use.packets;
    const bool hasBytes = packet.IsIn() ? packet.isEnd && packet.length > 0 : !packet.data.empty();
    if (!hasBytes) return;
    const bool isCommand = !packet.IsIn() && pmddb832::FindCommand(packet.data) != nullptr;
    if (isCommand || (packet.IsIn() && isAnswerNext)) ++use.ofProtocol;
    isAnswerNext = isCommand;
  }

  std::uint64_t Commands() const {
    std::uint64_t commands = 0;
    for (const auto& [endpoint, use] : out) commands += use.ofProtocol;
    return commands;
  }
};

using Devices = std::map<UsbAddress, Device>;

bool IsChosen(const UsbAddress& address, const DeviceChoice& choice) {
  return choice.bus.value_or(address.bus) == address.bus &&
         choice.device.value_or(address.device) == address.device;
}

Devices BulkDevices(std::span<const UsbPacket> packets) {
  Devices devices;
  for (const UsbPacket& packet : packets) {
    if (packet.isBulk) devices[packet.address].Take(packet);
  }
  return devices;
}

std::string NameOf(const UsbAddress& address) {
  return "--bus " + std::to_string(address.bus) + " --device " + std::to_string(address.device);
}

// "--bus 1 --device 5 (12 commands), --bus 1 --device 7 (none)".
std::string ListText(const Devices& devices) {
  std::string text;
  std::size_t count = 0;
  for (const auto& [address, device] : devices) {
    if (++count > kMostListed) return text + " ...";
    const std::uint64_t commands = device.Commands();
    text += (text.empty() ? "" : ", ") + NameOf(address) + " (" +
            (commands == 0 ? "no command" : Counted(commands, "command")) + ")";
  }
  return text.empty() ? "none" : text;
}

std::string ChoiceText(const DeviceChoice& choice) {
  std::string text;
  if (choice.bus.has_value()) text += " on bus " + std::to_string(*choice.bus);
  if (choice.device.has_value()) text += " with address " + std::to_string(*choice.device);
  return text;
}

std::uint8_t Busiest(const std::map<std::uint8_t, Use>& endpoints) {
  const auto busiest =
      std::max_element(endpoints.begin(), endpoints.end(),
                       [](const auto& a, const auto& b) { return a.second < b.second; });
  return busiest == endpoints.end() ? std::uint8_t{0} : busiest->first;
}

// Those that speak the protocol; when none does, all.
Devices Likely(const Devices& devices) {
  Devices likely = devices;
  std::erase_if(likely, [](const auto& row) { return row.second.Commands() == 0; });
  return likely.empty() ? devices : likely;
}

}  // namespace

ScannerEndpoints FindScanner(std::span<const UsbPacket> packets, const DeviceChoice& choice) {
  const Devices all = BulkDevices(packets);
  Devices chosen = all;
  std::erase_if(chosen, [&](const auto& row) { return !IsChosen(row.first, choice); });
  const Devices likely = Likely(chosen);
  if (likely.size() != 1) {
    const bool speak = !likely.empty() && likely.begin()->second.Commands() > 0;
    throw TraceError("expected one device" + ChoiceText(choice) +
                     " that is sent a scanner's commands, came " +
                     (speak ? std::to_string(likely.size()) : "none") +
                     ". Name the scanner, or trace it from before the host opens it; with bulk "
                     "transfers there are: " +
                     ListText(all) + ".");
  }
  const auto& [address, device] = *likely.begin();
  const bool isGuess = device.Commands() == 0 && !choice.device.has_value();
  return {address, Busiest(device.out), Busiest(device.in), isGuess};
}

}  // namespace capture
