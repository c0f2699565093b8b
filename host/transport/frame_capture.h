// Captures: files of the frames that a switch and its shells exchanged, with their times.
//
// A file is a head and records; a record is a head and one whole frame (frame.h). It has only frames that were correct.
// A file that ends with a whole record is complete: the daemon that wrote it may have been killed.
#pragma once

#include <cstddef>
#include <span>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

#include "platform/wire.h"
#include "transport/frame.h"

namespace host {

enum class frame_sender : uint8 { shell = 1, daemon = 2 };

inline constexpr uint32 kFrameCaptureVersion = 1;

/* Wire format, big-endian, packed. Begins the file. */
struct capture_file_head_t {
  char mark[8];          /* "pmshfrm\n"                        */
  be32 capture_version;  /* kFrameCaptureVersion              */
  be32 protocol_version; /* kProtocolVersion of the frames    */
};
static_assert(sizeof(capture_file_head_t) == 16);

/* Wire format, big-endian, packed. Before each frame. */
struct capture_record_head_t {
  be32 size;         /* bytes of the frame after this head                                  */
  be32 checksum;     /* CRC-32 of this head, in which it is 0, and of the frame             */
  uint8 sender;      /* frame_sender                                                        */
  uint8 zero[3];     /* always 0                                                            */
  be64 client;       /* number of the shell, from 1 since the daemon started                */
  be64 monotonic_ns; /* time since the machine started                                      */
  be64 wall_ns;      /* time since 1970                                                     */
};
static_assert(sizeof(capture_record_head_t) == 36 && offsetof(capture_record_head_t, client) == 12);

// Why a capture cannot be written or read: one sentence.
struct frame_capture_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct captured_frame {
  frame_sender sender = frame_sender::shell;
  uint64 client = 0;
  uint64 monotonic_ns = 0;
  uint64 wall_ns = 0;
  std::span<const std::byte> head;     // of the frame
  std::span<const std::byte> payload;  // of the frame
};

void append_capture_head(std::vector<std::byte>& to);
void append_frame(std::vector<std::byte>& to, const captured_frame& from);

// What is wrong at a byte of a capture: one clause.
struct record_fault {
  std::size_t at = 0;
  std::string text;
};

// Takes records from the front of a capture.
class capture_reader {
 public:
  // `file` outlives the reader and its frames.
  explicit capture_reader(std::span<const std::byte> file) : file_(file) {}

  // Reads the head of the file: first, once. Returns false and sets `fault` when this is not a capture.
  bool begin(record_fault& fault);

  bool is_at_end() const { return at_ == file_.size(); }
  std::size_t at() const { return at_; }

  // The next record. After a fault nothing is to be read.
  std::variant<captured_frame, record_fault> next();

 private:
  std::span<const std::byte> file_;
  std::size_t at_ = 0;
  uint64 last_ns_ = 0;
};

// Writes a capture. Each frame is in the file when write() returns.
class capture_file {
 public:
  // Replaces a file of the user, and creates it for the user alone. Links are not followed. Throws frame_capture_error.
  explicit capture_file(const std::string& path);
  ~capture_file();
  capture_file(const capture_file&) = delete;
  capture_file& operator=(const capture_file&) = delete;

  // Appends a frame with the times of now. Returns 0 or an errno: then the file ends with the frame before.
  int write(frame_sender sender, uint64 client, std::span<const std::byte> head, std::span<const std::byte> payload);

 private:
  int flush();

  int descriptor_ = -1;
  off_t size_ = 0;  // of whole records
  std::vector<std::byte> buffer_;
};

// The bytes of a file. Throws frame_capture_error.
std::vector<std::byte> read_capture_file(const std::string& path);

}  // namespace host
