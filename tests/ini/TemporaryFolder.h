#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

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
        std::ofstream{file, std::ios::binary}.write(text.data(), static_cast<std::streamsize>(text.length()));
        return file;
    }

private:
    std::filesystem::path m_path;
};
