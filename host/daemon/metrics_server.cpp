#include "daemon/metrics_server.h"

#include <fmt/format.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "daemon/log.h"

namespace host {
namespace {

constexpr unsigned kMaxConnections = 16;
constexpr std::size_t kMaxPages = 4;                 // on their way to readers
constexpr std::size_t kConnectionBytes = 16 * 1024;  // of memory for the head of a request
constexpr unsigned kIdleSec = 30;
constexpr uint64_t kDeadlineUsec = 60'000'000;    // from one answer that was sent to the next one
constexpr uint64_t kNoDescriptorsUsec = 100'000;  // while there are no descriptors

constexpr char kText[] = "text/plain; charset=utf-8";
constexpr char kStartPage[] =
    "<!DOCTYPE html>\n<html lang=\"en\"><title>pmshd</title>"
    "<p>The metrics of the switch are at <a href=\"/metrics\">/metrics</a>.</p></html>\n";

struct release_response {
  void operator()(MHD_Response* response) const { MHD_destroy_response(response); }
};
using http_response = std::unique_ptr<MHD_Response, release_response>;

// Null without memory.
http_response response_of(std::string_view text, const char* content_type) {
  http_response made(
      MHD_create_response_from_buffer(text.size(), const_cast<char*>(text.data()), MHD_RESPMEM_MUST_COPY));
  if (made) MHD_add_response_header(made.get(), MHD_HTTP_HEADER_CONTENT_TYPE, content_type);
  return made;
}

MHD_Result queue(MHD_Connection* connection, unsigned status, const http_response& response) {
  return response ? MHD_queue_response(connection, status, response.get()) : MHD_NO;
}

MHD_Result answer_text(MHD_Connection* connection, unsigned status, std::string_view sentence) {
  return queue(connection, status, response_of(fmt::format("{}\n", sentence), kText));
}

event_source watch(sd_event* loop, int descriptor, sd_event_io_handler_t handler, void* self) {
  sd_event_source* made = nullptr;
  check_event(sd_event_add_io(loop, &made, descriptor, EPOLLIN, handler, self), "watch readers of metrics");
  return event_source(made);
}

}  // namespace

// Of a connection: it ends with it, or ends it.
struct metrics_server::connection_deadline {
  int descriptor;
  event_source timer;
};

// Text that a reader takes.
struct metrics_server::page {
  std::string text;
  std::size_t& in_use;

