// The class of a transceiver's module and transmitter.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "pm/port_attributes.h"
#include "pmcli/transceiver.h"

namespace {

struct transmitter_text {
  uint8 type;
  const char* text;
};
constexpr transmitter_text kTransmitters[] = {
    {2, "Longwave Laser"}, {3, "Shortwave Laser"}, {4, "Longwave Laser Cost Reduced"},
    {5, "Electrical"},     {6, "10GBase-SR"},      {7, "10GBase-LR"},
    {8, "10GBase-ER"},     {9, "10GBase-LX4"},     {10, "10GBase-SW"},
    {11, "10GBase-LW"},    {12, "10GBase-EW"},     {255, "Not Present"},
};

// Part numbers of modules of the X2 class, 10 characters at 140 of the image.
constexpr char kX2PartNumbers[][11] = {"10-2257-01", "10-2258-01", "10-2205-01",
                                       "10-2036-01", "10-2413-01", "10-2357-01"};
constexpr std::size_t kPartNumberBytes = 10;
constexpr std::size_t kPartNumberAt = 140 - offsetof(lc_fcot_x2_info_t, writable_area);

bool has_x2_part_number(const lc_fcot_x2_info_t& image) {
  const uint8* const written = image.writable_area + kPartNumberAt;
  return std::any_of(std::begin(kX2PartNumbers), std::end(kX2PartNumbers),
                     [written](const char* known) { return std::memcmp(written, known, kPartNumberBytes) == 0; });
}

}  // namespace

void pm_port_type_string(char* type, uint32 t_size, uint8 fc_tx_type) {
  const auto* const found =
      std::find_if(std::begin(kTransmitters), std::end(kTransmitters),
                   [fc_tx_type](const transmitter_text& transmitter) { return transmitter.type == fc_tx_type; });
  std::snprintf(type, t_size, "%s", found != std::end(kTransmitters) ? found->text : "unknown");
}

uint8 pm_get_x2_fcot_type(lc_fcot_x2_info_t* p_x2_fcot_info) {
  enum : uint8 { kSfpLike = 1, kX2 = 12, kX2Dwdm = 20 };
  constexpr uint8 kXcvrTypeX2 = 2;
  if (p_x2_fcot_info == nullptr) return kSfpLike;
  if (pm_is_x2_dwdm(p_x2_fcot_info)) return kX2Dwdm;
  return has_x2_part_number(*p_x2_fcot_info) || p_x2_fcot_info->xcvr_type == kXcvrTypeX2 ? kX2 : kSfpLike;
}
