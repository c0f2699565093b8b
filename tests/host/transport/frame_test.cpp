#include "transport/frame.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "transport/hello.h"

namespace host {
namespace {

using packet_bytes = std::vector<std::byte>;

packet_bytes packet_of(std::initializer_list<int> numbers, std::string_view payload = {}) {
  packet_bytes packet;
  for (const int number : numbers) packet.push_back(static_cast<std::byte>(number));
  for (const char character : payload) packet.push_back(static_cast<std::byte>(character));
  return packet;
}

// A request with the token 0x01020304 to access point 179 at the supervisor, with the opcode 7.
packet_bytes request_frame(std::string_view payload, int flags = 0) {
  return packet_of(
      {0, 0, 0, static_cast<int>(payload.size()), 4, flags, 0, 0, 1, 2, 3, 4, 0xFE, 0, 0, 0, 0, 0, 0, 179, 0, 0, 0, 7},
      payload);
}

packet_bytes joined(const packet_bytes& one, const packet_bytes& other) {
  packet_bytes both = one;
  both.insert(both.end(), other.begin(), other.end());
  return both;
}

std::string text_of_payload(const packet_bytes& payload) {
  return {reinterpret_cast<const char*>(payload.data()), payload.size()};
}

// What the frames of packets are: messages, and the first fault.
struct read_packets {
  std::vector<frame_message> messages;
  std::string fault;
  bool is_open = false;
};

read_packets read_all(const std::vector<packet_bytes>& packets) {
  read_packets all;
  message_assembly assembly;
  for (const packet_bytes& packet : packets) {
    frame_reader frames(packet);
    while (!frames.is_at_end()) {
      const auto read = frames.next();
      if (const auto* const fault = std::get_if<frame_fault>(&read)) return all.fault = fault->text, all;
      auto added = assembly.add(std::get<frame_reader::frame>(read));
      if (const auto* const fault = std::get_if<frame_fault>(&added)) return all.fault = fault->text, all;
      if (auto* const message = std::get_if<frame_message>(&added)) all.messages.push_back(std::move(*message));
    }
  }
  all.is_open = assembly.is_open();
  return all;
}

TEST(Frame, HeadIsTwentyFourBytesBigEndian) {
  std::vector<packet_bytes> sent;
  const packet_bytes payload = packet_of({}, "abc");

  const int error = send_frames(head_of(frame_kind::request, 0x01020304, {MTS_NODE_LOCAL, 179}, 7), payload,
                                [&](auto head, auto part) {
                                  sent.push_back(joined({head.begin(), head.end()}, {part.begin(), part.end()}));
                                  return 0;
                                });

  EXPECT_EQ(error, 0);
  EXPECT_EQ(sent, std::vector<packet_bytes>{request_frame("abc")});
}

TEST(Frame, RequestIsRead) {
  const read_packets read = read_all({request_frame("abc")});

  EXPECT_EQ(read.fault, "");
  ASSERT_EQ(read.messages.size(), 1u);
  const frame_message& request = read.messages.front();
  EXPECT_EQ(request.kind, frame_kind::request);
  EXPECT_EQ(request.token, 0x01020304u);
  EXPECT_EQ(request.to.node, MTS_NODE_LOCAL);
  EXPECT_EQ(request.to.sap, 179u);
  EXPECT_EQ(request.opcode, 7u);
  EXPECT_EQ(text_of_payload(request.payload), "abc");
}

TEST(Frame, PacketOfSeveralFramesIsSeveralMessages) {
  const read_packets read = read_all({joined(request_frame("one"), request_frame("two"))});

  ASSERT_EQ(read.messages.size(), 2u);
  EXPECT_EQ(text_of_payload(read.messages[0].payload), "one");
  EXPECT_EQ(text_of_payload(read.messages[1].payload), "two");
}

TEST(Frame, EveryCutOfAPacketIsAFault) {
  const packet_bytes whole = request_frame("payload");
  for (std::size_t size = 1; size < whole.size(); ++size) {
    const read_packets read =
        read_all({packet_bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size))});
    EXPECT_NE(read.fault, "") << size;
    EXPECT_TRUE(read.messages.empty()) << size;
  }
}

TEST(Frame, LengthBeyondThePacketIsAFault) {
  for (const uint32 size : {8u, 9u, 255u, 0x10000u, 0x7FFFFFFFu, 0xFFFFFFE8u, 0xFFFFFFFFu}) {
    packet_bytes lying = request_frame("payload");
    const be32 promised = size;
    std::memcpy(lying.data(), &promised, sizeof promised);
    EXPECT_EQ(read_all({lying}).fault, "a frame promises " + std::to_string(size) + " bytes and has 7");
  }
}

TEST(Frame, LengthBelowThePayloadLeavesBytesThatAreNoFrame) {
  packet_bytes lying = request_frame("payload");
  lying[3] = std::byte{2};
  EXPECT_EQ(read_all({lying}).fault, "a frame of 5 bytes is shorter than its head");
}

TEST(Frame, UnknownKindsFlagsAndReservedBitsAreFaults) {
  packet_bytes bent = request_frame("x");
  bent[4] = std::byte{0};
  EXPECT_EQ(read_all({bent}).fault, "unknown kind of frame: 0");
  bent[4] = std::byte{9};
  EXPECT_EQ(read_all({bent}).fault, "unknown kind of frame: 9");
  bent = request_frame("x", 2);
  EXPECT_EQ(read_all({bent}).fault, "unknown flags of a frame: 0x02");
  bent = request_frame("x");
  bent[7] = std::byte{1};
  EXPECT_EQ(read_all({bent}).fault, "a frame's reserved field is not 0");
  bent = request_frame("x");
  bent[4] = std::byte{5};
  EXPECT_EQ(read_all({bent}).fault, "a frame has an address and is no request");
}

