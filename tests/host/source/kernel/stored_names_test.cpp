// Which interface a named_device was before, and the file that stores it.
#include "source/kernel/stored_names.h"

#include <fcntl.h>
#include <gmock/gmock-more-matchers.h>
#include <gtest/gtest.h>
#include <net/if.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "switch/if_index_layout.h"

namespace host {
namespace {

using testing::HasSubstr;

using address = std::array<uint8, 6>;

kernel_link named_device(uint32 number, const std::string& name, const std::string& kind = "veth") {
  kernel_link link;
  link.number = number;
  link.name = name;
  link.kind = kind;
  link.mac = {2, 0, 0, 0, 1, static_cast<uint8>(number)};
  return link;
}

kernel_link hardware(uint32 number, const std::string& name, uint8 last_byte) {
  kernel_link link = named_device(number, name, "");
  link.mac = address{2, 0, 0, 0, 9, last_byte};
  link.permanent_mac = link.mac;
  return link;
}

if_index_t port(uint32 place, uint32 sub = 0) { return ethernet_index(IF_TYPE_ETHERNET, 0, place - 1, sub); }
const if_index_t kManagement = ethernet_index(IF_TYPE_MGMT, 0, 0);

using Links = std::vector<kernel_link>;

class Names : public testing::Test {
 protected:
  ~Names() override {
    for (const std::string& file : {path_, path_ + ".lock"}) std::remove(file.c_str());
  }

  // The devices as a shell of its own maps them.
  std::vector<mapped_device> map(const Links& links, uint32 management = 0,
                                 const requested_interfaces& requested = {}) {
    stored_names names;
    names.keep_in(path_);
    auto mapped = names.map(links, management, requested);
    fault_ = names.fault();
    return mapped;
  }
  if_index_t interface_of(const Links& links, const std::string& named_device, uint32 management = 0) {
    return found(map(links, management), named_device).if_index;
  }
  static mapped_device found(const std::vector<mapped_device>& mapped, const std::string& named_device) {
    for (const mapped_device& it : mapped)
      if (it.device == named_device) return it;
    return {};
  }

  std::string text() const {
    std::ostringstream all;
    all << std::ifstream(path_).rdbuf();
    return all.str();
  }
  void write(const std::string& text) const { std::ofstream(path_) << text; }
  std::string first_line() const { return text().substr(0, text().find('\n') + 1); }

