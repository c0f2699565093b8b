// How ports operate: as they are set to, and as far as their partner agrees.
#include "switch/operation.h"

#include <gtest/gtest.h>

#include "platform/card_config.h"
#include "platform/port_manager.h"

namespace host {
namespace {

constexpr uint16 kReceiveOn = uint16{PM_FLOW_CTRL_ON} & uint16{PM_FLOW_CTRL_RECEIVE};
constexpr uint16 kSendOn = uint16{PM_FLOW_CTRL_ON} & uint16{PM_FLOW_CTRL_SEND};

// A port of 10 to 1000 Mbit/s with a link.
interface port_with_link() {
  interface port;
  port.capabilities.speeds = CRDCFG_SPEED_10M | CRDCFG_SPEED_100M | CRDCFG_SPEED_1G;
  port.oper_state = PM_PORT_STATE_UP;
  port.state_reason = PM_REASON_NONE;
  port.at_start = port.settings;
  negotiate(port);
  return port;
}

TEST(Operation, WithoutAPartnerOfItsOwnAPortTakesTheBest) {
  const interface port = port_with_link();
  EXPECT_EQ(port.oper_speed_mbps, 1000U);
  EXPECT_EQ(port.oper_duplex, PM_PORT_DUPLEX_FULL);
  EXPECT_EQ(port.oper_flow_control, 0);
}

TEST(Operation, WhatIsSetIsSo) {
  interface port = port_with_link();
  const port_settings before = port.settings;
  port.settings.admin_speed_mbps = 100;
  port.settings.admin_duplex = PM_PORT_DUPLEX_HALF;
  port.settings.admin_mode = PM_PORT_MODE_TRUNK;
  port.settings.admin_flow_control = kReceiveOn;
  follow_settings(port, before);
  EXPECT_EQ(port.oper_speed_mbps, 100U);
  EXPECT_EQ(port.oper_duplex, PM_PORT_DUPLEX_HALF);
  EXPECT_EQ(port.oper_mode, PM_PORT_MODE_TRUNK);
  EXPECT_EQ(port.oper_flow_control, kReceiveOn);
}

TEST(Operation, APartnerDecidesWhatIsLeftOpen) {
  interface port = port_with_link();
  port.partner = {
      .mode = PM_PORT_MODE_F, .speed_mbps = 100, .duplex = PM_PORT_DUPLEX_HALF, .flow_control = PM_FLOW_CTRL_SEND};
  port.settings.admin_mode = PM_PORT_MODE_AUTO;
  port.settings.admin_flow_control = PM_FLOW_CTRL_DESIRED;
  negotiate(port);
  EXPECT_EQ(port.oper_mode, PM_PORT_MODE_F);
  EXPECT_EQ(port.oper_speed_mbps, 100U);
  EXPECT_EQ(port.oper_duplex, PM_PORT_DUPLEX_HALF);
  EXPECT_EQ(port.oper_flow_control, kSendOn) << "it agrees to one side only";

  port.settings.admin_mode = PM_PORT_MODE_E;
  port.settings.admin_speed_mbps = 1000;
  port.settings.admin_duplex = PM_PORT_DUPLEX_FULL;
  negotiate(port);
  EXPECT_EQ(port.oper_mode, PM_PORT_MODE_E);
  EXPECT_EQ(port.oper_speed_mbps, 1000U);
  EXPECT_EQ(port.oper_duplex, PM_PORT_DUPLEX_FULL);
}

TEST(Operation, AnAutomaticSpeedMayHaveALimit) {
  interface port = port_with_link();
  port.partner.speed_mbps = 8000;
  port.settings.admin_speed_mbps = 2;  // automatic, up to 4000
  negotiate(port);
  EXPECT_EQ(port.oper_speed_mbps, 4000U);
  port.partner.speed_mbps = 1000;
  negotiate(port);
  EXPECT_EQ(port.oper_speed_mbps, 1000U);
}

TEST(Operation, AsItWasSetAtTheStartThePartnerIsTheSameAgain) {
  interface port = port_with_link();
  port.settings.admin_mode = port.at_start.admin_mode = PM_PORT_MODE_E;
  port.partner.mode = PM_PORT_MODE_TE;
  port.settings.admin_mode = PM_PORT_MODE_F;
  negotiate(port);
  EXPECT_EQ(port.oper_mode, PM_PORT_MODE_F);
  port.settings.admin_mode = PM_PORT_MODE_E;
  negotiate(port);
  EXPECT_EQ(port.oper_mode, PM_PORT_MODE_TE);
}

TEST(Operation, APortThatIsSwitchedOnAgainHasTheLinkThatItHad) {
  interface port = port_with_link();
  port.oper_state = PM_PORT_STATE_DOWN;
  port.state_reason = 7;
  port_settings before = port.settings;
  port.settings.admin_state = PM_PORT_STATE_DOWN;
  follow_settings(port, before);
  EXPECT_EQ(port.state_reason, PM_REASON_ADMIN_DOWN);
  before = port.settings;
  port.settings.admin_state = PM_PORT_STATE_UP;
  follow_settings(port, before);
  EXPECT_EQ(port.oper_state, PM_PORT_STATE_DOWN);
  EXPECT_EQ(port.state_reason, 7);
}

TEST(Operation, APortWithoutALinkHasNegotiatedNothing) {
  interface port = port_with_link();
  port.settings.admin_flow_control = PM_FLOW_CTRL_ON;
  const port_settings before = port.settings;
  port.settings.admin_state = PM_PORT_STATE_DOWN;
  follow_settings(port, before);
  EXPECT_EQ(port.oper_speed_mbps, 0U);
  EXPECT_EQ(port.oper_duplex, PM_PORT_DUPLEX_AUTO);
  EXPECT_EQ(port.oper_flow_control, 0);
}

}  // namespace
}  // namespace host
