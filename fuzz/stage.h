// What every target stands on: the real shell's platform with one service of a small switch in the hands of the fuzzer,
// and everything that is printed thrown away.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "platform/mts.h"
#include "platform/paraminfo.h"
#include "platform/port_manager.h"
#include "transport/transport.h"

namespace fuzz {

inline constexpr std::size_t kMostBytes = 64 * 1024;

// The switch: one port with a module, one port-channel, and a card that shares out resources in slot 3.
extern if_index_t the_port;
extern if_index_t the_channel;

// From now on requests with this opcode to this access point are answered with the fuzzer's bytes. Others go to the
// service that the switch has.
void take_over(uint32_t sap, bool is_on_line_cards, mts_opc_t opcode);

// Runs `use` with the bytes as the answer, on a queue and with an output of its own.
void answer_with(const uint8_t* data, std::size_t size, const std::function<void(paraminfo_t*)>& use);

// The port's record, as the port manager gives it.
pm_port_info_t port_record();

}  // namespace fuzz