  static void release(void* taken) {
    const std::unique_ptr<page> ended(static_cast<page*>(taken));
    --ended->in_use;
  }
};

metrics_server::metrics_server(sd_event* loop, const listen_address& at, std::function<daemon_facts()> describe)
    : loop_(loop), describe_(std::move(describe)), address_(at) {
  try {
    listen_at(at);
    start();
  } catch (...) {
    if (descriptor_ >= 0) close(descriptor_);
    throw;
  }
}

// Connections end first: they have timers of the loop.
metrics_server::~metrics_server() {
  server_.reset();
  listening_.reset();
  close(descriptor_);
}

void metrics_server::listen_at(const listen_address& at) {
  const int on = 1;
  descriptor_ = socket(at.any.sa_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  const bool listens = descriptor_ >= 0 && setsockopt(descriptor_, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) == 0 &&
                       bind(descriptor_, &at.any, at.size) == 0 && ::listen(descriptor_, SOMAXCONN) == 0 &&
                       getsockname(descriptor_, &address_.any, &address_.size) == 0;
  if (!listens)
    throw metrics_error(fmt::format("cannot listen at {} for metrics: {}. Choose another address with --metrics.",
                                    text_of(at), std::strerror(errno)));
}

void metrics_server::start() {
  server_.reset(
      MHD_start_daemon(MHD_USE_EPOLL | MHD_USE_NO_LISTEN_SOCKET, 0, nullptr, nullptr, &handle_request, this,   //
                       MHD_OPTION_CONNECTION_LIMIT, kMaxConnections, MHD_OPTION_CONNECTION_TIMEOUT, kIdleSec,  //
                       MHD_OPTION_CONNECTION_MEMORY_LIMIT, kConnectionBytes, MHD_OPTION_NOTIFY_CONNECTION,
                       &note_connection, this, MHD_OPTION_NOTIFY_COMPLETED, &note_completion, this, MHD_OPTION_END));
  const MHD_DaemonInfo* const info = server_ ? MHD_get_daemon_info(server_.get(), MHD_DAEMON_INFO_EPOLL_FD) : nullptr;
  if (info == nullptr) throw metrics_error("cannot start the HTTP server of --metrics: see the limits of the process.");
  listening_ = watch(loop_, descriptor_, handle_connection, this);
  working_ = watch(loop_, info->epoll_fd, handle_work, this);
  sd_event_source* made = nullptr;
  check_event(sd_event_add_time_relative(loop_, &made, CLOCK_MONOTONIC, 0, 0, handle_time, this), "make a timer");
  timer_.reset(made);
  check_event(sd_event_source_set_enabled(timer_.get(), SD_EVENT_OFF), "make a timer");
}

int metrics_server::handle_connection(sd_event_source*, int, uint32_t, void* self) noexcept {
  static_cast<metrics_server*>(self)->accept_reader();
  static_cast<metrics_server*>(self)->work();
  return 0;
}

int metrics_server::handle_work(sd_event_source*, int, uint32_t, void* self) noexcept {
  static_cast<metrics_server*>(self)->work();
  return 0;
}

int metrics_server::handle_time(sd_event_source*, uint64_t, void* self) noexcept {
  static_cast<metrics_server*>(self)->is_short_of_descriptors_ = false;
  static_cast<metrics_server*>(self)->work();
  return 0;
}

// Without descriptors the others wait in the queue of the socket, as shells do.
void metrics_server::accept_reader() {
  sockaddr_storage from{};
  socklen_t size = sizeof from;
  sockaddr* const address = reinterpret_cast<sockaddr*>(&from);
  const int descriptor = accept4(descriptor_, address, &size, SOCK_CLOEXEC | SOCK_NONBLOCK);
  if (descriptor >= 0)
    MHD_add_connection(server_.get(), descriptor, address, size);  // it closes what it does not take
  else if (errno != EAGAIN && errno != EINTR && errno != ECONNABORTED)
    is_short_of_descriptors_ = true;
}

bool metrics_server::is_full() const {
  const MHD_DaemonInfo* const info = MHD_get_daemon_info(server_.get(), MHD_DAEMON_INFO_CURRENT_CONNECTIONS);
  return info != nullptr && info->num_connections >= kMaxConnections;
}

void metrics_server::work() noexcept {
  MHD_run(server_.get());
  const bool accepts = !is_short_of_descriptors_ && !is_full();
  sd_event_source_set_enabled(listening_.get(), accepts ? SD_EVENT_ON : SD_EVENT_OFF);
  MHD_UNSIGNED_LONG_LONG milliseconds = 0;
  const bool has_timeout = MHD_get_timeout(server_.get(), &milliseconds) == MHD_YES;
  if (has_timeout || is_short_of_descriptors_)
    sd_event_source_set_time_relative(timer_.get(), has_timeout ? milliseconds * 1000 : kNoDescriptorsUsec);
  sd_event_source_set_enabled(timer_.get(), has_timeout || is_short_of_descriptors_ ? SD_EVENT_ONESHOT : SD_EVENT_OFF);
}

// ---- Deadlines ------------------------------------------------------------------------------------------------------

void metrics_server::note_connection(void* self, MHD_Connection* connection, void** context,
                                     MHD_ConnectionNotificationCode code) noexcept {
  if (code == MHD_CONNECTION_NOTIFY_CLOSED) {
    delete static_cast<connection_deadline*>(std::exchange(*context, nullptr));
    return;
  }
  const MHD_ConnectionInfo* const info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD);
  auto* const made = new (std::nothrow) connection_deadline{info->connect_fd, nullptr};
  *context = made;
  sd_event_source* timer = nullptr;
  if (made != nullptr && sd_event_add_time_relative(static_cast<metrics_server*>(self)->loop_, &timer, CLOCK_MONOTONIC,
                                                    kDeadlineUsec, 0, handle_deadline, made) >= 0)
    made->timer.reset(timer);
  else
    shutdown(info->connect_fd, SHUT_RDWR);
}

void metrics_server::note_completion(void*, MHD_Connection* connection, void**, MHD_RequestTerminationCode) noexcept {
  const MHD_ConnectionInfo* const info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_SOCKET_CONTEXT);
  const auto* const deadline = info == nullptr ? nullptr : static_cast<connection_deadline*>(info->socket_context);
  if (deadline != nullptr && deadline->timer != nullptr)
    sd_event_source_set_time_relative(deadline->timer.get(), kDeadlineUsec);
}

