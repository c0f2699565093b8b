// Addresses of --metrics.
#include "daemon/metrics/listen_address.h"

#include <gtest/gtest.h>

namespace host {
namespace {

std::string read_back(std::string_view text) {
  const auto read = read_listen_address(text);
  return read ? text_of(*read) : "none";
}

TEST(ListenAddress, IsAPortOfTheLoopbackOrAnAddressWithAPort) {
  EXPECT_EQ(read_back("9100"), "127.0.0.1:9100");
  EXPECT_EQ(read_back(":9100"), "127.0.0.1:9100");
  EXPECT_EQ(read_back("0"), "127.0.0.1:0");
  EXPECT_EQ(read_back("0.0.0.0:65535"), "0.0.0.0:65535");
  EXPECT_EQ(read_back("[::1]:9100"), "[::1]:9100");
  EXPECT_EQ(read_back("[2001:db8:0:0::1]:80"), "[2001:db8::1]:80");
}

TEST(ListenAddress, IsNotAnotherText) {
  for (const char* const text : {"", ":", "x", "65536", "-1", "1.2.3.4", "1.2.3.4:", "1.2.3:80", "::1:9100", "[::1]",
                                 "[::1]9100", "[]:9100", "[1.2.3.4]:80", "localhost:9100", "9100 ", "[::1:9100"})
    EXPECT_EQ(read_back(text), "none") << text;
}

}  // namespace
}  // namespace host
