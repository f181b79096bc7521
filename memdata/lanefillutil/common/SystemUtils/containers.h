// containers.h - growing stacks and ring queues of owned elements.
// SPDX-License-Identifier: Apache-2.0
#ifndef MEMDATA_SYSTEM_UTILS_CONTAINERS_H
#define MEMDATA_SYSTEM_UTILS_CONTAINERS_H

#include "platform/BasicTypes.h"

using ElementReleaserType = void (*)(void*);

struct StackElementType {
    void* value;
    ElementReleaserType releaser; // may be null
};

struct StackType {
    StackElementType** elements;
    u32 depth;
    u32 capacity;
};

struct QueueType {
    StackElementType** elements;
    u32 depth;
    u32 capacity;
    u32 head; // index of the oldest element
    u32 tail; // index of the newest element
};

StackElementType* Stack_Element_Create(void* value, ElementReleaserType releaser);
StackType* Stack_Create();
int Stack_Push(StackType* stack, void* value, ElementReleaserType releaser);
void* Stack_Pop(StackType* stack, bool release);
void Stack_Delete(StackType** stack);
u32 Stack_Depth(const StackType* stack);
void* Stacked_Value(const StackType* stack, unsigned depth);
void Stack_Swap_TOS_NOS(StackType* stack);

QueueType* Queue_Create();
int Queue_Put(QueueType* queue, void* value, ElementReleaserType releaser);
void* Queue_Get(QueueType* queue, bool release);
int Queue_Stuff(QueueType* queue, void* value, ElementReleaserType releaser);
void Queue_Delete(QueueType** queue);
u32 Queued_Size(const QueueType* queue);
void* Queued_Value(const QueueType* queue, unsigned index);

#endif
