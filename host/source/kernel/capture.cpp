#include "source/kernel/capture.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>

#include "base/text.h"
#include "base/write_all.h"
#include "switch/clock.h"

namespace host {

namespace {

capture* the_capture = nullptr;

std::string hexadecimal(uint32 number) {
  char digits[9];
  std::snprintf(digits, sizeof digits, "%08x", number);
  return digits;
}

void make_empty_directory(const std::string& directory) {
  if (mkdir(directory.c_str(), 0700) == 0) return;
  const int error = errno;
  std::error_code failed;
  const bool is_empty = std::filesystem::is_empty(directory, failed);
  if (error != EEXIST || failed)
    throw capture_error("cannot capture into " + in_quotes(directory) + ": " +
                        (error != EEXIST ? std::strerror(error) : failed.message()) + ".");
  if (!std::filesystem::is_directory(directory, failed))
    throw capture_error(in_quotes(directory) + " is not a directory. Give --capture a new or empty directory.");
  if (!is_empty) throw capture_error(in_quotes(directory) + " is not empty. Give --capture a new or empty directory.");
}

// A file that does not exist yet, for this user alone.
int create(const std::string& directory, const std::string& name) {
  return open((directory + "/" + name).c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
}

}  // namespace

// ---- Requests -------------------------------------------------------------------------------------------------------

// Passes requests to the real channel. An answer is stored when the next request begins, or the channel ends.
class captured_channel final : public kernel_channel {
 public:
  captured_channel(int bus, std::unique_ptr<kernel_channel> real) : bus_(bus), real_(std::move(real)) {
    the_capture->channels_.push_back(this);
  }
  ~captured_channel() override {
    if (the_capture == nullptr) return;
    store();
    std::erase(the_capture->channels_, this);
  }
  captured_channel(const captured_channel&) = delete;
  captured_channel& operator=(const captured_channel&) = delete;

  uint32 port() const override { return real_->port(); }

  int send(const nlmsghdr& request) override {
    store();
    const auto* const bytes = reinterpret_cast<const char*>(&request);
    request_.assign(bytes, bytes + request.nlmsg_len);
    error_ = real_->send(request);
    return error_;
  }

  ssize_t receive(std::span<char> to, int& error) override {
    const ssize_t size = real_->receive(to, error);
    if (size < 0 && error != EINTR) error_ = error;
    if (size <= 0) return size;
    answer_.append(to.data(), static_cast<std::size_t>(size));
    answer_.resize(NLMSG_ALIGN(answer_.size()));
    return size;
  }

  void store() {
    if (request_.empty() || the_capture == nullptr) return;
    the_capture->add_messages(bus_, *reinterpret_cast<const nlmsghdr*>(request_.data()), std::move(answer_), error_);
    request_.clear();
    answer_.clear();
  }

