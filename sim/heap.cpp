// SPDX-License-Identifier: Apache-2.0
/*
 * The non-volatile heap. A freed block goes to a quarantine, where it stays readable and its address isn't
 * given out again: a stale handle then reads what its owner left, and a second free is seen for sure.
 */
#include "call.h"
#include "kor_nvm.h"

#include <cstring>

namespace sim {

namespace {

void *allocate(std::size_t size, bool zeroed)
{
    Heap &heap = world().heap;
    Block block{std::unique_ptr<void, FreeBlock>(std::calloc(1, size ? size : 1)), size, heap.blocks + 1};
    void *memory = block.memory.get();
    if (!memory)
        return nullptr;
    if (!zeroed)
        std::memset(memory, 0xA5, size); // nobody may count on zeros
    heap.live.emplace(memory, std::move(block));
    heap.live_bytes += size;
    ++heap.blocks;
    return memory;
}

void shrink_quarantine(Heap &heap)
{
    while (heap.freed_bytes > heap.freed_limit) {
        const auto oldest = heap.freed.find(heap.freed_order.front());
        heap.freed_order.pop_front();
        heap.freed_bytes -= oldest->second.size;
        heap.freed.erase(oldest);
    }
}

} // namespace

std::size_t heap::live_blocks()
{
    const Guard guard;
    return world().heap.live.size();
}

std::size_t heap::live_bytes()
{
    const Guard guard;
    return world().heap.live_bytes;
}

std::map<std::size_t, std::size_t> heap::live_sizes()
{
    const Guard guard;
    std::map<std::size_t, std::size_t> out;
    for (const auto &block : world().heap.live)
        ++out[block.second.size];
    return out;
}

void heap::quarantine_limit(std::size_t bytes)
{
    const Guard guard;
    world().heap.freed_limit = bytes;
    shrink_quarantine(world().heap);
}

} // namespace sim

using namespace sim;

void *kor_nvm_calloc(size_t count, size_t size)
{
    return platform<"kor_nvm_calloc">(With{count, size}, [&]() -> void * {
        return size && count > SIZE_MAX / size ? nullptr : allocate(count * size, true);
    });
}

void *kor_nvm_malloc(size_t size)
{
    return platform<"kor_nvm_malloc">(With{size}, [&] { return allocate(size, false); });
}

void kor_nvm_free(void *block)
{
    platform<"kor_nvm_free">(With{BlockArg{block}}, [&] {
        if (!block)
            return;
        Heap &heap = world().heap;
        auto node = heap.live.extract(block);
        if (node.empty())
            wrong(heap.freed.contains(block) ? "block is freed" : "no block of this heap");
        heap.live_bytes -= node.mapped().size;
        heap.freed_bytes += node.mapped().size;
        heap.freed.insert(std::move(node));
        heap.freed_order.push_back(block);
        shrink_quarantine(heap);
    });
}
