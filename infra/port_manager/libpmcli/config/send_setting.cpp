#include "config/send_setting.h"

#include <cstdlib>
#include <cstring>

#include "support/heap.h"
#include "support/text.h"

namespace pmcli {

namespace {

constexpr int32 kTimeoutSeconds = 60;

void put_number(uint8* to, uint8 length, uint32 number) {
  for (uint8 i = length; i > 0; --i, number >>= 8) to[i - 1] = static_cast<uint8>(number);
}

}  // namespace

heap_block<pm_cfg_tlv_t> make_tlv(const port_setting& setting) {
  const std::size_t size = sizeof(pm_cfg_tlv_t) + setting.length;
  heap_block<pm_cfg_tlv_t> tlv(static_cast<pm_cfg_tlv_t*>(std::malloc(size)));
  if (tlv == nullptr) {
    report_malloc_failure(static_cast<uint32>(size));
    std::printf("error: malloc failure - size(%d)\n", static_cast<int32>(size));
    return tlv;
  }
  *tlv = {setting.type, setting.length};
  auto* const value = reinterpret_cast<uint8*>(tlv.get() + 1);
  std::memset(value, 0, setting.length);
  if (setting.text != nullptr)
    copy_text(reinterpret_cast<char*>(value), setting.length, setting.text);
  else
    put_number(value, setting.length, setting.number);
  return tlv;
}

int32 apply(paraminfo_t* param, std::span<const if_index_range_t> ranges, const pm_cfg_tlv_t& tlv,
            pm_port_cfg_status_t** cfg_status, uint32* num_ports) {
  return pm_cmi_set_port_config(param->q, param->username, param->session_id, static_cast<uint32>(ranges.size()),
                                ranges.data(), tlv.cfg_type, tlv.cfg_length, &tlv + 1, cfg_status, num_ports,
                                kTimeoutSeconds);
}

}  // namespace pmcli
