// Captures of frames: their format, their files, and the answers of a recorded switch.
#include "transport/frame_capture.h"

#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <memory>
#include <optional>

#include "transport/failures.h"
#include "transport/hello.h"
#include "transport/recorded_path.h"

namespace host {
namespace {

using testing::HasSubstr;
using file_bytes = std::vector<std::byte>;

std::span<const std::byte> as_payload(std::string_view text) { return std::as_bytes(std::span(text)); }

constexpr service kRecorded = {77, "recorded", nullptr};

// A capture that is written record by record, a second after the one before.
class capture_writer {
 public:
  capture_writer() { append_capture_head(file_); }

  capture_writer& add(frame_sender sender, const frame_head_t& head, std::span<const std::byte> payload,
                      uint64 client = 1) {
    ends_.push_back(file_.size());
    send_frames(head, payload, [&](auto of_frame, auto part) {
      second_ += 1;
      append_frame(file_,
                   {sender, client, second_ * 1'000'000'000, 1'700'000'000'000'000'000 + second_, of_frame, part});
      return 0;
    });
    return *this;
  }
  capture_writer& greet(uint64 client = 1) {
    add(frame_sender::shell, head_of(frame_kind::hello), encode(hello{}), client);
    welcome from;
    from.switch_name = "lab";
    from.stopped_clock = 1'700'000'000;
    return add(frame_sender::daemon, head_of(frame_kind::welcome), encode(from), client);
  }
  capture_writer& ask(uint32 token, std::string_view payload, mts_opc_t opcode = 5, uint64 client = 1) {
    return add(frame_sender::shell, head_of(frame_kind::request, token, {MTS_NODE_LOCAL, 77}, opcode),
               as_payload(payload), client);
  }
  capture_writer& answer(uint32 token, std::string_view payload, uint64 client = 1,
                         frame_kind kind = frame_kind::answer) {
    return add(frame_sender::daemon, head_of(kind, token), as_payload(payload), client);
  }
  capture_writer& report_news(uint32 cursor) {
    return add(frame_sender::daemon, head_of(frame_kind::news, cursor), {});
  }

  file_bytes& file() { return file_; }
  const std::vector<std::size_t>& ends() const { return ends_; }  // of the file before each message

 private:
  file_bytes file_;
  std::vector<std::size_t> ends_;
  uint64 second_ = 0;
};

// Two frames of a session: a request and its answer.
capture_writer small_capture() {
  capture_writer made;
  made.greet().ask(9, "who").answer(9, "me");
  return made;
}

class FrameCapture : public testing::Test {
 protected:
  ~FrameCapture() override {
    unlink(path_.c_str());
    forget_failures();
  }

  // Why the file cannot be read; empty: it can.
  std::string fault_of(const file_bytes& file) {
    try {
      open(file);
      return {};
    } catch (const frame_capture_error& error) {
      return error.what();
    }
  }

  void open(const file_bytes& file) {
    std::ofstream(path_, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
    recorded_ = std::make_unique<recorded_path>(path_, [this](uint64 moment) { moments_.push_back(moment); });
  }

  // What the recorded switch answers, "rejected", or the sentence with which the request fails.
  std::string ask(std::string_view payload, mts_opc_t opcode = 5) {
    forget_failures();
    std::optional<reply> answer;
    const int32 error = recorded_->begin({kRecorded, MTS_NODE_LOCAL, opcode, 1, as_payload(payload)}, answer);
    if (error != 0) return noted_failures().empty() ? "no failure" : std::string(noted_failures().front().source);
    if (answer->what == reply::kind::reject) return "rejected";
    return {reinterpret_cast<const char*>(answer->payload.data()), answer->payload.size()};
  }

  std::string quoted_path() const { return "'" + path_ + "'"; }

  const std::string path_ = testing::TempDir() + "frames-" + std::to_string(getpid());
  std::unique_ptr<recorded_path> recorded_;
  std::vector<uint64> moments_;
};

// ---- Format ---------------------------------------------------------------------------------------------------------

TEST_F(FrameCapture, HasTheBytesOfItsFormat) {
  file_bytes file;
  append_capture_head(file);
  const frame_head_t head = head_of(frame_kind::news, 0x01020304);
  append_frame(file, {frame_sender::daemon, 7, 0x1122, 0x3344, std::as_bytes(std::span(&head, 1)), {}});

  std::string text(reinterpret_cast<const char*>(file.data()), file.size());
  ASSERT_EQ(file.size(), 16 + 36 + 24U);
  EXPECT_EQ(text.substr(0, 16), std::string("pmshfrm\n\0\0\0\1\0\0\0\1", 16));
  EXPECT_EQ(text.substr(16, 4), std::string("\0\0\0\x18", 4)) << "size";
  EXPECT_EQ(text.substr(24, 28), std::string("\2\0\0\0\0\0\0\0\0\0\0\7\0\0\0\0\0\0\x11\x22\0\0\0\0\0\0\x33\x44", 28));
  EXPECT_EQ(text.substr(52), std::string("\0\0\0\0\x08\0\0\0\1\2\3\4\0\0\0\0\0\0\0\0\0\0\0\0", 24)) << "frame";
}

TEST_F(FrameCapture, GivesItsRecordsBack) {
  capture_writer made = small_capture();
  capture_reader reader(made.file());
  record_fault fault;
  ASSERT_TRUE(reader.begin(fault));
  std::vector<frame_sender> senders;
  uint64 second = 0;
  while (!reader.is_at_end()) {
    const auto record = reader.next();
    const auto* const frame = std::get_if<captured_frame>(&record);
    ASSERT_NE(frame, nullptr);
    senders.push_back(frame->sender);
    EXPECT_EQ(frame->client, 1U);
    EXPECT_EQ(frame->monotonic_ns, ++second * 1'000'000'000);
    EXPECT_EQ(frame->wall_ns, 1'700'000'000'000'000'000 + second);
  }
  using enum frame_sender;
  EXPECT_EQ(senders, (std::vector{shell, daemon, shell, daemon}));
}

TEST_F(FrameCapture, ThatIsCutIsRefusedWithFileAndByte) {
  capture_writer made = small_capture();
  const file_bytes whole = made.file();
  ASSERT_EQ(fault_of(whole), "");
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const file_bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    const std::string fault = fault_of(cut);
    const bool ends_with_record =
        std::find(made.ends().begin() + 2, made.ends().end(), size) != made.ends().end();  // after the welcome
    if (ends_with_record)
      EXPECT_EQ(fault, "") << size;
    else
      EXPECT_THAT(fault, HasSubstr(quoted_path() + ", byte ")) << size;
  }
  EXPECT_EQ(fault_of({}), quoted_path() + ", byte 0: this is not a capture of frames.");
  EXPECT_EQ(fault_of({whole.begin(), whole.begin() + 15}), quoted_path() + ", byte 8: the head of the file is cut.");
  EXPECT_EQ(fault_of({whole.begin(), whole.begin() + 16}),
            quoted_path() + ", byte 16: the capture has no shell that the switch greeted.");
  EXPECT_EQ(fault_of({whole.begin(), whole.begin() + 20}),
            quoted_path() + ", byte 16: a record of 4 bytes is shorter than its head.");
}

TEST_F(FrameCapture, WithAChangedByteIsRefusedWithFileAndByte) {
  const file_bytes whole = small_capture().file();
  for (std::size_t at = 0; at < whole.size(); ++at)
    for (const int flip : {0x01, 0x80, 0xFF}) {
      file_bytes changed = whole;
      changed[at] ^= static_cast<std::byte>(flip);
      EXPECT_THAT(fault_of(changed), HasSubstr(quoted_path() + ", byte ")) << at;
    }
  file_bytes changed = whole;
  changed[11] = std::byte{2};
  EXPECT_EQ(fault_of(changed), quoted_path() + ", byte 8: version 2 of captures is not known, only 1.");
}

// Bytes that nobody changed, and that say what cannot be.
TEST_F(FrameCapture, ThatContradictsItselfIsRefused) {
  const auto fault_after_greeting = [this](auto add) {
    capture_writer made;
    made.greet();
    const std::size_t at = made.file().size();
    add(made);
    const std::string fault = fault_of(made.file());
    const std::string place = quoted_path() + ", byte " + std::to_string(at);
    return fault.starts_with(place) ? fault.substr(place.size()) : fault;
  };
  EXPECT_EQ(fault_after_greeting([](capture_writer& to) { to.answer(3, "x"); }),
            ": an answer has the token 3 of no request.");
  EXPECT_EQ(
      fault_after_greeting([](capture_writer& to) { to.add(frame_sender::daemon, head_of(frame_kind::hello), {}); }),
      ": the daemon sent a frame of a shell.");
  EXPECT_EQ(
      fault_after_greeting([](capture_writer& to) { to.add(frame_sender::daemon, head_of(frame_kind::welcome), {}); }),
      ": a welcome is damaged.");
}

TEST_F(FrameCapture, OfAnotherSenderClientOrTimeIsRefused) {
  const frame_head_t news = head_of(frame_kind::news);
  const auto fault_of_record = [&](frame_sender sender, uint64 client, uint64 monotonic_ns) {
    capture_writer made = small_capture();
    const std::size_t at = made.file().size();
    append_frame(made.file(), {sender, client, monotonic_ns, 0, std::as_bytes(std::span(&news, 1)), {}});
    const std::string fault = fault_of(made.file());
    const std::string start = quoted_path() + ", byte ";
    if (!fault.starts_with(start)) return fault;
    const std::size_t colon = fault.find(':', start.size());
    return std::to_string(std::stoul(fault.substr(start.size())) - at) + fault.substr(colon);
  };
  constexpr uint64 kLater = 1'000'000'000'000;
  EXPECT_EQ(fault_of_record(frame_sender::daemon, 1, kLater), "");
  EXPECT_EQ(fault_of_record(static_cast<frame_sender>(3), 1, kLater), "8: unknown sender: 3.");
  EXPECT_EQ(fault_of_record(frame_sender::daemon, 0, kLater), "12: a record is of no client.");
  EXPECT_EQ(fault_of_record(frame_sender::daemon, 1, 5), "20: a record is earlier than the one before.");
}

// ---- Files ----------------------------------------------------------------------------------------------------------

TEST_F(FrameCapture, IsForItsUserAlone) {
  std::ofstream(path_) << "an old text that is longer than the head of a capture";
  chmod(path_.c_str(), 0666);
  const frame_head_t news = head_of(frame_kind::news, 3);
  {
    capture_file file(path_);
    struct stat made {};
    ASSERT_EQ(stat(path_.c_str(), &made), 0);
    EXPECT_EQ(made.st_mode & 07777U, 0600U);
    EXPECT_EQ(made.st_size, 16);
    EXPECT_EQ(file.write(frame_sender::daemon, 4, std::as_bytes(std::span(&news, 1)), {}), 0);
    EXPECT_EQ(read_capture_file(path_).size(), 16 + 36 + 24U) << "it waits in a buffer";
    EXPECT_THROW(capture_file second(path_), frame_capture_error) << "two write to it";
  }
  const file_bytes bytes = read_capture_file(path_);
  capture_reader reader(bytes);
  record_fault fault;
  ASSERT_TRUE(reader.begin(fault));
  const auto record = reader.next();
  ASSERT_NE(std::get_if<captured_frame>(&record), nullptr);
  EXPECT_EQ(std::get<captured_frame>(record).client, 4U);
}

TEST_F(FrameCapture, FollowsNoLinksAndWritesNoFolders) {
  const std::string link = path_ + "-link";
  std::ofstream(path_) << "mine";
  ASSERT_EQ(symlink(path_.c_str(), link.c_str()), 0);
  const auto fault = [](const std::string& path) -> std::string {
    try {
      capture_file file(path);
      return {};
    } catch (const frame_capture_error& error) {
      return error.what();
    }
  };
  EXPECT_EQ(fault(link), "cannot write the capture '" + link + "': it is a symbolic link.");
  EXPECT_EQ(read_capture_file(path_).size(), 4U);
  unlink(link.c_str());
  EXPECT_EQ(fault(testing::TempDir()), "cannot write the capture '" + testing::TempDir() + "': Is a directory.");
  EXPECT_EQ(fault("/dev/full"), "cannot write the capture '/dev/full': No space left on device.");
  EXPECT_EQ(fault("/none/x"), "cannot write the capture '/none/x': No such file or directory.");
}

TEST_F(FrameCapture, ThatIsNoFileIsNotRead) {
  EXPECT_THROW(read_capture_file(path_ + "-none"), frame_capture_error);
  EXPECT_THROW(read_capture_file("/dev/zero"), frame_capture_error);
  EXPECT_THROW(read_capture_file(testing::TempDir()), frame_capture_error);
}

// ---- Answers --------------------------------------------------------------------------------------------------------

TEST_F(FrameCapture, AnswersEqualRequestsInTheirOrderAndRepeatsTheLast) {
  capture_writer made;
  made.greet().ask(1, "a").answer(1, "first").ask(2, "b").answer(2, "other");
  made.ask(3, "a").answer(3, "second").ask(4, "a", 6).answer(4, "of opcode 6");
  open(made.file());
  EXPECT_EQ(recorded_->greeting().switch_name, "lab");
  EXPECT_EQ(recorded_->greeting().stopped_clock, 1'700'000'000U);
  EXPECT_EQ(ask("a"), "first");
  EXPECT_EQ(ask("a"), "second");
  EXPECT_EQ(ask("a"), "second");
  EXPECT_EQ(ask("b"), "other");
  EXPECT_EQ(ask("a", 6), "of opcode 6");
  // The greeting is two frames, each later by one.
  EXPECT_EQ(moments_.front(), 1'700'000'000'000'000'004U);
  EXPECT_EQ(moments_.size(), 5U);
}

TEST_F(FrameCapture, AnswersWhatEachShellWasAnswered) {
  capture_writer made;
  made.greet(1).greet(2).ask(1, "a", 5, 1).ask(1, "b", 5, 2).answer(1, "of b", 2).answer(1, "of a", 1);
  open(made.file());
  EXPECT_EQ(ask("a"), "of a");
  EXPECT_EQ(ask("b"), "of b");
}

TEST_F(FrameCapture, RejectsWhatWasRejected) {
  capture_writer made;
  made.greet().ask(1, "a").answer(1, "", 1, frame_kind::reject);
  open(made.file());
  EXPECT_EQ(ask("a"), "rejected");
}

TEST_F(FrameCapture, AnswersWithMessagesOfSeveralFrames) {
  const std::string question(kSentFrameBytes + 1, 'q'), answer(3 * kSentFrameBytes, 'a');
  capture_writer made;
  made.greet().ask(1, question).answer(1, answer);
  open(made.file());
  EXPECT_EQ(ask(question), answer);
}

TEST_F(FrameCapture, NamesARequestThatItHasNoAnswerTo) {
  capture_writer made;
  made.greet().ask(1, "never answered").ask(2, "x").answer(2, "y");
  open(made.file());
  const std::string start = "the capture " + quoted_path() +
                            " has no answer to this request: opcode 5 of the service 'recorded' at node 0xfe000000 ";
  EXPECT_EQ(ask("a\n"), start + "(2 bytes: 610a).");
  EXPECT_EQ(ask(""), start + "(0 bytes).");
  EXPECT_EQ(ask("never answered"), start + "(14 bytes: 6e6576657220616e737765726564).");
  EXPECT_EQ(ask("0123456789abcdefX"), start + "(17 bytes: 30313233343536373839616263646566...).");
  EXPECT_EQ(noted_failures().front().what, fault::disconnected);
}

TEST_F(FrameCapture, HasNewsAsOftenAsTheyCame) {
  capture_writer made;
  made.greet().report_news(3).report_news(3);
  open(made.file());
  const auto is_readable = [this](uint32 cursor) {
    const std::vector<int> watched = recorded_->descriptors(kRecorded, cursor);
    pollfd asked{watched.at(0), POLLIN, 0};
    return poll(&asked, 1, 0) == 1;
  };
  EXPECT_TRUE(is_readable(3));
  EXPECT_TRUE(is_readable(3));
  EXPECT_FALSE(is_readable(3));
  EXPECT_FALSE(is_readable(4));
}

}  // namespace
}  // namespace host
