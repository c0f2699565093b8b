// The folder of a capture: requests to the kernel and its answers, as files.
//
// `index` is a text. Its first line is kCaptureVersion, its last one "end N" with the number of answers. Between them:
//   byte-order little                          of the machine, and so of all answers; or big
//   clock SECONDS                              when the capture began, since 1970
//   system NAME RELEASE                        the kernel
//   switch NAME                                the name of the switch
//   device NUMBER INTERFACE REASON             the interface index, in hexadecimal, of a device
//   baseline NUMBER MAC SECONDS COUNTERS...    where the counters of a device begin, as in the file of baselines
//   answer N BUS TYPE NAME FILE BYTES ERROR KEY
// An answer is in a file of its own: the messages of netlink without sequence numbers and ports, the record of an
// ioctl, the text of the table of devices, or the neighbors of lldpd as a text (lldp.h). ERROR is an errno. KEY is the
// request in hexadecimal digits, without its length, sequence number and port; "-" when it is empty. The same request
// may have several answers, in their order.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/types.h"
#include "source/kernel/netlink.h"
#include "switch/source.h"

namespace host {

inline constexpr char kCaptureVersion[] = "pmsh capture 1";
inline constexpr char kCaptureIndex[] = "index";

enum class capture_bus : uint8 { route, generic, ioctl, table, lldp };

// What was asked.
struct captured_request {
  capture_bus bus;
  uint16 type;  // of the message, or the command of an ioctl
  std::string key;
};

captured_request request_of(int netlink_bus, const nlmsghdr& request);
captured_request request_of_ioctl(const std::string& device, const void* command);
captured_request request_of_table();
captured_request request_of_lldp();

// Bytes of the record of an ioctl; 0 for a command that is not known.
std::size_t ioctl_size(const void* command);

std::string_view bus_word(capture_bus bus);
std::optional<capture_bus> bus_named(std::string_view word);

// What a request is for, in a word: "links", "module-memory".
std::string_view request_name(const captured_request& request);

// "little" or "big": of this machine.
std::string_view byte_order_word();

std::string_view reason_word(name_reason reason);
std::optional<name_reason> reason_named(std::string_view word);

// The length of the first message, with its padding; 0 when it is not complete.
std::size_t message_length(std::span<const char> messages);

// Sets the sequence number and the port of each message, and of the request that an error repeats.
void address_messages(std::span<char> messages, uint32 sequence, uint32 port);

}  // namespace host
