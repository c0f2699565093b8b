#include <algorithm>

#include "pmcli/command.h"

namespace {

constexpr uint8 kMaxPrecision = 9;  // ten to the power of it still fits

// Truncated toward zero; 0 for a value that does not fit and for what is not a number.
int32 truncated(float value) {
  constexpr float kLimit = 2147483648.0F;
  return value >= -kLimit && value < kLimit ? static_cast<int32>(value) : 0;
}

}  // namespace

void float2cmdfloat(cmd_float_t* cmd_flt, float fvalue, uint8 precision) {
  const uint8 digits = std::min(precision, kMaxPrecision);
  int32 power = 1;
  for (uint8 digit = 0; digit < digits; ++digit) power *= 10;

  const float scaled = fvalue * static_cast<float>(power);
  const int32 decimal = truncated(scaled) % power;

  cmd_flt->fval = fvalue;
  cmd_flt->encoding = 0;
  cmd_flt->u.ti.whole = truncated(fvalue);
  cmd_flt->u.ti.decimal = decimal < 0 ? -decimal : decimal;
  cmd_flt->u.ti.nb_decimals = digits;
}
