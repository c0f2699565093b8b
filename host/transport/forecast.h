// Requests that a command is likely to send next: for its later interfaces those that it sent for the first one of
// their kind.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/mts.h"
#include "platform/types.h"

namespace host {

struct foreseen_request {
  mts_addr_t to;
  mts_opc_t opcode;
  std::vector<std::byte> payload;
};

class forecast {
 public:
  // The next requests are those of a display, about these interfaces, in about this order. What an earlier one of this
  // name has learned is used again.
  void begin(std::string_view display, std::span<const uint32> interfaces);
  void end();

  // Whether the next requests are about interfaces.
  bool is_on() const { return !places_.empty(); }

  // Whether a request is short enough to be foreseen.
  static bool is_short(std::span<const std::byte> payload);

  // The interface that a short request is about; 0: none of them.
  uint32 interface_of(std::span<const std::byte> payload) const;

  // A request about an interface that was not foreseen, or that was. Both return requests to send ahead, none of them a
  // second time.
  std::vector<foreseen_request> note_new(uint32 if_index, const mts_addr_t& to, mts_opc_t opcode,
                                         std::span<const std::byte> payload);
  std::vector<foreseen_request> note_foreseen(uint32 if_index, const mts_addr_t& to, mts_opc_t opcode,
                                              std::span<const std::byte> payload);

 private:
  // Interfaces with the same upper six bits, which are their type.
  using kind = uint8;

  // A request with room for an interface.
  struct pattern {
    foreseen_request request;          // the interface is 0
    std::vector<std::size_t> offsets;  // of the interface, big-endian
    kind of = 0;
    std::size_t since = 0, until = 0;  // it was foreseen for the interfaces of its kind from one to before the other
    std::size_t num_used = 0;

    // Whether interfaces before this one needed it, so that it is worth foreseeing.
    bool is_usual(std::size_t at) const { return at < since + 8 || num_used * 4 >= at - since; }
  };

  struct place {
    kind of;
    std::size_t at;  // among those of its kind
  };

  pattern pattern_of(uint32 if_index, const mts_addr_t& to, mts_opc_t opcode, std::span<const std::byte> payload) const;
  pattern* find(const pattern& what);
  void foresee(pattern& what, std::size_t until, std::vector<foreseen_request>& ahead);
  std::size_t end_of(kind of, std::size_t at) const;

  std::unordered_map<uint32, place> places_;
  std::unordered_map<kind, std::vector<uint32>> interfaces_;
  std::vector<pattern> patterns_;
  std::string display_;
  std::map<std::string, std::vector<pattern>, std::less<>> learned_;  // by display
};

}  // namespace host
