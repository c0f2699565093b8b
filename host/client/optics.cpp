// Client functions for transceivers: diagnostics, satellites, and the texts of their codes.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "client/request.h"
#include "messages/calls/diagnostic_marks.h"
#include "messages/port_manager_messages.h"
#include "messages/vlan_messages.h"
#include "platform/satellite.h"
#include "platform/transceiver.h"

using namespace host;

namespace {

// ---- Texts of codes -------------------------------------------------------------------------------------------------

struct code_text {
  uint8 code;
  const char* text;
};

constexpr code_text kGbicTypes[] = {{0, "none"},           {1, "short wave"},   {2, "long wave"},
                                    {3, "extended reach"}, {4, "copper cable"}, {5, "wavelength multiplex"}};
constexpr code_text kXenpakTypes[] = {{0, "none"}, {1, "LX4"}, {2, "SR"}, {3, "LR"}, {4, "ER"}, {5, "ZR"}};

template <std::size_t Count>
const char* text_of(const code_text (&texts)[Count], uint8 code) {
  const auto* const found =
      std::find_if(std::begin(texts), std::end(texts), [code](const code_text& it) { return it.code == code; });
  return found != std::end(texts) ? found->text : "unknown";
}

// Words for the bits of a code, the highest first.
struct bit_text {
  uint8 bit;
  const char* text;
};

constexpr bit_text kLengths[] = {
    {0x80, "very long"}, {0x40, "short"}, {0x20, "intermediate"}, {0x10, "long"}, {0x08, "medium"}};
constexpr bit_text kTransmitters[] = {{0x40, "short wave laser"},
                                      {0x20, "short wave laser"},
                                      {0x02, "long wave laser"},
                                      {0x04, "passive copper"},
                                      {0x08, "active copper"}};
constexpr bit_text kMedia[] = {{0x80, "twin axial pair"},
                               {0x40, "twisted pair"},
                               {0x08, "multimode fiber"},
                               {0x04, "multimode fiber"},
                               {0x01, "single mode fiber"}};

template <std::size_t Count>
const char* first_word(const bit_text (&words)[Count], uint8 bits) {
  const auto* const found =
      std::find_if(std::begin(words), std::end(words), [bits](const bit_text& it) { return (it.bit & bits) != 0; });
  return found != std::end(words) ? found->text : "unknown";
}

// ---- Diagnostics ----------------------------------------------------------------------------------------------------

int32 ask_diagnostics(const call& to, if_index_t if_index, mts_get_sfp_diag_info_t* diag_info,
                      sfp_diag_info_ddm_tlvs_t* sfp_ddm_info) {
  if (diag_info == nullptr || sfp_ddm_info == nullptr) return PM_ERR_GENERAL;
  std::fflush(stdout);  // the text so far belongs to the previous module
  forget_marks();
  sfp_diagnostics record;
  const syserr_t error = ask_record(to, bytes_of(interface_request{if_index}), writable_bytes_of(record));
  if (error != 0) return error;
  *diag_info = record.values;
  *sfp_ddm_info = record.further;
  note_marks(record.values);
  if (record.has_lanes != 0) note_lanes(if_index);
  return 0;
}

}  // namespace

const char* pm_get_sfp_tarno_gbic_type(uint8 code, int32) { return text_of(kGbicTypes, code); }
const char* pm_get_x2_sfp_tarno_xenpak_type(uint8 code, int32) { return text_of(kXenpakTypes, code); }

void print_sfp_fc_transmitter(uint8* sfp_sprom) {
  lc_fcot_info_t image;
  std::memcpy(&image, sfp_sprom, sizeof image);
  std::printf("    FC Transmitter type is %s\n", first_word(kTransmitters, image.xcvrCode[5]));
  std::printf("    FC Transmitter supports %s distance link length\n", first_word(kLengths, image.xcvrCode[4]));
  std::printf("    Transmission medium is %s\n", first_word(kMedia, image.xcvrCode[6]));
}

void print_x2_sfp_fc_info(uint8*) { std::printf("    FC Transmitter type is 10 gigabit\n"); }

int32 pm_get_sfp_diag_info(mts_q_handle_t q, if_index_t if_index, mts_get_sfp_diag_info_t* diag_info,
                           sfp_diag_info_ddm_tlvs_t* sfp_ddm_info) {
  return ask_diagnostics({q, MTS_SAP_PORT_MANAGER, PM_OPC_DIAGNOSTICS}, if_index, diag_info, sfp_ddm_info);
}

int32 satmgr_get_fport_info(mts_q_handle_t q, if_index_t if_index, satmgr_fport_info_t* info) {
  if (info == nullptr) return PM_ERR_GENERAL;
  return ask_record({q, SAP_SATELLITE_MANAGER, SAT_OPC_FABRIC_PORT}, bytes_of(interface_request{if_index}),
                    writable_bytes_of(*info));
}

int32 satmgr_get_slot_info(mts_q_handle_t q, const satmgr_fport_info_t* fport, satmgr_slot_info_t* info) {
  if (fport == nullptr || info == nullptr) return PM_ERR_GENERAL;
  return ask_record({q, SAP_SATELLITE_MANAGER, SAT_OPC_SLOT}, bytes_of(*fport), writable_bytes_of(*info));
}

int32 pm_get_sat_sfp_diag_info(mts_q_handle_t q, uint32, uint32, if_index_t if_index,
                               mts_get_sfp_diag_info_t* diag_info, sfp_diag_info_ddm_tlvs_t* sfp_ddm_info) {
  return ask_diagnostics({q, SAP_SATELLITE_MANAGER, SAT_OPC_DIAGNOSTICS}, if_index, diag_info, sfp_ddm_info);
}
