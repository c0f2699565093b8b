/* The sets of VLAN and VSAN ids, and the shell's operations on them. */
#ifndef PLATFORM_BITSET_H
#define PLATFORM_BITSET_H

#include "platform/types.h"
#include "platform/wire.h"

#ifdef __cplusplus
extern "C" {
#endif

enum {
  BITSET_BYTES = 512,       /* 4096 ids                                                                       */
  BITSET_TEXT_BYTES = 20481 /* enough for the text of any set: 4096 ids of four digits and a separator, and the end */
};

/* A set of VLANs. Id n is bit 0x80 >> (n % 8) of byte n / 8. Wire format. */
typedef struct vlan_bitset_t {
  be32 size; /* bytes that follow, 512 */
  uint8 bits[BITSET_BYTES];
} vlan_bitset_t;
static_assert(sizeof(vlan_bitset_t) == 516, "wire size");

/* A set of VSANs, laid out alike. */
typedef vlan_bitset_t vsan_bitset_t;

/* Empties the set and gives it its full size. */
void bitset_clear_all(vlan_bitset_t* set);

/* Puts an id into the set. Ids above 4095 are ignored. */
void bitset_set(vlan_bitset_t* set, uint32 id);

/* Not zero when the id is in the set. */
boolean bitset_is_set(const vlan_bitset_t* set, uint32 id);

/*
 * Renders the set as ids and hyphenated ranges with commas between, such as "1,10-20". An empty set gives an empty
 * text. The text is cut to `size` bytes and always terminated. Returns the length of the text.
 */
uint32 bitset_sprintf(char* buffer, uint32 size, const vlan_bitset_t* set);

#ifdef __cplusplus
}
#endif
#endif
