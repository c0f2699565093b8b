// The service of tables and its client: rows piece by piece, cursors, tables that there are not.
#include "messages/calls/tables.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>

#include "host/client/client_fixture.h"
#include "messages/messages.h"
#include "platform/interface_manager.h"
#include "platform/syserr.h"
#include "switch/source.h"
#include "transport/failures.h"

namespace host {
namespace {

// A table of `length` rows, which comes in pieces of `piece`.
class long_table final : public table_reader {
 public:
  explicit long_table(uint32 length, uint32 piece) : length_(length), piece_(piece) { ++num_open; }
  ~long_table() override { --num_open; }

  bool next(std::vector<table_row>& rows) override {
    for (uint32 i = 0; i < piece_ && done_ < length_; ++i) {
      address_row row;
      row.device.number = ++done_;
      row.label = std::string(label_bytes, 'x');
      rows.emplace_back(std::move(row));
    }
    if (fails_at != 0 && done_ >= fails_at) throw std::runtime_error("addresses of the kernel: lost");
    return done_ < length_;
  }
  bool has_changed() const override { return done_ > 300; }

  static inline uint32 num_open = 0, fails_at = 0;
  static inline std::size_t label_bytes = 0;

 private:
  uint32 length_, piece_, done_ = 0;
};

class source_with_tables final : public switch_source {
 public:
  std::unique_ptr<table_reader> open_table(const machine&, table_id, const std::vector<if_index_t>& of) override {
    interfaces = of;
    return std::make_unique<long_table>(length, piece);
  }

  static inline uint32 length = 0, piece = 0;
  static inline std::vector<if_index_t> interfaces;
};

class Tables : public Clients {
 protected:
  Tables() {
    long_table::fails_at = 0;
    long_table::label_bytes = 0;
    source_with_tables::interfaces.clear();
    forget_failures();
  }
  ~Tables() override {
    set_source();
    EXPECT_EQ(long_table::num_open, 0U);
  }

