// Requests to a capture of frames, which answers as the switch did.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "transport/frame_capture.h"
#include "transport/hello.h"
#include "transport/request_path.h"

namespace host {

// Requests are equal when service, opcode and payload are. Their answers come in the order in which they were recorded,
// whichever shell asked; the last one repeats. A request that has none fails: a sentence names it
// (fault::disconnected).
class recorded_path final : public request_path {
 public:
  // Reads and checks the file. `on_moment` is called before each answer with its time, in nanoseconds since 1970.
  // Throws frame_capture_error, which names file and byte.
  recorded_path(std::string file, std::function<void(uint64)> on_moment);

  // The same of the bytes of such a file.
  recorded_path(std::string file, std::span<const std::byte> bytes, std::function<void(uint64)> on_moment);
  ~recorded_path() override;
  recorded_path(const recorded_path&) = delete;
  recorded_path& operator=(const recorded_path&) = delete;

  // What the daemon reported of the switch to the first shell.
  const welcome& greeting() const { return greeting_; }

  int32 begin(const sent_request& request, std::optional<reply>& answer) override;
  int32 finish(mts_rr_token_t token, uint32 seconds, reply& answer) override;
  void forget(mts_rr_token_t token) override;

  // Readable as often as the daemon reported news under this cursor, then no more.
  std::vector<int> descriptors(const service& asked, uint32 cursor) override;

 private:
  using request_key = std::string;  // node, access point, opcode and payload

  struct recorded_answer {
    reply::kind what;
    std::vector<std::byte> payload;
    uint64 wall_ns;
  };
  struct answers {
    std::vector<recorded_answer> in_order;
    std::size_t next = 0;
  };
  // What a shell and the daemon sent each other.
  struct conversation {
    message_assembly of_shell, of_daemon;
    std::multimap<uint32, request_key> open;  // by token, the oldest first
  };

  static request_key key_of(mts_addr_t to, mts_opc_t opcode, std::span<const std::byte> payload);
  void read(std::span<const std::byte> bytes);
  std::string add(const captured_frame& frame);
  std::string add_message(conversation& with, const captured_frame& frame, frame_message message);
  std::string sentence_without_answer(const sent_request& request) const;

  std::string file_;
  std::function<void(uint64)> on_moment_;
  welcome greeting_;
  bool is_greeted_ = false;
  std::map<uint64, conversation> conversations_;  // by client, while the file is read
  std::map<request_key, answers, std::less<>> answers_;
  std::map<uint32, uint32> news_;    // how often, by cursor
  std::set<std::string> sentences_;  // of failures that were noted
  int readable_ = -1, silent_ = -1;
};

}  // namespace host
