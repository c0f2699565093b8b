// A program that shows text page by page, such as less.
#pragma once

#include <sys/types.h>
#include <termios.h>

#include <string>

namespace host {

// The pager of the environment: $PAGER, else less where it is installed; empty: none. "cat" and an empty $PAGER are no
// pager: then `has_pages` is false.
struct pager_choice {
  std::string command;
  bool has_pages = true;
};
pager_choice chosen_pager();

class external_pager {
 public:
  external_pager() = default;
  ~external_pager() { finish(); }
  external_pager(const external_pager&) = delete;
  external_pager& operator=(const external_pager&) = delete;

  // Starts a command whose standard input is a pipe; it belongs to the process group of the shell, so that Ctrl-C
  // reaches both. Writing to a pager that has ended fails with EPIPE and ends nothing. Returns 0 or an errno.
  int start(const std::string& command);

  bool is_running() const { return child_ > 0; }
  int descriptor() const { return text_; }  // takes the text

  // Ends the text and waits until the user leaves. Ctrl-C is for the pager meanwhile.
  void finish();

 private:
  pid_t child_ = -1;
  int text_ = -1;
  termios terminal_{};
  bool has_terminal_ = false;
  void (*broken_pipe_)(int) = nullptr;
};

}  // namespace host
