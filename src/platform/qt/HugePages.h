#pragma once

namespace velmora {

// Messages are held in memory, tens of megabytes of them, most of it made
// while a check runs. Backing the heaps with huge pages makes filling them
// cost a page fault every 2 MB instead of every 4 KB.

// Lets the heaps grow in large steps, so that one advice covers much of
// what follows. Call before the threads that parse start.
void GrowHeapsInLargeSteps();

// Asks for huge pages behind the heap mapping that holds `p`. Cheap when
// that mapping was advised already on this thread.
void UseHugePagesAround(const void* p);

} // namespace velmora
