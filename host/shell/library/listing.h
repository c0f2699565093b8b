// The existing interfaces, from the port manager's listings over the message transport.
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

// The interfaces of a kind, in the listing's order; nothing when the port manager does not answer, for the reason in
// mts_errno_get().
std::optional<std::vector<if_index_t>> list_kind(mts_q_handle_t q, if_index_type_t kind);

// Natural order; sub-interfaces follow their port.
void sort_naturally(std::vector<if_index_t>& interfaces);

// All interfaces of a word, in natural order.
std::optional<std::vector<if_index_t>> list_word(mts_q_handle_t q, const interface_word& word);

// A number that may be typed after the word of an interface, and how it is written.
struct written_number {
  interface_number number;
  std::string text;
};

// The numbers of all interfaces of a word; nothing when the port manager does not answer.
std::optional<std::vector<written_number>> existing_numbers(const interface_word& word);

}  // namespace host
