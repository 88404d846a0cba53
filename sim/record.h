// SPDX-License-Identifier: Apache-2.0
/*
 * The operations that hand out, or take, one record whole: `record_at(rte, index)` finds it and refuses an
 * index that is none.
 */
#ifndef OVK_SIM_RECORD_H
#define OVK_SIM_RECORD_H

#include "call.h"

namespace sim {

template <Name name, class Record, class At>
u32 get_record(kor_rte rte, u32 index, Record *out, At record_at)
{
    return platform<name>(With{rte, index}, [&]() -> u32 {
        *given(out, "output") = record_at(rte, index);
        return 0;
    });
}

template <Name name, class Record, class At>
u32 set_record(kor_rte rte, u32 index, const Record *record, At record_at)
{
    return platform<name>(With{rte, index, BytesArg{record, sizeof *record}}, [&]() -> u32 {
        record_at(rte, index) = *given(record, "record");
        return 0;
    });
}

} // namespace sim

#endif
