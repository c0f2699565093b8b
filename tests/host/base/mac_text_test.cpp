// MAC addresses: every spelling, and where a wrong one is wrong.
#include "base/mac_text.h"

#include <gtest/gtest.h>

namespace host {
namespace {

constexpr std::array<uint8, 6> kMac = {0x02, 0x00, 0x5e, 0x00, 0x0a, 0xb9};

TEST(MacText, HasManySpellings) {
  for (const char* const text : {"0200.5e00.0ab9", "0200.5E00.0AB9", "200.5e00.ab9", "02:00:5e:00:0a:b9",
                                 "02:00:5E:00:0A:B9", "2:0:5e:0:a:b9", "02-00-5e-00-0a-b9", "02005e000ab9"})
    EXPECT_EQ(read_mac(text).mac, kMac) << text;
}

struct wrong_text {
  const char* text;
  std::size_t position;
  const char* fault;
};

TEST(MacText, FaultHasItsPosition) {
  for (const wrong_text& it : {
           wrong_text{"02:00:5g:00:0a:b9", 7, "expected a hexadecimal digit"},
           {"02:00:5e:00:0a", 14, "the address ends too soon"},
           {"02:00:5e:00:0a:", 15, "the address ends too soon"},
           {"02:00:5e:00:0a:b9:01", 17, "the address is too long"},
           {"02:00-5e:00:0a:b9", 5, "expected ':'"},
           {"02:000:5e:00:0a:b9", 5, "too many digits"},
           {"0200.5e00", 9, "the address ends too soon"},
           {"0200..0ab9", 5, "expected a hexadecimal digit"},
           {"02005e000ab", 11, "the address ends too soon"},
           {"02005e000ab97", 12, "too many digits"},
           {"", 0, "the address ends too soon"},
           {"eth0", 1, "expected a hexadecimal digit"},
       }) {
    const mac_reading read = read_mac(it.text);
    EXPECT_FALSE(read.mac) << it.text;
    EXPECT_EQ(read.position, it.position) << it.text;
    EXPECT_EQ(read.fault, it.fault) << it.text;
  }
}

}  // namespace
}  // namespace host
