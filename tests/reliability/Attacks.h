#pragma once

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "configfiles/UserFile.h"

// What all attacks need, on both systems.

/// How often something is repeated, unless a variable says otherwise.
inline int CountFrom(const char* variable, int usual)
{
    const char* const text = std::getenv(variable);
    return text ? std::atoi(text) : usual;
}

/// What the getter of a user's file says when it cannot provide the file; empty when it can.
inline std::string MessageOf(const Quenlor::Fraxo::SharedUtilities::Native::UserFile& file)
{
    try
    {
        Provide(file);
        return "";
    }
    catch (const std::runtime_error& error)
    {
        return error.what();
    }
}

/// What writers and copies make for a moment, and remove. Makes it so old that no process can still be writing it.
/// @return how many there are
inline std::size_t CountAndAgeTemporaryFiles(const std::filesystem::path& folder)
{
    std::size_t count = 0;
    std::error_code missing;
    for (const std::filesystem::path& file : std::filesystem::directory_iterator{folder, missing})
    {
        if (!file.filename().string().starts_with('.') && file.extension() != ".new")
            continue;
        last_write_time(file, std::filesystem::file_time_type::clock::now() - std::chrono::hours{2});
        ++count;
    }
    return count;
}

using Counts = std::vector<std::pair<const char*, std::size_t>>;

/// Prints what an attack did and what it found, on one line that `scripts/soak` collects. Each fault fails the test.
inline void Conclude(const std::string& attack, Counts counts, const Counts& faults)
{
    counts.insert(counts.end(), faults.begin(), faults.end());
    std::cout << "SUMMARY " << attack;
    for (const auto& [what, count] : counts)
        std::cout << ", " << count << ' ' << what;
    std::cout << '\n';
    for (const auto& [what, count] : faults)
        EXPECT_EQ(count, 0U) << what;
}
