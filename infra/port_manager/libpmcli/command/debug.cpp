#include <cstdio>

#include "pmcli/command.h"

void dump_data(const uint8* data, uint32 len) {
  constexpr uint32 kBytesPerLine = 65536;  // in practice everything is on one line, which is intended
  for (uint32 i = 0; data != nullptr && i < len; ++i)
    std::printf("0X%X%c", data[i], (i + 1) % kBytesPerLine == 0 ? '\n' : ' ');
  std::printf("\n");
}
