// The capabilities of a port: from the line-card configuration, and as a list.

#include <cstddef>
#include <cstdio>
#include <span>

#include "platform/card_config.h"
#include "pmcli/interface.h"
#include "support/errors.h"
#include "support/print.h"
#include "support/scope.h"
#include "support/text.h"

using namespace pmcli;

namespace {

using capability_t = pm_cli_common_capability_t;

// A word that a list holds when its flag is not zero.
struct flagged_word {
  boolean flag;
  const char* word;
};

// Joins the words of a list, within `size` bytes; a size of 0 or less writes nothing.
void join_words(char* text, int size, const char* delimiter, std::span<const flagged_word> words) {
  if (size <= 0) return;
  const auto room = static_cast<std::size_t>(size);
  copy_text(text, room, "");
  bool is_first = true;
  for (const flagged_word& entry : words) {
    if (entry.flag == 0) continue;
    if (!is_first) append_text(text, room, delimiter);
    append_text(text, room, entry.word);
    is_first = false;
  }
}

// The same, or "none" for an empty list.
void join_words_or_none(char* text, int size, std::span<const flagged_word> words) {
  join_words(text, size, "/", words);
  if (size > 0 && text[0] == '\0') copy_text(text, static_cast<std::size_t>(size), "none");
}

void fill_capability(capability_t* to, if_index_t if_index, const crdcfg_port_cap_t& from) {
  to->if_index = if_index;
  copy_text(to->model, sizeof to->model, from.model);
  copy_text(to->type, sizeof to->type, from.type);
  to->speed = from.speed;
  to->duplex = from.duplex;
  to->trunk_encap = from.trunk_encap;
  to->channel = from.channel != 0 ? 1 : 0;
  to->suppression = from.suppression;
  to->rx_flowcontrol = from.rx_flowcontrol;
  to->tx_flowcontrol = from.tx_flowcontrol;
  to->rate_mode = from.rate_mode;
  to->cos_rewrite = from.cos_rewrite;
  to->tos_rewrite = from.tos_rewrite;
  to->QOS_scheduling = 1;
  to->rx_QOS_priority = from.rx_qos_priority;
  to->rx_QOS_queue = from.rx_qos_queue;
  to->rx_QOS_threshold = from.rx_qos_threshold;
  to->tx_QOS_priority = from.tx_qos_priority;
  to->tx_QOS_queue = from.tx_qos_queue;
  to->tx_QOS_threshold = from.tx_qos_threshold;
  to->span = from.span;
  to->udld = from.udld;
  to->link_debounce = from.link_debounce;
  to->link_debounce_time = from.link_debounce_time;
  to->mdix = from.mdix;
  to->fcot_capable = from.fcot_capable;
}

// The format of one line: the label, and the place of its value.
struct line_format {
  explicit line_format(const char* label) { std::snprintf(text, sizeof text, "  %-23.23s%%s\n", label); }
  char text[80];
};

// The value of one line.
struct value_text {
  char text[55] = {};
};

value_text speed_text(const capability_t& port) {
  value_text value;
  pm_cli_build_speed_string(value.text, sizeof value.text, ",", port.speed & CRDCFG_SPEED_10M,
                            port.speed & CRDCFG_SPEED_100M, port.speed & CRDCFG_SPEED_1G, port.speed & CRDCFG_SPEED_10G,
                            port.speed & CRDCFG_SPEED_AUTO);
  return value;
}

value_text duplex_text(uint32 duplex) {
  const flagged_word words[] = {{duplex & CRDCFG_DUPLEX_HALF, "half"},
                                {duplex & CRDCFG_DUPLEX_FULL, "full"},
                                {duplex & CRDCFG_DUPLEX_AUTO, "auto"}};
  value_text value;
  join_words(value.text, sizeof value.text, "/", words);
  return value;
}

value_text rate_mode_text(uint32 rate_mode) {
  const flagged_word words[] = {{rate_mode & CRDCFG_RATE_DEDICATED, "dedicated"},
                                {rate_mode & CRDCFG_RATE_SHARED, "shared"}};
  value_text value;
  join_words_or_none(value.text, sizeof value.text, words);
  return value;
}

// Flow control of one direction.
struct direction_text {
  char text[20];
};

value_text both_directions(const direction_text& rx, const direction_text& tx) {
  value_text value;
  std::snprintf(value.text, sizeof value.text, "rx-(%s),tx-(%s)", rx.text, tx.text);
  return value;
}

direction_text flow_flags(uint32 flow) {
  direction_text flags;
  pm_cli_build_flowctrl_flags(flags.text, sizeof flags.text, flow & CRDCFG_FLOW_OFF, flow & CRDCFG_FLOW_ON,
                              flow & CRDCFG_FLOW_DESIRED);
  return flags;
}

// The receive side has no count of priorities, which is intended.
value_text qos_text(const capability_t& port) {
  if (port.QOS_scheduling == 0) return both_directions({"none"}, {"none"});
  direction_text rx;
  direction_text tx;
  std::snprintf(rx.text, sizeof rx.text, "%dq%dt", port.rx_QOS_queue, port.rx_QOS_threshold);
  std::snprintf(tx.text, sizeof tx.text, "%dp%dq%dt", port.tx_QOS_priority, port.tx_QOS_queue, port.tx_QOS_threshold);
  return both_directions(rx, tx);
}

void print_line(cmd_rx_handle_t* rx, const char* label, tuple_id<CMD_TYPE_STRING> tuple, const char* value) {
  print_text(rx, line_format(label).text, tuple, value);
}

void print_line(cmd_rx_handle_t* rx, const char* label, tuple_id<CMD_TYPE_ENUM> tuple, boolean value) {
  print_enum(rx, line_format(label).text, tuple, value);
}

const char* text_or_dashes(const char* text) { return text[0] != '\0' ? text : "--"; }

}  // namespace

