// containers.cpp - growing stacks and ring queues of owned elements.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/containers.h"

#include "SystemUtils/alerts.h"
#include "SystemUtils/memory.h"

#include <cstdint>
#include <utility>

namespace {

constexpr u32 kGROWTH = 16;          // elements; the first capacity too
constexpr u32 kNO_TAIL = UINT32_MAX; // one before index 0: the tail of a queue that never held anything

void delete_element(StackElementType* element) {
    releaseMemory(element);
}

void delete_elements(StackElementType** elements) {
    releaseMemory(static_cast<void*>(elements));
}

using ElementOwner = memdata::Tracked<StackElementType, delete_element>;

int refuse_null(const char* operation) {
    return PrintInternalError(
        kERROR_MESSAGE_STRING, 3, memdata::formatted("%s was called without a container.", operation));
}

// An array for kGROWTH elements more; null when there is no memory for it or no number, which has been reported.
StackElementType** take_grown_array(const char* description, u32 capacity) {
    if (capacity > UINT32_MAX - kGROWTH) {
        PrintInternalError(kERROR_MESSAGE_STRING, 7, "A container holds as many elements as can be counted.");
        return nullptr;
    }
    return static_cast<StackElementType**>(getMemory(description, (u64{capacity} + kGROWTH) * sizeof(void*)));
}

// The value of an element that has left its container, whose element this frees.
void* finish_element(StackElementType* element, bool release) {
    void* value = element->value;
    const ElementReleaserType releaser = element->releaser;
    delete_element(element);
    if (!release) return value;
    if (releaser != nullptr) releaser(value);
    return nullptr;
}

// Empties an element that stays in its place.
void* empty_element(StackElementType* element, bool release) {
    void* value = std::exchange(element->value, nullptr);
    const ElementReleaserType releaser = std::exchange(element->releaser, nullptr);
    if (!release) return value;
    if (releaser != nullptr) releaser(value);
    return nullptr;
}

int grow_stack(StackType* stack) {
    StackElementType** grown = take_grown_array("a 'StackType' array", stack->capacity);
    if (grown == nullptr) return 7;
    for (u32 i = 0; i < stack->depth; ++i) grown[i] = stack->elements[i];
    if (stack->elements != nullptr) delete_elements(stack->elements);
    stack->elements = grown;
    stack->capacity += kGROWTH;
    return 0;
}

u32 ring_index(const QueueType* queue, u32 place) {
    return static_cast<u32>((u64{queue->head} + place) % queue->capacity);
}

// Unrolls the ring from its head.
int grow_queue(QueueType* queue) {
    StackElementType** grown = take_grown_array("a 'QueueType' array", queue->capacity);
    if (grown == nullptr) return 7;
    for (u32 i = 0; i < queue->depth; ++i) grown[i] = queue->elements[ring_index(queue, i)];
    if (queue->elements != nullptr) delete_elements(queue->elements);
    queue->elements = grown;
    queue->capacity += kGROWTH;
    queue->head = 0;
    queue->tail = queue->depth - 1; // kNO_TAIL for an empty queue
    return 0;
}

// A new element for a queue that has room for it, or null. The queue is as before, but for its capacity.
StackElementType* prepare_element(QueueType* queue, void* value, ElementReleaserType releaser) {
    ElementOwner element(Stack_Element_Create(value, releaser));
    if (element == nullptr) return nullptr;
    if (queue->depth == queue->capacity && grow_queue(queue) != 0) return nullptr;
    return element.release();
}

} // namespace

StackElementType* Stack_Element_Create(void* value, ElementReleaserType releaser) {
    StackElementType* element = NEW_RECORD(StackElementType);
    if (element == nullptr) return nullptr;
    element->value = value;
    element->releaser = releaser;
    return element;
}

StackType* Stack_Create() {
    memdata::Tracked<StackType, Stack_Delete> stack(NEW_RECORD(StackType));
    if (stack == nullptr || grow_stack(stack.get()) != 0) return nullptr;
    return stack.release();
}

