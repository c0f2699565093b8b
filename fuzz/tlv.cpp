// Configuration TLVs.
#include <algorithm>
#include <cstring>
#include <vector>

#include "pmcli/config.h"
#include "stage.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  if (size < sizeof(pm_cfg_tlv_t)) return 0;
  // The caller vouches for the bytes that the head counts, and for no more.
  const std::size_t length = std::min<std::size_t>(data[1], size - sizeof(pm_cfg_tlv_t));
  std::vector<uint8_t> tlv(data, data + sizeof(pm_cfg_tlv_t) + length);
  tlv[1] = static_cast<uint8_t>(length);
  uint8 type = 0, counted = 0;
  pm_port_cfg_value_t value;
  pm_decode_tlv(reinterpret_cast<pm_cfg_tlv_t*>(tlv.data()), &type, &counted, &value);
  return type == data[0] && counted == length ? 0 : -1;
}