 private:
  int bus_;
  std::unique_ptr<kernel_channel> real_;
  std::vector<char> request_;  // empty: its answer is stored
  std::string answer_;
  int error_ = 0;
};

namespace {

kernel_io real_io;
kernel_table_opener real_table_opener;

std::unique_ptr<kernel_channel> open_captured(int bus) {
  auto real = real_io.open(bus);
  if (real == nullptr || the_capture == nullptr) return real;
  return std::make_unique<captured_channel>(bus, std::move(real));
}

int ask_captured(const std::string& device, void* command) {
  const auto* const bytes = static_cast<const char*>(command);
  const std::vector<char> before(bytes, bytes + ioctl_size(command));
  const int error = real_io.ethtool_ioctl(device, command);
  if (!before.empty()) the_capture->add_ioctl(device, before.data(), command, error);
  return error;
}

lldp_answer ask_captured_lldpd() {
  lldp_answer answer = real_io.lldp_neighbors();
  if (the_capture != nullptr) the_capture->add_lldp(answer);
  return answer;
}

std::FILE* open_captured_table() {
  std::FILE* const table = real_table_opener();
  if (table == nullptr) return nullptr;
  std::string text;
  for (int character = std::fgetc(table); character != EOF; character = std::fgetc(table))
    text += static_cast<char>(character);
  the_capture->add_table(text);
  std::rewind(table);
  return table;
}

}  // namespace

// ---- The folder -----------------------------------------------------------------------------------------------------

capture::capture(const std::string& directory, bool is_anonymous)
    : directory_((make_empty_directory(directory), directory)),
      index_(create(directory, kCaptureIndex)),
      process_(getpid()),
      before_(the_kernel_io()),
      table_before_(the_kernel_table_opener()) {
  if (index_.descriptor < 0)
    throw capture_error("cannot capture into " + in_quotes(directory) + ": " + std::strerror(errno) + ".");
  if (is_anonymous) anonymiser_.emplace();
  the_capture = this;
  real_io = before_;
  real_table_opener = table_before_;
  the_kernel_io() = {open_captured, ask_captured, ask_captured_lldpd};
  the_kernel_table_opener() = open_captured_table;
  write_index(kCaptureVersion);
  write_index("byte-order " + std::string(byte_order_word()));
  write_index("clock " + std::to_string(clock_now()));
}

capture::~capture() {
  finish();
  the_kernel_io() = before_;
  the_kernel_table_opener() = table_before_;
  the_capture = nullptr;
}

bool capture::is_own_process() const { return getpid() == process_; }

void capture::write_index(const std::string& line) {
  if (const int error = write_all(index_.descriptor, line + "\n"); error_ == 0) error_ = error;
}

void capture::write_file(const std::string& name, std::string_view text) {
  const open_file file(create(directory_, name));
  const int error = file.descriptor < 0 ? errno : write_all(file.descriptor, text);
  if (error_ == 0) error_ = error;
}

void capture::add_line(const std::string& line) {
  if (is_own_process() && lines_.insert(line).second) write_index(line);
}

void capture::add_baseline(uint32 device, const counter_baseline& baseline) {
  add_line("baseline " + baseline_text(device, anonymiser_ ? anonymiser_->baseline(baseline) : baseline));
}

void capture::add_switch_name(const std::string& name) {
  add_line("switch " + (anonymiser_ ? std::string("switch") : name));
}

void capture::add_messages(int netlink_bus, const nlmsghdr& request, std::string messages, int error) {
  const captured_request asked = request_of(netlink_bus, request);
  if (anonymiser_ && !anonymiser::is_stored(asked)) return;
  if (anonymiser_) messages = anonymiser_->answer(request, messages);
  address_messages(messages, 0, 0);
  add_answer(asked, messages, error);
}

// The record before the call is the request, the one after it is the answer.
void capture::add_ioctl(const std::string& device, const void* before, const void* after, int error) {
  const std::string_view record(static_cast<const char*>(after), ioctl_size(before));
  if (!anonymiser_) return add_answer(request_of_ioctl(device, before), record, error);
  add_answer(request_of_ioctl(anonymiser_->device_name(device), before), anonymiser_->ioctl_answer(record), error);
}

void capture::add_table(const std::string& text) {
  add_answer(request_of_table(), anonymiser_ ? anonymiser_->table(text) : text, 0);
}

void capture::add_lldp(const lldp_answer& answer) {
  std::vector<lldp_neighbor> stored = answer.neighbors;
  if (anonymiser_)
    for (lldp_neighbor& it : stored) it = anonymiser_->neighbor(it);
  add_answer(request_of_lldp(), lldp_text(stored), answer.error);
}

void capture::add_answer(const captured_request& request, std::string_view answer, int error) {
  if (!is_own_process() || is_finished_) return;
  char number[16];
  std::snprintf(number, sizeof number, "%04u", ++answers_);
  const std::string name(request_name(request));
  const std::string file = std::string(number) + "-" + name;
  write_file(file, answer);
  write_index("answer " + std::to_string(answers_) + " " + std::string(bus_word(request.bus)) + " " +
              std::to_string(request.type) + " " + name + " " + file + " " + std::to_string(answer.size()) + " " +
              std::to_string(error) + " " + request.key);
}

namespace {

// A table that cannot be read cannot be read from the capture either.
void read_table(const machine& model, table_id table, switch_source& source) {
  try {
    const std::unique_ptr<table_reader> reader = source.open_table(model, table, {});
    std::vector<table_row> rows;
    while (reader != nullptr && reader->next(rows)) rows.clear();
  } catch (const kernel_error&) {
  }
}

}  // namespace

void capture::complete(const machine& model, switch_source& source) {
  for (const interface& port : model.interfaces) {
    interface copy = port;
    for (const detail needed :
         {detail::link_fault, detail::driver, detail::module, detail::diagnostics, detail::counters})
      source.complete(copy, needed);
  }
  for (auto number = uint16{1}; number <= static_cast<uint16>(table_id::last); ++number)
    read_table(model, static_cast<table_id>(number), source);
  if (std::FILE* const table = the_kernel_table_opener()(); table != nullptr) std::fclose(table);
}

int capture::finish() {
  if (is_finished_ || !is_own_process()) return error_;
  for (captured_channel* const channel : channels_) channel->store();
  is_finished_ = true;
  write_index("end " + std::to_string(answers_));
  if (const int error = flush_to_disk(index_.descriptor); error_ == 0) error_ = error;
  return error_;
}

// ---- The source -----------------------------------------------------------------------------------------------------

capturing_source::capturing_source(capture& to, requested_interfaces requested, const std::string& baseline_file,
                                   const std::string& names_file)
    : kernel_source(std::move(requested), baseline_file, names_file), capture_(to) {
  const auto kernel = system();
  capture_.add_line("system " + kernel->name + " " + kernel->release);
  capture_.add_switch_name(name());
}

std::vector<mapped_device> capturing_source::map(const std::vector<kernel_link>& links, uint32 management) {
  std::vector<mapped_device> mapped = kernel_source::map(links, management);
  for (const mapped_device& it : mapped)
    capture_.add_line("device " + std::to_string(it.number) + " " + hexadecimal(it.if_index) + " " +
                      std::string(reason_word(it.reason)));
  return mapped;
}

const counter_baseline* capturing_source::find_baseline(const kernel_link& link) const {
  const counter_baseline* const baseline = kernel_source::find_baseline(link);
  if (baseline != nullptr) capture_.add_baseline(link.number, *baseline);
  return baseline;
}

}  // namespace host
