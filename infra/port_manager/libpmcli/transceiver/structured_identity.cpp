// The identity of a port's transceiver through the output channel.

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "pmcli/transceiver.h"
#include "support/print.h"
#include "transceiver/image_fields.h"

using namespace pmcli;

namespace {

// ---- Values -----------------------------------------------------------------------------------------------------

struct identity {
  identity_texts texts;
  uint32 bit_rate = 0;          // Mbit/s
  uint32 single_mode_km = 0;    // 9/125 um
  uint32 multi_mode_50_m = 0;   // 50/125 um
  uint32 multi_mode_625_m = 0;  // 62.5/125 um
  uint32 extended_id = 0;
};

// A code of the image whose length differs from its number.
struct special_length {
  uint8 code;
  uint32 metres;
};
constexpr special_length k50Lengths[] = {{8, 82}, {22, 220}, {5, 50}};
constexpr special_length k625Lengths[] = {{2, 26}, {3, 26}, {22, 220}};

template <std::size_t Count>
uint32 metres_of(const special_length (&special)[Count], uint8 code) {
  const auto* const found = std::find_if(std::begin(special), std::end(special),
                                         [code](const special_length& length) { return length.code == code; });
  return found != std::end(special) ? found->metres : code * 10U;
}

uint32 single_mode_km(const lc_fcot_info_t& image) {
  if (image.distaneIn100mFor9u == 100) return 10;
  return image.distInKmFor9u != 0 ? image.distInKmFor9u : image.distaneIn100mFor9u / 10U;
}

identity identity_of(const lc_fcot_info_t& image) {
  return {texts_of(image),
          image.brIn100Mhz * 100U,
          single_mode_km(image),
          metres_of(k50Lengths, image.distaneIn10mFor50u),
          metres_of(k625Lengths, image.distaneIn10mFor60u),
          image.xcvrExtdId};
}

identity identity_of(const lc_fcot_x2_info_t& image) {
  identity found{texts_of(image)};
  found.bit_rate = image.max_speed;
  return found;
}

// ---- Lines ------------------------------------------------------------------------------------------------------

// The label of a line, the place of its value, and the text after it.
struct line_format {
  explicit line_format(const char* label, const char* behind = "\n") {
    std::snprintf(text, sizeof text, "    %s%%s%s", label, behind);
  }
  char text[80];
};

void print_presence(cmd_rx_handle_t* rx, const char* presence, const char* behind = "\n") {
  print_text(rx, line_format("sfp is ", behind).text, tag::transceiver_presence, presence);
}

void print_text_or_dashes(cmd_rx_handle_t* rx, const char* label, tuple_id<CMD_TYPE_STRING> tuple, const char* text) {
  print_text(rx, line_format(label).text, tuple, text[0] != '\0' ? text : "--");
}

void print_length(cmd_rx_handle_t* rx, const line_format& format, tuple_id<CMD_TYPE_UINT32> tuple, uint32 length) {
  if (length != 0) print_u32(rx, format.text, tuple, length);
}

void print_identity(cmd_rx_handle_t* rx, identity port) {
  for (char& letter : port.texts.name.text)
    if ((static_cast<uint8>(letter) & 0x80) != 0) letter = ' ';
  print_presence(rx, "present");
  print_text_or_dashes(rx, "name is ", tag::transceiver_vendor, port.texts.name.text);
  print_text_or_dashes(rx, "part number is ", tag::transceiver_part_number, port.texts.part_number.text);
  print_text_or_dashes(rx, "revision is ", tag::transceiver_revision, port.texts.revision.text);
  print_text_or_dashes(rx, "serial number is ", tag::transceiver_serial_number, port.texts.serial_number.text);
  print_u32(rx, line_format("nominal bitrate is ", " MBits/sec\n").text, tag::transceiver_bit_rate, port.bit_rate);
  print_length(rx, line_format("Link length supported for 9/125um fiber is ", " km(s)\n"), tag::transceiver_length_9um,
               port.single_mode_km);
  print_length(rx, line_format("Link length supported for 50/125um fiber is ", " m(s)\n"), tag::transceiver_length_50um,
               port.multi_mode_50_m);
  print_length(rx, line_format("Link length supported for 62.5/125um fiber is ", " m(s)\n"),
               tag::transceiver_length_62um, port.multi_mode_625_m);
  print_text(rx, line_format("tarno id is ").text, tag::transceiver_vendor_id, "--");
  print_u32(rx, line_format("tarno extended id number is ").text, tag::transceiver_extended_id, port.extended_id);
  cmd_prt(rx, "\n");
}

}  // namespace

void pm_cli_show_port_transceiver(cmd_rx_handle_t* rx_handle, pm_port_info_t* port_info,
                                  pm_cli_common_capability_t* cap_data, pm_fcot_res_t* fcot_info) {
  print_if_index(rx_handle, "%s\n", tag::transceiver_interface, port_info->if_index);
  if (!cap_data->fcot_capable) return print_presence(rx_handle, "not applicable", "\n\n");
  if (fcot_info->is_fcot_supported == FCOT_NONE) return print_presence(rx_handle, "not present", "\n\n");
  switch (fcot_info->fcot_type) {
    case FCOT_TYPE_SFP:
    case FCOT_TYPE_SFP_PLUS: return print_identity(rx_handle, identity_of(fcot_info->fi.fcot_info));
    case FCOT_TYPE_X2: return print_identity(rx_handle, identity_of(fcot_info->fi.x2_fcot_info));
    default: return print_presence(rx_handle, "present but not supported");
  }
}
