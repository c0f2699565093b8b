// The events of the switch: requests, rows, lost events, and descriptors to wait for.
#include "messages/calls/switch_events.h"

#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/client/client_fixture.h"
#include "messages/fields.h"
#include "switch/events.h"
#include "switch/source.h"
#include "transport/failures.h"

namespace host {
namespace {

// What readers read next: events, a loss, or a failure.
struct told_events {
  std::vector<switch_event> events;
  bool is_complete = true;
  std::string fault = {};
};

class reader_of_test final : public event_reader {
 public:
  reader_of_test() { ++num_open; }
  ~reader_of_test() override { --num_open; }

  std::vector<int> descriptors() const override { return {40, 41}; }
  bool read(std::vector<switch_event>& events) override {
    if (told.empty()) return true;
    const told_events next = told.front();
    told.pop_front();
    if (!next.fault.empty()) throw std::runtime_error(next.fault);
    events.insert(events.end(), next.events.begin(), next.events.end());
    return next.is_complete;
  }

  static inline int num_open = 0;
  static inline std::deque<told_events> told;
};

class source_of_events final : public switch_source {
 public:
  std::unique_ptr<event_reader> open_events() override {
    if (!fault.empty()) throw std::runtime_error(fault);
    return std::make_unique<reader_of_test>();
  }
  static inline std::string fault;
};

class SwitchEvents : public Clients {
 protected:
  SwitchEvents() {
    source_of_events::fault.clear();
    reader_of_test::told.clear();
    set_source(std::make_unique<source_of_events>());
    forget_failures();
  }
  ~SwitchEvents() override {
    EXPECT_EQ(reader_of_test::num_open, 0);
    set_source();
    forget_failures();
  }
};

const interface_value* find_value(const event_query::row& row, property of) {
  for (const interface_value& it : row)
    if (it.of == of) return &it;
  return nullptr;
}

std::string text_in(const event_query::row& row, property of) {
  const interface_value* const found = find_value(row, of);
  return found == nullptr || found->kind == value_kind::absent ? "none" : std::string(found->text());
}

uint64 number_at(const event_query::row& row, property of) {
  const interface_value* const found = find_value(row, of);
  return found == nullptr ? 0 : found->number();
}

switch_event mtu_event(uint32 device) {
  return {.at_sec = 1'700'000'000,
          .kind = event_kind::link,
          .device = {7, "eth0", device},
          .change = "mtu",
          .old_value = std::string("1500"),
          .new_value = std::string("9000")};
}

constexpr ip_address kAddress = {.is_ipv6 = false, .bytes = {192, 0, 2, 9}, .prefix_length = 24};
constexpr mac_address kMac = {0x02, 0, 0, 0, 0, 0x09};

TEST_F(SwitchEvents, AnEventIsARowOfValues) {
  reader_of_test::told = {{{mtu_event(3)}}};
  event_query events;
  ASSERT_EQ(events.state(), events_state::open);
  ASSERT_TRUE(events.read());
  ASSERT_EQ(events.rows().size(), 1U);
  const event_query::row& row = events.rows()[0];
  EXPECT_EQ(number_at(row, property::interface), 7U);
  EXPECT_EQ(text_in(row, property::device), "eth0");
  EXPECT_EQ(number_at(row, property::ifindex), 3U);
  EXPECT_EQ(number_at(row, property::event_time), 1'700'000'000U);
  EXPECT_EQ(text_in(row, property::event_kind), "link");
  EXPECT_EQ(text_in(row, property::change), "mtu");
  EXPECT_EQ(text_in(row, property::old_value), "1500");
  EXPECT_EQ(text_in(row, property::new_value), "9000");
  EXPECT_EQ(text_in(row, property::event_user), "none");
  EXPECT_EQ(find_value(row, property::ip_address), nullptr);
  EXPECT_EQ(find_value(row, property::mac), nullptr);
  EXPECT_FALSE(events.has_lost());
  EXPECT_FALSE(events.has_more());
}

TEST_F(SwitchEvents, AddressesAndMacsAreValuesAndTexts) {
  switch_event neighbor = {.kind = event_kind::neighbor, .device = {0, "eth1", 4}, .address = kAddress, .mac = kMac};
  neighbor.change = "added";
  neighbor.new_value = kMac;
  switch_event moved = neighbor;
  moved.kind = event_kind::address;
  moved.old_value = kAddress;
  moved.new_value = std::monostate();
  ip_address ipv6{.is_ipv6 = true, .bytes = {0x20, 0x01, 0x0d, 0xb8}, .prefix_length = 64};
  ipv6.bytes[15] = 1;
  moved.new_value = ipv6;
  reader_of_test::told = {{{neighbor, moved}}};
  event_query events;
  ASSERT_TRUE(events.read());
  ASSERT_EQ(events.rows().size(), 2U);
  const event_query::row& first = events.rows()[0];
  const event_query::row& second = events.rows()[1];
  EXPECT_EQ(find_value(first, property::ip_address)->kind, value_kind::ipv4);
  EXPECT_EQ(number_at(first, property::prefix_length_bits), 24U);
  EXPECT_EQ(find_value(first, property::mac)->kind, value_kind::mac);
  EXPECT_EQ(text_in(first, property::old_value), "none");
  EXPECT_EQ(text_in(first, property::new_value), "0200.0000.0009");
  EXPECT_EQ(text_in(second, property::event_kind), "address");
  EXPECT_EQ(text_in(second, property::old_value), "192.0.2.9/24");
  EXPECT_EQ(text_in(second, property::new_value), "2001:db8::1/64");
}

TEST_F(SwitchEvents, ManyEventsComeInPieces) {
  told_events many;
  for (uint32 i = 1; i <= 600; ++i) many.events.push_back(mtu_event(i));
  reader_of_test::told = {many};
  event_query events;
  uint64 last = 0;
  std::vector<std::size_t> sizes;
  do {
    ASSERT_TRUE(events.read());
    sizes.push_back(events.rows().size());
    for (const event_query::row& it : events.rows()) EXPECT_EQ(number_at(it, property::ifindex), ++last);
  } while (events.has_more());
  EXPECT_EQ(sizes, (std::vector<std::size_t>{256, 256, 88}));
  ASSERT_TRUE(events.read());
  EXPECT_TRUE(events.rows().empty()) << "none have come meanwhile";
}

TEST_F(SwitchEvents, ALossIsReportedWithWhatDiffers) {
  told_events lost{{mtu_event(1)}, false};
  reader_of_test::told = {lost};
  event_query events;
  ASSERT_TRUE(events.read());
  EXPECT_TRUE(events.has_lost());
  EXPECT_EQ(events.rows().size(), 1U);
  ASSERT_TRUE(events.read());
  EXPECT_FALSE(events.has_lost());
}

TEST_F(SwitchEvents, AReaderThatFailsSaysWhy) {
  reader_of_test::told = {{{}, true, "cannot read the events of the kernel: Bad file descriptor"}};
  event_query events;
  EXPECT_FALSE(events.read());
  EXPECT_EQ(events.state(), events_state::failed);
  EXPECT_EQ(events.reason(), "cannot read the events of the kernel: Bad file descriptor");
  EXPECT_TRUE(noted_failures().empty());
}

TEST_F(SwitchEvents, EventsThatCannotBeOpenedSayWhy) {
  source_of_events::fault = "cannot subscribe to the events of the kernel: Operation not permitted";
  const event_query events;
  EXPECT_EQ(events.state(), events_state::failed);
  EXPECT_EQ(events.reason(), "cannot subscribe to the events of the kernel: Operation not permitted");
}

TEST_F(SwitchEvents, ASwitchMayPublishNone) {
  set_source();
  const event_query events;
  EXPECT_EQ(events.state(), events_state::none);
}

TEST_F(SwitchEvents, ClientsFollowThemIndependently) {
  event_query first;
  event_query second;
  EXPECT_EQ(reader_of_test::num_open, 2);
  EXPECT_EQ(first.descriptors(), (std::vector<int>{40, 41}));
  {
    const event_query third;
    EXPECT_EQ(reader_of_test::num_open, 3);
  }
  EXPECT_EQ(reader_of_test::num_open, 2);
}

TEST_F(SwitchEvents, OnlyCursorsThatAreOpenHaveDescriptors) {
  EXPECT_TRUE(transport_descriptors(SAP_SWITCH, 0).empty());
  EXPECT_TRUE(transport_descriptors(SAP_SWITCH, 0xFFFFFFFF).empty());
  EXPECT_TRUE(transport_descriptors(MTS_SAP_PORT_MANAGER, 1).empty()) << "it has no cursors";
  EXPECT_TRUE(transport_descriptors(7, 1).empty()) << "nor is there such a service";
}

TEST_F(SwitchEvents, TooManyClientsAreRefused) {
  std::deque<event_query> all(256);
  EXPECT_EQ(all.back().state(), events_state::open);
  const event_query refused;
  EXPECT_EQ(refused.state(), events_state::failed);
  EXPECT_EQ(refused.reason(), "too many clients follow the events of this switch");
}

TEST_F(SwitchEvents, CutRequestsAreRejected) {
  for (const mts_opc_t opcode : {SWITCH_OPC_READ_EVENTS, SWITCH_OPC_CLOSE_EVENTS})
    for (std::size_t size = 0; size <= 5; ++size)
      if (size != 4) EXPECT_EQ(serve_switch(opcode, std::vector<std::byte>(size)).what, reply::kind::reject) << size;
  EXPECT_EQ(serve_switch(SWITCH_OPC_OPEN_EVENTS, std::vector<std::byte>(1)).what, reply::kind::reject);
  EXPECT_EQ(serve_switch(SWITCH_OPC_READ_EVENTS, std::vector<std::byte>(4)).what, reply::kind::reject)
      << "no cursor is 0";
}

std::vector<std::byte>* served_events = nullptr;

reply serve_cut_events(mts_opc_t opcode, std::span<const std::byte> request) {
  if (served_events == nullptr || opcode != SWITCH_OPC_READ_EVENTS) return serve_switch(opcode, request);
  return {reply::kind::answer, *served_events};
}

TEST_F(SwitchEvents, CutAnswersAreDamaged) {
  reader_of_test::told = {{{mtu_event(1), mtu_event(2)}}};
  const reply opened = serve_switch(SWITCH_OPC_OPEN_EVENTS, {});
  field_reader fields(std::span(opened.payload).subspan(8));
  EXPECT_EQ(fields.u8(), static_cast<uint8>(events_state::open));
  std::vector<std::byte> request;
  field_writer(request).u32(fields.u32());
  const std::vector<std::byte> whole = serve_switch(SWITCH_OPC_READ_EVENTS, request).payload;
  serve_switch(SWITCH_OPC_CLOSE_EVENTS, request);

  const service cutting[] = {{SAP_SWITCH, "switch", serve_cut_events}};
  transport_register(cutting);
  for (std::size_t size = 0; size <= whole.size() + 1; ++size) {
    event_query events;
    std::vector<std::byte> cut = whole;
    cut.resize(size);
    served_events = &cut;
    forget_failures();
    EXPECT_EQ(events.read(), size == whole.size()) << size;
    EXPECT_EQ(events.rows().size(), size == whole.size() ? 2U : 0U) << size;
    EXPECT_EQ(noted_failures().empty(), size == whole.size()) << size;
    served_events = nullptr;
  }
}

TEST_F(SwitchEvents, ADamagedAnswerToOpeningIsAFailure) {
  static std::vector<std::byte> answer;
  const service cutting[] = {{SAP_SWITCH, "switch", [](mts_opc_t, std::span<const std::byte>) {
                                return reply{reply::kind::answer, answer};
                              }}};
  transport_register(cutting);
  const std::vector<std::byte> whole(8 + 1 + 4 + 4);  // its state does not exist
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    answer.assign(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(event_query().state(), events_state::failed) << size;
  }
}

}  // namespace
}  // namespace host
