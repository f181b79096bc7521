// containers_test.cpp - stacks and ring queues.
// SPDX-License-Identifier: Apache-2.0
#include "SystemUtils/containers.h"

#include "SystemUtils/lifetime.h"
#include "SystemUtils/memory.h"
#include "support/alerts.h"
#include "support/allocation_faults.h"

#include <gtest/gtest.h>

#include <deque>
#include <random>
#include <string>
#include <vector>

namespace memdata::testing {
namespace {

std::string gReleased; // values in the order of their release

// Values are small numbers in a pointer's clothes.
void* value(std::uintptr_t n) {
    return reinterpret_cast<void*>(n);
}

std::string number(void* v) {
    return std::to_string(reinterpret_cast<std::uintptr_t>(v)) + ' ';
}

void note_release(void* v) {
    gReleased += number(v);
}

class Containers : public ::testing::Test {
protected:
    Containers() { gReleased.clear(); }

    SystemResources system_;
    u64 usageAtStart_ = getCurrentMemoryUsage();
};

class Stack : public Containers {
protected:
    ~Stack() override {
        Stack_Delete(&stack_);
        EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_);
    }
    void push(std::uintptr_t first, std::uintptr_t last) {
        for (std::uintptr_t n = first; n <= last; ++n) ASSERT_EQ(Stack_Push(stack_, value(n), note_release), 0);
    }
    // From the top down.
    std::string contents() {
        std::string text;
        for (u32 i = 0; i < Stack_Depth(stack_); ++i) text += number(Stacked_Value(stack_, i));
        return text;
    }

