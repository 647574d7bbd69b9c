// What has to hold of everything that blocks the program for a while. A Bed has work(), and
// user_wants_an_end(), which is called at a look and takes effect soon after.
#pragma once

#include "platform/blocking_work.h"

#include <gtest/gtest.h>

namespace tessavox {

template <class Bed> struct BlockingWorkContract : testing::Test {
    Bed bed;
};

TYPED_TEST_SUITE_P(BlockingWorkContract);

TYPED_TEST_P(BlockingWorkContract, ReturnsWhenTheWorkIsDoneOrTheUserHasEnough)
{
    constexpr int enough_looks = 1000;
    for (const bool is_ended : { false, true }) {
        int looks = 0;
        const bool complete = this->bed.work().wait(
            "Busy", [&] { return !is_ended && looks > 3; },
            [&] {
                EXPECT_LT(++looks, enough_looks);
                if (is_ended)
                    this->bed.user_wants_an_end();
                return 0.5;
            });
        EXPECT_EQ(complete, !is_ended);
        EXPECT_GT(looks, 0);
    }
}

REGISTER_TYPED_TEST_SUITE_P(BlockingWorkContract, ReturnsWhenTheWorkIsDoneOrTheUserHasEnough);

} // namespace tessavox
