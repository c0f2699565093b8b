// Numbers of liblldpctl's interface, as its header has them.
#pragma once

namespace host::lldpctl {

// Errors.
enum : int { kDoesNotExist = -503, kOutOfMemory = -901, kCallbackFailed = -902 };

// Keys of values.
enum : int {
  kPortName = 1100,
  kPortIndex = 1101,
  kPortNeighbors = 1200,
  kPortProtocol = 1201,
  kPortAge = 1202,
  kPortIdSubtype = 1203,
  kPortId = 1204,
  kPortDescription = 1205,
  kPortHidden = 1206,
  kPortChassis = 1208,
  kPortTtl = 1209,
  kPortPvid = 1500,
  kPortVlans = 1501,
  kVlanId = 1502,
  kChassisIdSubtype = 1801,
  kChassisId = 1802,
  kChassisName = 1803,
  kChassisDescription = 1804,
  kChassisCapabilities = 1805,
  kChassisEnabled = 1806,
  kChassisManagement = 1807,
  kManagementIp = 3000,
};

}  // namespace host::lldpctl
