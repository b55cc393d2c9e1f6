#pragma once

#include <filesystem>
#include <regex>
#include <string>

#include <gmock/gmock.h>

#include <Quenlor/NativeLogging.h>

#include "support/Files.h"
#include "support/ScratchMachine.h"

/// Whether a text as a whole looks like this, where `.*` stays within a line on every system.
MATCHER_P(LooksLike, expression, std::string{"looks like "} + expression)
{
    return std::regex_match(arg, std::regex{expression});
}

/// The lines of a text, with `\n` after each.
inline std::string LinesOf(std::string text)
{
    std::erase(text, '\r');
    return text;
}

/// Tests of the logging engine by what arrives in its files, which are beside the configuration.
class LoggingTest : public ::testing::Test
{
protected:
    ~LoggingTest() override
    {
        remove_all(m_file); // without a configuration the log files are closed, and their folder can be removed
        Activate();
    }

    /// Activates a configuration that consists of these elements.
    void Configure(const std::string& elements) const
    {
        WriteFile(m_file, "<logging>\n" + elements + "</logging>\n");
        Activate();
    }

    void Activate() const
    {
        using namespace Quenlor::NativeLogging;
        LoggingConfig::SetOption(L"CONFIG_FILE", m_file.wstring());
        LoggingConfig::ActivateProvider(LoggingProviderType::ConfigurationFile);
    }

    static Quenlor::NativeLogging::ILogger& Logger(const wchar_t* name)
    {
        return *Quenlor::NativeLogging::LoggingManager::GetLogger(name);
    }

    /// What arrives there while the configuration is activated and two loggers get a record.
    std::string OnStandardError() const
    {
        ::testing::internal::CaptureStderr();
        Activate();
        for (const wchar_t* const name : {L"One", L"Two"})
        {
            Logger(name).Info("info");
            Logger(name).Warning("warning");
        }
        return LinesOf(::testing::internal::GetCapturedStderr());
    }

    std::string Lines(const std::filesystem::path& name) const { return LinesOf(ReadFile(m_folder / name)); }

    /// Each logger writes what it is given to a.log.
    static constexpr char ToFile[] = R"(<appender name="a" type="file" path="a.log" pattern="%v"/>
                                        <root level="info"><appender-ref ref="a"/></root>)";

    ScratchMachine m_machine;
    const std::filesystem::path m_folder = m_machine.Root() / "Logs";
    const std::filesystem::path m_file = m_folder / "log.xml";
};
