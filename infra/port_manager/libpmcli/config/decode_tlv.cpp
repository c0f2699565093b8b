// Configuration TLVs as the port manager reads them.

#include <algorithm>
#include <cstring>
#include <iterator>

#include "platform/syserr.h"
#include "pmcli/config.h"
#include "support/reader.h"

namespace {

// Types by the width of their value. The encoder also sends types 68, 84 and 85, which are not decoded; this is
// intended.
constexpr uint8 kBytes[] = {1, 4, 5, 11, 12, 13, 17, 22, 34, 35, 42, 44, 48, 83};
constexpr uint8 kHalfWords[] = {7, 15, 52};
constexpr uint8 kWords[] = {2, 3, 8, 14, 21, 23, 25, 27, 28, 29, 31, 32, 36, 37, 41, 45, 50, 54, 78, 80, 81};
constexpr uint8 kTwoWords[] = {9};
constexpr uint8 kNames[] = {PM_CFG_NAME};

template <std::size_t Count>
bool holds(const uint8 (&types)[Count], uint8 type) {
  return std::find(std::begin(types), std::end(types), type) != std::end(types);
}

}  // namespace

uint32 pm_decode_tlv(pm_cfg_tlv_t* p_payload, uint8* p_cfg_type, uint8* p_cfg_length,
                     pm_port_cfg_value_t* p_cfg_value) {
  if (p_payload == nullptr || p_cfg_type == nullptr || p_cfg_length == nullptr || p_cfg_value == nullptr)
    return PM_ERR_UNKNOWN_TLV;
  const uint8 type = *p_cfg_type = p_payload->cfg_type;
  const uint8 length = *p_cfg_length = p_payload->cfg_length;

  uint8 received[PM_PORT_NAME_BYTES] = {};  // bytes that the TLV lacks are 0
  std::memcpy(received, p_payload + 1, std::min<std::size_t>(length, sizeof received));
  pmcli::reader value(received, sizeof received);

  pm_port_cfg_value_t decoded;
  std::memset(&decoded, 0, sizeof decoded);
  if (holds(kBytes, type)) {
    decoded.byte = value.u8();
  } else if (holds(kHalfWords, type)) {
    decoded.half_word = value.u16();
  } else if (holds(kWords, type)) {
    decoded.words[0] = value.u32();
  } else if (holds(kTwoWords, type)) {
    decoded.words[0] = value.u32();
    decoded.words[1] = value.u32();
  } else if (holds(kNames, type)) {
    std::memcpy(decoded.port_name, received, sizeof received);
    decoded.port_name[sizeof received - 1] = '\0';
  } else {
    return PM_ERR_UNKNOWN_TLV;
  }
  *p_cfg_value = decoded;
  return 0;
}
