// The identity of a port's transceiver as plain text, and its run-time state.

#include <cstdio>
#include <cstring>

#include "interface/port_record.h"
#include "pm/port_attributes.h"
#include "pmcli/transceiver.h"
#include "support/errors.h"
#include "support/kind.h"
#include "support/text.h"
#include "transceiver/image_fields.h"
#include "transceiver/runtime_state.h"
#include "transceiver/transceiver_record.h"

using namespace pmcli;

namespace {

void print_texts(const identity_texts& texts) {
  std::printf("    name is %s\n", texts.name.text);
  std::printf("    part number is %s\n", texts.part_number.text);
  std::printf("    revision is %s\n", texts.revision.text);
  std::printf("    serial number is %s\n", texts.serial_number.text);
}

void print_length_in_tens(const char* fibre, uint8 tens) {
  if (tens != 0) std::printf("    Link length supported for %s fiber is %d m(s)\n", fibre, tens * 10);
}

void print_extended_id(const char* text, uint8 code) {
  std::printf("    tarno extended id is %s (0x%x)\n", text, code);
}

// Whether the port's record reports that the transceiver is not ready; false after a failed query.
bool is_initializing(mts_q_handle_t q, if_index_t if_index) {
  const port_answer answer = ask_port_record(q, if_index);
  return answer.record != nullptr && answer.record->sfp_initializing_state != 0;
}

void print_record_error(const char* port, syserr_t status) {
  switch (static_cast<uint32>(status)) {
    case PM_ERR_SFP_NOT_PRESENT: std::printf("%s sfp not present\n", port); break;
    case PM_ERR_SFP_READ: std::printf("%s sfp read error\n", port); break;
    default: std::printf("%s error in retrieving sfp information - %s\n", port, system_error_text(status));
  }
}

// False after the reason was printed.
bool fetch_transceiver(mts_q_handle_t q, if_index_t if_index, const char* port, pm_fcot_res_t* record) {
  if (is_initializing(q, if_index)) {
    std::printf("error: SFP %s is inserted and is initializing\n", port);
    return false;
  }
  if (const int32 error = ask_transceiver(q, if_index, record); error != 0) {
    std::printf("%s error in retrieving sfp information - %s\n", port, system_error_text(error));
    return false;
  }
  const auto status = static_cast<syserr_t>(static_cast<uint32>(record->status));
  if (status != 0) print_record_error(port, status);
  return status == 0;
}

}  // namespace

void print_transceiver_info(uint8* sfp_sprom, boolean is_type_fc, boolean supported) {
  if (sfp_sprom == nullptr) return;
  lc_fcot_info_t image;
  std::memcpy(&image, sfp_sprom, sizeof image);
  print_texts(texts_of(image));
  if (is_type_fc) print_sfp_fc_transmitter(sfp_sprom);
  std::printf("    Nominal bit rate is %d MBits/sec\n", image.brIn100Mhz * 100);
  // The units of 100 m are printed after the point without scaling: intended.
  if (image.distInKmFor9u != 0 || image.distaneIn100mFor9u != 0)
    std::printf("    Link length supported for 9/125mm fiber is %d.%d km(s)\n", image.distInKmFor9u,
                image.distaneIn100mFor9u);
  print_length_in_tens("50/125mm", image.distaneIn10mFor50u);
  print_length_in_tens("62.5/125mm", image.distaneIn10mFor60u);
  const uint8 code = image.vendorData[0];
  if (supported) print_extended_id(pm_get_sfp_tarno_gbic_type(code, 0), code);
  std::putchar('\n');
}

void print_x2_transceiver_info(uint8* sfp_sprom, boolean is_type_fc, boolean supported) {
  if (sfp_sprom == nullptr) return;
  lc_fcot_x2_info_t image;
  std::memcpy(&image, sfp_sprom, sizeof image);
  print_texts(texts_of(image));
  if (is_type_fc) print_x2_sfp_fc_info(sfp_sprom);
  const uint8 code = image.extnd_vendor_specific[X2_EXTENDED_CODE];
  if (supported) print_extended_id(pm_get_x2_sfp_tarno_xenpak_type(code, 0), code);
  std::putchar('\n');
}

syserr_t print_port_fcot_info(mts_q_handle_t src_q, pm_port_info_t* port_info, boolean) {
  const if_index_t if_index = port_info->if_index;
  const if_index_type_t type = kind_of(if_index);
  if (type != IF_TYPE_FC && type != IF_TYPE_ETHERNET && !pm_is_xgfc_interface(if_index)) {
    std::printf("error: invalid if index type(%d)\n", type);
    return PM_ERR_GENERAL;
  }
  const interface_name port(if_index);
  pm_fcot_res_t record;
  if (!fetch_transceiver(src_q, if_index, port.text, &record)) return PM_ERR_GENERAL;

  std::printf("%s sfp is present %s\n", port.text,
              record.is_fcot_supported == FCOT_SUPPORTED ? "" : "but not supported");
  // Only type 1 has the layout of an SFP here: intended.
  const auto print = record.fcot_type == FCOT_TYPE_SFP ? print_transceiver_info : print_x2_transceiver_info;
  print(reinterpret_cast<uint8*>(&record.fi), type == IF_TYPE_FC, record.is_fcot_supported);
  return print_transceiver_state(src_q, if_index);
}
