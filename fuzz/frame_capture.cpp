// Captures of frames, as a shell reads them. Checksums are made right first: what they protect from is tested
// elsewhere.
#include "transport/frame_capture.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <vector>

#include "base/crc.h"
#include "transport/failures.h"
#include "transport/recorded_path.h"

namespace {

void sign_records(std::span<std::byte> file) {
  std::size_t at = sizeof(host::capture_file_head_t);
  host::capture_record_head_t record{};
  while (at <= file.size() && file.size() - at >= sizeof record) {
    std::memcpy(&record, file.data() + at, sizeof record);
    record.checksum = 0;
    const std::size_t size = record.size;
    if (size > file.size() - at - sizeof record) return;
    const auto head = std::as_bytes(std::span(&record, 1));
    record.checksum = host::crc32_of(file.subspan(at + sizeof record, size), host::crc32_of(head));
    std::memcpy(file.data() + at, &record, sizeof record);
    at += sizeof record + size;
  }
}

void replay(std::span<const std::byte> file) {
  constexpr host::service kAsked = {202, "switch", nullptr};
  try {
    host::recorded_path path("capture", file, [](uint64) {});
    std::optional<host::reply> answer;
    for (mts_opc_t opcode = 0; opcode < 8; ++opcode) path.begin({kAsked, MTS_NODE_LOCAL, opcode, 1, {}}, answer);
    path.descriptors(kAsked, 1);
  } catch (const host::frame_capture_error&) {
    // It names file and byte.
  }
  host::forget_failures();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const auto* const begin = reinterpret_cast<const std::byte*>(data);
  std::vector<std::byte> file(begin, begin + size);
  replay(file);
  sign_records(file);
  replay(file);
  return 0;
}
