// A change in the journal of a switch whose checksum is right: it is read, made on a machine, written and read again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

#include "store/record.h"
#include "store/stored_state.h"
#include "switch/if_index_layout.h"

namespace {

using octets = std::span<const std::byte>;

host::machine small_switch() {
  host::machine made;
  for (const if_index_t it :
       {host::ethernet_index(IF_TYPE_ETHERNET, 0, 0), host::ethernet_index(IF_TYPE_ETHERNET, 0, 1, 7),
        host::channel_index(IF_TYPE_ETH_PORT_CHANNEL, 5), host::numbered_index(IF_TYPE_LOOPBACK, 3)}) {
    host::interface port;
    port.if_index = it;
    port.tracked = {host::numbered_index(IF_TYPE_LOOPBACK, 3)};
    made.add(std::move(port));
  }
  return made;
}

std::size_t read_journal(octets bytes, host::stored_state& state) {
  const host::record_list records = host::read_records(bytes);
  return host::read_state(records.payloads, state);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const octets payload(reinterpret_cast<const std::byte*>(data), size);
  host::stored_state raw;
  read_journal(payload, raw);

  std::vector<std::byte> journal = host::write_state({.identity = {1, "lab.yaml", 2}}).bytes;
  host::append_record(journal, 1, payload);
  host::append_record(journal, 2, payload);
  host::stored_state state;
  const std::size_t num_known = read_journal(journal, state);
  if (num_known == 1) return 0;
  if (num_known != 3) std::abort();  // the same payload twice
  host::machine changed = small_switch();
  for (const host::waiting_commit& it : state.waiting) static_cast<void>(host::changes_of_commit(it, changed));
  host::put_state(changed, state);

  host::stored_state again;
  const host::journal_text text = host::write_state(state);
  if (read_journal(text.bytes, again) != text.num_records || again.images != state.images ||
      again.startup != state.startup)
    std::abort();
  return 0;
}
