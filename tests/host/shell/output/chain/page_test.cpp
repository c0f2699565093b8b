// Screens of lines.
#include "shell/output/chain/page.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include "host/shell/output/chain/seen_lines.h"

namespace session {
namespace {

// While it lives, standard input has no keys.
class no_keys {
 public:
  no_keys() : real_(dup(STDIN_FILENO)) {
    const int null = open("/dev/null", O_RDONLY);
    dup2(null, STDIN_FILENO);
    close(null);
  }
  ~no_keys() {
    dup2(real_, STDIN_FILENO);
    close(real_);
  }
  no_keys(const no_keys&) = delete;
  no_keys& operator=(const no_keys&) = delete;

 private:
  int real_;
};

// What is no terminal has 24 rows of 80 columns.
TEST(Page, EndsWhenTheUserIsGone) {
  const no_keys user;
  const int screen = memfd_create("screen", 0);
  seen_lines seen;
  host::paging_sink page(screen, 0, seen);
  for (int i = 0; i < 22; ++i) page.take({"line"});
  EXPECT_FALSE(page.has_left());
  page.take({std::string(100, 'x')});  // two rows
  EXPECT_TRUE(page.has_left());
  page.take({"line"});
  EXPECT_FALSE(page.take_part({"li"}));
  EXPECT_EQ(seen.lines.size(), 22U);
  char question[9] = {};
  EXPECT_EQ(pread(screen, question, 8, 0), 8);
  EXPECT_STREQ(question, "--More--");
  close(screen);
}

}  // namespace
}  // namespace session
