// A capture of the kernel's answers, and the switch that is replayed from it.
#include <gtest/gtest.h>
#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/rtnetlink.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "base/port_status.h"
#include "host/source/kernel/recorded_switch.h"
#include "source/kernel/capture.h"
#include "source/kernel/ethtool_ioctl.h"
#include "source/replay/replay_source.h"
#include "switch/clock.h"
#include "switch/if_index_layout.h"

namespace host {
namespace {

namespace fs = std::filesystem;
using strings = std::vector<std::string>;

std::string text_in(const fs::path& file) {
  std::ostringstream text;
  text << std::ifstream(file, std::ios::binary).rdbuf();
  return text.str();
}

void write_text(const fs::path& file, const std::string& text) { std::ofstream(file, std::ios::binary) << text; }

class Replay : public testing::Test {
 protected:
  Replay() {
    std::string made = (fs::temp_directory_path() / "replay_test.XXXXXX").string();
    if (mkdtemp(made.data()) == nullptr) throw std::runtime_error("no temporary directory");
    root_ = made;
    folder_ = root_ / "capture";
    clock_set(1'795'363'200);
  }
  ~Replay() override {
    clock_follow_machine();
    fs::remove_all(root_);
  }

  // Captures the recorded switch with all details.
  void capture_switch() {
    recorded_kernel kernel;
    record_switch(kernel);
    capture capturing(folder_.string());
    capturing_source source(capturing);
    machine model = source.read();
    capturing.complete(model, source);
    EXPECT_EQ(capturing.finish(), 0);
  }

  // Captures what `ask` asks a kernel.
  template <typename Ask>
  void capture_requests(recorded_kernel&, const Ask& ask) {
    capture capturing(folder_.string());
    ask();
    EXPECT_EQ(capturing.finish(), 0);
  }

  // The rows of a table, which is read to its end.
  static std::vector<table_row> rows_of(switch_source& source, const machine& model, table_id table) {
    std::vector<table_row> rows;
    const auto reader = source.open_table(model, table, {});
    while (reader->next(rows)) {
    }
    return rows;
  }

  replay_source replayed() const { return replay_source(read_capture_folder(folder_.string())); }

  // The sentences about the folder, with DIR in the place of its path.
  strings faults() const {
    strings found;
    try {
      read_capture_folder(folder_.string());
    } catch (const capture_folder_error& error) {
      for (std::string fault : error.faults) {
        for (std::size_t at; (at = fault.find(folder_.string())) != std::string::npos;)
          fault.replace(at, folder_.string().size(), "DIR");
        found.push_back(fault);
      }
    }
    return found;
  }

  // A folder made by hand: one answer of 20 bytes, a message of the end of a dump.
  void write_folder(const std::string& index) {
    fs::create_directory(folder_);
    write_text(folder_ / "index", index);
    const nlmsghdr done{20, NLMSG_DONE, NLM_F_MULTI, 0, 0};
    write_text(folder_ / "0001-links",
               std::string(reinterpret_cast<const char*>(&done), sizeof done) + std::string(4, '\0'));
  }

  static std::string index_with(const std::string& lines) {
    return "pmsh capture 1\nbyte-order little\nclock 1795363200\nsystem Linux 6.1\nswitch lab\n" + lines;
  }

  fs::path root_, folder_;
};

constexpr char kLinksAnswer[] = "answer 1 route 18 links 0001-links 20 0 12000103\n";

// ---- The same switch ------------------------------------------------------------------------------------------------

TEST_F(Replay, TheSwitchIsTheCapturedOne) {
  capture_switch();
  replay_source source = replayed();
  EXPECT_EQ(source.clock(), 1'795'363'200);
  machine model = source.read();
  ASSERT_EQ(model.interfaces.size(), 12U);
  const auto port = [&](uint32 device) -> interface& {
    return *model.find(ethernet_index(IF_TYPE_ETHERNET, 0, device - 1));
  };
  EXPECT_EQ(port(kSwp3).settings.allowed_vlans, (std::vector<uint16>{10, 20, 21, 22, 30}));
  EXPECT_EQ(port(kSwp3).oper_speed_mbps, 40'000U);
  EXPECT_EQ(port(kSwp1).settings.channel, model.find(port(kSwp1).settings.channel)->if_index);
  for (const detail needed : {detail::module, detail::diagnostics}) source.complete(port(kSwp1), needed);
  ASSERT_TRUE(port(kSwp1).module_in_port);
  EXPECT_FALSE(port(kSwp1).is_module_protected);
  source.complete(port(kSwp2), detail::module);
  EXPECT_FALSE(port(kSwp2).module_in_port);
  source.complete(port(kSwp4), detail::link_fault);
  EXPECT_EQ(port(kSwp4).state_reason, 84);  // loss of sync
  source.update_statistics(port(kSwp1), 0);
  source.complete(port(kSwp1), detail::counters);
  EXPECT_EQ(port(kSwp1).stats.errors.symbol, 101U);
}

TEST_F(Replay, AllFilesOfACaptureArePrivate) {
  capture_switch();
  EXPECT_EQ(fs::status(folder_).permissions(), fs::perms::owner_all);
  for (const auto& file : fs::directory_iterator(folder_))
    EXPECT_EQ(file.status().permissions(), fs::perms::owner_read | fs::perms::owner_write) << file.path();
}

TEST_F(Replay, AnswersHaveNoSequenceNumbersAndPorts) {
  capture_switch();
  const std::string answer = text_in(folder_ / "0001-links");
  nlmsghdr first;
  ASSERT_GE(answer.size(), sizeof first);
  std::memcpy(&first, answer.data(), sizeof first);
  EXPECT_EQ(first.nlmsg_seq, 0U);
  EXPECT_EQ(first.nlmsg_pid, 0U);
}

constexpr question kAddressQuestion{NETLINK_ROUTE, RTM_GETADDR, AF_UNSPEC};

// The device of each address in an answer, or the errno.
strings ask_for_addresses() {
  strings devices;
  netlink_socket route(NETLINK_ROUTE);
  netlink_request request(RTM_GETADDR, NLM_F_DUMP);
  request.extra<ifaddrmsg>().ifa_family = AF_UNSPEC;
  const int error = route.ask(
      request,
      [&devices](const nlmsghdr& message) {
        devices.push_back(std::to_string(static_cast<const ifaddrmsg*>(mnl_nlmsg_get_payload(&message))->ifa_index));
      },
      [&devices] { devices.clear(); });
  if (error != 0) devices.push_back(std::to_string(error) + " " + route.reason());
  return devices;
}

netlink_request address_of(uint32 device) {
  netlink_request message(RTM_NEWADDR, 0);
  message.extra<ifaddrmsg>().ifa_index = device;
  return message;
}

TEST_F(Replay, RepeatedRequestsHaveTheirAnswersInOrderAndThenTheLast) {
  recorded_kernel kernel;
  uint32 asked = 0;
  kernel.answer(kAddressQuestion, [&asked](const nlmsghdr&) {
    return recorded_answer{0, {recorded(address_of(++asked))}};
  });
  capture_requests(kernel, [] { ask_for_addresses(), ask_for_addresses(), ask_for_addresses(); });
  const replay_source source = replayed();
  EXPECT_EQ(ask_for_addresses(), strings{"1"});
  EXPECT_EQ(ask_for_addresses(), strings{"2"});
  EXPECT_EQ(ask_for_addresses(), strings{"3"});
  EXPECT_EQ(ask_for_addresses(), strings{"3"});
}

TEST_F(Replay, ADisturbedDumpIsRepeatedAsItWas) {
  for (const disturbance how : {disturbance::lost, disturbance::interrupted}) {
    fs::remove_all(folder_);
    recorded_kernel kernel;
    for (const uint32 device : {1U, 2U, 3U}) kernel.tell(kAddressQuestion, address_of(device));
    kernel.disturb(kAddressQuestion, how);
    capture_requests(kernel, [] { EXPECT_EQ(ask_for_addresses(), (strings{"1", "2", "3"})); });
    EXPECT_TRUE(fs::exists(folder_ / "0002-addresses"));
    const replay_source source = replayed();
    EXPECT_EQ(ask_for_addresses(), (strings{"1", "2", "3"}));
  }
}

TEST_F(Replay, ARefusalHasTheKernelsErrorAndText) {
  recorded_kernel kernel;
  kernel.answer(kAddressQuestion, [](const nlmsghdr&) { return recorded_answer{EPERM, {}, "not you"}; });
  capture_requests(kernel, [] { ask_for_addresses(); });
  const replay_source source = replayed();
  EXPECT_EQ(ask_for_addresses(), strings{std::to_string(EPERM) + " not you"});
}

TEST_F(Replay, IoctlsAreReplayedByDevice) {
  recorded_kernel kernel;
  ethtool_drvinfo driver{};
  driver.cmd = ETHTOOL_GDRVINFO;
  std::strcpy(driver.driver, "fastnic");
  kernel.answer_by_ioctl("swp1", driver);
  capture_requests(kernel, [] { driver_of("swp1"), driver_of("swp2"); });
  const replay_source source = replayed();
  EXPECT_EQ(driver_of("swp1"), "fastnic");
  EXPECT_EQ(driver_of("swp2"), "");
  EXPECT_THROW(driver_of("swp3"), kernel_error);
}

TEST_F(Replay, ARequestWithoutAnAnswerIsAnError) {
  write_folder(index_with(std::string(kLinksAnswer) + "end 1\n"));
  const replay_source source = replayed();
  try {
    ask_for_addresses();
    ADD_FAILURE() << "an invented answer";
  } catch (const kernel_error& error) {
    EXPECT_EQ(
        std::string(error.what()),
        "the capture has no answer to a request for 'addresses'. Capture again with this version of the program.");
  }
}

TEST_F(Replay, SettingsAreRefused) {
  capture_switch();
  replay_source source = replayed();
  machine model = source.read();
  interface& port = model.interfaces.front();
  const std::string refusal = "the switch is replayed from a capture and cannot be changed";
  EXPECT_EQ(text_of_port_status(source.check_settings(port, port.settings)), refusal);
  EXPECT_EQ(text_of_port_status(source.apply_settings(port, port.settings)), refusal);
  EXPECT_TRUE(source.interfaces_towards("192.0.2.1").empty());
  const if_index_t loopback = numbered_index(IF_TYPE_LOOPBACK, 9);
  EXPECT_EQ(text_of_port_status(source.create_interfaces(model, {&loopback, 1})), refusal);
  EXPECT_EQ(text_of_port_status(source.delete_interfaces(model, {&loopback, 1})), refusal);
}

// Answers that no kernel gives: sanitizers see each read beyond them.
TEST_F(Replay, AnswersWithAChangedByteAreSafe) {
  constexpr std::size_t kStep = 5;  // each byte takes too long
  capture_switch();
  const capture_folder whole = read_capture_folder(folder_.string());
  for (const auto& [key, answers] : whole.answers)
    for (std::size_t at = 0; at < answers[0].bytes.size(); at += kStep) {
      capture_folder changed = whole;
      for (captured_answer& answer : changed.answers.at(key)) answer.bytes[at] = '\xff';
      replay_source source(std::move(changed));
      try {
        machine model = source.read();
        EXPECT_LE(model.interfaces.size(), 12U);
        for (interface& port : model.interfaces)
          for (const detail needed : {detail::link_fault, detail::diagnostics, detail::counters})
            source.complete(port, needed);
      } catch (const kernel_error&) {  // an answer that cannot be read
      }
    }
}

// ---- Folders to write -----------------------------------------------------------------------------------------------

std::string capture_fault(const fs::path& folder) {
  try {
    const capture capturing(folder.string());
    return {};
  } catch (const capture_error& error) {
    return error.what();
  }
}

TEST_F(Replay, ACaptureTakesANewOrEmptyDirectory) {
  EXPECT_EQ(capture_fault(folder_), "");
  fs::create_directory(root_ / "empty");
  EXPECT_EQ(capture_fault(root_ / "empty"), "");
  EXPECT_EQ(capture_fault(folder_),
            "'" + folder_.string() + "' is not empty. Give --capture a new or empty directory.");
  write_text(root_ / "file", "");
  EXPECT_EQ(capture_fault(root_ / "file"),
            "'" + (root_ / "file").string() + "' is not a directory. Give --capture a new or empty directory.");
  EXPECT_EQ(capture_fault(root_ / "none" / "below"),
            "cannot capture into '" + (root_ / "none" / "below").string() + "': No such file or directory.");
}

TEST_F(Replay, AnotherProcessStoresNothing) {
  recorded_kernel kernel;
  capture_requests(kernel, [] {
    const pid_t child = fork();
    if (child == 0) {
      ask_for_addresses();
      _exit(0);
    }
    waitpid(child, nullptr, 0);
  });
  EXPECT_FALSE(fs::exists(folder_ / "0001-addresses"));
  EXPECT_EQ(faults(), strings{});
}

// A limit of the size of files stands for a full disk.
TEST_F(Replay, AWriteThatFailsIsReported) {
  recorded_kernel kernel;
  for (uint32 device = 1; device < 50; ++device) kernel.tell(kAddressQuestion, address_of(device));
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  int error = 0;
  {
    capture capturing(folder_.string());
    const rlimit small{200, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    ask_for_addresses();
    error = capturing.finish();
    setrlimit(RLIMIT_FSIZE, &before);
  }
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(error, EFBIG);
}

// ---- Folders to read ------------------------------------------------------------------------------------------------

TEST_F(Replay, AFolderMadeByHandIsRead) {
  write_folder(index_with("device 3 08002000 bond\n" + std::string(kLinksAnswer) + "end 1\n"));
  EXPECT_EQ(faults(), strings{});
  const capture_folder read = read_capture_folder(folder_.string());
  EXPECT_EQ(read.clock, 1'795'363'200);
  EXPECT_EQ(read.system.release, "6.1");
  EXPECT_EQ(read.switch_name, "lab");
  EXPECT_EQ(read.interfaces.at(3).if_index, 0x08002000U);
  EXPECT_EQ(read.interfaces.at(3).reason, name_reason::bond);
  EXPECT_EQ(read.answers.at({capture_bus::route, "12000103"}).at(0).bytes.size(), 20U);
}

TEST_F(Replay, AFolderWithoutAnIndexIsNone) {
  EXPECT_EQ(faults(),
            strings{"cannot read 'DIR/index': No such file or directory. Give --replay a folder that --capture "
                    "has written."});
}

TEST_F(Replay, AnIndexOfSomethingElseIsNone) {
  for (const char* const text : {"", "\n", "hello\nworld\n", "pmsh capture 1",
                                 "\x7f"
                                 "ELF\n"}) {
    fs::remove_all(folder_);
    write_folder(text);
    EXPECT_EQ(faults(),
              strings{"'DIR/index' is not the index of a capture: expected 'pmsh capture 1' in its first line."})
        << text;
  }
}

TEST_F(Replay, AnotherVersionIsRefused) {
  write_folder("pmsh capture 2\nend 0\n");
  EXPECT_EQ(faults(), strings{"'DIR/index' has the format 'pmsh capture 2', but this program reads 'pmsh capture 1'."});
}

TEST_F(Replay, ACaptureOfTheOtherByteOrderIsRefused) {
  write_folder("pmsh capture 1\nbyte-order big\nsurely wrong\n");
  EXPECT_EQ(faults(), strings{"the capture 'DIR' is of a big-endian machine. Replay it on one."});
}

TEST_F(Replay, EachFileThatIsWrongHasItsSentence) {
  write_folder(index_with(std::string(kLinksAnswer) + "answer 2 route 22 addresses 0002-addresses 20 0 16000103\n"
                                                      "answer 3 route 22 addresses 0003-addresses 20 0 16000103\n"
                                                      "answer 4 route 22 addresses 0004-addresses 20 0 16000103\n"
                                                      "answer 5 route 22 addresses 0005-addresses 20 0 16000103\n"
                                                      "end 5\n"));
  const std::string answer = text_in(folder_ / "0001-links");
  write_text(folder_ / "0003-addresses", answer.substr(0, 19));
  write_text(folder_ / "0004-addresses", std::string(20, 'x'));
  fs::create_directory(folder_ / "0005-addresses");
  write_text(folder_ / "notes.txt", "");
  EXPECT_EQ(faults(),
            (strings{"'DIR/0002-addresses' is missing; 'DIR/index' line 7 names it.",
                     "'DIR/0003-addresses' has 19 bytes; 'DIR/index' line 8 expects 20.",
                     "'DIR/0004-addresses' is not an answer of the kernel: a message in it has a wrong length.",
                     "cannot read 'DIR/0005-addresses': Is a directory.",
                     "'DIR/notes.txt' is not part of the capture. Remove it."}));
}

TEST_F(Replay, EachLineThatIsWrongHasItsSentence) {
  const strings lines = {
      "",
      "answer",
      "answers 1",
      "device 3 08002000",
      "device x 08002000 bond",
      "device 3 0800200g bond",
      "device 3 08002000 luck",
      "baseline 3 020000000007 1 2",
      "clock soon",
      "clock 4294967296",
      "byte-order middle",
      "answer 2 route 18 links 0001-links 20 0 12000103",     // not the next number
      "answer 1 river 18 links 0001-links 20 0 12000103",     // no such bus
      "answer 1 route 18 links ../0001-links 20 0 12000103",  // outside of the folder
      "answer 1 route 18 links .hidden 20 0 12000103",
      "answer 1 route 18 links 0001-links -1 0 12000103",
      "answer 1 route 18 links 0001-links 20 -5 12000103",
      "answer 1 route 18 links 0001-links 20 0 ",
      "end 7",
  };
  for (const std::string& line : lines) {
    fs::remove_all(folder_);
    write_folder(index_with(line + "\n" + kLinksAnswer + "end 1\n"));
    EXPECT_EQ(faults(), strings{"'DIR/index' line 6 cannot be read: '" + line + "'."}) << line;
  }
}

TEST_F(Replay, AnIndexCutAtEachByteIsIncomplete) {
  const std::string whole = index_with(std::string(kLinksAnswer) + "end 1\n");
  write_folder(whole);
  for (std::size_t size = 0; size < whole.size(); ++size) {
    write_text(folder_ / "index", whole.substr(0, size));
    EXPECT_FALSE(faults().empty()) << size;
  }
  write_text(folder_ / "index", whole.substr(0, whole.size() - 1));
  EXPECT_EQ(faults(), strings{"'DIR/index' has no last line 'end'. The capture was interrupted or the file is cut."});
}

TEST_F(Replay, AnInterfaceIsThatOfOneDevice) {
  capture_switch();
  std::string index = text_in(folder_ / "index");
  const std::string swp1 = "device 3 08002000", swp2 = "device 4 08003000";
  ASSERT_NE(index.find(swp1), std::string::npos);
  ASSERT_NE(index.find(swp2), std::string::npos);
  write_text(folder_ / "index", index.replace(index.find(swp2), swp2.size(), "device 4 08002000"));
  replay_source source = replayed();
  machine model = source.read();
  EXPECT_EQ(model.interfaces.size(), 11U);
  EXPECT_EQ(source.find_device(0x08002000)->name, "swp1");
}

TEST_F(Replay, NothingFollowsTheEnd) {
  write_folder(index_with(std::string(kLinksAnswer) + "end 1\nswitch other\n"));
  EXPECT_EQ(faults(), strings{"'DIR/index' line 8 cannot be read: 'switch other'."});
}

// ---- Tables

TEST_F(Replay, TablesThatNoCommandReadAreThere) {
  {
    recorded_kernel kernel;
    record_switch(kernel);
    ethtool_drvinfo driver{};
    driver.cmd = ETHTOOL_GDRVINFO;
    driver.n_stats = 1;
    kernel.answer_by_ioctl("swp1", driver);
    struct {
      uint32 cmd = ETHTOOL_GSTRINGS, string_set = ETH_SS_STATS, len = 1;
      char name[ETH_GSTRING_LEN] = "rx_queue_0";
    } names;
    kernel.answer_by_ioctl("swp1", names);
    struct {
      uint32 cmd = ETHTOOL_GSTATS, n_stats = 1;
      uint64 value = 42;
    } values;
    kernel.answer_by_ioctl("swp1", values);
    capture capturing(folder_.string());
    capturing_source source(capturing);
    machine model = source.read();
    capturing.complete(model, source);
    EXPECT_EQ(capturing.finish(), 0);
  }
  replay_source source = replayed();
  machine model = source.read();
  for (const table_id table : {table_id::ipv4_neighbors, table_id::ipv6_neighbors, table_id::mac_addresses})
    EXPECT_TRUE(rows_of(source, model, table).empty());
  EXPECT_FALSE(rows_of(source, model, table_id::hardware).empty());
  EXPECT_FALSE(rows_of(source, model, table_id::bridge_ports).empty());
  uint64 counted = 0;
  for (const table_row& it : rows_of(source, model, table_id::driver_counters))
    if (const auto& row = std::get<driver_counter_row>(it); row.device.name == "swp1" && row.counters)
      counted = row.counters->at(0).second;
  EXPECT_EQ(counted, 42U);
}

}  // namespace
}  // namespace host
