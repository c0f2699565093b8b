// The IP configuration.
#include "support/recorded/answers.h"
#include "support/recording_state.h"

namespace pmcli_test {
namespace {

octets address_block(const std::vector<ipconf_if_inet_addr_info_t>& addresses) {
  ipconf_if_inet_addrs_t head{};
  head.num_inet_addrs = static_cast<uint32>(addresses.size());
  octets block = bytes_of(head);
  for (const ipconf_if_inet_addr_info_t& address : addresses) append(block, bytes_of(address));
  return block;
}

}  // namespace
}  // namespace pmcli_test

using namespace pmcli_test;

extern "C" {

int32 ipconf_get_if_inet_addrs(mts_q_handle_t, if_index_t if_index, ipconf_if_inet_addrs_t** list) {
  const RecordingPlatform& platform = platform_for("ipconf_get_if_inet_addrs");
  const int32 error =
      give_list("ipconf_get_if_inet_addrs", platform.address_block, platform.addresses, if_index, list, address_block);
  return error != 0 ? error : platform.address_result;
}

}  // extern "C"
