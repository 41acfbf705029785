// Counted handles, counted start and stop, and the small containers round them.
#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

#include "kvcore/dynamic_array.h"
#include "kvcore/initialisable.h"
#include "kvcore/manual_singleton.h"
#include "kvcore/reference_counter.h"

namespace {

using KVCORE::REFERENCE_COUNTER;

class COUNTED : public KVCORE::REFERENCE_COUNTED<COUNTED> {
public:
    explicit COUNTED(int& live_count) : live(live_count) { ++live; }
    ~COUNTED() override { --live; }

private:
    int& live;
};

class DERIVED : public COUNTED {
public:
    using COUNTED::COUNTED;
};

TEST(ReferenceCounter, LastHandleEndsTheObject) {
    int live = 0;
    REFERENCE_COUNTER<COUNTED> a(new COUNTED(live));
    REFERENCE_COUNTER<COUNTED> b = a;
    EXPECT_EQ(2, a->get_reference_count());
    EXPECT_TRUE(a == b);
    a = nullptr;
    EXPECT_EQ(1, live);
    EXPECT_TRUE(a.is_null());
    EXPECT_FALSE(a);
    b = *&b;
    EXPECT_EQ(1, b->get_reference_count()) << "self-assignment";
    REFERENCE_COUNTER<COUNTED> c = std::move(b);
    EXPECT_TRUE(b.is_null());
    c = REFERENCE_COUNTER<DERIVED>(new DERIVED(live));
    EXPECT_EQ(1, live) << "the first object went, the derived one is held through its base";
    c.reset();
    EXPECT_EQ(0, live);
    REFERENCE_COUNTER<COUNTED> null_handle(static_cast<COUNTED*>(nullptr));
    EXPECT_TRUE(null_handle == nullptr && null_handle == c && !(null_handle < c));
}

class PARKED;
struct PARKING_TRAITS {
    static void destroy(PARKED* object);
};
class PARKED : public KVCORE::REFERENCE_COUNTED<PARKED, PARKING_TRAITS> {
public:
    bool parked = false;
};
void PARKING_TRAITS::destroy(PARKED* object) {
    object->parked = true;
}

TEST(ReferenceCounter, TraitsDecideHowAnObjectEnds) {
    PARKED object;
    { const REFERENCE_COUNTER<PARKED> handle(&object); }
    EXPECT_TRUE(object.parked);
}

TEST(ReferenceCounter, ThreadsHoldAndDropHandlesOfOneObject) {
    int live = 0;
    REFERENCE_COUNTER<COUNTED> shared(new COUNTED(live));
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([own = shared] {
            for (int i = 0; i < 20000; ++i) {
                const REFERENCE_COUNTER<COUNTED> copy = own;
                EXPECT_GE(copy->get_reference_count(), 2);
            }
        });
    }
    shared.reset();
    for (std::thread& thread : threads) {
        thread.join();
    }
    threads.clear();
    EXPECT_EQ(0, live);
}

TEST(DynamicArray, KeepsHandlesAndOrder) {
    int live = 0;
    KVCORE::DYNAMIC_ARRAY<REFERENCE_COUNTER<COUNTED>> items;
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(i, items.add(REFERENCE_COUNTER<COUNTED>(new COUNTED(live))));
    }
    const REFERENCE_COUNTER<COUNTED> third = items[2];
    items.remove(0);
    EXPECT_EQ(4, live);
    EXPECT_EQ(1, items.find(third));
    EXPECT_TRUE(items.remove_item(third));
    EXPECT_FALSE(items.remove_item(third));
    EXPECT_EQ(3, items.get_count());
    items.insert(3, third);
    EXPECT_TRUE(items[3] == third);
    items.clear();
    EXPECT_TRUE(items.is_empty());
    EXPECT_EQ(1, live);
    KVCORE::DYNAMIC_ARRAY<int> numbers;
    numbers.add(7);
    numbers.add(numbers[0]);
    EXPECT_EQ(7, numbers[1]) << "adding an item of the array itself";
}

class SERVICE : public KVCORE::INITIALISABLE_OBJECT, public KVCORE::MANUAL_SINGLETON<SERVICE> {
public:
    int starts = 0;
    int stops = 0;
    KVCORE::RESULT start_result;

private:
    KVCORE::RESULT do_initialisation() override {
        ++starts;
        return start_result;
    }
    KVCORE::RESULT do_shutdown() override {
        ++stops;
        return KVCORE::RESULT();
    }
};

TEST(Initialisable, FirstStartsAndLastStops) {
    EXPECT_EQ(nullptr, SERVICE::get_instance());
    auto service = std::make_unique<SERVICE>();
    EXPECT_EQ(service.get(), SERVICE::get_instance());
    service->start_result = KVCORE::RESULT(5);
    EXPECT_EQ(5, service->initialise().get_code());
    EXPECT_FALSE(service->is_initialised()) << "a first start that fails doesn't count";
    service->shutdown();
    EXPECT_EQ(0, service->stops);
    service->start_result = KVCORE::RESULT();
    EXPECT_EQ(0, service->initialise().get_code());
    EXPECT_EQ(0, service->initialise().get_code());
    EXPECT_EQ(2, service->starts) << "tried again, and then counted only";
    service->shutdown();
    EXPECT_EQ(0, service->stops);
    service->shutdown();
    service->shutdown();
    EXPECT_EQ(1, service->stops) << "a stop too many does nothing";
    service->initialise();
    EXPECT_EQ(3, service->starts);
    service.reset();
    EXPECT_EQ(nullptr, SERVICE::get_instance());
}

}  // namespace
