// The texts that every transceiver names itself with, in either layout of its image.
#pragma once

#include "platform/transceiver.h"
#include "support/text.h"

namespace pmcli {

struct identity_texts {
  terminated_text<16> name;
  terminated_text<16> part_number;
  terminated_text<16> revision;
  terminated_text<16> serial_number;
};

template <std::size_t Width>
void take(terminated_text<16>& to, const char (&field)[Width]) {
  static_assert(Width <= 16);
  copy_text(to.text, sizeof to.text, terminate(field).text);
}

inline identity_texts texts_of(const lc_fcot_info_t& image) {
  identity_texts texts{};
  take(texts.name, image.VendorName);
  take(texts.part_number, image.VendorPN);
  take(texts.revision, image.VendorRev);
  take(texts.serial_number, image.VendorSN);
  return texts;
}

inline identity_texts texts_of(const lc_fcot_x2_info_t& image) {
  identity_texts texts{};
  take(texts.name, image.vendor_name);
  take(texts.part_number, image.vendor_pn);
  take(texts.revision, image.vendor_rev);
  take(texts.serial_number, image.vendor_ser_no);
  return texts;
}

}  // namespace pmcli
