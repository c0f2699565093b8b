/* What the C translation unit of the tests offers to the tests. */
#ifndef TESTS_C_HEADERS_H
#define TESTS_C_HEADERS_H

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The MTU and the index of a port record, and the input errors of a statistics record. */
uint32 c_reads_be16(const void* bytes);
uint32 c_reads_be32(const void* bytes);
uint64 c_reads_be64(const void* bytes);

size_t c_size_of_port_record(void);
size_t c_size_of_display_data(void);
size_t c_size_of_parameter_block(void);

uint32 c_calls_the_library(const char* answer);
const char* c_port_mode(uint32 mode);

#ifdef __cplusplus
}
#endif
#endif
