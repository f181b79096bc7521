// containers.h - growing stacks and ring queues of owned elements.
// SPDX-License-Identifier: Apache-2.0
//
// A value enters with its releaser. It leaves either to the caller (release false), who owns it from then on, or to
// its releaser (release true). Both containers start with room for 16 elements and grow by 16; on a failed growth
// they stay as they were and the value stays with the caller. Out of memory has been reported when a status is 7 or
// a new container is null. A container that is null is refused where something would enter it (status 3, an internal
// error names the operation) and reads as empty everywhere else.
#ifndef MEMDATA_SYSTEM_UTILS_CONTAINERS_H
#define MEMDATA_SYSTEM_UTILS_CONTAINERS_H

#include "platform/BasicTypes.h"

using ElementReleaserType = void (*)(void*);

struct StackElementType {
    void* value;
    ElementReleaserType releaser; // may be null: the value needs no release
};

struct StackType {
    StackElementType** elements; // the top is elements[depth - 1]; those behind it stay to be used again, or are null
    u32 depth;
    u32 capacity; // elements
};

// A ring: place i counts from the oldest element and stands at elements[(head + i) % capacity].
struct QueueType {
    StackElementType** elements;
    u32 depth;
    u32 capacity; // elements
    u32 head;     // index of the oldest element
    u32 tail;     // index of the newest element; the largest u32 before the first one
};

// A tracked element, null when there is no memory.
StackElementType* Stack_Element_Create(void* value, ElementReleaserType releaser);

// An empty stack, null when there is no memory.
StackType* Stack_Create();
// Status: 0 the value is on top; 3 no stack; 7 out of memory.
int Stack_Push(StackType* stack, void* value, ElementReleaserType releaser);
// Takes the top element off. With release its releaser, if there is one, gets the value, and null is returned.
// An empty stack gives null.
void* Stack_Pop(StackType* stack, bool release);
// Pops with release until the stack is empty, frees it and nulls the pointer.
void Stack_Delete(StackType** stack);
u32 Stack_Depth(const StackType* stack);
// The value that many elements below the top (0 is the top), null when there is none.
void* Stacked_Value(const StackType* stack, unsigned depth);
// Swaps the two top elements; nothing happens below depth 2.
void Stack_Swap_TOS_NOS(StackType* stack);

// An empty queue, null when there is no memory.
QueueType* Queue_Create();
// Appends as the newest. Status: 0; 3 no queue; 7 out of memory.
int Queue_Put(QueueType* queue, void* value, ElementReleaserType releaser);
// Takes the oldest element, by the rule of Stack_Pop.
void* Queue_Get(QueueType* queue, bool release);
// Inserts ahead of the oldest: the next to leave. Status as Queue_Put.
int Queue_Stuff(QueueType* queue, void* value, ElementReleaserType releaser);
// Gets with release until the queue is empty, frees it and nulls the pointer.
void Queue_Delete(QueueType** queue);
u32 Queued_Size(const QueueType* queue);
// The value of the index-th oldest element (0 is the oldest), null when there is none.
void* Queued_Value(const QueueType* queue, unsigned index);

#endif
