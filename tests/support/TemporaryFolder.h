#pragma once

#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

#include "support/Files.h"

/// An empty folder for one test, removed at the end.
class TemporaryFolder final
{
public:
    TemporaryFolder()
    {
        std::random_device random;
        do
            m_path = std::filesystem::temp_directory_path() / ("ini-test-" + std::to_string(random()));
        while (!std::filesystem::create_directory(m_path));
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const noexcept { return m_path; }

    /// Writes a file byte by byte as given.
    std::filesystem::path Write(std::string_view text, const std::filesystem::path& name = "test.ini") const
    {
        const std::filesystem::path file = m_path / name;
        WriteFile(file, text);
        return file;
    }

private:
    std::filesystem::path m_path;
};
