// Interned names and the table behind them.
#include "kvcore/symbol.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "kvcore/string.h"

namespace {

using KVCORE::BASE_SYMBOL_MANAGER;
using KVCORE::COPY_MODE;
using KVCORE::STRING;
using KVCORE::SYMBOL;
using namespace KVCORE::literals;

// Made before main, in whatever order: the global table has to be there.
const SYMBOL early(".cfg"_str);

TEST(Symbol, EqualTextsAreOneEntry) {
    const SYMBOL a("goal"_str);
    const SYMBOL b(STRING(u"goal"));
    const SYMBOL c("Goal"_str);
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a == c);
    EXPECT_EQ(&a.get_string(), &b.get_string());
    EXPECT_TRUE(early == SYMBOL(STRING(".cfg")));
    EXPECT_TRUE(SYMBOL() == SYMBOL(STRING(u"")) && SYMBOL().is_empty() &&
                SYMBOL() == SYMBOL(""_str));
    EXPECT_TRUE(c < a && !(a < c) && !(a < b)) << "ordered by text";
}

TEST(Symbol, ManagersAreSeparateAndKeepUserData) {
    BASE_SYMBOL_MANAGER manager;
    EXPECT_EQ(1, manager.get_count());
    KVCORE::SYMBOL_USER_DATA data;
    SYMBOL a("name"_str, &manager);
    EXPECT_EQ(nullptr, a.get_user_data());
    a.set_user_data(&data);
    EXPECT_EQ(&data, SYMBOL(STRING("name"), &manager).get_user_data());
    EXPECT_EQ(nullptr, SYMBOL("name"_str).get_user_data());
    EXPECT_FALSE(a == SYMBOL("name"_str));
    EXPECT_EQ(2, manager.get_count());
}

TEST(Symbol, BorrowsLiteralsAndSharesBuffers) {
    BASE_SYMBOL_MANAGER manager;
    static const char literal[] = "literal";
    EXPECT_EQ(literal, SYMBOL(STRING::from_literal(literal), &manager).get_string().get_8bit());
    const STRING buffer(u"buffer");
    EXPECT_EQ(buffer.get_16bit(), SYMBOL(buffer, &manager).get_string().get_16bit());
    std::string passing("passing");
    const SYMBOL copied(STRING(passing.c_str()), &manager);
    passing.assign("changed");
    EXPECT_TRUE(copied.get_string().equals("passing"));
}

TEST(HashTable, ChainsEntriesOfOneBucket) {
    KVCORE::HASH_TABLE<STRING, int, 3> table;
    std::set<const void*> entries;
    for (int i = 0; i < 200; ++i) {
        STRING key;
        key.format("key %d", i);
        entries.insert(table.add(key, i, false));
    }
    EXPECT_EQ(200u, entries.size());
    EXPECT_EQ(200, table.get_count());
    EXPECT_EQ(137, table.find(STRING("key 137"))->value);
    EXPECT_EQ(nullptr, table.find(STRING("key 200")));
    EXPECT_EQ(5, table.add(STRING("key 5"), -1, true)->value) << "keeps what is there";
    EXPECT_EQ(-1, table.add(STRING("key 5"), -1, false)->value);
    EXPECT_EQ(200, table.get_count());
    table.clear();
    EXPECT_EQ(nullptr, table.find(STRING("key 5")));
    EXPECT_EQ(0, table.get_count());
}

}  // namespace
