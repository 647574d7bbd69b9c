// What every store of small files has to do. A Bed has store() and path(name), a path in a folder
// of its own that exists and is empty.
#pragma once

#include "platform/failure.h"
#include "platform/file_store.h"

#include <gtest/gtest.h>

namespace tessavox {

template <class Bed> struct FileStoreContract : testing::Test {
    Bed bed;
    FileStore& store = bed.store();
};

TYPED_TEST_SUITE_P(FileStoreContract);

TYPED_TEST_P(FileStoreContract, WhatWasWrittenIsReadBackByteForByte)
{
    const std::string texts[] = { "", "one line\r\n", std::string("\0\xff\x1a\n", 4),
        std::string(300'000, 'x'), "shorter than before" };
    for (const std::string& bytes : texts) {
        for (const Durability durability : { Durability::durable, Durability::fleeting }) {
            this->store.write(this->bed.path("file.txt"), bytes, durability);
            EXPECT_EQ(this->store.read(this->bed.path("file.txt")), bytes);
        }
    }
    EXPECT_THROW(this->store.read(this->bed.path("other.txt")), Failure);
    EXPECT_THROW(this->store.write("", "text", Durability::durable), Failure);
    EXPECT_EQ(this->store.obstacle_to_writing(this->bed.path("file.txt")), WriteObstacle::none);
    EXPECT_EQ(this->store.obstacle_to_writing(this->bed.path("other.txt")), WriteObstacle::none);
}

REGISTER_TYPED_TEST_SUITE_P(FileStoreContract, WhatWasWrittenIsReadBackByteForByte);

} // namespace tessavox