int Stack_Push(StackType* stack, void* value, ElementReleaserType releaser) {
    if (stack == nullptr) return refuse_null("Stack_Push");
    const bool isFull = stack->depth == stack->capacity;
    if (!isFull && stack->elements[stack->depth] != nullptr) {
        *stack->elements[stack->depth++] = {value, releaser};
        return 0;
    }
    ElementOwner element(Stack_Element_Create(value, releaser));
    if (element == nullptr) return 7;
    if (isFull && grow_stack(stack) != 0) return 7;
    stack->elements[stack->depth++] = element.release();
    return 0;
}

void* Stack_Pop(StackType* stack, bool release) {
    if (stack == nullptr || stack->depth == 0) return nullptr;
    return empty_element(stack->elements[--stack->depth], release);
}

void Stack_Delete(StackType** stack) {
    if (stack == nullptr || *stack == nullptr) return;
    while ((*stack)->depth > 0) Stack_Pop(*stack, true);
    for (u32 i = 0; i < (*stack)->capacity && (*stack)->elements[i] != nullptr; ++i)
        delete_element((*stack)->elements[i]);
    if ((*stack)->elements != nullptr) delete_elements((*stack)->elements);
    releaseMemory(*stack);
    *stack = nullptr;
}

u32 Stack_Depth(const StackType* stack) {
    return stack == nullptr ? 0 : stack->depth;
}

void* Stacked_Value(const StackType* stack, unsigned depth) {
    if (stack == nullptr || depth >= stack->depth) return nullptr;
    return stack->elements[stack->depth - 1 - depth]->value;
}

void Stack_Swap_TOS_NOS(StackType* stack) {
    if (stack == nullptr || stack->depth < 2) return;
    std::swap(stack->elements[stack->depth - 1], stack->elements[stack->depth - 2]);
}

QueueType* Queue_Create() {
    memdata::Tracked<QueueType, Queue_Delete> queue(NEW_RECORD(QueueType));
    if (queue == nullptr || grow_queue(queue.get()) != 0) return nullptr;
    return queue.release();
}

int Queue_Put(QueueType* queue, void* value, ElementReleaserType releaser) {
    if (queue == nullptr) return refuse_null("Queue_Put");
    StackElementType* element = prepare_element(queue, value, releaser);
    if (element == nullptr) return 7;
    queue->tail = queue->tail == kNO_TAIL || queue->tail + 1 == queue->capacity ? 0 : queue->tail + 1;
    queue->elements[queue->tail] = element;
    ++queue->depth;
    return 0;
}

int Queue_Stuff(QueueType* queue, void* value, ElementReleaserType releaser) {
    if (queue == nullptr) return refuse_null("Queue_Stuff");
    StackElementType* element = prepare_element(queue, value, releaser);
    if (element == nullptr) return 7;
    queue->head = queue->head == 0 ? queue->capacity - 1 : queue->head - 1;
    queue->elements[queue->head] = element;
    if (queue->depth++ == 0) queue->tail = queue->head; // the only element is the newest too
    return 0;
}

void* Queue_Get(QueueType* queue, bool release) {
    if (queue == nullptr || queue->depth == 0) return nullptr;
    StackElementType* element = std::exchange(queue->elements[queue->head], nullptr);
    queue->head = ring_index(queue, 1);
    --queue->depth;
    return finish_element(element, release);
}

void Queue_Delete(QueueType** queue) {
    if (queue == nullptr || *queue == nullptr) return;
    while ((*queue)->depth > 0) Queue_Get(*queue, true);
    if ((*queue)->elements != nullptr) delete_elements((*queue)->elements);
    releaseMemory(*queue);
    *queue = nullptr;
}

u32 Queued_Size(const QueueType* queue) {
    return queue == nullptr ? 0 : queue->depth;
}

void* Queued_Value(const QueueType* queue, unsigned index) {
    if (queue == nullptr || index >= queue->depth) return nullptr;
    return queue->elements[ring_index(queue, index)]->value;
}
