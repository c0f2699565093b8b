// Which interfaces there are: the port manager's listings, asked over the message transport.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/if_index.h"
#include "platform/mts.h"
#include "switch/interface_name.h"

namespace host {

// The entries of a listing answer, in host order; as many as the answer counts and its bytes hold.
std::vector<if_index_t> decode_listing(std::span<const std::byte> answer);

// The interfaces of the kinds of these words, sorted by index; nothing when the port manager does not answer, for the
// reason in mts_errno_get().
std::optional<std::vector<if_index_t>> list_interfaces(mts_q_handle_t q, std::span<const interface_word* const> words);

// The interfaces of some spans in the order of the spans. Those that do not exist are named in `missing`.
struct expansion {
  std::vector<if_index_t> interfaces;
  std::string missing;  // such as "ethernet 9/9"; empty: none
};
std::optional<expansion> expand_spans(mts_q_handle_t q, std::span<const interface_span> spans);

// All interfaces of these words, in natural order within each word; sub-interfaces stand behind their port.
std::optional<std::vector<if_index_t>> expand_words(mts_q_handle_t q, std::span<const interface_word* const> words);

}  // namespace host
