// SPDX-License-Identifier: Apache-2.0
/*
 * Locks. The caller's 28 bytes hold a mark and a number; the state stands in the world under that number.
 * Waiting gives up the world's mutex, so a waiting thread holds up nobody.
 */
#include "call.h"
#include "ovk_sys.h"

namespace sim {

namespace {

constexpr u32 lock_mark = 0x4C4F434B;
static_assert(sizeof(kor_sem) == 28);

std::shared_ptr<Lock> find_lock(const kor_sem &sem)
{
    const auto at = world().locks.find(sem.words[0] == lock_mark ? sem.words[1] : 0);
    return at == world().locks.end() ? nullptr : at->second;
}

std::shared_ptr<Lock> lock_of(const kor_sem *sem)
{
    std::shared_ptr<Lock> lock = find_lock(*given(sem, "lock"));
    if (!lock)
        wrong("lock was never initialised");
    return lock;
}

} // namespace

void lock_init(kor_sem &lock)
{
    const u32 number = static_cast<u32>(world().locks.size()) + 1;
    world().locks.emplace(number, std::make_shared<Lock>());
    lock = {{lock_mark, number}};
}

std::optional<u32> lock_depth(const kor_sem *lock)
{
    const Guard guard;
    const auto found = lock ? find_lock(*lock) : nullptr;
    return found ? std::optional(found->depth) : std::nullopt;
}

} // namespace sim

using namespace sim;

u32 kor_sem_init(kor_sem *sem, u32 shared, u32 value)
{
    return platform<"kor_sem_init">(With{shared, value}, [&]() -> u32 {
        given(sem, "lock");
        if (shared > 1 || value != 1)
            wrong("shared %u, value %u: only locks, of value 1, are simulated", shared, value);
        lock_init(*sem);
        return 0;
    });
}

u32 ovk_sys_sem_lock_wait(kor_sem *lock)
{
    return platform<"ovk_sys_sem_lock_wait">(With{LockArg{lock}}, [&](Call &call) -> u32 {
        const std::shared_ptr<Lock> wanted = lock_of(lock);
        const std::thread::id self = std::this_thread::get_id();
        if (wanted->holder != self)
            wanted->released.wait(call.guard(), [&] { return wanted->depth == 0; });
        wanted->holder = self;
        ++wanted->depth;
        return 0;
    });
}

u32 kor_sem_post(kor_sem *sem)
{
    return platform<"kor_sem_post">(With{LockArg{sem}}, [&]() -> u32 {
        const std::shared_ptr<Lock> held = lock_of(sem);
        if (held->depth == 0 || held->holder != std::this_thread::get_id())
            wrong("lock isn't held by the thread that posts it");
        if (--held->depth == 0) {
            held->holder = {};
            held->released.notify_one();
        }
        return 0;
    });
}
