// The real shell as a program: by its arguments, and by keystrokes on a pseudo-terminal.
#pragma once

#include <string>
#include <vector>

namespace session {

struct outcome {
  int exit_code = -1;  // 128 + signal for a program that a signal ended
  std::string out;
  std::string err;
};

// Runs a program to its end. `input` is its standard input.
outcome run_program(const std::string& program, const std::vector<std::string>& arguments,
                    const std::string& input = {});

// The shell that was built, on a switch file.
outcome run_shell_on(const std::string& switch_file, std::vector<std::string> arguments, const std::string& input = {});

// The same on the switch of these tests.
outcome run_shell(std::vector<std::string> arguments, const std::string& input = {});

// Lines of commands on the switch of configuration.yaml; `options` in front.
outcome run_lines(const std::string& lines, std::vector<std::string> options = {});

// One command on the switch of these tests.
outcome run_command(const std::string& command);

// The path of a file of these tests, and of a switch that comes with the shell.
std::string test_file(const std::string& name);
std::string shipped_switch(const std::string& name);

// A directory of this test program, for what shells keep.
std::string state_directory();

// A shell on a switch file whose standard output is a pipe, read while it runs.
class piped_shell {
 public:
  piped_shell(const std::string& switch_file, std::vector<std::string> arguments);
  ~piped_shell();
  piped_shell(const piped_shell&) = delete;
  piped_shell& operator=(const piped_shell&) = delete;

  // The next line without its newline; empty when none comes in time.
  std::string line();

  // What else was written until the program closed its output.
  std::string rest();

  void interrupt() const;
  void stop_reading();

  // Waits for the end of the program: its exit code, or -1 when it does not end in time.
  int exit_code();

 private:
  bool read_more(int milliseconds);

  int child_ = -1;
  int out_ = -1;
  std::string unread_;
};

// A shell at a pseudo-terminal of 24 rows and 80 columns, on a switch file unless its name is empty.
class terminal {
 public:
  explicit terminal(std::vector<std::string> arguments, const std::string& switch_file = test_file("lab.yaml"));
  ~terminal();
  terminal(const terminal&) = delete;
  terminal& operator=(const terminal&) = delete;

  void type(const std::string& keys);
  void signal(int number) const;
  bool is_cooked() const;  // the terminal edits lines itself
  void resize(unsigned short rows, unsigned short columns) const;

  // Waits for the prompt, and until the shell reads key by key.
  bool shows_prompt();

  // Waits until `text` has been shown since the last call that found its text. False when it does not come in time.
  bool shows(const std::string& text);

  // What the last shows() that found its text read up to there, and all that was shown since.
  const std::string& seen() const { return seen_; }
  const std::string& unread() const { return unread_; }

  // Waits for the end of the program: its exit code, or -1 when it does not end in time.
  int exit_code();

 private:
  bool read_more(int milliseconds);

  int child_ = -1;
  int screen_ = -1;
  std::string seen_;
  std::string unread_;
};

}  // namespace session
