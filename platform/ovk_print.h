/* SPDX-License-Identifier: Apache-2.0 */
/* ovk_print: the family's printers for log lines. */
#ifndef OVK_PRINT_H
#define OVK_PRINT_H

#include "kor_types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Prints `length` bytes in hexadecimal to standard output, without a newline. */
void ovk_byte_string_print(const void *bytes, u32 length);

#ifdef __cplusplus
}
#endif

#endif
