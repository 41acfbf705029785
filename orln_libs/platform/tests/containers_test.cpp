// The containers keep order, count, cursor and ownership through every way of changing them.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "platform/debug_stream.h"
#include "platform/llist.h"
#include "platform/ptrarray.h"
#include "platform/temp_strings.h"
#include "platform/text_tools.h"

namespace {

using testing::internal::CaptureStdout;
using testing::internal::GetCapturedStdout;

std::vector<void*> deleted;
void note_deleted(void* entry) {
    deleted.push_back(entry);
}

int compare_numbers(const void* a, const void* b) {
    const int left = **static_cast<const int* const*>(a);
    const int right = **static_cast<const int* const*>(b);
    return (left > right) - (left < right);
}
int compare_reversed(const void* a, const void* b) {
    return -compare_numbers(a, b);
}

struct NUMBERS {
    int values[40];
    NUMBERS() {
        for (int i = 0; i < 40; ++i) {
            values[i] = i;
        }
    }
    int* operator[](int i) { return &values[i]; }
};

std::vector<int> contents(const PTRARRAY& array) {
    std::vector<int> result;
    for (std::int32_t i = 0; i < array.get_count(); ++i) {
        result.push_back(*array.get<int>(i));
    }
    return result;
}

TEST(PtrArray, GrowsByStepOrByInitialSizeAndNeverShrinks) {
    NUMBERS n;
    PTRARRAY plain;
    EXPECT_EQ(nullptr, plain.get_data());
    ASSERT_TRUE(plain.add(n[0]));
    EXPECT_EQ(10, plain.get_capacity());
    for (int i = 1; i < 11; ++i) {
        ASSERT_TRUE(plain.add(n[i]));
    }
    EXPECT_EQ(20, plain.get_capacity());
    EXPECT_TRUE(plain.allocate(5));
    EXPECT_EQ(20, plain.get_capacity());
    EXPECT_TRUE(plain.allocate(33));
    EXPECT_EQ(33, plain.get_capacity());
    EXPECT_EQ(11, plain.get_count());
    EXPECT_EQ(10, *plain.get<int>(10));
    EXPECT_EQ(nullptr, plain.get<int>(11));
    EXPECT_EQ(nullptr, plain.get<int>(-1));

    PTRARRAY initial(4, 7);
    for (int i = 0; i < 8; ++i) {
        ASSERT_TRUE(initial.add(n[i]));
        EXPECT_EQ(i < 7 ? 7 : 11, initial.get_capacity());
    }
    PTRARRAY small_initial(4, 4);  // not above the step: the step counts
    ASSERT_TRUE(small_initial.add(n[0]));
    EXPECT_EQ(4, small_initial.get_capacity());
}

TEST(PtrArray, RemovesInOrderOrQuicklyAndDeletesWhatItOwns) {
    NUMBERS n;
    deleted.clear();
    {
        PTRARRAY array(0, 0, note_deleted);
        for (int i = 0; i < 6; ++i) {
            array.add(n[i]);
        }
        EXPECT_FALSE(array.remove(-1));
        EXPECT_FALSE(array.remove(6));
        EXPECT_FALSE(array.remove_quick(-1));
        EXPECT_FALSE(array.remove_quick(6));
        EXPECT_EQ((std::vector<int>{0, 1, 2, 3, 4, 5}), contents(array));
        EXPECT_TRUE(deleted.empty());

        EXPECT_TRUE(array.remove(1));
        EXPECT_EQ((std::vector<int>{0, 2, 3, 4, 5}), contents(array));
        EXPECT_TRUE(array.remove_quick(0));
        EXPECT_EQ((std::vector<int>{5, 2, 3, 4}), contents(array));
        EXPECT_TRUE(array.remove_quick(3));
        EXPECT_EQ((std::vector<int>{5, 2, 3}), contents(array));
        EXPECT_EQ((std::vector<void*>{n[1], n[0], n[4]}), deleted);
        deleted.clear();
    }
    EXPECT_EQ((std::vector<void*>{n[5], n[2], n[3]}), deleted);
}

TEST(PtrArray, SetSharesEntriesAndKeepsItsOwnFunctions) {
    NUMBERS n;
    deleted.clear();
    PTRARRAY source(3, 0);
    for (int i = 0; i < 4; ++i) {
        source.add(n[i]);
    }
    PTRARRAY target(0, 0, note_deleted, compare_numbers);
    target.add(n[30]);
    target.set(&source);
    EXPECT_EQ((std::vector<void*>{n[30]}), deleted);
    EXPECT_EQ(contents(source), contents(target));
    EXPECT_EQ(6, target.get_capacity());
    EXPECT_EQ(3, target.get_grow_step());
    EXPECT_NE(source.get_data(), target.get_data());
    EXPECT_EQ(2, target.find(n[2]));
    target.set(&target);
    EXPECT_EQ(4, target.get_count());
    deleted.clear();
    target.set(nullptr);
    EXPECT_EQ(4u, deleted.size());
    EXPECT_EQ(0, target.get_capacity());
}

TEST(PtrArray, FindsByOrderWithAFunctionAndByPointerWithout) {
    NUMBERS n;
    PTRARRAY array;
    EXPECT_EQ(-1, array.find(n[0]));
    EXPECT_EQ(-1, array.find(n[0], compare_numbers));
    for (int i : {9, 3, 7, 1, 5}) {
        array.add(n[i]);
    }
    EXPECT_EQ(2, array.find(n[7]));
    EXPECT_EQ(-1, array.find(n[8]));
    array.sort();  // neither given nor stored
    EXPECT_EQ((std::vector<int>{9, 3, 7, 1, 5}), contents(array));
    array.set_compare_function(compare_numbers);
    array.sort();
    EXPECT_EQ((std::vector<int>{1, 3, 5, 7, 9}), contents(array));
    int key = 7;  // equal, but another pointer
    EXPECT_EQ(3, array.find(&key));
    key = 8;
    EXPECT_EQ(-1, array.find(&key));
    array.sort(compare_reversed);
    key = 9;
    EXPECT_EQ(0, array.find(&key, compare_reversed));
}

std::string walk(const LLIST& list, bool forward) {
    std::string text;
    list.set_cursor(forward ? list.get_head() : list.get_tail());
    while (const void* info = forward ? list.get_info_inc() : list.get_info_dec()) {
        text += *static_cast<const char*>(info);
    }
    return text;
}

TEST(List, AddsBeforeTheCursorOrAtTheTail) {
    LLIST list;
    char a[] = "a", b[] = "b", c[] = "c", d[] = "d";
    EXPECT_TRUE(list.add_node(a, 2));
    a[0] = 'x';  // the list has its own copy
    EXPECT_TRUE(list.add_node(b, 2));
    EXPECT_EQ("ab", walk(list, true));
    list.set_cursor(list.get_head());
    EXPECT_TRUE(list.add_node(c, 2));
    EXPECT_EQ('c', *reinterpret_cast<char*>(list.get_head()->info));
    EXPECT_EQ(list.get_head()->next, list.get_cursor());
    list.set_cursor(list.get_tail());
    EXPECT_TRUE(list.add_node(d, 2));
    EXPECT_EQ("cadb", walk(list, true));
    EXPECT_EQ("bdac", walk(list, false));
    EXPECT_EQ(nullptr, list.get_info_inc());
    EXPECT_EQ(4, list.get_count());
}

TEST(List, RemovesByInfoAndForgetsACursorOnTheNode) {
    static std::string removed;
    removed.clear();
    LLIST list([](void* info) { removed += *static_cast<char*>(info); });
    for (char c : {'a', 'b', 'c', 'd'}) {
        list.add_node(&c, 1);
    }
    LISTNODE* second = list.get_head()->next;
    list.set_cursor(second);
    EXPECT_FALSE(list.remove_node(&removed));
    EXPECT_TRUE(list.remove_node(second->info));
    EXPECT_EQ(nullptr, list.get_cursor());
    EXPECT_TRUE(list.remove_node(list.get_tail()->info));
    EXPECT_TRUE(list.remove_node(list.get_head()->info));
    EXPECT_EQ("bda", removed);
    EXPECT_EQ("c", walk(list, true));
    EXPECT_EQ("c", walk(list, false));
    list.clear();
    EXPECT_EQ("bdac", removed);
    EXPECT_EQ(0, list.get_count());
    EXPECT_EQ(nullptr, list.get_head());
    EXPECT_EQ(nullptr, list.get_tail());
}

PTRLLIST* reentrant_list;

TEST(PointerList, HoldsPointersAndGivesThemToTheCallbackEvenWhenDestroyed) {
    NUMBERS n;
    deleted.clear();
    {
        PTRLLIST list(note_deleted);
        for (int i = 0; i < 4; ++i) {
            list.add_node(n[i]);
        }
        list.set_cursor(list.get_head());
        EXPECT_EQ(n[0], list.get_info_inc());
        EXPECT_EQ(n[1], list.get_info_dec());
        EXPECT_EQ(n[0], list.get_info_dec());
        EXPECT_EQ(nullptr, list.get_info_dec());
        EXPECT_TRUE(list.remove_node(n[2]));
        EXPECT_FALSE(list.remove_node(n[2]));
        EXPECT_EQ((std::vector<void*>{n[2]}), deleted);
    }
    EXPECT_EQ((std::vector<void*>{n[2], n[0], n[1], n[3]}), deleted);

    // A callback that takes the next entry away: a parent that deletes its children.
    PTRLLIST list([](void*) {
        if (LISTNODE* node = reentrant_list->get_head()) {
            reentrant_list->LLIST::remove_node(node->info);
        }
    });
    reentrant_list = &list;
    for (int i = 0; i < 5; ++i) {
        list.add_node(n[i]);
    }
    list.clear();
    EXPECT_EQ(0, list.get_count());
}

TEST(TempStrings, EachRingWrapsAfterSixteenOfItsKind) {
    TEMP_STRINGS strings;
    EXPECT_EQ(nullptr, strings.get(0));
    EXPECT_EQ(nullptr, strings.get(-1));
    char* first = strings.get(1);
    char* first_large = strings.get(4097);
    std::memset(first_large, 'x', 4097);
    std::strcpy(first, "text");
    for (int i = 0; i < 15; ++i) {
        char* next = strings.get(4096);
        EXPECT_EQ('\0', next[0]);
        std::memset(next, 'y', 4096);
        EXPECT_EQ(first + (i + 1) * 4096, next);
        char* large = strings.get(5000);
        std::memset(large, 'z', 5000);
    }
    EXPECT_STREQ("text", first);
    EXPECT_EQ('x', first_large[4096]);
    EXPECT_EQ(first, strings.get(10));
    EXPECT_STREQ("", first);
    char* grown = strings.get(1 << 20);  // the first large slot again, and larger
    EXPECT_EQ('\0', grown[0]);
    std::memset(grown, 'w', 1 << 20);
}

TEST(TextTools, ComparesWithoutRegardToCase) {
    EXPECT_EQ(0, strcmpi("Launcher.CFG", "launcher.cfg"));
    EXPECT_EQ(-1, strcmpi("abc", "ABD"));
    EXPECT_EQ(1, strcmpi("abc", "AB"));
    EXPECT_EQ(1, strcmpi("Z", "["));  // letters count as lower case: 'z' is above '['
    EXPECT_EQ(1, strcmpi("\xE9", "e"));
    EXPECT_EQ(0, strcmpi(nullptr, nullptr));
    EXPECT_EQ(-1, strcmpi(nullptr, ""));
    const std::int32_t id = get_unique_id();
    EXPECT_EQ(id + 1, get_unique_id());
}

TEST(TextTools, LengthPrefixedStringsAreCutAndReported) {
    const unsigned char* hello = C_TO_P_STR("hello");
    EXPECT_EQ(0, std::memcmp("\5hello", hello, 6));
    EXPECT_STREQ("hello", P_TO_C_STR(hello));

    const std::string text(300, 'q');
    const unsigned short flags = platform_debug_stream.flags;
    platform_debug_stream.flags = DEBUG_STREAM::WRITE_TO_CONSOLE;
    CaptureStdout();
    const unsigned char* cut = C_TO_P_STR(text.c_str());
    std::fflush(stdout);
    EXPECT_EQ("*** ERROR *** - string too big for pascal string (" + text + ")\n",
              GetCapturedStdout());
    platform_debug_stream.flags = flags;
    EXPECT_EQ(255, cut[0]);
    EXPECT_STREQ(text.substr(0, 255).c_str(), P_TO_C_STR(cut));

    unsigned char small[4] = {9, 9, 9, 9};
    C_TO_P_STR_BUF("abcdef", small, 3);
    EXPECT_EQ(0, std::memcmp("\2ab\11", small, 4));
    char narrow[2];
    EXPECT_STREQ("a", P_TO_C_STR(small, narrow, sizeof narrow));
    EXPECT_EQ(0, C_TO_P_STR(nullptr)[0]);
    EXPECT_STREQ("", P_TO_C_STR(nullptr));
}

}  // namespace
