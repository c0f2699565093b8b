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

/* c_headers_both.h, run as C: what it writes into records and reads out of them. */
void c_writes(void* port, void* stats, void* status);
uint32 c_reads_if_index(const void* port);
uint16 c_reads_mtu(const void* port);
uint64 c_reads_errors(const void* stats);
int32 c_reads_status(const void* status);

size_t c_size_of_port_record(void);
size_t c_size_of_display_data(void);
size_t c_size_of_parameter_block(void);

uint32 c_calls_the_library(const char* answer);
const char* c_port_mode(uint32 mode);

#ifdef __cplusplus
}
#endif
#endif