// The server finds the end of the connection.
int metrics_server::handle_deadline(sd_event_source*, uint64_t, void* deadline) noexcept {
  shutdown(static_cast<connection_deadline*>(deadline)->descriptor, SHUT_RDWR);
  return 0;
}

// ---- Requests -------------------------------------------------------------------------------------------------------

// Called with the head of a request, with each part of its body, and at its end.
MHD_Result metrics_server::handle_request(void* self, MHD_Connection* connection, const char* url, const char* method,
                                          const char*, const char*, size_t* body_size, void** request) noexcept {
  static char has_head;
  const std::string_view verb = method;
  const bool is_known = verb == MHD_HTTP_METHOD_GET || verb == MHD_HTTP_METHOD_HEAD;
  if (is_known && (std::exchange(*request, &has_head) == nullptr || std::exchange(*body_size, 0) != 0)) return MHD_YES;
  try {
    return static_cast<metrics_server*>(self)->answer(connection, url, is_known ? verb : std::string_view());
  } catch (const std::exception& error) {
    try {
      log_line(log_level::error, fmt::format("the metrics were not made: {}.", error.what()));
    } catch (const std::exception&) {
      // The connection ends without a word.
    }
    return MHD_NO;
  }
}

MHD_Result metrics_server::answer(MHD_Connection* connection, std::string_view url, std::string_view method) {
  if (url != "/" && url != "/metrics")
    return answer_text(connection, MHD_HTTP_NOT_FOUND, "Nothing is here. The metrics are at /metrics.");
  if (method.empty()) {
    const http_response refusal = response_of("Use GET or HEAD.\n", kText);
    if (refusal) MHD_add_response_header(refusal.get(), MHD_HTTP_HEADER_ALLOW, "GET, HEAD");
    return queue(connection, MHD_HTTP_METHOD_NOT_ALLOWED, refusal);
  }
  if (url == "/") return queue(connection, MHD_HTTP_OK, response_of(kStartPage, "text/html; charset=utf-8"));
  return answer_metrics(connection);
}

MHD_Result metrics_server::answer_metrics(MHD_Connection* connection) {
  if (pages_in_use_ >= kMaxPages)
    return answer_text(connection, MHD_HTTP_SERVICE_UNAVAILABLE, "Other readers still take their metrics. Try again.");
  if (const std::string fault = refresh_for_metrics(); !fault.empty()) {
    const std::string sentence = fmt::format("The switch cannot be read: {}.", fault);
    if (!std::exchange(is_switch_lost_, true)) log_line(log_level::warning, sentence);
    return answer_text(connection, MHD_HTTP_SERVICE_UNAVAILABLE, sentence);
  }
  is_switch_lost_ = false;
  const char* const accept = MHD_lookup_connection_value(connection, MHD_HEADER_KIND, MHD_HTTP_HEADER_ACCEPT);
  const exposition_format format = format_accepted(accept == nullptr ? "" : accept);
  auto made = std::make_unique<page>(page{{}, pages_in_use_});
  metrics_.write(describe_(), format, made->text);
  const http_response response(MHD_create_response_from_buffer_with_free_callback_cls(
      made->text.size(), made->text.data(), &page::release, made.get()));
  if (!response) return MHD_NO;
  ++pages_in_use_;
  made.release();  // NOLINT: it is the response's
  MHD_add_response_header(response.get(), MHD_HTTP_HEADER_CONTENT_TYPE, content_type_of(format).data());
  return MHD_queue_response(connection, MHD_HTTP_OK, response.get());
}

}  // namespace host