    StackType* stack_ = Stack_Create();
};

TEST_F(Stack, StartsEmptyWithRoomForSixteen) {
    EXPECT_EQ(Stack_Depth(stack_), 0u);
    EXPECT_EQ(stack_->capacity, 16u);
}

TEST_F(Stack, AnEmptyStackPopsNull) {
    EXPECT_EQ(Stack_Pop(stack_, false), nullptr);
    EXPECT_EQ(Stack_Pop(stack_, true), nullptr);
    EXPECT_EQ(Stack_Depth(stack_), 0u);
}

TEST_F(Stack, ValuesComeBackLastFirst) {
    push(1, 3);
    EXPECT_EQ(Stack_Pop(stack_, false), value(3));
    EXPECT_EQ(Stack_Pop(stack_, false), value(2));
    EXPECT_EQ(Stack_Pop(stack_, false), value(1));
    EXPECT_EQ(gReleased, "");
}

TEST_F(Stack, PoppingWithReleaseReleasesTheValueAndGivesNull) {
    push(1, 2);
    EXPECT_EQ(Stack_Pop(stack_, true), nullptr);
    EXPECT_EQ(gReleased, "2 ");
    EXPECT_EQ(contents(), "1 ");
}

TEST_F(Stack, PoppingWithReleaseNeedsNoReleaser) {
    ASSERT_EQ(Stack_Push(stack_, value(1), nullptr), 0);
    EXPECT_EQ(Stack_Pop(stack_, true), nullptr);
    EXPECT_EQ(Stack_Depth(stack_), 0u);
}

TEST_F(Stack, GrowsBySixteenElementsAndKeepsItsOrder) {
    push(1, 16);
    EXPECT_EQ(stack_->capacity, 16u);
    push(17, 17);
    EXPECT_EQ(stack_->capacity, 32u);
    push(18, 33);
    EXPECT_EQ(stack_->capacity, 48u);
    for (std::uintptr_t n = 33; n >= 1; --n) EXPECT_EQ(Stack_Pop(stack_, false), value(n));
}

TEST_F(Stack, GivesTheValueSoManyBelowTheTopAndNullOutOfRange) {
    push(1, 3);
    EXPECT_EQ(Stacked_Value(stack_, 0), value(3));
    EXPECT_EQ(Stacked_Value(stack_, 2), value(1));
    EXPECT_EQ(Stacked_Value(stack_, 3), nullptr);
    EXPECT_EQ(Stacked_Value(stack_, UINT32_MAX), nullptr);
}

TEST_F(Stack, SwapsItsTwoTopElementsWithTheirReleasers) {
    ASSERT_EQ(Stack_Push(stack_, value(1), note_release), 0);
    ASSERT_EQ(Stack_Push(stack_, value(2), note_release), 0);
    ASSERT_EQ(Stack_Push(stack_, value(3), nullptr), 0);
    Stack_Swap_TOS_NOS(stack_);
    EXPECT_EQ(contents(), "2 3 1 ");
    Stack_Delete(&stack_);
    EXPECT_EQ(gReleased, "2 1 ");
}

TEST_F(Stack, SwapChangesNothingBelowDepthTwo) {
    Stack_Swap_TOS_NOS(stack_);
    EXPECT_EQ(contents(), "");
    push(1, 1);
    Stack_Swap_TOS_NOS(stack_);
    EXPECT_EQ(contents(), "1 ");
}

TEST_F(Stack, DeletingReleasesAllFromTheTopAndClearsThePointer) {
    push(1, 3);
    Stack_Delete(&stack_);
    EXPECT_EQ(stack_, nullptr);
    EXPECT_EQ(gReleased, "3 2 1 ");
}

TEST_F(Stack, AFailedGrowthLeavesTheStackAsItWas) {
    push(1, 16);
    const std::string before = contents();
    for (u64 n = 1; n <= 2; ++n) { // the element, then the array
        CapturedAlerts alerts;
        failTrackedAllocation(n);
        EXPECT_EQ(Stack_Push(stack_, value(17), note_release), 7);
        failTrackedAllocation(0);
        EXPECT_NE(alerts.text().find("FATAL:Lanefill:44 - Out of memory"), std::string::npos);
        EXPECT_EQ(contents(), before);
        EXPECT_EQ(stack_->capacity, 16u);
        EXPECT_EQ(gReleased, "");
    }
    push(17, 17);
    EXPECT_EQ(Stack_Pop(stack_, false), value(17));
}

TEST_F(Stack, EveryFailedAllocationIsAStatus) {
    const FaultSweep sweep = sweepAllocationFaults([] {
        StackType* stack = Stack_Create();
        if (stack == nullptr) return 7;
        int status = 0;
        for (std::uintptr_t n = 1; n <= 20 && status == 0; ++n) status = Stack_Push(stack, value(n), nullptr);
        Stack_Delete(&stack);
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_EQ(sweep.faultCount, 23u); // record, two arrays, 20 elements
}

TEST_F(Stack, AStackThatCountsNoFurtherIsLeftAsItWas) {
    push(1, 1);
    const StackType before = *stack_;
    stack_->depth = stack_->capacity = UINT32_MAX - 15;
    CapturedAlerts alerts;
    EXPECT_EQ(Stack_Push(stack_, value(2), note_release), 7);
    EXPECT_NE(alerts.text().find("A container holds as many elements as can be counted."), std::string::npos);
    *stack_ = before;
    EXPECT_EQ(contents(), "1 ");
}

TEST_F(Stack, ANullStackIsRefusedOnPushAndReadsAsEmpty) {
    CapturedAlerts alerts;
    EXPECT_EQ(Stack_Push(nullptr, value(1), nullptr), 3);
    EXPECT_NE(alerts.text().find("INTERNAL_ERROR:Lanefill:86 - Stack_Push was called without a container.\n"),
        std::string::npos);
    EXPECT_EQ(Stack_Pop(nullptr, true), nullptr);
    EXPECT_EQ(Stack_Depth(nullptr), 0u);
    EXPECT_EQ(Stacked_Value(nullptr, 0), nullptr);
    Stack_Swap_TOS_NOS(nullptr);
    Stack_Delete(nullptr);
    StackType* none = nullptr;
    Stack_Delete(&none);
}

class Queue : public Containers {
protected:
    ~Queue() override {
        Queue_Delete(&queue_);
        EXPECT_EQ(getCurrentMemoryUsage(), usageAtStart_);
    }
    void put(std::uintptr_t first, std::uintptr_t last) {
        for (std::uintptr_t n = first; n <= last; ++n) ASSERT_EQ(Queue_Put(queue_, value(n), note_release), 0);
    }
    void get(std::uintptr_t first, std::uintptr_t last) {
        for (std::uintptr_t n = first; n <= last; ++n) ASSERT_EQ(Queue_Get(queue_, false), value(n));
    }
    // From the oldest on.
    std::string contents() {
        std::string text;
        for (u32 i = 0; i < Queued_Size(queue_); ++i) text += number(Queued_Value(queue_, i));
        return text;
    }

    QueueType* queue_ = Queue_Create();
};

TEST_F(Queue, StartsEmptyWithRoomForSixteenAndItsTailBeforeTheFirstPlace) {
    EXPECT_EQ(Queued_Size(queue_), 0u);
    EXPECT_EQ(queue_->capacity, 16u);
    EXPECT_EQ(queue_->head, 0u);
    EXPECT_EQ(queue_->tail, UINT32_MAX);
}

TEST_F(Queue, AnEmptyQueueGivesNull) {
    EXPECT_EQ(Queue_Get(queue_, false), nullptr);
    EXPECT_EQ(Queue_Get(queue_, true), nullptr);
}

TEST_F(Queue, ValuesComeBackOldestFirst) {
    put(1, 3);
    EXPECT_EQ(queue_->head, 0u);
    EXPECT_EQ(queue_->tail, 2u);
    get(1, 3);
    EXPECT_EQ(gReleased, "");
}

TEST_F(Queue, GettingWithReleaseReleasesTheValueAndGivesNull) {
    put(1, 2);
    EXPECT_EQ(Queue_Get(queue_, true), nullptr);
    EXPECT_EQ(gReleased, "1 ");
    EXPECT_EQ(contents(), "2 ");
}

TEST_F(Queue, StuffedValuesComeFirst) {
    put(1, 2);
    ASSERT_EQ(Queue_Stuff(queue_, value(9), note_release), 0);
    EXPECT_EQ(queue_->head, 15u);
    EXPECT_EQ(contents(), "9 1 2 ");
}

TEST_F(Queue, AnEmptyQueueTakesStuffedAndPutValuesInOrder) {
    ASSERT_EQ(Queue_Stuff(queue_, value(2), nullptr), 0);
    EXPECT_EQ(queue_->tail, queue_->head);
    ASSERT_EQ(Queue_Put(queue_, value(3), nullptr), 0);
    ASSERT_EQ(Queue_Stuff(queue_, value(1), nullptr), 0);
    EXPECT_EQ(contents(), "1 2 3 ");
}

TEST_F(Queue, AWrappedQueueKeepsItsOrderThroughGrowth) {
    put(1, 12);
    get(1, 10);
    put(13, 26); // 16 values, wrapped
    EXPECT_EQ(queue_->capacity, 16u);
    EXPECT_LT(queue_->tail, queue_->head);
    put(27, 27);
    EXPECT_EQ(queue_->capacity, 32u);
    EXPECT_EQ(queue_->head, 0u);
    EXPECT_EQ(queue_->tail, 16u);
    get(11, 27);
}

TEST_F(Queue, GrowsForAStuffedValueToo) {
    put(1, 16);
    ASSERT_EQ(Queue_Stuff(queue_, value(0), nullptr), 0);
    EXPECT_EQ(queue_->capacity, 32u);
    EXPECT_EQ(queue_->head, 31u);
    get(0, 16);
}

TEST_F(Queue, GivesTheValueByItsAgeAndNullOutOfRange) {
    put(1, 3);
    EXPECT_EQ(Queued_Value(queue_, 0), value(1));
    EXPECT_EQ(Queued_Value(queue_, 2), value(3));
    EXPECT_EQ(Queued_Value(queue_, 3), nullptr);
    EXPECT_EQ(Queued_Value(queue_, UINT32_MAX), nullptr);
}

TEST_F(Queue, DeletingReleasesAllFromTheOldestAndClearsThePointer) {
    put(1, 3);
    Queue_Delete(&queue_);
    EXPECT_EQ(queue_, nullptr);
    EXPECT_EQ(gReleased, "1 2 3 ");
}

TEST_F(Queue, HoldsAgainstAPlainQueueOverRandomSteps) {
    std::mt19937 random(7);
    std::deque<void*> plain;
    for (std::uintptr_t n = 1; n <= 3000; ++n) {
        switch (random() % 5) {
        case 0:
        case 1:
            ASSERT_EQ(Queue_Put(queue_, value(n), nullptr), 0);
            plain.push_back(value(n));
            break;
        case 2:
            ASSERT_EQ(Queue_Stuff(queue_, value(n), nullptr), 0);
            plain.push_front(value(n));
            break;
        default:
            ASSERT_EQ(Queue_Get(queue_, false), plain.empty() ? nullptr : plain.front());
            if (!plain.empty()) plain.pop_front();
        }
        ASSERT_EQ(Queued_Size(queue_), plain.size());
        for (u32 i = 0; i < plain.size(); ++i) ASSERT_EQ(Queued_Value(queue_, i), plain[i]);
        if (!plain.empty()) {
            ASSERT_EQ(queue_->elements[queue_->tail]->value, plain.back());
        }
    }
}

TEST_F(Queue, AFailedGrowthLeavesTheQueueAsItWas) {
    put(1, 16);
    const std::string before = contents();
    CapturedAlerts alerts(0);
    for (u64 n = 1; n <= 2; ++n) {
        failTrackedAllocation(n);
        EXPECT_EQ(Queue_Put(queue_, value(17), note_release), 7);
        failTrackedAllocation(n);
        EXPECT_EQ(Queue_Stuff(queue_, value(17), note_release), 7);
        failTrackedAllocation(0);
        EXPECT_EQ(contents(), before);
        EXPECT_EQ(gReleased, "");
    }
}

TEST_F(Queue, EveryFailedAllocationIsAStatus) {
    const FaultSweep sweep = sweepAllocationFaults([] {
        QueueType* queue = Queue_Create();
        if (queue == nullptr) return 7;
        int status = 0;
        for (std::uintptr_t n = 1; n <= 20 && status == 0; ++n)
            status = n % 2 == 0 ? Queue_Put(queue, value(n), nullptr) : Queue_Stuff(queue, value(n), nullptr);
        Queue_Delete(&queue);
        return status;
    });
    EXPECT_EQ(sweep.failures, "");
    EXPECT_EQ(sweep.faultCount, 23u); // record, two arrays, 20 elements
}

TEST_F(Queue, ANullQueueIsRefusedOnEntryAndReadsAsEmpty) {
    CapturedAlerts alerts;
    EXPECT_EQ(Queue_Put(nullptr, value(1), nullptr), 3);
    EXPECT_NE(alerts.take().find("Queue_Put was called without a container."), std::string::npos);
    EXPECT_EQ(Queue_Stuff(nullptr, value(1), nullptr), 3);
    EXPECT_NE(alerts.take().find("Queue_Stuff was called without a container."), std::string::npos);
    EXPECT_EQ(Queue_Get(nullptr, true), nullptr);
    EXPECT_EQ(Queued_Size(nullptr), 0u);
    EXPECT_EQ(Queued_Value(nullptr, 0), nullptr);
    Queue_Delete(nullptr);
    QueueType* none = nullptr;
    Queue_Delete(&none);
}

} // namespace
} // namespace memdata::testing