TEST(Frame, MessageOfSeveralFramesIsPutTogether) {
  const read_packets read =
      read_all({request_frame("one, ", 1), joined(request_frame("two, ", 1), request_frame("three"))});

  EXPECT_EQ(read.fault, "");
  ASSERT_EQ(read.messages.size(), 1u);
  EXPECT_EQ(text_of_payload(read.messages.front().payload), "one, two, three");
  EXPECT_FALSE(read.is_open);
}

TEST(Frame, MessageWithoutItsLastFrameIsOpen) {
  const read_packets read = read_all({request_frame("one, ", 1)});
  EXPECT_TRUE(read.messages.empty());
  EXPECT_TRUE(read.is_open);
}

TEST(Frame, FrameOfAnotherMessageBetweenIsAFault) {
  packet_bytes other = request_frame("two");
  other[11] = std::byte{5};
  EXPECT_EQ(read_all({request_frame("one", 1), other}).fault, "a frame comes between those of a message");
}

TEST(Frame, EndlessEmptyFramesAreAFault) {
  EXPECT_EQ(read_all({request_frame("", 1)}).fault, "a frame without bytes says that more follow");
}

TEST(Frame, LongMessagesTravelInFramesThatAPacketHolds) {
  packet_bytes payload(200'000);
  for (std::size_t i = 0; i < payload.size(); ++i) payload[i] = static_cast<std::byte>(i % 251);
  std::vector<packet_bytes> sent;

  send_frames(head_of(frame_kind::answer, 5), payload, [&](auto head, auto part) {
    sent.push_back(joined({head.begin(), head.end()}, {part.begin(), part.end()}));
    return 0;
  });

  EXPECT_EQ(sent.size(), 4u);  // of 60 KiB
  const read_packets read = read_all(sent);
  ASSERT_EQ(read.messages.size(), 1u);
  EXPECT_EQ(read.messages.front().payload, payload);
}

TEST(Frame, MessageAboveSixteenMebibytesIsNeitherSentNorTaken) {
  const packet_bytes payload(kMaxMessageBytes + 1);
  EXPECT_EQ(send_frames(head_of(frame_kind::answer, 5), payload, [](auto, auto) { return 0; }), EMSGSIZE);

  message_assembly assembly;
  frame_head_t head = head_of(frame_kind::answer, 5);
  head.flags = kMoreFollows;
  const std::span<const std::byte> mebibyte = std::span(payload).first(1024 * 1024);
  for (int i = 0; i < 16; ++i) ASSERT_EQ(assembly.add({head, mebibyte}).index(), 0u);
  EXPECT_EQ(std::get<frame_fault>(assembly.add({head, mebibyte.first(1)})).text,
            "a message is longer than 16777216 bytes");
}

TEST(Frame, FailureToSendEndsTheMessage) {
  int calls = 0;
  EXPECT_EQ(send_frames(head_of(frame_kind::answer), packet_bytes(200'000),
                        [&](auto, auto) { return ++calls == 2 ? EPIPE : 0; }),
            EPIPE);
  EXPECT_EQ(calls, 2);
}

TEST(Hello, ReportsTheShell) {
  const packet_bytes message = encode(hello{kProtocolVersion, "1.2", "/dev/pts/3"});
  EXPECT_EQ(message, joined(packet_of({'p', 'm', 's', 'h', 0, 0, 0, 1, 0, 0, 0, 3}, "1.2"),
                            packet_of({0, 0, 0, 10}, "/dev/pts/3")));
  const auto read = decode_hello(message);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->program_version, "1.2");
  EXPECT_EQ(read->terminal, "/dev/pts/3");
}

TEST(Hello, EveryCutIsNone) {
  const packet_bytes message = encode(hello{kProtocolVersion, "1.2", "/dev/pts/3"});
  for (std::size_t size = 0; size < message.size(); ++size)
    EXPECT_FALSE(decode_hello(std::span(message).first(size))) << size;
  EXPECT_FALSE(decode_hello(joined(message, packet_of({0}))));
}

TEST(Hello, OtherVersionIsReadAsFarAsItIsKnown) {
  const auto read = decode_hello(packet_of({'p', 'm', 's', 'h', 0, 0, 0, 9, 1, 2, 3}));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->version, 9u);
  EXPECT_FALSE(decode_hello(packet_of({'p', 'm', 's', 'x', 0, 0, 0, 1})));
}

TEST(Hello, WelcomeReportsTheSwitch) {
  welcome own;
  own.program_version = "1.2";
  own.switch_name = "lab";
  own.process = 77;
  EXPECT_FALSE(decode_welcome(encode(own))->stopped_clock);
  own.stopped_clock = 1'700'000'000;
  const packet_bytes message = encode(own);

  const auto read = decode_welcome(message);

  ASSERT_TRUE(read);
  EXPECT_EQ(read->program_version, "1.2");
  EXPECT_EQ(read->switch_name, "lab");
  EXPECT_EQ(read->process, 77u);
  EXPECT_EQ(read->stopped_clock, 1'700'000'000u);
  for (std::size_t size = 0; size < message.size(); ++size)
    EXPECT_FALSE(decode_welcome(std::span(message).first(size))) << size;
}

}  // namespace
}  // namespace host
