// What a shell and a switch report of themselves when they connect.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/types.h"

namespace host {

// Both sides have the same version of frames and messages, or do not talk.
inline constexpr uint32 kProtocolVersion = 1;

// Of the shell. The switch takes user and process from the socket, not from here.
struct hello {
  uint32 version = kProtocolVersion;
  std::string program_version;
  std::string terminal;  // such as "/dev/pts/3"; empty: none
};

// Of the switch.
struct welcome {
  uint32 version = kProtocolVersion;
  std::string program_version;
  std::string switch_name;
  uint32 process = 0;
  std::optional<uint64> stopped_clock;  // seconds since 1970; none: it follows the machine's
};

std::vector<std::byte> encode(const hello& from);
std::vector<std::byte> encode(const welcome& from);

// Nothing for bytes that are not one. A hello of another version has only that; whatever follows it is ignored.
std::optional<hello> decode_hello(std::span<const std::byte> message);
std::optional<welcome> decode_welcome(std::span<const std::byte> message);

}  // namespace host
