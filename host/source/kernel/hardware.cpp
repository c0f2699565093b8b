// Rows of the hardware of devices: one dump for each type of message, and the driver by ioctl.
#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>

#include <cstring>
#include <map>
#include <utility>

#include "source/kernel/ethtool.h"
#include "source/kernel/policy.h"
#include "source/kernel/tables.h"

namespace host {
namespace {

constexpr message_policy kDevicePolicy = {{ETHTOOL_A_HEADER_DEV_INDEX, attribute_type::number, sizeof(uint32)}};
constexpr message_policy kBitsPolicy = {{ETHTOOL_A_BITSET_VALUE, attribute_type::bytes, sizeof(uint32)}};
constexpr message_policy kChannelsPolicy = {
    {ETHTOOL_A_CHANNELS_HEADER, attribute_type::nest, 0},
    {ETHTOOL_A_CHANNELS_RX_MAX, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_CHANNELS_TX_MAX, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_CHANNELS_OTHER_MAX, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_CHANNELS_COMBINED_MAX, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_CHANNELS_RX_COUNT, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_CHANNELS_TX_COUNT, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_CHANNELS_OTHER_COUNT, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_CHANNELS_COMBINED_COUNT, attribute_type::number, sizeof(uint32)},
};
constexpr message_policy kRingsPolicy = {
    {ETHTOOL_A_RINGS_HEADER, attribute_type::nest, 0},
    {ETHTOOL_A_RINGS_RX_MAX, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_RINGS_TX_MAX, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_RINGS_RX, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_RINGS_TX, attribute_type::number, sizeof(uint32)},
};
constexpr message_policy kFecPolicy = {
    {ETHTOOL_A_FEC_HEADER, attribute_type::nest, 0},
    {ETHTOOL_A_FEC_MODES, attribute_type::nest, 0},
    {ETHTOOL_A_FEC_AUTO, attribute_type::number, sizeof(uint8)},
    {ETHTOOL_A_FEC_ACTIVE, attribute_type::number, sizeof(uint32)},
};
constexpr message_policy kEeePolicy = {
    {ETHTOOL_A_EEE_HEADER, attribute_type::nest, 0},
    {ETHTOOL_A_EEE_ACTIVE, attribute_type::number, sizeof(uint8)},
    {ETHTOOL_A_EEE_ENABLED, attribute_type::number, sizeof(uint8)},
};
constexpr message_policy kFeaturesPolicy = {
    {ETHTOOL_A_FEATURES_HEADER, attribute_type::nest, 0},
    {ETHTOOL_A_FEATURES_ACTIVE, attribute_type::nest, 0},
};
constexpr message_policy kStringSetsPolicy = {{ETHTOOL_A_STRSET_STRINGSETS, attribute_type::nest, 0}};
constexpr message_policy kSetsPolicy = {{ETHTOOL_A_STRINGSETS_STRINGSET, attribute_type::nest, 0}};
constexpr message_policy kSetPolicy = {
    {ETHTOOL_A_STRINGSET_ID, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_STRINGSET_STRINGS, attribute_type::nest, 0},
};
constexpr message_policy kStringsPolicy = {{ETHTOOL_A_STRINGS_STRING, attribute_type::nest, 0}};
constexpr message_policy kStringPolicy = {
    {ETHTOOL_A_STRING_INDEX, attribute_type::number, sizeof(uint32)},
    {ETHTOOL_A_STRING_VALUE, attribute_type::text, 1},
};

using feature_names = std::map<uint32, std::string>;
using hardware_rows = std::map<uint32, hardware_row>;  // by the number of the device

// Calls `visit` with the number of each bit.
template <typename Visit>
void for_each_bit(const attributes& bitset, Visit visit) {
  const auto bytes = bitset.bytes(ETHTOOL_A_BITSET_VALUE).value_or(std::span<const uint8>());
  for (std::size_t at = 0; at + sizeof(uint32) <= bytes.size(); at += sizeof(uint32)) {
    const auto word = record_of<uint32>(bytes.subspan(at));
    for (uint32 bit = 0; bit < 32; ++bit)
      if ((word >> bit & 1U) != 0) visit(static_cast<uint32>(at * 8) + bit);
  }
}

std::string fec_word(uint32 mode) {
  switch (mode) {
    case ETHTOOL_LINK_MODE_FEC_NONE_BIT: return "off";
    case ETHTOOL_LINK_MODE_FEC_RS_BIT: return "rs";
    case ETHTOOL_LINK_MODE_FEC_BASER_BIT: return "baser";
    case ETHTOOL_LINK_MODE_FEC_LLRS_BIT: return "llrs";
    default: return "mode " + std::to_string(mode);
  }
}

void take_channels(const attributes& all, hardware_row& row) {
  row.rx_queues = all.number<uint32>(ETHTOOL_A_CHANNELS_RX_COUNT);
  row.tx_queues = all.number<uint32>(ETHTOOL_A_CHANNELS_TX_COUNT);
  row.other_queues = all.number<uint32>(ETHTOOL_A_CHANNELS_OTHER_COUNT);
  row.combined_queues = all.number<uint32>(ETHTOOL_A_CHANNELS_COMBINED_COUNT);
  row.most_rx_queues = all.number<uint32>(ETHTOOL_A_CHANNELS_RX_MAX);
  row.most_tx_queues = all.number<uint32>(ETHTOOL_A_CHANNELS_TX_MAX);
  row.most_other_queues = all.number<uint32>(ETHTOOL_A_CHANNELS_OTHER_MAX);
  row.most_combined_queues = all.number<uint32>(ETHTOOL_A_CHANNELS_COMBINED_MAX);
}

void take_rings(const attributes& all, hardware_row& row) {
  row.rx_ring = all.number<uint32>(ETHTOOL_A_RINGS_RX);
  row.tx_ring = all.number<uint32>(ETHTOOL_A_RINGS_TX);
  row.most_rx_ring = all.number<uint32>(ETHTOOL_A_RINGS_RX_MAX);
  row.most_tx_ring = all.number<uint32>(ETHTOOL_A_RINGS_TX_MAX);
}

void take_fec(const attributes& all, hardware_row& row) {
  std::string& words = row.configured_fec.emplace();
  if (all.number<uint8>(ETHTOOL_A_FEC_AUTO).value_or(0) != 0) append_word(words, "auto");
  for_each_bit(all.nested(ETHTOOL_A_FEC_MODES, kBitsPolicy),
               [&words](uint32 mode) { append_word(words, fec_word(mode)); });
  if (const auto active = all.number<uint32>(ETHTOOL_A_FEC_ACTIVE)) row.active_fec = fec_word(*active);
}

void take_eee(const attributes& all, hardware_row& row) {
  if (const auto enabled = all.number<uint8>(ETHTOOL_A_EEE_ENABLED)) row.is_eee_enabled = *enabled != 0;
  if (const auto active = all.number<uint8>(ETHTOOL_A_EEE_ACTIVE)) row.is_eee_active = *active != 0;
}

// Dumps messages of one type, and has `take` read each into the row of its device.
template <typename Take>
void dump_into(hardware_rows& rows, ethtool_socket& ethtool, uint8 command, uint16 head, const message_policy& policy,
               Take take) {
  netlink_request request = ethtool.request(command, NLM_F_DUMP);
  put_ethtool_head(request, head, 0, ETHTOOL_FLAG_COMPACT_BITSETS);
  ethtool.ask(request, [&](const nlmsghdr& message) {
    const auto parsed = parse<genlmsghdr>(message, policy);
    if (!parsed) return;
    const auto device = parsed->all.nested(head, kDevicePolicy).template number<uint32>(ETHTOOL_A_HEADER_DEV_INDEX);
    if (const auto row = device ? rows.find(*device) : rows.end(); row != rows.end()) take(parsed->all, row->second);
  });
}

void take_names(const nlmsghdr& message, feature_names& names) {
  const auto parsed = parse<genlmsghdr>(message, kStringSetsPolicy);
  if (!parsed) return;
  const attributes sets = parsed->all.nested(ETHTOOL_A_STRSET_STRINGSETS, kSetsPolicy);
  sets.for_each(ETHTOOL_A_STRINGSETS_STRINGSET, [&names](std::span<const uint8> bytes) {
    const attributes set = parse(bytes, kSetPolicy);
    if (set.number<uint32>(ETHTOOL_A_STRINGSET_ID) != uint32{ETH_SS_FEATURES}) return;
    const attributes strings = set.nested(ETHTOOL_A_STRINGSET_STRINGS, kStringsPolicy);
    strings.for_each(ETHTOOL_A_STRINGS_STRING, [&names](std::span<const uint8> it) {
      const attributes string = parse(it, kStringPolicy);
      const auto index = string.number<uint32>(ETHTOOL_A_STRING_INDEX);
      if (const auto name = string.text(ETHTOOL_A_STRING_VALUE); index && name) names[*index] = *name;
    });
  });
}

feature_names read_feature_names(ethtool_socket& ethtool) {
  netlink_request request = ethtool.request(ETHTOOL_MSG_STRSET_GET, NLM_F_ACK);
  put_ethtool_head(request, ETHTOOL_A_STRSET_HEADER, 0, 0);
  nlattr* const sets = mnl_attr_nest_start(&request.head(), ETHTOOL_A_STRSET_STRINGSETS);
  nlattr* const set = mnl_attr_nest_start(&request.head(), ETHTOOL_A_STRINGSETS_STRINGSET);
  mnl_attr_put_u32(&request.head(), ETHTOOL_A_STRINGSET_ID, ETH_SS_FEATURES);
  mnl_attr_nest_end(&request.head(), set);
  mnl_attr_nest_end(&request.head(), sets);
  feature_names names;
  ethtool.ask(request, [&names](const nlmsghdr& message) { take_names(message, names); });
  return names;
}

std::string word_of_feature(const feature_names& names, uint32 bit) {
  const auto name = names.find(bit);
  return name == names.end() || name->second.empty() ? "feature " + std::to_string(bit) : name->second;
}

std::string text_in(const char* text, std::size_t size) { return {text, strnlen(text, size)}; }

// "N/A" is the driver's text for none.
std::string version_in(const char* text, std::size_t size) {
  const std::string version = text_in(text, size);
  return version == "N/A" ? std::string() : version;
}

void read_driver(const std::string& device, hardware_row& row) {
  ethtool_drvinfo info{};
  info.cmd = ETHTOOL_GDRVINFO;
  if (the_kernel_io().ethtool_ioctl(device, &info) != 0) return;
  row.driver = text_in(info.driver, sizeof info.driver);
  row.driver_version = version_in(info.version, sizeof info.version);
  row.firmware_version = version_in(info.fw_version, sizeof info.fw_version);
  row.bus = version_in(info.bus_info, sizeof info.bus_info);
}

class hardware_reader final : public table_reader {
 public:
  explicit hardware_reader(table_devices devices) : devices_(std::move(devices)) {}

