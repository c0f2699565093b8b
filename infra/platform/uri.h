/* Names of files as users write them. */
#ifndef PLATFORM_URI_H
#define PLATFORM_URI_H

#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * The path of a name such as "bootflash:cable.txt" into the caller's buffer, terminated. Returns 0, or another
 * value for a scheme that is not known and for a path with characters outside A-Z a-z 0-9 . _ / -.
 */
int32 uri_map_targetfs_path_get(const char* uri, char* path, uint32 size);

#ifdef __cplusplus
}
#endif
#endif
