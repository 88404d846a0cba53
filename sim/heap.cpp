// SPDX-License-Identifier: Apache-2.0
/*
 * The non-volatile heap. A freed block goes to a quarantine, where it stays readable and its address isn't
 * given out again: a stale handle then reads what its owner left, and a second free is seen for sure. A
 * write to one is seen when it leaves the quarantine or when somebody asks for misuse.
 */
#include "call.h"
#include "kor_nvm.h"

#include <cstring>
#include <numeric>

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

u64 sum_of(const Block &block)
{
    const auto *const bytes = static_cast<const u8 *>(block.memory.get());
    u64 sum = 0;
    std::size_t at = 0;
    for (u64 word = 0; at + sizeof word <= block.size; at += sizeof word) {
        std::memcpy(&word, bytes + at, sizeof word);
        sum += word;
    }
    return std::accumulate(bytes + at, bytes + block.size, sum);
}

void check_untouched(Block &block)
{
    const u64 sum = sum_of(block);
    if (sum != block.sum)
        world().misuse.push_back(format("heap: block %llu was written after it was freed",
                                        static_cast<unsigned long long>(block.number)));
    block.sum = sum;
}

void shrink_quarantine(Heap &heap)
{
    while (heap.freed_bytes > heap.freed_limit) {
        const auto oldest = heap.freed.find(heap.freed_order.front());
        check_untouched(oldest->second);
        heap.freed_order.pop_front();
        heap.freed_bytes -= oldest->second.size;
        heap.freed.erase(oldest);
    }
}

} // namespace

void check_freed_blocks()
{
    for (auto &[address, block] : world().heap.freed)
        check_untouched(block);
}

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
        node.mapped().sum = sum_of(node.mapped());
        heap.freed.insert(std::move(node));
        heap.freed_order.push_back(block);
        shrink_quarantine(heap);
    });
}