  static void use(uint32 length, uint32 piece) {
    source_with_tables::length = length;
    source_with_tables::piece = piece;
    set_source(std::make_unique<source_with_tables>());
  }
};

uint64 number_in(const table_query::row& row) {
  for (const interface_value& it : row)
    if (it.of == property::ifindex) return it.number();
  return 0;
}

// The sizes of the pieces of a table, whose rows must have the numbers from 1.
std::vector<std::size_t> sizes_of(table_query& query) {
  std::vector<std::size_t> sizes;
  uint64 last = 0;
  while (query.next()) {
    sizes.push_back(query.rows().size());
    for (const table_query::row& row : query.rows()) EXPECT_EQ(number_in(row), ++last);
  }
  return sizes;
}

using counts = std::vector<std::size_t>;

TEST_F(Tables, ATableWithoutRowsIsOneEmptyPiece) {
  use(0, 1);
  table_query query(q_, table_id::ipv4_addresses, {});
  EXPECT_EQ(sizes_of(query), counts{0});
  EXPECT_EQ(query.error(), 0);
}

TEST_F(Tables, FirstRowsDoNotWaitForTheRest) {
  use(5, 2);
  table_query query(q_, table_id::ipv4_addresses, {});
  EXPECT_EQ(sizes_of(query), (counts{2, 2, 1}));
}

TEST_F(Tables, AnAnswerHasAtMost256Rows) {
  use(1000, 600);
  table_query query(q_, table_id::ipv4_addresses, {});
  EXPECT_EQ(sizes_of(query), (counts{256, 256, 88, 256, 144}));
  EXPECT_EQ(query.error(), 0);
}

TEST_F(Tables, AnAnswerOfLongRowsEndsEarlier) {
  use(8, 8);
  long_table::label_bytes = 60'000;  // five of them are more than 256 KiB
  table_query query(q_, table_id::ipv4_addresses, {});
  EXPECT_EQ(sizes_of(query), (counts{5, 3}));
}

TEST_F(Tables, AChangeOfTheTableIsReported) {
  use(300, 300);
  table_query unchanged(q_, table_id::ipv4_addresses, {});
  sizes_of(unchanged);
  EXPECT_FALSE(unchanged.has_changed());
  use(301, 301);
  table_query changed(q_, table_id::ipv4_addresses, {});
  sizes_of(changed);
  EXPECT_TRUE(changed.has_changed());
}

TEST_F(Tables, AQueryThatEndsEarlyClosesItsTable) {
  use(1000, 10);
  {
    table_query query(q_, table_id::ipv4_addresses, {});
    EXPECT_TRUE(query.next());
    EXPECT_EQ(long_table::num_open, 1U);
  }
  EXPECT_EQ(long_table::num_open, 0U);
}

TEST_F(Tables, OfManyOpenTablesTheLeastRecentlyUsedIsClosed) {
  use(1000, 10);
  std::vector<std::unique_ptr<table_query>> queries;
  for (int i = 0; i < 9; ++i) {
    queries.push_back(std::make_unique<table_query>(q_, table_id::ipv4_addresses, std::span<const if_index_t>()));
    EXPECT_TRUE(queries.back()->next());
    if (i == 7) EXPECT_TRUE(queries[0]->next()) << "used again: the second one is the oldest now";
  }
  EXPECT_EQ(long_table::num_open, 8U);
  EXPECT_TRUE(queries[0]->next());
  EXPECT_FALSE(queries[1]->next());
  EXPECT_EQ(queries[1]->error(), kTableGivenUp);
  EXPECT_STREQ(syserr2str(queries[1]->error()), "too many other tables were begun meanwhile");
}

TEST_F(Tables, AReasonOfTheSourceIsTheError) {
  use(1000, 10);
  long_table::fails_at = 20;
  table_query query(q_, table_id::ipv4_addresses, {});
  EXPECT_TRUE(query.next());
  EXPECT_FALSE(query.next());
  EXPECT_STREQ(syserr2str(query.error()), "addresses of the kernel: lost");
  EXPECT_FALSE(query.next());
}

TEST_F(Tables, InterfacesTravelSorted) {
  use(0, 1);
  const std::array interfaces = {names_.second_port, names_.first_port};
  table_query query(q_, table_id::ipv6_addresses, interfaces);
  query.next();
  EXPECT_EQ(source_with_tables::interfaces, (std::vector{names_.first_port, names_.second_port}));
}

TEST_F(Tables, AddressesOfTheModelAreRowsOfTheirFamily) {
  interface& port = *the_machine().find(names_.first_port);
  port.settings.mtu_bytes = 4321;
  port.oper_state = PM_PORT_STATE_UP;
  port.addresses = {{false, {192, 0, 2, 1}, 24}, {true, {0x20, 1, 0xd, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9}, 64}};
  const std::array interfaces = {names_.first_port};
  table_query query(q_, table_id::ipv6_addresses, interfaces);
  ASSERT_TRUE(query.next());
  ASSERT_EQ(query.rows().size(), 1U);
  std::vector<std::pair<property, uint64>> numbers;
  for (const interface_value& it : query.rows()[0]) {
    if (it.kind == value_kind::number || it.kind == value_kind::interface) numbers.emplace_back(it.of, it.number());
    if (it.of == property::ip_address) {
      EXPECT_EQ(it.kind, value_kind::ipv6);
      EXPECT_EQ(it.bytes[15], std::byte{9});
    }
  }
  EXPECT_EQ(numbers, (std::vector<std::pair<property, uint64>>{{property::interface, uint64{names_.first_port}},
                                                               {property::state, uint64{PM_PORT_STATE_UP}},
                                                               {property::mtu_bytes, 4321},
                                                               {property::prefix_length_bits, 64}}));
}

// ---- Bad requests and answers

syserr_t status_of(const reply& answer) {
  reply_head head{};
  EXPECT_GE(answer.payload.size(), sizeof head);
  std::memcpy(&head, answer.payload.data(), std::min(sizeof head, answer.payload.size()));
  return head.status;
}

template <typename Record>
reply serve(mts_opc_t opcode, const Record& request) {
  return serve_tables(opcode, std::as_bytes(std::span(&request, 1)));
}

TEST_F(Tables, TablesThatThereAreNotAreRefused) {
  EXPECT_EQ(status_of(serve(TABLES_OPC_BEGIN, begin_table_request{0, 0})), kNoSuchTable);
  EXPECT_EQ(status_of(serve(TABLES_OPC_BEGIN, begin_table_request{0xFFFF, 0})), kNoSuchTable);
  EXPECT_EQ(status_of(serve(TABLES_OPC_GO_ON, table_cursor{4'000'000'000})), kTableGivenUp);
  EXPECT_EQ(status_of(serve(TABLES_OPC_END, table_cursor{4'000'000'000})), 0);
}

TEST_F(Tables, RequestsOfAnotherSizeAreRejected) {
  using kind = reply::kind;
  EXPECT_EQ(serve_tables(TABLES_OPC_BEGIN, {}).what, kind::reject);
  EXPECT_EQ(serve(TABLES_OPC_BEGIN, be16(1)).what, kind::reject);
  EXPECT_EQ(serve(TABLES_OPC_BEGIN, be64(1)).what, kind::answer) << "with an interface";
  EXPECT_EQ(serve_tables(TABLES_OPC_GO_ON, {}).what, kind::reject);
  EXPECT_EQ(serve(TABLES_OPC_GO_ON, be64(1)).what, kind::reject);
  EXPECT_EQ(serve(TABLES_OPC_END, be16(1)).what, kind::reject);
  EXPECT_EQ(serve(99, table_cursor{1}).what, kind::reject);
}

reply damaged_answer;
reply serve_damaged(mts_opc_t, std::span<const std::byte>) { return damaged_answer; }

TEST_F(Tables, ADamagedAnswerIsNoted) {
  use(3, 3);
  const begin_table_request request{static_cast<uint16>(table_id::ipv4_addresses), 0};
  const reply whole = serve(TABLES_OPC_BEGIN, request);
  const service damaged[] = {{SAP_TABLES, "tables", serve_damaged}};
  transport_register(damaged);
  for (std::size_t size = 1; size < whole.payload.size(); ++size) {
    damaged_answer = whole;
    damaged_answer.payload.resize(size);
    table_query query(q_, table_id::ipv4_addresses, {});
    EXPECT_FALSE(query.next()) << size;
    EXPECT_EQ(query.error(), PM_ERR_GENERAL);
    EXPECT_TRUE(query.rows().empty());
    ASSERT_EQ(noted_failures().size(), 1U) << size;
    EXPECT_EQ(noted_failures()[0].what, fault::damaged);
    forget_failures();
  }
}

}  // namespace
}  // namespace host
