// Configuration TLVs.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "platform/syserr.h"
#include "pmcli/config.h"
#include "stage.h"

namespace {

// What the decoder promises of any TLV. libFuzzer ignores what a target returns, so that a broken promise aborts.
void require(bool is_kept) {
  if (!is_kept) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  if (size < sizeof(pm_cfg_tlv_t)) return 0;
  // The caller vouches for the bytes that the head counts, and for no more.
  const std::size_t length = std::min<std::size_t>(data[1], size - sizeof(pm_cfg_tlv_t));
  std::vector<uint8_t> tlv(data, data + sizeof(pm_cfg_tlv_t) + length);
  tlv[1] = static_cast<uint8_t>(length);
  uint8 type = 0, counted = 0;
  pm_port_cfg_value_t value;
  std::memset(&value, 0xEE, sizeof value);
  const uint32 result = pm_decode_tlv(reinterpret_cast<pm_cfg_tlv_t*>(tlv.data()), &type, &counted, &value);
  require(type == data[0] && counted == length);
  require(result == 0 || result == PM_ERR_UNKNOWN_TLV);
  require(result != 0 || type <= 83);
  if (type == PM_CFG_NAME) require(strnlen(value.port_name, sizeof value.port_name) < sizeof value.port_name);
  return 0;
}