  bool next(std::vector<table_row>& rows) override {
    hardware_rows all;
    for (const table_device& it : devices_.requested()) {
      hardware_row& row = all[it.number];
      row.device = {it.if_index, it.name, it.number};
      row.permanent_mac = it.permanent_mac;
      read_driver(it.name, row);
    }
    ethtool_socket ethtool;
    dump_into(all, ethtool, ETHTOOL_MSG_CHANNELS_GET, ETHTOOL_A_CHANNELS_HEADER, kChannelsPolicy, take_channels);
    dump_into(all, ethtool, ETHTOOL_MSG_RINGS_GET, ETHTOOL_A_RINGS_HEADER, kRingsPolicy, take_rings);
    dump_into(all, ethtool, ETHTOOL_MSG_FEC_GET, ETHTOOL_A_FEC_HEADER, kFecPolicy, take_fec);
    dump_into(all, ethtool, ETHTOOL_MSG_EEE_GET, ETHTOOL_A_EEE_HEADER, kEeePolicy, take_eee);
    const feature_names names = read_feature_names(ethtool);
    dump_into(all, ethtool, ETHTOOL_MSG_FEATURES_GET, ETHTOOL_A_FEATURES_HEADER, kFeaturesPolicy,
              [&names](const attributes& features, hardware_row& row) {
                std::string& words = row.offloads.emplace();
                for_each_bit(features.nested(ETHTOOL_A_FEATURES_ACTIVE, kBitsPolicy),
                             [&](uint32 bit) { append_word(words, word_of_feature(names, bit)); });
              });
    for (auto& [number, row] : all) rows.emplace_back(std::move(row));
    return false;
  }

 private:
  table_devices devices_;
};

}  // namespace

std::unique_ptr<table_reader> read_hardware_table(table_devices devices) {
  return std::make_unique<hardware_reader>(std::move(devices));
}

}  // namespace host
