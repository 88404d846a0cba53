/* SPDX-License-Identifier: Apache-2.0 */
/* A host, in what C11 and C++20 have in common. */
#include <ovk_ethernet.h>

#include <stdio.h>

#ifdef __cplusplus
extern "C" {
#endif
ovk_module *host_module(void);
#ifdef __cplusplus
}
#endif

static int expect(const char *what, u32 status, u32 expected)
{
    if (status == expected)
        return 0;
    printf("%s: status 0x%x, expected 0x%x\n", what, status, expected);
    return 1;
}

int main(void)
{
    ovk_module *module = host_module();
    ovk_ethernet_exception_action drop = {OVK_ETHERNET_EXCEPTION_ACTION_TYPE_DROP, {{0, 0, {0, 0}, 0}}};
    const u32 type = OVK_ETHERNET_EXCEPTION_TYPE_UNKNOWN_DEST_MAC;
    int wrong = expect("init", ovk_ethernet_init(module), KOR_OK);
    wrong += expect("configure", ovk_ethernet_exception_configure(module, 0, type, &drop), KOR_OK);
    wrong += expect("configure, no such domain", ovk_ethernet_exception_configure(module, 1, type, &drop),
                    OVK_E_INVALID_ARGUMENT);
    wrong += expect("shutdown", ovk_ethernet_shutdown(module), KOR_OK);
    wrong += expect("second shutdown", ovk_ethernet_shutdown(module), KOR_E_INVALID_HANDLE);
    wrong += expect("rows of the sizing table", eth_obj_size[0].max_count, 1);
    return wrong;
}
