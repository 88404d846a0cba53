// SPDX-License-Identifier: Apache-2.0
//
// Loads and stores of the few words that are read outside the module lock: the two log masks, the module
// object and its magic word. They compile to plain loads and stores on the target; what they add is that a
// reader beside a writer sees one value or the other, and that whoever sees a published object sees it
// whole.
#ifndef OVK_ETH_COMMON_ATOMICS_H
#define OVK_ETH_COMMON_ATOMICS_H

namespace ovk {

template <class T>
T load_relaxed(const T &word)
{
    return __atomic_load_n(&word, __ATOMIC_RELAXED);
}

template <class T>
void store_relaxed(T &word, T value)
{
    __atomic_store_n(&word, value, __ATOMIC_RELAXED);
}

template <class T>
T load_acquire(const T &word)
{
    return __atomic_load_n(&word, __ATOMIC_ACQUIRE);
}

template <class T>
void store_release(T &word, T value)
{
    __atomic_store_n(&word, value, __ATOMIC_RELEASE);
}

} // namespace ovk

#endif
