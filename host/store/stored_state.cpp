#include "store/stored_state.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "base/crc.h"
#include "messages/fields.h"
#include "store/record.h"

namespace host {
namespace {

using octets = std::span<const std::byte>;

constexpr std::string_view kFormat = "pmshd switch state";
constexpr uint32 kVersion = 1;

std::optional<switch_identity> read_identity(octets payload) {
  field_reader from(payload);
  if (from.text() != kFormat || from.u32() != kVersion) return std::nullopt;
  switch_identity identity;
  identity.fingerprint = from.u64();
  identity.switch_file = from.text();
  identity.started_sec = from.u32();
  return from.is_complete() ? std::optional(std::move(identity)) : std::nullopt;
}

std::optional<change_record> read_changes(octets payload) {
  constexpr std::size_t kLeastImageBytes = sizeof(be32) + 3;
  field_reader from(payload);
  change_record changes;
  changes.waits = from.flag();
  changes.over.resize(from.count(sizeof(be64)));
  for (uint64& it : changes.over) it = from.u64();
  for (uint32 left = from.count(kLeastImageBytes); left > 0; --left) {
    auto image = read_image(from);
    if (!image) return std::nullopt;
    changes.images.push_back(std::move(*image));
  }
  if (from.flag()) changes.startup = from.numbers();
  return from.is_complete() ? std::optional(std::move(changes)) : std::nullopt;
}

void add_to(image_map& images, interface_image image) {
  const if_index_t if_index = image.if_index;
  if (const auto found = images.find(if_index); found != images.end())
    add_image(found->second, std::move(image));
  else
    images.emplace(if_index, std::move(image));
}

void add_changes(stored_state& state, uint64 sequence, change_record changes) {
  waiting_commit commit{sequence, {}, {}};
  for (interface_image& it : changes.images) {
    const if_index_t if_index = it.if_index;
    if (const auto found = state.images.find(if_index); found != state.images.end()) commit.before.insert(*found);
    add_to(state.images, std::move(it));
    commit.after.insert_or_assign(if_index, state.images.at(if_index));
  }
  for (const uint64 over : changes.over)
    std::erase_if(state.waiting, [over](const waiting_commit& it) { return it.sequence == over; });
  if (changes.startup) state.startup = std::move(changes.startup);
  if (changes.waits) state.waiting.push_back(std::move(commit));
}

bool put_images(machine& to, const image_map& images) {
  return std::all_of(images.begin(), images.end(), [&to](const auto& it) { return put_image(to, it.second); });
}

}  // namespace

uint64 fingerprint_of(const machine& of) {
  std::vector<std::byte> bytes;
  field_writer to(bytes);
  to.text(of.name);
  to.u32(of.chassis_type);
  to.u32(of.num_slots);
  for (const card& it : of.cards) {
    to.u32(it.slot);
    to.u32(it.card_type);
    to.text(it.model);
  }
  for (const interface& it : of.interfaces) {
    to.u32(it.if_index);
    to.text(it.capabilities.type);
    to.u32(it.capabilities.speeds.value_or(0));
    to.u32(it.capabilities.mtu.lowest);
    to.u32(it.capabilities.mtu.highest);
  }
  return crc64_of(bytes);
}

std::vector<std::byte> encode(const switch_identity& identity) {
  std::vector<std::byte> payload;
  field_writer to(payload);
  to.text(kFormat);
  to.u32(kVersion);
  to.u64(identity.fingerprint);
  to.text(identity.switch_file);
  to.u32(identity.started_sec);
  return payload;
}

std::vector<std::byte> encode(const change_record& changes) {
  std::vector<std::byte> payload;
  field_writer to(payload);
  to.flag(changes.waits);
  to.u32(static_cast<uint32>(changes.over.size()));
  for (const uint64 it : changes.over) to.u64(it);
  to.u32(static_cast<uint32>(changes.images.size()));
  for (const interface_image& it : changes.images) write_image(to, it);
  to.flag(changes.startup.has_value());
  if (changes.startup) to.numbers(*changes.startup);
  return payload;
}

std::size_t read_state(std::span<const octets> payloads, stored_state& state) {
  if (payloads.empty()) return 0;
  auto identity = read_identity(payloads.front());
  if (!identity) return 0;
  state = {.identity = std::move(*identity)};
  for (std::size_t sequence = 1; sequence < payloads.size(); ++sequence) {
    auto changes = read_changes(payloads[sequence]);
    if (!changes) return sequence;
    add_changes(state, sequence, std::move(*changes));
  }
  return payloads.size();
}

journal_text write_state(const stored_state& state) {
  journal_text text;
  append_record(text.bytes, text.num_records++, encode(state.identity));
  if (state.images.empty() && !state.startup) return text;
  change_record all;
  for (const auto& [if_index, image] : state.images) all.images.push_back(image);
  all.startup = state.startup;
  append_record(text.bytes, text.num_records++, encode(all));
  return text;
}

bool put_state(machine& to, const stored_state& state) {
  if (state.startup) to.startup = *state.startup;
  return put_images(to, state.images);
}

machine_changes changes_of_commit(const waiting_commit& commit, const machine& as_in_file) {
  machine before = as_in_file, after = as_in_file;
  put_images(before, commit.before);
  put_images(after, commit.after);
  return changes_between(before, after);
}

}  // namespace host
