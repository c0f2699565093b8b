// Which requests are foreseen after those for the first interfaces.
#include "transport/forecast.h"

#include <gtest/gtest.h>

#include <cstring>
#include <numeric>
#include <string>
#include <vector>

#include "platform/wire.h"

namespace host {
namespace {

constexpr mts_addr_t kService{MTS_NODE_LOCAL, 179};
constexpr uint32 kPorts = 0x08000000, kChannels = 0x16000000;

// A hundred of the same type.
std::vector<uint32> hundred(uint32 first) {
  std::vector<uint32> interfaces(100);
  std::iota(interfaces.begin(), interfaces.end(), first);
  return interfaces;
}

std::vector<std::byte> payload_of_words(std::vector<uint32> words) {
  std::vector<std::byte> payload;
  for (const be32 it : words) {
    const auto bytes = std::as_bytes(std::span(&it, 1));
    payload.insert(payload.end(), bytes.begin(), bytes.end());
  }
  return payload;
}

struct counted {
  std::size_t number = 0;
  uint32 first = 0, last = 0;  // interfaces, in the first word
  bool operator==(const counted&) const = default;
};

// Those with an opcode; the interfaces are consecutive.
counted of_opcode(const std::vector<foreseen_request>& ahead, mts_opc_t opcode) {
  counted found;
  for (const foreseen_request& it : ahead) {
    if (it.opcode != opcode) continue;
    be32 word;
    std::memcpy(&word, it.payload.data(), sizeof word);
    if (found.number == 0) found.first = word;
    EXPECT_EQ(uint32{word}, found.first + found.number);
    found.last = word;
    ++found.number;
  }
  return found;
}

class Forecast : public testing::Test {
 protected:
  Forecast() { forecast_.begin("brief", hundred(kPorts)); }

  std::vector<foreseen_request> note_bytes(mts_opc_t opcode, std::span<const std::byte> payload) {
    const uint32 if_index = forecast_.interface_of(payload);
    return if_index == 0 ? std::vector<foreseen_request>() : forecast_.note_new(if_index, kService, opcode, payload);
  }
  std::vector<foreseen_request> note(mts_opc_t opcode, uint32 if_index) {
    return note_bytes(opcode, payload_of_words({if_index}));
  }
  std::vector<foreseen_request> use(mts_opc_t opcode, uint32 if_index) {
    return forecast_.note_foreseen(if_index, kService, opcode, payload_of_words({if_index}));
  }

  forecast forecast_;
};

TEST_F(Forecast, TheFirstInterfaceIsLearnedAndTheNext64Foreseen) {
  EXPECT_TRUE(note(1, kPorts).empty());
  EXPECT_TRUE(note(2, kPorts).empty());

  const auto ahead = note(1, kPorts + 1);

  EXPECT_EQ(of_opcode(ahead, 1), (counted{63, kPorts + 2, kPorts + 64}));
  EXPECT_EQ(of_opcode(ahead, 2), (counted{64, kPorts + 1, kPorts + 64}));
  EXPECT_EQ(ahead.size(), 127u);
}

TEST_F(Forecast, MoreAreForeseenWhenHalfOfThemAreUsed) {
  note(1, kPorts);
  note(1, kPorts + 1);
  for (uint32 at = 2; at <= 32; ++at) EXPECT_TRUE(use(1, kPorts + at).empty()) << at;
  EXPECT_EQ(of_opcode(use(1, kPorts + 33), 1), (counted{35, kPorts + 65, kPorts + 99}));
  for (uint32 at = 34; at < 100; ++at) EXPECT_TRUE(use(1, kPorts + at).empty()) << at;
}

TEST_F(Forecast, WhatIsNotUsedIsNotForeseenAgain) {
  note(1, kPorts);
  note(2, kPorts);
  note(1, kPorts + 1);
  for (uint32 at = 2; at <= 32; ++at) use(1, kPorts + at);

  const auto ahead = use(1, kPorts + 33);

  EXPECT_EQ(of_opcode(ahead, 1).number, 35u);
  EXPECT_EQ(of_opcode(ahead, 2).number, 0u);
}

TEST_F(Forecast, ARequestThatTheFirstDidNotNeedIsForeseenLikeTheOthers) {
  note(1, kPorts);
  note(1, kPorts + 1);
  EXPECT_EQ(of_opcode(note(3, kPorts + 5), 3), (counted{59, kPorts + 6, kPorts + 64}));
}

TEST_F(Forecast, EachTypeOfInterfaceIsLearnedByItself) {
  std::vector<uint32> both = hundred(kPorts);
  const std::vector<uint32> channels = hundred(kChannels);
  both.insert(both.end(), channels.begin(), channels.end());
  forecast_.begin("brief", both);
  note(1, kPorts);

  EXPECT_TRUE(note(1, kChannels).empty());
  EXPECT_EQ(of_opcode(note(1, kChannels + 1), 1), (counted{63, kChannels + 2, kChannels + 64}));
}

TEST_F(Forecast, AnInterfaceIsReplacedWhereverItIs) {
  note_bytes(1, payload_of_words({7, kPorts, kPorts, 9}));
  const auto ahead = note_bytes(1, payload_of_words({7, kPorts + 1, kPorts + 1, 9}));
  ASSERT_FALSE(ahead.empty());
  EXPECT_EQ(ahead.front().payload, payload_of_words({7, kPorts + 2, kPorts + 2, 9}));
}

TEST_F(Forecast, OnlyShortRequestsAboutTheInterfacesAreForeseen) {
  EXPECT_EQ(forecast_.interface_of(payload_of_words({7, kPorts + 3})), kPorts + 3);
  EXPECT_EQ(forecast_.interface_of(payload_of_words({5})), 0u);
  EXPECT_EQ(forecast_.interface_of({}), 0u);
  EXPECT_TRUE(forecast::is_short(std::vector<std::byte>(256)));
  EXPECT_FALSE(forecast::is_short(std::vector<std::byte>(257)));
}

TEST_F(Forecast, ADisplayIsRememberedByItsName) {
  note(1, kPorts);
  note(2, kPorts);
  note(1, kPorts + 1);
  use(2, kPorts + 1);
  for (uint32 at = 2; at < 64; ++at)
    for (const mts_opc_t opcode : {1U, 2U}) use(opcode, kPorts + at);

  forecast_.begin("status", hundred(kPorts));
  EXPECT_TRUE(note(1, kPorts).empty());
  forecast_.begin("brief", hundred(kPorts));
  const auto ahead = note(1, kPorts);

  EXPECT_EQ(of_opcode(ahead, 1), (counted{63, kPorts + 1, kPorts + 63}));
  EXPECT_EQ(of_opcode(ahead, 2), (counted{64, kPorts, kPorts + 63}));
}

TEST_F(Forecast, WhatADisplayHardlyNeededIsNotRemembered) {
  note(1, kPorts);
  note(2, kPorts);
  note(1, kPorts + 1);
  for (uint32 at = 2; at < 64; ++at) use(1, kPorts + at);

  forecast_.begin("brief", hundred(kPorts));
  const auto ahead = note(1, kPorts);

  EXPECT_EQ(of_opcode(ahead, 1).number, 63u);
  EXPECT_EQ(of_opcode(ahead, 2).number, 0u);
}

TEST_F(Forecast, OneInterfaceHasNoNext) {
  const uint32 one = kPorts;
  forecast_.begin("brief", {&one, 1});
  EXPECT_FALSE(forecast_.is_on());
  note(1, kPorts);
  EXPECT_TRUE(note(1, kPorts + 1).empty());
}

}  // namespace
}  // namespace host