  const std::string path_ = testing::TempDir() + "names-" + std::to_string(getpid());
  std::string fault_;
};

TEST_F(Names, TheManagementPortOutlivesItsRoute) {
  const Links links = {hardware(2, "eth0", 2), hardware(3, "eth1", 3)};
  EXPECT_EQ(interface_of(links, "eth0", 2), kManagement);
  EXPECT_EQ(interface_of(links, "eth0", 0), kManagement);
  EXPECT_EQ(interface_of(links, "eth0", 3), kManagement);
  EXPECT_EQ(interface_of(links, "eth1", 3), port(3));
  EXPECT_EQ(fault_, "");
}

TEST_F(Names, APortThatHasANameIsNoManagementPortLater) {
  const Links links = {hardware(2, "eth0", 2)};
  EXPECT_EQ(interface_of(links, "eth0", 0), port(2));
  EXPECT_EQ(interface_of(links, "eth0", 2), port(2));
}

TEST_F(Names, HardwareIsKnownByItsPermanentAddress) {
  map({hardware(2, "eth0", 2)});
  kernel_link again = hardware(12, "lan0", 2);
  again.mac = {2, 2, 2, 2, 2, 2};
  EXPECT_EQ(interface_of({again}, "lan0"), port(2));
  EXPECT_EQ(interface_of({hardware(12, "eth0", 5)}, "eth0"), port(12));
}

TEST_F(Names, OtherDevicesAreKnownByTheirName) {
  map({named_device(5, "left"), named_device(6, "right")});
  EXPECT_EQ(interface_of({named_device(15, "left"), named_device(16, "other")}, "left"), port(5));
  EXPECT_EQ(interface_of({named_device(15, "left"), named_device(16, "other")}, "other"), port(16));
}

TEST_F(Names, HardwareThatSharesItsAddressIsKnownByName) {
  map({hardware(2, "a", 7), hardware(3, "b", 7)});
  EXPECT_EQ(interface_of({hardware(22, "b", 7), hardware(23, "a", 7)}, "a"), port(2));
  EXPECT_EQ(interface_of({hardware(22, "b", 7), hardware(23, "a", 7)}, "b"), port(3));
}

TEST_F(Names, ADeviceThatIsRenamedIsTheSame) {
  kernel_link renamed = named_device(5, "left");
  map({renamed});
  renamed.name = "renamed";
  EXPECT_EQ(interface_of({renamed}, "renamed"), port(5));
  const Links both = {renamed, named_device(6, "left")};
  EXPECT_EQ(interface_of(both, "renamed"), port(5));
  EXPECT_EQ(interface_of(both, "left"), port(6));
}

TEST_F(Names, ADeviceWithTheNameOfOneThatIsGoneKeepsItsOwn) {
  map({named_device(4, "other"), named_device(5, "left")});
  kernel_link renamed = named_device(5, "left");
  renamed.name = "other";
  EXPECT_EQ(interface_of({renamed}, "other"), port(5));
  EXPECT_EQ(interface_of({renamed}, "other"), port(5));
  renamed.number = 15;
  EXPECT_EQ(interface_of({renamed}, "other"), port(5));
  EXPECT_EQ(interface_of({hardware(4, "new", 4), renamed}, "new"), port(6)) << "4 was another's, 5 is taken";
}

TEST_F(Names, TheInterfaceOfADeviceThatIsGoneIsNotGivenAgain) {
  map({hardware(5, "eth0", 5), named_device(9, "gone")}, 5);
  EXPECT_EQ(interface_of({hardware(9, "new", 9)}, "new"), port(10));
  EXPECT_EQ(interface_of({hardware(8, "eth1", 8)}, "eth1", 8), port(8));
  EXPECT_EQ(interface_of({hardware(5, "eth0", 5)}, "eth0"), kManagement);
}

TEST_F(Names, AKindThatChangedIsDecidedAnew) {
  map({named_device(5, "x", "dummy")});
  EXPECT_EQ(interface_of({named_device(6, "x", "veth")}, "x"), port(6));
  EXPECT_EQ(interface_of({named_device(7, "x", "veth")}, "x"), port(6));
}

TEST_F(Names, SubInterfacesFollowTheirParents) {
  kernel_link vlan = named_device(8, "left.10", "vlan");
  vlan.parent = 5;
  vlan.vlan = 10;
  map({named_device(5, "left"), vlan});
  vlan.parent = 15;
  vlan.vlan = 20;
  const auto mapped = map({vlan, named_device(15, "left")});
  EXPECT_EQ(found(mapped, "left.10").if_index, port(5, 20));
}

TEST_F(Names, ADummyOfACommandIsTheLoopbackThatItNamed) {
  map({named_device(12, "lo77", "dummy")});
  EXPECT_EQ(interface_of({named_device(77, "lo77", "dummy")}, "lo77"), numbered_index(IF_TYPE_LOOPBACK, 77));
}

TEST_F(Names, TheMapFileWinsAndIsNotStored) {
  const Links links = {named_device(5, "left"), named_device(6, "right")};
  map(links);
  const auto mapped = map(links, 0, {{"right", {port(5), false}}});
  EXPECT_EQ(found(mapped, "right").if_index, port(5));
  EXPECT_EQ(found(mapped, "right").reason, name_reason::map_file);
  EXPECT_EQ(interface_of(links, "left"), port(5));
  EXPECT_EQ(interface_of(links, "right"), port(6));
}

TEST_F(Names, ARoutedPortKeepsItsPlace) {
  map({named_device(5, "left")});
  const auto mapped = map({named_device(15, "left")}, 0, {{"left", {0, true}}});
  EXPECT_EQ(found(mapped, "left").if_index, ethernet_index(IF_TYPE_ETHERNET_L3, 0, 4));
  EXPECT_EQ(interface_of({named_device(15, "left")}, "left"), port(5));
}

TEST_F(Names, AReasonIsThatOfTheSessionThatDecided) {
  const Links links = {hardware(2, "eth0", 2), named_device(4, "bond0", "bond"), named_device(5, "left")};
  stored_names names;
  names.keep_in(path_);
  for (int command = 0; command < 2; ++command) {
    const auto mapped = names.map(links, 2, {});
    EXPECT_EQ(found(mapped, "eth0").reason, name_reason::default_route);
    EXPECT_EQ(found(mapped, "bond0").reason, name_reason::bond);
    EXPECT_EQ(found(mapped, "left").reason, name_reason::device_index);
  }
  for (const char* const it : {"eth0", "bond0", "left"})
    EXPECT_EQ(found(map(links, 2), it).reason, name_reason::stored);
}

TEST_F(Names, NothingNewIsNotWritten) {
  const Links links = {named_device(5, "left")};
  map(links);
  struct stat before {
  }, after{};
  ASSERT_EQ(stat(path_.c_str(), &before), 0);
  map(links);
  ASSERT_EQ(stat(path_.c_str(), &after), 0);
  EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST_F(Names, WithoutAFileDevicesHaveTheirUsualInterfaces) {
  stored_names names;
  const Links links = {hardware(2, "eth0", 2)};
  EXPECT_EQ(names.map(links, 2, {})[0].if_index, kManagement);
  EXPECT_EQ(names.map(links, 0, {})[0].if_index, port(2));
  EXPECT_EQ(names.fault(), "");
}

// ---- The file -------------------------------------------------------------------------------------------------------

TEST_F(Names, AFileOfAnotherBootIsIgnored) {
  map({named_device(5, "left")});
  write("boot 0 namespace 0 cookie 0\n" + text().substr(first_line().size()));
  EXPECT_EQ(interface_of({named_device(15, "left")}, "left"), port(15));
}

TEST_F(Names, AFileThatIsCutAtEachByteGivesWhatIsWhole) {
  map({named_device(5, "left"), named_device(6, "right")});
  const std::string whole = text();
  for (std::size_t size = 0; size < whole.size(); ++size) {
    write(whole.substr(0, size));
    const auto mapped = map({named_device(15, "left"), named_device(16, "right")});
    const if_index_t left = found(mapped, "left").if_index, right = found(mapped, "right").if_index;
    EXPECT_TRUE(left == port(5) || left == port(15)) << size;
    EXPECT_EQ(right, port(16)) << size;
    EXPECT_EQ(fault_, "") << size;
  }
}

TEST_F(Names, AFileThatLiesGivesAnInterfaceOnce) {
  map({});
  map({named_device(1, "any")});
  const std::string first = first_line();
  for (const char* const lies : {"name:left 5 020000000105 ethernet 1/9\nname:right 6 020000000106 ethernet 1/9\n",
                                 "name:left 5 020000000105 ethernet 1/9\nname:left 5 020000000105 ethernet 1/8\n"}) {
    write(first + lies);
    const auto mapped = map({named_device(5, "left"), named_device(6, "right")});
    EXPECT_EQ(found(mapped, "left").if_index, port(9));
    EXPECT_EQ(found(mapped, "right").if_index, port(6));
  }
}

TEST_F(Names, LinesThatAreNoneAreIgnored) {
  map({named_device(1, "any")});
  const std::string first = first_line();
  for (const char* const line :
       {"", " ", "left 5 020000000105 ethernet 1/9", "name:left", "name:left 5",
        "name:left x 020000000105 ethernet 1/9", "name:left 5 02000000010 ethernet 1/9",
        "name:left 5 0200000001zz ethernet 1/9", "name:left 5 020000000105 ",
        "name:left 99999999999 020000000105 ethernet 1/9", "name:left 5 020000000105 ethernet 1/9-10",
        "name:left 5 020000000105 ethernet 1/9.5", "name:left 5 020000000105 loopback 9",
        "name:left 5 020000000105 mgmt 3", "name:left 5 020000000105 cheese 9", "name:left 5 020000000105 fc 1/9"}) {
    write(first + line + "\n");
    EXPECT_EQ(interface_of({named_device(5, "left")}, "left"), port(5)) << line;
    EXPECT_EQ(fault_, "") << line;
  }
}

TEST_F(Names, AFileThatIsNoneIsNeitherReadNorWritten) {
  ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
  EXPECT_EQ(interface_of({named_device(5, "left")}, "left"), port(5));
  EXPECT_EQ(fault_, "the interfaces of devices are not stored: cannot read '" + path_ +
                        "': it is not a regular file of this user.");
  std::remove(path_.c_str());
  const std::string other = path_ + ".other";
  ASSERT_EQ(symlink(other.c_str(), path_.c_str()), 0);
  EXPECT_EQ(interface_of({named_device(5, "left")}, "left"), port(5));
  EXPECT_NE(fault_, "");
  EXPECT_NE(::access(other.c_str(), F_OK), 0);
}

TEST_F(Names, AFileOfAnotherUserIsNotRead) {
  map({named_device(5, "left")});
  if (chown(path_.c_str(), 65534, 65534) != 0) GTEST_SKIP() << "only root gives files away";
  EXPECT_EQ(interface_of({named_device(15, "left")}, "left"), port(15));
  EXPECT_EQ(fault_, "the interfaces of devices are not stored: cannot read '" + path_ +
                        "': it is not a regular file of this user.");
}

TEST_F(Names, WithoutADirectoryTheProcessAloneKnows) {
  stored_names names;
  names.keep_in(testing::TempDir() + "no/such/directory/names");
  const Links links = {hardware(2, "eth0", 2)};
  EXPECT_EQ(names.map(links, 2, {})[0].if_index, kManagement);
  EXPECT_EQ(names.fault(), "the interfaces of devices are not stored: cannot lock '" + testing::TempDir() +
                               "no/such/directory/names': No such file or directory.");
  EXPECT_EQ(names.map(links, 0, {})[0].if_index, kManagement);
}

TEST_F(Names, ALockThatIsHeldIsNotWaitedForForEver) {
  const int held = open((path_ + ".lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  ASSERT_EQ(flock(held, LOCK_EX), 0);
  EXPECT_EQ(interface_of({named_device(5, "left")}, "left"), port(5));
  EXPECT_EQ(fault_, "the interfaces of devices are not stored: cannot lock '" + path_ + "': another process holds it.");
  close(held);
}

TEST_F(Names, ProcessesThatStoreAtOnceLoseNothing) {
  constexpr uint32 kProcesses = 4, kDevices = 10;
  for (uint32 process = 0; process < kProcesses; ++process)
    if (fork() == 0) {
      for (uint32 i = 0; i < kDevices; ++i) {
        const uint32 number = 1 + process * kDevices + i;
        map({named_device(number, "d" + std::to_string(number))});
      }
      _exit(fault_.empty() ? 0 : 1);
    }
  for (uint32 process = 0; process < kProcesses; ++process) {
    int status = 0;
    wait(&status);
    EXPECT_EQ(status, 0);
  }
  for (uint32 number = 1; number <= kProcesses * kDevices; ++number)
    EXPECT_THAT(text(), HasSubstr("\nname:d" + std::to_string(number) + " ")) << number;
}

TEST_F(Names, WhatAnotherShellStoredMeanwhileHolds) {
  stored_names mine;
  mine.keep_in(path_);
  mine.map({named_device(5, "left")}, 0, {});
  map({named_device(5, "left"), hardware(6, "eth0", 6)}, 6);
  const auto mapped = mine.map({named_device(5, "left"), hardware(6, "eth0", 6)}, 0, {});
  EXPECT_EQ(found(mapped, "eth0").if_index, kManagement);
  EXPECT_EQ(found(mapped, "eth0").reason, name_reason::stored);
  EXPECT_EQ(found(mapped, "left").reason, name_reason::device_index);
}

}  // namespace
}  // namespace host
