#pragma once

namespace velmora {

// Messages are held in memory, tens of megabytes of them, most of it made
// while a check runs. Backing the heaps with huge pages makes filling them
// cost a page fault every 2 MB instead of every 4 KB.

// Lets heaps grow in 64 MB steps, and keeps blocks of up to 32 MB in them
// rather than in mappings of their own: a heap is then writable as a whole
// well ahead of its use, which huge pages need. Call before the parse
// thread starts. The price is up to 64 MB of freed memory that a heap
// keeps rather than giving it back.
void GrowHeapsInLargeSteps();

// Asks for huge pages behind the anonymous mapping that holds `p`, and the
// reserve a heap grows into right behind it. Cheap when this thread looked
// at that mapping already.
void UseHugePagesAround(const void* p);

} // namespace velmora
