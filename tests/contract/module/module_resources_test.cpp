// The resources of a module: the tree as the line card answers it, and what is said of every answer.
#include <gtest/gtest.h>

#include "contract/sample_ports.h"
#include "pmcli/module.h"
#include "support/failure_walk.h"
#include "support/matchers.h"

namespace pmcli_test {
namespace {

constexpr char kHeader[] =
    "                          BB_Credit   Performance   Bandwidth   Rate\n"
    "                                      Buffers       (Gbps)      Mode\n"
    "---------------------------------------------------------------------------\n";

// ---- Trees as bytes -----------------------------------------------------------------------------------------------

void put16(octets* to, uint32 value) {
  to->push_back(static_cast<uint8>(value >> 8));
  to->push_back(static_cast<uint8>(value));
}
void put32(octets* to, uint32 value) {
  put16(to, value >> 16);
  put16(to, value & 0xFFFF);
}

struct value {
  uint16 type;
  int32 number;
};

octets node(uint32 category, uint32 id, const std::vector<value>& values, const std::vector<octets>& children = {}) {
  octets bytes;
  put32(&bytes, category);
  put32(&bytes, id);
  put16(&bytes, static_cast<uint32>(values.size()));
  put16(&bytes, static_cast<uint32>(children.size()));
  for (const value& it : values) {
    put16(&bytes, it.type);
    put16(&bytes, 4);
    put32(&bytes, static_cast<uint32>(it.number));
  }
  for (const octets& child : children) bytes.insert(bytes.end(), child.begin(), child.end());
  return bytes;
}

octets port_node(uint32 port, const std::vector<value>& values) { return node(5, fibre_channel(3, port), values); }

octets answer(const octets& top, uint32 error = 0) {
  octets bytes;
  put32(&bytes, error);
  bytes.insert(bytes.end(), top.begin(), top.end());
  return bytes;
}

octets sample_module() {
  return node(1, 2, {},
              {node(2, 0, {{257, 6000}, {266, 500}, {264, 5800}, {265, 400}},
                    {node(3, 1, {{259, 12800}, {267, 4800}},
                          {node(4, 1, {{257, 1000}, {264, 900}},
                                {port_node(1, {{257, 16}, {266, 4}, {259, 4000}, {260, 1}}),
                                 port_node(2, {{259, 2000}, {260, 2}})})})})});
}

constexpr char kSampleTree[] =
    "\n"
    "Total Buffers               6000           500\n"
    "Available Shared Buffers    5800           400\n"
    "  Port-Group 1\n"
    "  Total Bandwidth                                     12.80\n"
    "  Available Bandwidth                                  4.80\n"
    "\n"
    "    Buffer-Group 1\n"
    "    Total Buffers           1000\n"
    "    Available Buffers        900\n"
    "\n"
    "      fc3/1                   16             4         4.00     dedicated\n"
    "      fc3/2                                            2.00     shared\n"
    "\n"
    "\n"
    "\n";

class ModuleResources : public testing::Test {
 protected:
  ModuleResources() { platform.resource_modules = {3 * 256 + 2}; }

  uint32 show(const octets& payload, uint8 slot = 3) {
    platform.clear_output();
    platform.resources = payload;
    return pm_cli_show_mod_resources(platform.show_command(0, kPort), slot);
  }