syserr_t pm_cli_get_port_capability(if_index_t if_index, pm_cli_common_capability_t* port_cap) {
  service_library library(CRDCFG_LIBRARY, RTLD_LAZY);
  if (!library) return -1;
  const auto get_port_cap = library.find<crdcfg_get_port_cap_fn>("crdcfg_get_port_cap");
  if (!get_port_cap) {
    library.close();
    std::puts("couldn't get crdcfg_get_port_cap()");
    return -1;
  }
  const if_index_range_t range{if_index, if_index};
  crdcfg_port_cap_t response{};
  const syserr_t error = get_port_cap.function(&range, sizeof response, reinterpret_cast<uint8*>(&response));
  library.close();
  if (error != 0) {
    std::printf("crdcfg_get_port_cap failed with %s\n", system_error_text(error));
    return -1;
  }
  fill_capability(port_cap, if_index, response);
  return 0;
}

syserr_t pm_cli_get_mgmt_capability(if_index_t if_index, pm_cli_common_capability_t* port_cap) {
  port_cap->if_index = if_index;
  copy_text(port_cap->model, sizeof port_cap->model, "--");
  copy_text(port_cap->type, sizeof port_cap->type, "--");
  port_cap->speed = CRDCFG_SPEED_10M | CRDCFG_SPEED_100M | CRDCFG_SPEED_1G | CRDCFG_SPEED_AUTO;
  port_cap->duplex = CRDCFG_DUPLEX_FULL | CRDCFG_DUPLEX_HALF | CRDCFG_DUPLEX_AUTO;
  port_cap->trunk_encap = 1;
  port_cap->channel = 0;
  port_cap->suppression = 0;
  port_cap->rx_flowcontrol = 0;
  port_cap->tx_flowcontrol = 0;
  port_cap->rate_mode = 0;
  port_cap->cos_rewrite = 1;
  port_cap->tos_rewrite = 1;
  port_cap->QOS_scheduling = 0;
  port_cap->span = 1;
  port_cap->udld = 1;
  port_cap->link_debounce = 0;
  port_cap->link_debounce_time = 0;
  port_cap->mdix = 0;
  port_cap->fcot_capable = 0;
  port_cap->port_group_capable = 0;
  return 0;
}

void pm_cli_build_speed_string(char* speed_str, int size, const char* delim, boolean ten_meg, boolean hundrd_meg,
                               boolean gig, boolean ten_gig, boolean speed_auto) {
  const flagged_word words[] = {
      {ten_meg, "10"}, {hundrd_meg, "100"}, {gig, "1000"}, {ten_gig, "10000"}, {speed_auto, "auto"}};
  join_words(speed_str, size, delim, words);
}

void pm_cli_build_flowctrl_flags(char* flags_str, int size, boolean fl_off, boolean fl_on, boolean fl_desired) {
  const flagged_word words[] = {{fl_off, "off"}, {fl_on, "on"}, {fl_desired, "desired"}};
  join_words_or_none(flags_str, size, words);
}

void pm_cli_show_port_capabities(cmd_rx_handle_t* rx_handle, pm_cli_common_capability_t* port_cap) {
  const capability_t& port = *port_cap;
  const char* const type_label = port.fcot_capable ? "Type (SFP capable):" : "Type (Non SFP):";
  const value_text flow_text = both_directions(flow_flags(port.rx_flowcontrol), flow_flags(port.tx_flowcontrol));

  print_if_index(rx_handle, "%s\n", tag::capability_interface, port.if_index);
  print_line(rx_handle, "Model:", tag::capability_model, text_or_dashes(terminate(port.model).text));
  print_line(rx_handle, type_label, tag::capability_media_type, text_or_dashes(terminate(port.type).text));
  print_line(rx_handle, "Speed:", tag::capability_speeds, speed_text(port).text);
  print_line(rx_handle, "Duplex:", tag::capability_duplex, duplex_text(port.duplex).text);
  print_line(rx_handle, "Trunk encap. type:", tag::capability_trunk_encapsulation, "802.1Q");
  print_line(rx_handle, "Channel:", tag::capability_channel, port.channel);
  print_line(rx_handle, "Broadcast suppression:", tag::capability_broadcast_suppression, "percentage(0-100)");
  print_line(rx_handle, "Flowcontrol:", tag::capability_flow_control, flow_text.text);
  print_line(rx_handle, "Rate mode:", tag::capability_rate_mode, rate_mode_text(port.rate_mode).text);
  print_line(rx_handle, "QOS scheduling:", tag::capability_qos_scheduling, qos_text(port).text);
  print_line(rx_handle, "CoS rewrite:", tag::capability_cos_rewrite, port.cos_rewrite);
  print_line(rx_handle, "ToS rewrite:", tag::capability_tos_rewrite, port.tos_rewrite);
  print_line(rx_handle, "SPAN:", tag::capability_span, port.span);
  print_line(rx_handle, "UDLD:", tag::capability_udld, port.udld);
  print_line(rx_handle, "Link Debounce:", tag::capability_link_debounce, port.link_debounce);
  print_line(rx_handle, "Link Debounce Time:", tag::capability_link_debounce_time,
             port.link_debounce_time != 0 ? 1 : 0);
  print_line(rx_handle, "MDIX:", tag::capability_mdix, port.mdix);
  cmd_prt(rx_handle, "\n");
}
