// Texts of system errors.
#include <cstdio>

#include "support/recording_state.h"

using namespace pmcli_test;

extern "C" {

const char* syserr2str(syserr_t error) {
  RecordingPlatform& platform = platform_for("syserr2str");
  const auto known = platform.syserr_texts.find(error);
  if (known != platform.syserr_texts.end()) return known->second ? known->second->c_str() : nullptr;
  char text[32];
  std::snprintf(text, sizeof text, "<system error %X>", static_cast<uint32>(error));
  std::string& kept = platform.internals().error_texts[error];
  kept = text;
  return kept.c_str();
}

}  // extern "C"