  RecordingPlatform platform;
};

TEST_F(ModuleResources, ShowsTheTree) {
  EXPECT_EQ(show(answer(sample_module())), 0U);
  EXPECT_EQ(platform.text(), std::string(kHeader) + kSampleTree);
  EXPECT_EQ(platform.terminal(), platform.text());
  EXPECT_EQ(platform.resource_queries,
            (std::vector<RecordingPlatform::resource_query>{{RecordingPlatform::q(), 1, 1, 2, 65535, 770}}));
}

TEST_F(ModuleResources, AreOfSomeModulesOnly) {
  EXPECT_EQ(show(answer(sample_module()), 4), 0U);
  EXPECT_EQ(platform.text(), "Command not supported on module in slot 4\n");
  EXPECT_THAT(platform.resource_queries, IsEmpty());
  platform.resource_modules = {2};
  EXPECT_EQ(show(answer(node(1, 0xFFFFFFFF, {})), 0), 0U);
  EXPECT_EQ(platform.resource_queries.at(0).id, 0xFFFFFFFFU);
}

TEST_F(ModuleResources, NeedAParameterBlockThatAsksForADisplay) {
  EXPECT_EQ(pm_cli_show_mod_resources(nullptr, 3), 1U);
  paraminfo_t* const param = platform.show_command(0, kPort);
  param->ascii_gen = 1;
  EXPECT_EQ(pm_cli_show_mod_resources(param, 3), 0U);
  EXPECT_EQ(platform.text(), "");
}

TEST_F(ModuleResources, FailuresAreTold) {
  platform.fail_with("pm_get_module_resources", 5);
  EXPECT_EQ(show(answer(sample_module())), 1U);
  EXPECT_EQ(platform.text(), "pm_get_module_resources returned error\n");
  platform.fail_with("pm_get_module_resources", 0);
  EXPECT_EQ(show(answer({}, 7)), 0U);
  EXPECT_EQ(platform.text(), "Linecard returned error\n");
  for (const std::size_t size : {0U, 1U, 3U, 4U, 15U}) {
    octets payload = answer(sample_module());
    payload.resize(size);
    EXPECT_EQ(show(payload), 1U) << size;
    EXPECT_EQ(platform.text(), "null response\n") << size;
  }
}

TEST_F(ModuleResources, AnotherModuleIsRefused) {
  EXPECT_EQ(show(answer(node(1, 9, {}))), 0U);
  EXPECT_EQ(platform.text(), "Incorrect module number 9 in response\n");
  EXPECT_EQ(show(answer(node(1, 2, {{257, 1}}))), 0U);
  EXPECT_EQ(platform.text(), "unexpected number of tlv's at module level\n");
  EXPECT_EQ(show(answer(node(1, 2, {}))), 0U);
  EXPECT_EQ(platform.text(), std::string(kHeader) + "\n") << "no groups";
}

TEST_F(ModuleResources, ATopOfAnotherKindIsTheOnlyGroup) {
  EXPECT_EQ(show(answer(node(9, 2, {{257, 7}}))), 0U);
  EXPECT_EQ(platform.text(), std::string(kHeader) +
                                 "\n"
                                 "Total Buffers                  7              \n"
                                 "Available Shared Buffers                      \n"
                                 "\n");
}

TEST_F(ModuleResources, ValuesThatWereNotReceivedAreBlank) {
  EXPECT_EQ(show(answer(node(1, 2, {}, {node(2, 0, {}, {node(3, 1, {}, {node(4, 5, {}, {port_node(3, {})})})})}))), 0U);
  EXPECT_EQ(platform.text(), std::string(kHeader) +
                                 "\n"
                                 "Total Buffers                                 \n"
                                 "Available Shared Buffers                      \n"
                                 "  Port-Group 1\n"
                                 "\n"
                                 "    Buffer-Group 5\n"
                                 "\n"
                                 "      fc3/3                                                       \n"
                                 "\n\n\n");
}

TEST_F(ModuleResources, OnlyValuesOfFourBytesAreRead) {
  octets group;
  put32(&group, 4);
  put32(&group, 1);
  put16(&group, 3);
  put16(&group, 0);
  for (const auto& [type, bytes] :
       std::vector<std::pair<uint16, octets>>{{257, {0, 5}}, {999, {0, 0, 0, 1}}, {264, {0, 0, 0, 6}}}) {
    put16(&group, type);
    put16(&group, static_cast<uint32>(bytes.size()));
    group.insert(group.end(), bytes.begin(), bytes.end());
  }
  EXPECT_EQ(show(answer(node(2, 0, {}, {node(3, 1, {}, {group})}))), 0U);
  EXPECT_THAT(platform.text(), HasSubstr("    Buffer-Group 1\n    Available Buffers          6\n"));
  EXPECT_THAT(platform.text(), Not(HasSubstr("    Total Buffers")));
}

TEST_F(ModuleResources, ChildrenOfAnotherKindEndTheirParent) {
  const octets good = node(3, 1, {});
  EXPECT_EQ(show(answer(node(2, 0, {}, {node(4, 1, {}), good, good}))), 0U);
  EXPECT_THAT(platform.text(), EndsWith("Invalid payload: port group not found 4\n\n\n"));
  EXPECT_EQ(show(answer(node(2, 0, {}, {node(3, 1, {}, {node(5, 1, {}), node(4, 1, {})})}))), 0U);
  EXPECT_THAT(platform.text(), EndsWith("Invalid payload: local buffer group category not found 5\n\n\n\n"));
  EXPECT_EQ(show(answer(node(2, 0, {}, {node(3, 1, {}, {node(4, 1, {}, {node(3, 1, {})})})}))), 0U);
  EXPECT_THAT(platform.text(), EndsWith("Invalid payload: port category not found 3\n\n\n\n\n"));
}

TEST_F(ModuleResources, LyingCountsAreBelievedAsFarAsThePayloadReaches) {
  octets payload = answer(sample_module());
  payload[4 + 10] = payload[4 + 11] = 0xFF;  // 65535 groups
  EXPECT_EQ(show(payload), 0U);
  EXPECT_EQ(platform.text(), std::string(kHeader) + kSampleTree);
  payload = answer(node(2, 0, {{257, 1}}));
  payload[4 + 8] = payload[4 + 9] = 0xFF;  // 65535 values
  EXPECT_EQ(show(payload), 0U);
  payload = answer(node(2, 0, {{257, 1}}));
  payload[4 + 12 + 2] = payload[4 + 12 + 3] = 0xFF;  // a value of 65535 bytes
  EXPECT_EQ(show(payload), 0U);
  EXPECT_EQ(platform.text(), std::string(kHeader) +
                                 "\n"
                                 "Total Buffers                                 \n"
                                 "Available Shared Buffers                      \n"
                                 "\n");
}

// Every line that is printed of a tree that was cut stands in the text of the whole, or is blank where a value lacks.
TEST_F(ModuleResources, TreesCutAtAnyByteAreShownAsFarAsTheyReach) {
  const octets whole = answer(sample_module());
  for (std::size_t size = 16; size < whole.size(); ++size) {
    EXPECT_EQ(show(octets(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size))), 0U) << size;
    EXPECT_EQ(platform.text().substr(0, sizeof kHeader), std::string(kHeader) + "\n") << size;
    EXPECT_LE(platform.text().size(), std::string(kHeader).size() + sizeof kSampleTree + 20) << size;
  }
}

// ---- The functions of single nodes --------------------------------------------------------------------------------

using node_printer = void (*)(pm_mod_resource_alloc_resp_data_t*, uint32*);

std::string printed(RecordingPlatform& platform, node_printer print, octets bytes, uint32* size) {
  platform.clear_output();
  print(reinterpret_cast<pm_mod_resource_alloc_resp_data_t*>(bytes.data()), size);
  return platform.text();
}

TEST(ResourceNode, AddsTheBytesThatItTook) {
  RecordingPlatform platform;
  uint32 size = 100;
  const octets port = port_node(1, {{257, 16}, {259, 8500}});
  EXPECT_EQ(printed(platform, pm_cli_show_port_resources, port, &size),
            "      fc3/1                   16                       8.50       ");
  EXPECT_EQ(size, 100U + port.size());
  const octets group = node(4, 2, {{264, 3}}, {port, port});
  size = 0;
  printed(platform, pm_cli_show_local_buf_group_resources, group, &size);
  EXPECT_EQ(size, group.size());
  const octets port_group = node(3, 2, {}, {group});
  size = 0;
  printed(platform, pm_cli_show_port_group_resources, port_group, &size);
  EXPECT_EQ(size, port_group.size());
  const octets global = node(2, 2, {{257, 1}}, {port_group, port_group});
  size = 0;
  printed(platform, pm_cli_show_global_buf_group_resources, global, &size);
  EXPECT_EQ(size, global.size());
}

TEST(ResourceNode, OfAnotherKindTakesNothing) {
  RecordingPlatform platform;
  for (const node_printer print :
       {pm_cli_show_port_resources, pm_cli_show_local_buf_group_resources, pm_cli_show_port_group_resources}) {
    uint32 size = 5;
    EXPECT_THAT(printed(platform, print, node(1, 1, {}), &size), HasSubstr("Invalid payload: "));
    EXPECT_EQ(size, 5U);
  }
}

TEST(ResourceNode, HeaderStandsAlone) {
  RecordingPlatform platform;
  pm_print_module_resources_header();
  EXPECT_EQ(platform.text(), kHeader);
}

TEST(ResourceWalk, EveryCallMayFail) {
  const auto scenario = [](RecordingPlatform& platform) {
    platform.resource_modules = {770};
    platform.resources = answer(sample_module());
    pm_cli_show_mod_resources(platform.show_command(0, kPort), 3);
  };
  EXPECT_GE(walk_failures(scenario), 3U);
}

}  // namespace
}  // namespace pmcli_test
