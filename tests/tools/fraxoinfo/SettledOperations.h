#pragma once

#include <gtest/gtest.h>

#include "Answer.h"

/// Whether it answers the same while the machine stays the same. IsExeRunning depends on the programs of the moment,
/// and another test may be running fraxoinfo.
inline bool IsSettled(const FraxoInfo::Operation& operation)
{
    return !operation.name.starts_with("IsExeRunning");
}

inline void ExpectSameValues(const std::vector<FraxoInfo::Answer>& some, const std::vector<FraxoInfo::Answer>& others)
{
    for (std::size_t i = 0; i < some.size(); ++i)
        EXPECT_TRUE(!IsSettled(*some[i].operation) || some[i].value == others[i].value)
            << some[i].operation->name << '\n'
            << Shown(some[i]) << '\n'
            << Shown(others[i]);
}
